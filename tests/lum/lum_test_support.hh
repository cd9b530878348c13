// Shared pieces of the front-end engine-link tests: a main frame that records
// what the package and the console ask of it, the Qt application the console's
// timers need, a helper that runs the event loop until a condition holds, and
// the fixture every console test starts from.
#pragma once

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThread>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "engine/lum_console_ctrl.hh"
#include "engine/lum_frame_iface.hh"
#include "platform/msg.hh"
#include "tcl/lum_tcl_args_auto.hh"

class LUM_TEST_FRAME : public LUM_FRAME_IFACE {
 public:
  LUM_CONSOLE_CTRL* console = nullptr;
  std::map<int, std::string> status_panes;
  std::vector<bool> busy_shown;
  int close_requests = 0;
  std::map<LUM_STATE_FLAG, char> flags;
  int netlist_is_created_calls = 0;
  bool sdc_needs_saving = false;
  std::vector<std::pair<std::string, std::string>> opened_projects;
  int closed_projects = 0;
  std::vector<std::string> clocks;
  std::string time_unit;
  std::vector<std::string> reloads;  // "<null>" for a null panel
  int report_tree_updates = 0;
  int tasks_updates = 0;
  int next_task_starts = 0;
  std::vector<LUM_CLOCK_DLG_VALUES> clock_dialogs;
  std::vector<LUM_GENERATED_CLOCK_DLG_VALUES> generated_clock_dialogs;

  LUM_CONSOLE_CTRL* get_console() override { return console; }
  void set_status_pane_text(int pane, const std::string& text) override { status_panes[pane] = text; }
  void show_busy(bool busy) override { busy_shown.push_back(busy); }
  void post_close_request() override { ++close_requests; }
  char get_state_flag(LUM_STATE_FLAG flag) const override {
    auto it = flags.find(flag);
    return it == flags.end() ? 0 : it->second;
  }
  void set_state_flag(LUM_STATE_FLAG flag, char value) override { flags[flag] = value; }
  void set_netlist_is_created(char value) override {
    ++netlist_is_created_calls;
    flags[LUM_STATE_FLAG::NETLIST_IS_CREATED] = value;
  }
  void set_sdc_needs_saving(bool value) override { sdc_needs_saving = value; }
  void sta_opened_a_project(const std::string& vpf, const std::string& revision) override {
    opened_projects.emplace_back(vpf, revision);
  }
  void sta_closed_a_project() override { ++closed_projects; }
  std::vector<std::string>& get_clock_names() override { return clocks; }
  void set_time_unit(const std::string& unit) override { time_unit = unit; }
  void reload_sta_report(const char* open_panel) override { reloads.push_back(open_panel ? open_panel : "<null>"); }
  void update_report_tree_status() override { ++report_tree_updates; }
  void update_tasks_status() override { ++tasks_updates; }
  void start_next_task() override { ++next_task_starts; }
  void open_create_clock_dlg(const LUM_CLOCK_DLG_VALUES& values) override { clock_dialogs.push_back(values); }
  void open_create_generated_clock_dlg(const LUM_GENERATED_CLOCK_DLG_VALUES& values) override {
    generated_clock_dialogs.push_back(values);
  }
};

// The process's Qt application (made once).
inline QCoreApplication* lum_test_app() {
  static int argc = 1;
  static char name[] = "lum_test";
  static char* argv[] = {name, nullptr};
  static QCoreApplication* app = QCoreApplication::instance() ? QCoreApplication::instance()
                                                              : new QCoreApplication(argc, argv);
  return app;
}

// Runs the event loop until done() holds or timeout_ms passes; returns done().
inline bool lum_pump_until(const std::function<bool()>& done, int timeout_ms = 10000) {
  lum_test_app();
  QElapsedTimer clock;
  clock.start();
  while (!done()) {
    if (clock.elapsed() > timeout_ms) return false;
    QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    QThread::msleep(1);
  }
  return true;
}

// Records catalogue messages instead of showing boxes.
struct LUM_TEST_BOXES {
  std::vector<std::string> ids;
  LUM_TEST_BOXES() {
    msg_set_box_handler([this](const MSG_CATALOGUE_ENTRY& entry, const std::string&) {
      ids.push_back(entry.id);
      return static_cast<int>(MSG_ANSWER_OK);
    });
  }
  ~LUM_TEST_BOXES() { msg_set_box_handler(nullptr); }
};

// A console beside the recording frame, with the package "::vexa::lum"
// registered and message boxes recorded. No engine is started.
class LUM_CONSOLE_TEST : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    lum_test_app();
    ASSERT_EQ(lum_lum_register_tcl(), TCL_OK);
  }
  void SetUp() override { new_console(); }
  void TearDown() override {
    console.reset();
    lum_set_frame(nullptr);
  }

  // Replaces the console by a fresh one, as after a failed start.
  void new_console() {
    console = std::make_unique<LUM_CONSOLE_CTRL>();
    frame.console = console.get();
    lum_set_frame(&frame);
  }
  // Runs the event loop until the engine has answered every command.
  bool settle(int timeout_ms = 30000) {
    return lum_pump_until([this] {
      return !console->is_busy() && console->pending_count() == 0 && !console->get_msg_display()->has_lines();
    }, timeout_ms);
  }
  std::vector<std::string> rows() {
    std::vector<std::string> texts;
    for (int i = 0; i < console->get_model()->row_count(); ++i) texts.emplace_back(console->get_model()->row_text(i));
    return texts;
  }

  LUM_TEST_FRAME frame;
  LUM_TEST_BOXES boxes;
  std::unique_ptr<LUM_CONSOLE_CTRL> console;
};
