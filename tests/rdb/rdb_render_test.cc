// Text, HTML and XML renderings: layout of tables and escaping of whatever
// text the design's names bring along.
#include "rdb_test_util.hh"

#include "rdb/rdb_render.hh"

#include <tinyxml2.h>

namespace {

const std::string NASTY = "a<b>&\"c\" 'd' \x01\xff";

class RDB_RENDER_TEST : public RDB_TEST {
protected:
  void SetUp() override {
    RDB_TEST::SetUp();
    RDB_WRITER writer(m_file, RDB_TIMING_REPORT);
    {
      RDB_PANEL_WRITER panel = writer.begin_panel("Clocks");
      RDB_TABLE_WRITER table = panel.add_table("", RDB_KIND_TABLE, {"Clock", "Period"});
      table.add_row({"clk", "10.000"}, {{1, 0xff0000, 0x00ff00}});
      table.add_row({"clk_fast", "2.5"});
      panel.commit();
    }
    {
      RDB_PANEL_WRITER panel = writer.begin_panel("Odd " + NASTY);
      panel.add_text("Plain", "x < y && " + NASTY);
      panel.add_text("Rich", "<b>kept</b>", true);
      RDB_TABLE_WRITER table = panel.add_tcl_table("Table", {NASTY}, {{NASTY, "cmd %{0}"}});
      table.add_row({NASTY});
      panel.add_histogram("Histogram", "Slack", "Paths", 1000, "ns",
                          {{-500, 0, 3, 0x123456}, {0, 100000, 1, RDB_NO_COLOR}});
      panel.add_embedded("Embedded", 9, NASTY);
      panel.add_path("Path", -0.5, true);
      panel.add_path_table("Path", RDB_PATH_PART::SUMMARY, {"P"}).add_row({"v"});
      panel.add_path_chart("Path", "Type", "Delay", 1, {{NASTY, 1}});
      panel.add_path_table("Path", RDB_PATH_PART::ARRIVAL, {"P"});
      panel.add_path_table("Path", RDB_PATH_PART::REQUIRED, {"P"});
      panel.commit();
    }
    m_report = RDB_REPORT::open(m_file);
  }
  std::unique_ptr<RDB_REPORT> m_report;
};

TEST_F(RDB_RENDER_TEST, TextRenderingAlignsTableColumnsBetweenSeparatorLines) {
  EXPECT_EQ(m_report->find_object("Clocks")->to_text(),
            "Clocks\n"
            "======\n"
            "+----------+--------+\n"
            "; Clock    ; Period ;\n"
            "+----------+--------+\n"
            "; clk      ; 10.000 ;\n"
            "; clk_fast ; 2.5    ;\n"
            "+----------+--------+\n");
}

TEST_F(RDB_RENDER_TEST, TextRenderingOfAFolderShowsEveryKindUnderItsHeading) {
  std::string text = m_report->find_object("Odd " + NASTY)->to_text();
  for (const char* expected : {"Plain\n-----\nx < y && ", "Slack: -0.500 ns (VIOLATED)",
                               "; From (ns) ; To (ns) ; Count ;", "; -0.5      ; 0       ; 3     ;",
                               "Embedded object of type 9", "Path Delay Stats"})
    EXPECT_NE(text.find(expected), std::string::npos) << expected << "\nin:\n" << text;
}

TEST_F(RDB_RENDER_TEST, HistogramEdgesAreStoredAsPlainNumbers) {
  RDB_OBJECT* panel = m_report->find_object("Odd " + NASTY);
  RDB_TABLE_OBJECT* histogram = nullptr;
  for (int i = 0; i < panel->get_number_of_children(); i++)
    if (panel->get_child(i)->get_name() == "Histogram")
      histogram = dynamic_cast<RDB_TABLE_OBJECT*>(panel->get_child(i));
  ASSERT_TRUE(histogram);
  EXPECT_EQ(histogram->get_data(1, 0), "-500");
  EXPECT_EQ(histogram->get_data(2, 1), "100000");
}

TEST_F(RDB_RENDER_TEST, HtmlRenderingEscapesDatabaseTextAndKeepsHtmlTextObjects) {
  std::string html = m_report->find_object("Odd " + NASTY)->to_html();
  EXPECT_EQ(html.find(NASTY), std::string::npos);
  EXPECT_NE(html.find("<h1>Odd a&lt;b&gt;&amp;&quot;c&quot; &#39;d&#39;"), std::string::npos);
  EXPECT_NE(html.find("<pre>x &lt; y &amp;&amp; "), std::string::npos);
  EXPECT_NE(html.find("<b>kept</b>"), std::string::npos);
  EXPECT_NE(html.find("<th>a&lt;b&gt;"), std::string::npos);
  std::string clocks = m_report->find_object("Clocks")->to_html();
  EXPECT_NE(clocks.find("<td style=\"color:#ff0000;background-color:#00ff00;\">10.000</td>"),
            std::string::npos)
      << clocks;
}

TEST_F(RDB_RENDER_TEST, XmlReportIsWellFormedAndCarriesEveryKindsData) {
  const std::string xml_file = (m_dir / "odd.xml").string();
  std::string error;
  ASSERT_TRUE(rdb_write_xml_report(m_report->get_main_folder(), xml_file, &error)) << error;

  tinyxml2::XMLDocument document;
  ASSERT_EQ(document.LoadFile(xml_file.c_str()), tinyxml2::XML_SUCCESS) << document.ErrorStr();
  const tinyxml2::XMLElement* root = document.RootElement();
  ASSERT_NE(root, nullptr);
  EXPECT_STREQ(root->Name(), "report");
  const tinyxml2::XMLElement* main = root->FirstChildElement("folder");
  ASSERT_NE(main, nullptr);
  EXPECT_STREQ(main->Attribute("name"), "Timing Analyzer");

  // Text that XML can carry comes back exactly; control bytes and invalid
  // UTF-8 are replaced rather than breaking the document.
  const std::string carried = "a<b>&\"c\" 'd' \xEF\xBF\xBD\xEF\xBF\xBD";
  const tinyxml2::XMLElement* odd = main->FirstChildElement("folder");
  ASSERT_NE(odd, nullptr);
  EXPECT_EQ(std::string(odd->Attribute("name")), "Odd " + carried);
  const tinyxml2::XMLElement* plain = odd->FirstChildElement("text");
  EXPECT_EQ(std::string(plain->GetText()), "x < y && " + carried);
  const tinyxml2::XMLElement* tcl = odd->FirstChildElement("tcl_table");
  ASSERT_NE(tcl, nullptr);
  EXPECT_EQ(std::string(tcl->FirstChildElement("command")->Attribute("gui_name")), carried);
  EXPECT_EQ(std::string(tcl->FirstChildElement("row")->FirstChildElement("cell")->GetText()), carried);
  const tinyxml2::XMLElement* bin = odd->FirstChildElement("histogram")->FirstChildElement("bin");
  ASSERT_NE(bin, nullptr);
  EXPECT_STREQ(bin->Attribute("from"), "-500");
  EXPECT_STREQ(bin->Attribute("color"), "#123456");
  const tinyxml2::XMLElement* path = odd->FirstChildElement("path");
  ASSERT_NE(path, nullptr);
  EXPECT_STREQ(path->Attribute("violated"), "true");
  EXPECT_STREQ(path->FirstChildElement("chart_table")->Attribute("default_chart_type"), "1");
  const tinyxml2::XMLElement* clocks = main->FirstChildElement("table");
  const tinyxml2::XMLElement* cell = clocks->FirstChildElement("row")->FirstChildElement("cell")
                                         ->NextSiblingElement("cell");
  EXPECT_STREQ(cell->Attribute("foreground"), "#ff0000");
  EXPECT_STREQ(cell->Attribute("background"), "#00ff00");

  EXPECT_FALSE(rdb_write_xml_report(m_report->get_main_folder(),
                                    (m_dir / "no" / "such" / "dir.xml").string(), &error));
  EXPECT_NE(error.find("dir.xml"), std::string::npos);
  EXPECT_FALSE(rdb_write_xml_report(nullptr, xml_file, &error));
}

}  // namespace
