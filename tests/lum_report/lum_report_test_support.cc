#include "lum_report_test_support.hh"

#include "rdb/rdb_manager.hh"
#include "rdb/rdb_writer.hh"

#include <QApplication>
#include <QElapsedTimer>
#include <QTest>

QApplication* lum_test_app() {
  static int argc = 1;
  static char name[] = "lum_report_test";
  static char* argv[] = {name, nullptr};
  static QApplication* app = new QApplication(argc, argv);
  return app;
}

bool lum_test_wait(const std::function<bool()>& done, int timeout_ms) {
  QElapsedTimer clock;
  clock.start();
  while (!done()) {
    if (clock.elapsed() > timeout_ms) return false;
    QApplication::processEvents(QEventLoop::AllEvents, 20);
  }
  return true;
}

void lum_test_double_click(QWidget* widget, const QPoint& point) {
  QTest::mousePress(widget, Qt::LeftButton, {}, point);
  QTest::mouseRelease(widget, Qt::LeftButton, {}, point);
  QTest::mouseDClick(widget, Qt::LeftButton, {}, point);
  QTest::mouseRelease(widget, Qt::LeftButton, {}, point);
}

LUM_TEST_PROJECT::LUM_TEST_PROJECT(const std::string& revision) : m_revision(revision) {
  DBMUI_MANAGER::get_instance()->set_project(dir(), m_revision);
}

LUM_TEST_PROJECT::~LUM_TEST_PROJECT() { DBMUI_MANAGER::get_instance()->clear_project(); }

std::string LUM_TEST_PROJECT::dir() const { return m_dir.path().toStdString(); }

std::string LUM_TEST_PROJECT::database_file() const {
  return rdb_report_file_path(dir(), m_revision, RDB_TIMING_REPORT);
}

void lum_write_sample_report(const std::string& file) {
  RDB_WRITER writer(file, RDB_TIMING_REPORT);
  writer.write_legal_notice("Sample legal notice.");
  {
    RDB_PANEL_WRITER panel = writer.begin_panel("Summary (Setup)", "create_timing_summary -setup -panel_name \"Summary (Setup)\"");
    RDB_TABLE_WRITER table = panel.add_table("", RDB_KIND_TABLE, {"Clock", "Slack", "End Point TNS"});
    table.add_row({"clk", "-0.125", "-1.5"}, {{1, 0xff0000, RDB_NO_COLOR}});
    table.add_row({"clk2", "3.25", "0.0"});
    table.add_row({"clk10", "10.5", "0.0"}, {{0, RDB_NO_COLOR, 0x00ff00}});
    panel.commit();
  }
  {
    RDB_PANEL_WRITER panel = writer.begin_panel("Clocks");
    panel.add_folder("");
    panel.add_table("clk_a", RDB_KIND_TABLE, {"Name", "Period"}).add_row({"clk_a", "10"});
    panel.add_table("clk_b", RDB_KIND_HEADERLESS_TABLE, {"", ""}).add_row({"clk_b", "20"});
    panel.commit();
  }
  {
    RDB_PANEL_WRITER panel = writer.begin_panel("Text Report");
    panel.add_text("", "line one\tx\nline two\n");
    panel.commit();
  }
  {
    RDB_PANEL_WRITER panel = writer.begin_panel("Web Note");
    panel.add_text("", "<b>bold</b> note", true);
    panel.commit();
  }
  {
    RDB_PANEL_WRITER panel = writer.begin_panel("Old Summary", "report_clocks -panel_name \"Old Summary\"");
    panel.add_folder("");
    panel.add_table("Old Table", RDB_KIND_TABLE, {"A"}).add_row({"1"});
    panel.commit();
    writer.set_panel_enabled("Old Summary", false);
  }
  {
    RDB_PANEL_WRITER panel = writer.begin_panel("Commands");
    RDB_TABLE_WRITER table = panel.add_tcl_table(
        "", {"Node", "Slack"},
        {{"Report Node", "report_timing -to %{Node} -panel_name {Path to %{Node}}"},
         {"Echo Node", "lum_test_record %{Node}"}});
    table.add_row({"a/b c", "1"});
    table.add_row({"d", "2"});
    panel.commit();
  }
  {
    RDB_PANEL_WRITER panel = writer.begin_panel("Worst Path");
    panel.add_path("", -0.123, true);
    panel.add_path_table("", RDB_PATH_PART::SUMMARY, {"Property", "Value"}).add_row({"Slack", "-0.123"});
    panel.add_path_table("", RDB_PATH_PART::ARRIVAL, {"Total", "Incr"}).add_row({"1.0", "1.0"});
    panel.add_path_table("", RDB_PATH_PART::REQUIRED, {"Total", "Incr"}).add_row({"0.9", "0.9"});
    panel.add_path_chart("", "Kind", "Delay", 2, {{"cell", 3}, {"net", 1}});
    panel.commit();
  }
  {
    RDB_PANEL_WRITER panel = writer.begin_panel("Slack Histogram");
    panel.add_histogram("", "Slack", "Count", 1, "ns", {{-1, 0, 3, 0xff0000}, {0, 1, 5, 0x00ff00}});
    panel.commit();
  }
  {
    RDB_PANEL_WRITER panel = writer.begin_panel("Bars");
    panel.add_chart_table("", "Clock", "Paths", 1, {{"clk", 4}});
    panel.commit();
  }
}

LUM_TEST_MESSAGES::LUM_TEST_MESSAGES() : m_previous(msg_get_default_report()) {
  m_report.set_display(this);
  msg_set_default_report(&m_report);
  msg_set_internal_error_handler([this](const std::string& condition, const std::string& module, int) {
    internal_errors.push_back(module + ": " + condition);
  });
}

LUM_TEST_MESSAGES::~LUM_TEST_MESSAGES() {
  msg_set_default_report(m_previous);
  msg_set_internal_error_handler(nullptr);
}

void LUM_TEST_MESSAGES::post_display(const MSG_POST* post, int) { texts.push_back(post->get_text()); }

void LUM_TEST_MESSAGES::internal_error_display(const char* text) { internal_errors.push_back(text); }

LUM_TEST_FRAME::LUM_TEST_FRAME() : m_previous(lum_get_frame()) {
  m_flags[LUM_STATE_FLAG::PROJECT_IS_OPEN] = '1';
  m_flags[LUM_STATE_FLAG::NETLIST_IS_CREATED] = '1';
  m_flags[LUM_STATE_FLAG::SDC_FILE_IS_LOADED] = '1';
  m_flags[LUM_STATE_FLAG::NETLIST_IS_UP_TO_DATE] = '1';
  lum_set_frame(this);
}

LUM_TEST_FRAME::~LUM_TEST_FRAME() { lum_set_frame(m_previous); }

char LUM_TEST_FRAME::get_state_flag(LUM_STATE_FLAG flag) const {
  auto it = m_flags.find(flag);
  return it == m_flags.end() ? '\0' : it->second;
}
