// Round trips through the database: what the engine writes is what the front
// end reads, for every object kind, with paths and rows paged on demand.
#include "rdb_test_util.hh"

#include "rdb/rdb_object.hh"

namespace {

class RDB_MODEL_TEST : public RDB_TEST {
protected:
  // One panel of every kind, inside a folder panel, plus a path panel.
  void write_everything() {
    RDB_WRITER writer(m_file, RDB_TIMING_REPORT);
    {
      RDB_PANEL_WRITER panel = writer.begin_panel("Datasheet", "report_datasheet");
      panel.add_text("Notes", "line 1\n\tline 2");
      panel.add_text("Web||Page", "<b>bold</b>", true);
      RDB_TABLE_WRITER plain = panel.add_table("Setup Times", RDB_KIND_TABLE, {"Port", "Time"});
      plain.add_row({"d[0]", "1.5"}, {{1, 0xff0000, RDB_NO_COLOR}});
      plain.add_row({"d[1]"});
      RDB_TABLE_WRITER bare = panel.add_table("Bare", RDB_KIND_HEADERLESS_TABLE, {"", ""});
      bare.add_row({"Key", "Value"});
      RDB_TABLE_WRITER detail = panel.add_table("Detail", RDB_KIND_DETAIL_TABLE, {"A"});
      detail.add_row({"a"}, {{0, RDB_NO_COLOR, 0x00ff00}});
      RDB_TABLE_WRITER tcl = panel.add_tcl_table(
          "Paths", {"From", "To"}, {{"Report Path...", "report_timing -from %{From} -to %{1}"}});
      tcl.add_row({"a", "b c"});
      panel.add_chart_table("Stats", "Kind", "Count", 2, {{"cell", 3}, {"net", 5}});
      panel.add_embedded("Log", 5, "/tmp/log.txt");
      panel.add_histogram("Slack Histogram", "Slack", "Paths", 1000, "ns",
                          {{-1500, -1000, 2, 0xff0000}, {-1000, -500, 0, RDB_NO_COLOR}});
      panel.add_legal_notice("Notice", "Copyright notice");
      panel.commit();
    }
    {
      RDB_PANEL_WRITER panel = writer.begin_panel("Path [1] \"x\" $y (z)", "report_timing -npaths 1");
      panel.add_path("", -0.123, true);
      panel.add_path_table("", RDB_PATH_PART::SUMMARY, {"Property", "Value"}).add_row({"From", "a"});
      panel.add_path_chart("", "Type", "Delay", 2, {{"Cell", 70}, {"IC", 30}});
      panel.add_path_table("", RDB_PATH_PART::ARRIVAL, {"Total", "Incr"}).add_row({"1.0", "1.0"});
      panel.add_path_table("", RDB_PATH_PART::REQUIRED, {"Total", "Incr"}).add_row({"2.0", "2.0"});
      panel.commit();
    }
  }
};

TEST_F(RDB_MODEL_TEST, EveryObjectKindReadsBackAsWritten) {
  write_everything();
  auto report = RDB_REPORT::open(m_file);
  RDB_FOLDER_OBJECT* main = report->get_main_folder();
  ASSERT_NE(main, nullptr);
  EXPECT_EQ(main->get_type(), RDB_KIND_FOLDER);
  EXPECT_EQ(main->get_name(), "Timing Analyzer");
  ASSERT_EQ(main->get_number_of_children(), 2);

  RDB_OBJECT* sheet = report->find_object("Datasheet");
  ASSERT_NE(sheet, nullptr);
  EXPECT_EQ(sheet->get_type(), RDB_KIND_FOLDER);
  std::vector<std::string> names;
  for (RDB_OBJECT* child : sheet->get_children())
    names.push_back(child->get_name());
  EXPECT_EQ(names, (std::vector<std::string>{"Notes", "Web", "Setup Times", "Bare", "Detail",
                                             "Paths", "Stats", "Log", "Slack Histogram",
                                             "Notice"}));

  auto* notes = dynamic_cast<RDB_TEXT_OBJECT*>(sheet->find_child("Notes"));
  ASSERT_NE(notes, nullptr);
  EXPECT_EQ(notes->get_text(), "line 1\n\tline 2");
  EXPECT_FALSE(notes->is_html());
  auto* page = dynamic_cast<RDB_TEXT_OBJECT*>(report->find_object("Datasheet||Web||Page"));
  ASSERT_NE(page, nullptr);
  EXPECT_TRUE(page->is_html());
  EXPECT_EQ(page->get_parent()->get_type(), RDB_KIND_FOLDER);

  auto* plain = dynamic_cast<RDB_TABLE_OBJECT*>(sheet->find_child("Setup Times"));
  ASSERT_NE(plain, nullptr);
  EXPECT_EQ(plain->get_type(), RDB_KIND_TABLE);
  EXPECT_EQ(plain->get_number_of_rows(), 3);
  EXPECT_EQ(plain->get_number_of_columns(), 2);
  EXPECT_EQ(plain->get_data(0, 1), "Time");
  EXPECT_EQ(plain->get_data(1, 0), "d[0]");
  EXPECT_EQ(plain->get_data(2, 1), "");  // padded cell
  EXPECT_EQ(plain->get_element(1, 1), RDB_TABLE_ELEMENT(0xff0000, RDB_NO_COLOR));
  EXPECT_FALSE(plain->get_element(1, 0).has_value());
  EXPECT_FALSE(plain->get_element(0, 1).has_value());

  auto* bare = dynamic_cast<RDB_TABLE_OBJECT*>(sheet->find_child("Bare"));
  ASSERT_NE(bare, nullptr);
  EXPECT_FALSE(bare->has_header());
  EXPECT_EQ(bare->get_number_of_rows(), 1);
  EXPECT_EQ(bare->get_data(0, 0), "Key");

  auto* detail = dynamic_cast<RDB_TABLE_OBJECT*>(sheet->find_child("Detail"));
  ASSERT_NE(detail, nullptr);
  EXPECT_EQ(detail->get_type(), RDB_KIND_DETAIL_TABLE);
  EXPECT_EQ(detail->get_element(1, 0)->get_background_color(), 0x00ff00u);

  auto* tcl = dynamic_cast<RDB_TCL_TABLE_OBJECT*>(sheet->find_child("Paths"));
  ASSERT_NE(tcl, nullptr);
  EXPECT_EQ(tcl->get_number_of_cmds(), 1);
  EXPECT_EQ(tcl->get_gui_cmd_name(0), "Report Path...");
  EXPECT_EQ(tcl->build_cmd(0, 1), "report_timing -from a -to {b c}");
  EXPECT_EQ(tcl->build_cmd(0, 0), "");  // the title row has no command
  EXPECT_EQ(tcl->build_cmd(1, 1), "");

  auto* chart = dynamic_cast<RDB_CHART_TABLE_OBJECT*>(sheet->find_child("Stats"));
  ASSERT_NE(chart, nullptr);
  EXPECT_EQ(chart->get_x_axis(), "Kind");
  EXPECT_EQ(chart->get_y_axis(), "Count");
  EXPECT_EQ(chart->get_default_chart_type(), 2);
  EXPECT_EQ(chart->get_number_of_rows(), 3);
  EXPECT_EQ(chart->get_data(2, 0), "net");
  EXPECT_EQ(chart->get_count(2), 5);

  auto* embedded = dynamic_cast<RDB_EMBEDDED_OBJECT*>(sheet->find_child("Log"));
  ASSERT_NE(embedded, nullptr);
  EXPECT_EQ(embedded->get_embedded_type(), 5);
  EXPECT_EQ(embedded->get_info_str(), "/tmp/log.txt");

  auto* histogram = dynamic_cast<RDB_HISTOGRAM_TABLE_OBJECT*>(sheet->find_child("Slack Histogram"));
  ASSERT_NE(histogram, nullptr);
  EXPECT_EQ(histogram->get_x_axis_label(), "Slack");
  EXPECT_EQ(histogram->get_y_axis_label(), "Paths");
  EXPECT_EQ(histogram->get_x_scale(), 1000);
  EXPECT_EQ(histogram->get_x_unit(), "ns");
  ASSERT_EQ(histogram->get_number_of_rows(), 3);
  EXPECT_EQ(histogram->get_value(1), 2);
  EXPECT_EQ(histogram->get_color(1), 0xff0000u);
  EXPECT_DOUBLE_EQ(histogram->get_from(1), -1500);
  EXPECT_DOUBLE_EQ(histogram->get_to(2), -500);
  EXPECT_EQ(histogram->get_color(2), RDB_NO_COLOR);

  RDB_OBJECT* notice = sheet->find_child("Notice");
  ASSERT_NE(notice, nullptr);
  EXPECT_TRUE(notice->is_legal_notice());
  EXPECT_EQ(report->get_legal_notice(), "Copyright notice");

  auto* path = dynamic_cast<RDB_PATH_OBJECT*>(report->find_object("Path [1] \"x\" $y (z)"));
  ASSERT_NE(path, nullptr);
  EXPECT_EQ(path->get_type(), RDB_KIND_PATH);
  EXPECT_DOUBLE_EQ(path->get_slack(), -0.123);
  EXPECT_TRUE(path->path_is_violated());
  ASSERT_NE(path->get_summary_table(), nullptr);
  EXPECT_EQ(path->get_summary_table()->get_data(1, 1), "a");
  ASSERT_NE(path->get_delay_summary_chart(), nullptr);
  EXPECT_EQ(path->get_delay_summary_chart()->get_count(1), 70);
  EXPECT_EQ(path->get_data_arrival_table()->get_data(1, 0), "1.0");
  EXPECT_EQ(path->get_data_required_table()->get_data(1, 0), "2.0");
}

TEST_F(RDB_MODEL_TEST, DatabasePathsJoinLevelsAndLeadBackToTheObject) {
  write_everything();
  auto report = RDB_REPORT::open(m_file);
  RDB_OBJECT* page = report->find_object("Datasheet||Web||Page");
  ASSERT_NE(page, nullptr);
  EXPECT_EQ(page->get_path(false), "Timing Analyzer||Datasheet||Web||Page");
  EXPECT_EQ(page->get_path(true), m_file + "::Timing Analyzer||Datasheet||Web||Page");
  EXPECT_EQ(page->get_panel_name(), "Datasheet");
  EXPECT_EQ(report->get_object_by_path(page->get_path(false)), page);

  const std::string odd = "Path [1] \"x\" $y (z)";
  auto* path = dynamic_cast<RDB_PATH_OBJECT*>(report->find_object(odd));
  ASSERT_NE(path, nullptr);
  EXPECT_EQ(path->get_path(false), "Timing Analyzer||" + odd);
  RDB_OBJECT* arrival = report->get_object_by_path("Timing Analyzer||" + odd + "||Data Arrival Path");
  EXPECT_EQ(arrival, static_cast<RDB_OBJECT*>(path->get_data_arrival_table()));

  EXPECT_EQ(report->find_object("Nothing"), nullptr);
  EXPECT_EQ(report->get_object_by_path("Compiler||Datasheet"), nullptr);
  EXPECT_EQ(report->get_object_by_path("Timing Analyzer||Datasheet||Nothing"), nullptr);
}

TEST_F(RDB_MODEL_TEST, RowsArePagedOnDemandAcrossPageBoundaries) {
  RDB_WRITER::OPTIONS options;
  options.page_rows = 4;
  {
    RDB_WRITER writer(m_file, RDB_TIMING_REPORT, options);
    RDB_PANEL_WRITER panel = writer.begin_panel("Paged");
    RDB_TABLE_WRITER table = panel.add_table("Table", RDB_KIND_TABLE, {"Name", "Index"});
    RDB_TABLE_WRITER bare = panel.add_table("Bare", RDB_KIND_HEADERLESS_TABLE, {"", ""});
    // Rows of two tables interleaved: each table keeps its own pages.
    for (int i = 0; i < 10; ++i) {
      // (Texts appended, not "r" + ...: GCC 12 warns wrongly about that.)
      std::string index = std::to_string(i), name = "r", bare_name = "b";
      name += index;
      bare_name += index;
      table.add_row({name, index}, {{1, static_cast<uint32_t>(i), RDB_NO_COLOR}});
      if (i < 5)
        bare.add_row({bare_name});
    }
    panel.commit();
  }
  auto report = RDB_REPORT::open(m_file);
  auto* table = dynamic_cast<RDB_TABLE_OBJECT*>(report->find_object("Paged||Table"));
  ASSERT_NE(table, nullptr);
  table->set_page_cache_size(1);
  ASSERT_EQ(table->get_number_of_rows(), 11);
  // Backwards and jumping, so that every read needs another page.
  for (int row : {10, 1, 5, 4, 9, 8, 2}) {
    EXPECT_EQ(table->get_data(row, 0), "r" + std::to_string(row - 1)) << row;
    EXPECT_EQ(table->get_element(row, 1)->get_foreground_color(), static_cast<uint32_t>(row - 1));
  }
  auto rows = table->get_rows(3, 6);  // data rows 2..7 span three pages
  ASSERT_EQ(rows.size(), 6u);
  for (int i = 0; i < 6; ++i)
    EXPECT_EQ(rows[i].cells[1], std::to_string(i + 2));
  EXPECT_EQ(table->get_rows(0, 1)[0].cells, (std::vector<std::string>{"Name", "Index"}));
  EXPECT_EQ(table->get_rows(9, 100).size(), 2u);  // clipped at the end
  EXPECT_TRUE(table->get_rows(11, 5).empty());
  EXPECT_EQ(table->get_data(11, 0), "");
  EXPECT_EQ(table->get_data(1, 2), "");

  auto* bare = dynamic_cast<RDB_TABLE_OBJECT*>(report->find_object("Paged||Bare"));
  ASSERT_NE(bare, nullptr);
  EXPECT_EQ(bare->get_number_of_rows(), 5);
  EXPECT_EQ(bare->get_data(0, 0), "b0");
  EXPECT_EQ(bare->get_data(4, 0), "b4");

  // A column read straight from the pages: data rows, clipped, one visit per
  // row in order, the colours between the cells skipped; an unknown column
  // gives empty cells.
  auto visited = [](const RDB_TABLE_OBJECT* t, int64_t first, int64_t count, int column) {
    std::vector<std::string> texts;
    t->visit_column(first, count, column, [&texts](std::string_view text) { texts.emplace_back(text); });
    return texts;
  };
  EXPECT_EQ(visited(table, 2, 7, 1), (std::vector<std::string>{"2", "3", "4", "5", "6", "7", "8"}));
  EXPECT_EQ(visited(table, 7, 100, 0), (std::vector<std::string>{"r7", "r8", "r9"}));
  EXPECT_EQ(visited(table, -2, 3, 0), (std::vector<std::string>{"r0"}));
  EXPECT_EQ(visited(table, 3, 2, 5), (std::vector<std::string>{"", ""}));
  EXPECT_TRUE(visited(table, 10, 5, 0).empty());
  EXPECT_EQ(visited(bare, 0, 5, 0), (std::vector<std::string>{"b0", "b1", "b2", "b3", "b4"}));
  EXPECT_EQ(report->get_error(), "");
}

TEST_F(RDB_MODEL_TEST, TheCompilerReportHasItsOwnFileAndMainFolder) {
  EXPECT_EQ(rdb_report_file_path("/p", "top", RDB_TIMING_REPORT), "/p/vexa_db/top.sta.rdb");
  EXPECT_EQ(rdb_report_file_path("/p", "top", RDB_COMPILER_REPORT), "/p/vexa_db/top.map.rdb");
  EXPECT_THROW(rdb_report_file_path("/p", "top", 2), RDB_ERROR);
  std::string file = rdb_report_file_path(m_dir.string(), "top", RDB_COMPILER_REPORT);
  {
    RDB_WRITER writer(file, RDB_COMPILER_REPORT);
    write_table_panel(writer, "Summary", 1);
  }
  auto report = RDB_REPORT::open(file);
  EXPECT_EQ(report->get_report_type(), RDB_COMPILER_REPORT);
  EXPECT_EQ(report->find_object("Summary")->get_path(), "Compiler||Summary");
  // A writer for the other type refuses the file.
  EXPECT_THROW(RDB_WRITER(file, RDB_TIMING_REPORT), RDB_ERROR);
}

}  // namespace
