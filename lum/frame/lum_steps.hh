// The steps of the Tasks pane as plain data: the steps file ("lumex_tasks.xml")
// read into rows, the status of a step computed from the frame's state flags,
// and the queue that runs a step's unsatisfied prerequisites first, one per
// engine prompt. Nothing here touches a widget, so the whole behaviour of the
// pane is checked without a screen; LUM_STEPS_WND only draws it.
#pragma once

#include <deque>
#include <functional>
#include <string>
#include <vector>

enum LUM_STEP_ACTION { LUM_STEP_ACTION_NONE, LUM_STEP_ACTION_MENU, LUM_STEP_ACTION_TCL,
                       LUM_STEP_ACTION_OPEN_REPORT_PANEL, LUM_STEP_ACTION_RUN_STEPS };
enum LUM_STEP_RUN_IN { LUM_STEP_RUN_IN_UNSPECIFIED, LUM_STEP_RUN_IN_STA, LUM_STEP_RUN_IN_LUM };
enum LUM_STEP_STATUS_KIND { LUM_STEP_STATUS_FLAG, LUM_STEP_STATUS_REPORT_PANEL };
enum LUM_STEP_STATUS { LUM_STEP_NOT_DONE = 0, LUM_STEP_OK = 1, LUM_STEP_ERROR = 2, LUM_STEP_OUT_OF_DATE = 4 };

// The record of one step (one row of the pane).
struct LUM_STEP_PARAM {
  std::string id;
  int action_type = LUM_STEP_ACTION_NONE;
  int run_in = LUM_STEP_RUN_IN_UNSPECIFIED;
  std::string action_text;
  std::vector<std::string> run_step_ids;
  std::string info;
  int status_kind = LUM_STEP_STATUS_FLAG;
  std::string status_condition;
  std::string prereq;
  int status = LUM_STEP_NOT_DONE;
};

// The pictures a row may carry.
enum class LUM_STEP_PICTURE { BLANK, CHECKBOX_CHECKED, CHECKBOX_UNCHECKED, RADIOBUTTON_HOLLOW, RADIOBUTTON_FILLED };
enum class LUM_STEP_BITMAP { NONE, DIALOG_BOX, TASK_START, REPORT_TABLE, OPEN_PROJECT };

// One row: how it is shown, and its record.
struct LUM_STEP_ROW {
  std::string name;
  int level = 0;
  bool bold = false;
  bool has_color = false;
  unsigned color = 0;  // 0xRRGGBB
  LUM_STEP_PICTURE picture = LUM_STEP_PICTURE::BLANK;
  LUM_STEP_BITMAP bitmap = LUM_STEP_BITMAP::NONE;
  bool properties = false;
  bool collapsed = false;
  LUM_STEP_PARAM param;
};

struct LUM_STEPS_FILE {
  std::vector<LUM_STEP_ROW> rows;  // in document pre-order
  // One line when the file could not be used at all (missing, not XML, no
  // element at the top); the rows are empty then.
  std::string error;
  // Mistakes in usable files, one line each, each reported once: a
  // prerequisite or run_steps id that names no step, a prerequisite that
  // comes after the step (never run first), and prerequisite cycles.
  std::vector<std::string> problems;
};

// Reads steps from text; the file name only goes into messages.
LUM_STEPS_FILE lum_parse_steps(const std::string& xml, const std::string& file_name);
// Reads the steps file at path.
LUM_STEPS_FILE lum_load_steps_file(const std::string& path);

// The frame's state as the status rules read it.
struct LUM_STEP_FLAGS {
  char project_is_open = '\0';
  char netlist_is_created = '\0';
  char sdc_file_is_loaded = '\0';
  char netlist_is_up_to_date = '\0';
  bool busy = false;
};

struct LUM_STEP_STATE {
  int status = LUM_STEP_NOT_DONE;
  bool enabled = false;
};

// The status and enabled state of one step; param may be null (a row without
// record). panel_exists tells whether the report tree holds a panel of a name.
LUM_STEP_STATE lum_step_state(const LUM_STEP_PARAM* param, const LUM_STEP_FLAGS& flags,
                              const std::function<bool(const std::string&)>& panel_exists);

// The row of a step's prerequisite: the nearest row above it whose id equals
// the step's prereq exactly; -1 when the step has none or it is not found.
int lum_find_prereq_row(const std::vector<LUM_STEP_ROW>& rows, int row);

// Whether a menu item's text names the wanted text: "&" is ignored on both
// sides, and the item's text is cut at its first tab (an accelerator) unless
// the tab comes first.
bool lum_menu_text_matches(const std::string& item_text, const std::string& wanted);

// Starts steps and works off the queue of prerequisites. It owns no rows: it
// reads the rows (and their current status) through the vector it is given,
// and acts through the callbacks.
class LUM_STEP_RUNNER {
 public:
  struct ACTIONS {
    std::function<void(const std::string& text)> run_menu;
    std::function<void(const std::string& command)> run_in_engine;
    std::function<void(const std::string& command)> run_in_front_end;
    // Whether the report tree has a panel of the name, and opening it.
    std::function<bool(const std::string& name)> panel_exists;
    std::function<void(const std::string& name)> open_panel;
    // A row with children whose action opens nothing toggles its expansion.
    std::function<bool(int row)> has_children;
    std::function<void(int row)> toggle_expansion;
    // A prerequisite failed: its status condition names the flag to mark "e".
    std::function<void(const std::string& condition)> prereq_failed;
  };

  LUM_STEP_RUNNER(std::vector<LUM_STEP_ROW>* rows, std::vector<bool>* enabled, ACTIONS actions);

  // Starts a row: its unsatisfied prerequisites are queued first; menu and
  // tcl steps are queued behind them; the head of the queue runs at once.
  void start(int row);
  // Runs the head of the queue (called at every engine prompt).
  void start_next_task();
  // Queues the unsatisfied prerequisites of a row in front of the queue.
  void do_prereq(int row);

  const std::deque<int>& queue() const { return m_queue; }
  int last_started() const { return m_last_started; }
  void clear() { m_queue.clear(); }

 private:
  bool valid(int row) const { return row >= 0 && row < static_cast<int>(m_rows->size()); }

  std::vector<LUM_STEP_ROW>* m_rows;
  std::vector<bool>* m_enabled;
  ACTIONS m_actions;
  std::deque<int> m_queue;
  int m_last_started = -1;
};
