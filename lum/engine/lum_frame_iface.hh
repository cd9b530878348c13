// What the engine link and the call-back commands need from the main frame.
// The main frame implements this interface and registers itself while it
// exists; everything here does nothing when no frame is registered, so the
// engine link and the package work (and are tested) without a window.
#pragma once

#include <string>
#include <vector>

class LUM_CONSOLE_CTRL;
struct LUM_ENGINE_END;

// The values of "lum_edit_clock" for the create clock dialog ("base" and
// "virtual" clocks) and the create generated clock dialog; empty texts leave
// a field at its default.
struct LUM_CLOCK_DLG_VALUES {
  std::string name, period, rise, fall, source_objects;
};
struct LUM_GENERATED_CLOCK_DLG_VALUES {
  std::string source, master_clock, name;
  bool has_divide_by = false;
  unsigned divide_by = 0;
  bool has_multiply_by = false;
  unsigned multiply_by = 0;
  std::string duty_cycle, phase, offset, edge_list, edge_shift;
  bool invert = false;
  std::string source_objects;
};

enum class LUM_STATE_FLAG { PROJECT_IS_OPEN, NETLIST_IS_CREATED, SDC_FILE_IS_LOADED, NETLIST_IS_UP_TO_DATE };

class LUM_FRAME_IFACE {
 public:
  virtual ~LUM_FRAME_IFACE() = default;

  // The console control that owns the engine process, or null.
  virtual LUM_CONSOLE_CTRL* get_console() = 0;

  // Status bar: pane 1 text ("Busy", "Ready", "42%"), background reset to the
  // default colour.
  virtual void set_status_pane_text(int pane, const std::string& text) = 0;
  // Busy look: wait cursor and the busy indicator on (true) or off (false).
  virtual void show_busy(bool busy) = 0;
  // Asks the frame to close, later, from the event loop (like a posted close request).
  virtual void post_close_request() = 0;
  // The engine died by itself. A frame that keeps its window (says why,
  // offers a restart and the session's constraints) returns true; false
  // lets the console report the end and close the frame.
  virtual bool engine_ended(const LUM_ENGINE_END& /*end*/) { return false; }

  // The four state flags, one character each: '1', '0' or 'e'.
  virtual char get_state_flag(LUM_STATE_FLAG flag) const = 0;
  virtual void set_state_flag(LUM_STATE_FLAG flag, char value) = 0;
  // netlist_is_created goes through the frame's own setter (it updates more than the flag).
  virtual void set_netlist_is_created(char value) = 0;
  // Constraints applied since the last SDC save.
  virtual void set_sdc_needs_saving(bool value) = 0;

  virtual void sta_opened_a_project(const std::string& vpf, const std::string& revision) = 0;
  virtual void sta_closed_a_project() = 0;

  // The ordered clock names registered by the engine.
  virtual std::vector<std::string>& get_clock_names() = 0;
  virtual void set_time_unit(const std::string& unit) = 0;
  // The current time unit text ("ns"), empty until the engine told one.
  virtual const std::string& get_time_unit() const {
    static const std::string none;
    return none;
  }

  // The speed grades of the open project's device family, in order.
  virtual std::vector<std::string> get_speed_grades() const { return {}; }
  // The report panel to select in the report tree once a report made it.
  virtual void set_panel_to_select(const std::string& /*panel_name*/) {}

  // Report contents tree: reload from the report database and open a panel
  // (null or empty: none), then reopen the current page and refresh every view.
  virtual void reload_sta_report(const char* open_panel) = 0;
  virtual void update_report_tree_status() = 0;

  // Tasks pane.
  virtual void update_tasks_status() = 0;
  virtual void start_next_task() = 0;

  // Shows a help page (a file path, optionally with "#anchor") in the report
  // view; see lum_help.hh.
  virtual void open_help_page(const std::string& /*target*/) {}

  // Clock dialogs opened by "lum_edit_clock": the frame shows the dialog
  // filled with the values and sends its command through the console on OK.
  // They do nothing until the clock dialogs exist.
  virtual void open_create_clock_dlg(const LUM_CLOCK_DLG_VALUES& /*values*/) {}
  virtual void open_create_generated_clock_dlg(const LUM_GENERATED_CLOCK_DLG_VALUES& /*values*/) {}
};

// The registered frame, or null.
LUM_FRAME_IFACE* lum_get_frame();
// Called by the frame when it is made (this) and destroyed (null).
void lum_set_frame(LUM_FRAME_IFACE* frame);
