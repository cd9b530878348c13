// Shared set-up of the report browser's widget tests: the application object,
// a project folder with a report database written through the database
// library's own writer, and a message display that records what the
// browser tells the user.
#pragma once

#include "engine/lum_frame_iface.hh"
#include "platform/msg.hh"

#include <QTemporaryDir>

#include <map>
#include <string>
#include <vector>

class QApplication;
class QPoint;
class QWidget;

// Creates the application object once (offscreen in the tests' environment).
QApplication* lum_test_app();

// A double click with the left button as the window system delivers it: a
// press and a release, then the second press as a double click, and its release.
void lum_test_double_click(QWidget* widget, const QPoint& point);

// Runs the event loop until done() is true or timeout_ms has passed.
bool lum_test_wait(const std::function<bool()>& done, int timeout_ms = 10000);

// A project folder with a revision; the database manager points at it while
// the object lives.
class LUM_TEST_PROJECT {
 public:
  explicit LUM_TEST_PROJECT(const std::string& revision = "top");
  ~LUM_TEST_PROJECT();
  std::string dir() const;
  std::string database_file() const;
  const std::string& revision() const { return m_revision; }

 private:
  QTemporaryDir m_dir;
  std::string m_revision;
};

// Writes the sample report: a legal notice; "Summary (Setup)" (a titled
// table with coloured cells and a recorded command); "Clocks" (a folder with
// two tables "clk_a" and "clk_b"); "Text Report" (plain text); "Web Note"
// (HTML text); "Old Summary" (out of date, a folder with one table);
// "Commands" (a Tcl table with two command templates, one "lum_" command);
// "Worst Path" (a violated path); "Slack Histogram"; "Bars" (a bar chart).
void lum_write_sample_report(const std::string& file);

// Records posts and internal errors while it lives.
class LUM_TEST_MESSAGES : public MSG_DISPLAY {
 public:
  LUM_TEST_MESSAGES();
  ~LUM_TEST_MESSAGES() override;
  void post_display(const MSG_POST* post, int flags) override;
  void internal_error_display(const char* text) override;
  std::vector<std::string> texts;
  std::vector<std::string> internal_errors;

 private:
  MSG_REPORT m_report;
  MSG_REPORT* m_previous;
};

// A frame stand-in: state flags only.
class LUM_TEST_FRAME : public LUM_FRAME_IFACE {
 public:
  LUM_TEST_FRAME();
  ~LUM_TEST_FRAME() override;
  LUM_CONSOLE_CTRL* get_console() override { return nullptr; }
  void set_status_pane_text(int, const std::string&) override {}
  void show_busy(bool) override {}
  void post_close_request() override {}
  char get_state_flag(LUM_STATE_FLAG flag) const override;
  void set_state_flag(LUM_STATE_FLAG flag, char value) override { m_flags[flag] = value; }
  void set_netlist_is_created(char value) override { m_flags[LUM_STATE_FLAG::NETLIST_IS_CREATED] = value; }
  void set_sdc_needs_saving(bool) override {}
  void sta_opened_a_project(const std::string&, const std::string&) override {}
  void sta_closed_a_project() override {}
  std::vector<std::string>& get_clock_names() override { return m_clocks; }
  void set_time_unit(const std::string&) override {}
  void reload_sta_report(const char*) override {}
  void update_report_tree_status() override {}
  void update_tasks_status() override {}
  void start_next_task() override {}

 private:
  std::map<LUM_STATE_FLAG, char> m_flags;
  std::vector<std::string> m_clocks;
  LUM_FRAME_IFACE* m_previous;
};
