// The one main window of the analyzer front end. It owns the Console pane
// (with the engine link behind it), the Tasks and Report panes, the report view
// in its centre, the status bar and the menus; it keeps the four state flags
// the engine reports, derives from them and the busy state which commands are
// enabled, turns menu commands into engine command lines, opens and closes
// projects, and governs the lifetime of the front end: start of the engine,
// the window placement, refusal to close while busy, the SDC-save question and
// the orderly shutdown of the engine.
//
// Panes that later work fills in (the task list, the report contents tree, the
// report view) are placeholders reached through set_tasks_pane(),
// set_report_tree() and set_report_view() and the hooks below, so that they
// plug in without changes to the frame.
#pragma once

#include <QMainWindow>
#include <QPointer>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "engine/lum_frame_iface.hh"
#include "frame/lum_frame_commands.hh"
#include "frame/lum_main_menu.hh"
#include "frame/lum_project_files.hh"
#include "frame/lum_script_menus.hh"

class LUM_CONSOLE_CTRL;
class LUM_CONSOLE_VIEW;
class QAction;
class QDockWidget;
class LUM_DOCK_PINS;
class QLabel;
class QMenu;
class QProgressBar;

// Catalogue messages of the frame.
#define LUM_MSG_CANT_CLOSE_WHILE_KRO_IS_BUSY \
  "Cannot close while the Chronel Timing Analyzer is busy./OLUM_CANT_CLOSE_WHILE_KRO_IS_BUSY"
#define LUM_MSG_CANT_RESTART_KRO                                                                 \
  "The Chronel Timing Analyzer (vexa_sta) could not be started again.  The window stays open; "  \
  "close it and start the program anew./OLUM_CANT_RESTART_KRO"
#define LUM_MSG_PROMPT_TO_WRITE_SDC                                                              \
  "SDC commands made during the session are not automatically saved.  Do you want to write an " \
  "SDC file now?/YNCLUM_PROMPT_TO_WRITE_SDC"

class LUM_DETACHED_FRAME : public QMainWindow, public LUM_FRAME_IFACE {
  Q_OBJECT

 public:
  // Status bar panes: 0 general text, 1 "Busy"/"Ready"/progress, 2 netlist
  // state, 3 the open project's revision.
  static constexpr int STATUS_PANES = 4;

  // The frame while it exists, else null.
  static LUM_DETACHED_FRAME* get_instance() { return m_instance; }

  // Makes the frame: panes, menus, and (unless "lum_dont_startup_sta" is on)
  // the engine, waiting for its first prompt. Null when a frame exists already
  // or the engine cannot be started (after saying so).
  static LUM_DETACHED_FRAME* load_frame();
  // The engine command line of the frames made from now on (empty: the
  // console's default, vexa_sta next to the program). For tests.
  static void set_engine_command_line(const std::string& command_line);
  ~LUM_DETACHED_FRAME() override;

  // Shows the frame: show_cmd -1 takes the command from the window (normal if
  // hidden, restore if minimised); the saved placement is applied the first
  // time the frame is shown.
  void activate_frame(int show_cmd);

  // ---- panes --------------------------------------------------------------------
  LUM_CONSOLE_CTRL* get_console_ctrl() const { return m_console; }
  LUM_CONSOLE_VIEW* get_console_view() const { return m_console_view; }
  QWidget* get_report_view() const;
  QDockWidget* get_console_bar() const { return m_console_bar; }
  QDockWidget* get_tasks_bar() const { return m_tasks_bar; }
  QDockWidget* get_report_bar() const { return m_report_bar; }
  // The push-pins of the three bars (unpinned bars slide out from an edge).
  LUM_DOCK_PINS* get_dock_pins() const { return m_pins; }
  // Replace the placeholders; the frame takes ownership.
  void set_tasks_pane(QWidget* pane);
  void set_report_tree(QWidget* tree);
  void set_report_view(QWidget* view);

  // Hooks by which the report tree and the tasks pane follow the frame.
  struct PANE_HOOKS {
    std::function<void(const char* open_panel)> reload_sta_report;
    std::function<void()> update_report_tree_status;
    std::function<void()> update_tasks_status;
    std::function<void()> start_next_task;
    std::function<void()> clear_report;  // the project closed
    // Whether the report tree holds a panel of a name, and opening it there.
    std::function<bool(const std::string& panel_name)> report_panel_exists;
    std::function<void(const std::string& panel_name)> open_report_panel;
    // Shows a web page (a file path, optionally with "#anchor") in the report view.
    std::function<void(const std::string& target)> open_web_page;
  };
  void set_pane_hooks(PANE_HOOKS hooks) { m_hooks = std::move(hooks); }
  // The hooks set so far, so that one pane can replace its own and keep the others'.
  const PANE_HOOKS& get_pane_hooks() const { return m_hooks; }

  // A dialog that composes a command line for one command identifier (the
  // constraint and report dialogs register here). It returns the line, or an
  // empty string when cancelled. Commands that need a dialog are disabled
  // until one is registered.
  using COMMAND_DIALOG = std::function<std::string(QWidget* parent)>;
  void set_command_dialog(unsigned command_id, COMMAND_DIALOG dialog);
  // Registers every dialog of lum/dialogs with its menu command and its
  // dialog-opening Tcl command (lum_frame_dialogs.cc).
  void install_dialogs();
  void uninstall_dialogs();

  // ---- state and commands ---------------------------------------------------------
  LUM_ENABLE_STATE get_enable_state() const;
  bool is_command_enabled(unsigned command_id) const;
  // The action of a command identifier (menus and tool bar share it), or null.
  QAction* find_action(unsigned command_id) const;
  // Runs a command as if chosen from the menu (the action's trigger).
  void run_menu_command(unsigned command_id);
  // Recomputes the enabled and checked state of every action.
  void update_command_states();
  bool get_sdc_needs_saving() const { return m_sdc_needs_saving; }
  // The quick commands of the site menu files.
  LUM_MENU_FILES& get_menu_files() { return m_menu_files; }
  // The report panel a report command asked to select once it exists.
  const std::string& get_panel_to_select() const { return m_panel_to_select; }
  void set_panel_to_select(const std::string& panel_name) override { m_panel_to_select = panel_name; }
  std::vector<std::string> get_speed_grades() const override { return m_speed_grades; }
  const std::string& get_time_unit() const override { return m_time_unit; }
  const std::string& get_netlist_description() const { return m_netlist_description; }

  // ---- projects ------------------------------------------------------------------
  // Checks and converts the picked file, closes an open project, then sends
  // "project_open". Bad input is reported with a catalogue message and sends
  // nothing. Returns whether the command was sent.
  bool open_project(const char* path);
  void sta_open_project(const char* project, const char* revision);
  // Asks about unsaved SDC commands, then sends "project_close".
  // Closes the open project after the SDC question; false when the user
  // cancelled it (the project stays open).
  bool close_project();
  void sta_close_project();
  const std::string& get_project_path() const { return m_project_path; }
  const std::string& get_revision() const { return m_revision; }
  bool project_recorded() const { return !m_project_path.empty(); }

  LUM_RECENT_PROJECTS& get_recent_projects() { return m_recent; }
  void add_clock(const char* name);
  void remove_clock(const char* name);

  // ---- SDC and scripts -------------------------------------------------------------
  void read_sdc_file();
  // Asks for a file and sends "write_sdc"; closing tells that the project closes.
  // Returns whether a command was sent.
  bool write_sdc(bool closing);
  void run_tcl_script();
  // After the engine died: writes the constraint commands sent in this
  // session to a file the user picks; returns what to tell the user (empty
  // when cancelled).
  std::string save_session_constraints();
  // Starts the engine again and reopens the project that was open.
  void restart_engine();

  // ---- window ----------------------------------------------------------------------
  void update_frame_title();
  void save_window_state();
  void load_window_state();
  void set_statusbar_text(int pane, const char* text);
  QString get_statusbar_text(int pane) const;

  // ---- LUM_FRAME_IFACE --------------------------------------------------------------
  LUM_CONSOLE_CTRL* get_console() override { return m_console; }
  void set_status_pane_text(int pane, const std::string& text) override;
  void show_busy(bool busy) override;
  void post_close_request() override;
  // Keeps the window and opens the engine-ended box (LUM_ENGINE_ENDED_DLG).
  bool engine_ended(const LUM_ENGINE_END& end) override;
  char get_state_flag(LUM_STATE_FLAG flag) const override;
  void set_state_flag(LUM_STATE_FLAG flag, char value) override;
  void set_netlist_is_created(char value) override;
  void set_sdc_needs_saving(bool value) override { m_sdc_needs_saving = value; }
  void sta_opened_a_project(const std::string& vpf, const std::string& revision) override;
  void sta_closed_a_project() override;
  std::vector<std::string>& get_clock_names() override { return m_clock_names; }
  void set_time_unit(const std::string& unit) override { m_time_unit = unit; }
  void reload_sta_report(const char* open_panel) override;
  void update_report_tree_status() override;
  void update_tasks_status() override;
  void start_next_task() override;
  void open_help_page(const std::string& target) override;
  // The start page of the report view while no project is open: recent
  // projects, the examples, the help.
  void show_home_page();
  // "lum_edit_clock": the clock dialogs filled with the values (lum_frame_dialogs.cc).
  void open_create_clock_dlg(const LUM_CLOCK_DLG_VALUES& values) override;
  void open_create_generated_clock_dlg(const LUM_GENERATED_CLOCK_DLG_VALUES& values) override;

 signals:
  // The state flags or the busy state changed (enabling was recomputed).
  void command_states_changed();
  void project_changed();
  // The frame accepted a close request; the console and the engine still exist.
  void closing();

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  LUM_DETACHED_FRAME();
  bool create_client();
  void create_actions();
  bool build_menus();
  void build_recent_menu();
  // Lists the Tcl scripts of the project, the user libraries and the global
  // library under the Script menu, anew each time it opens.
  void build_script_menu();
  void on_run_user_tcl_script(unsigned command_id);
  void on_command(unsigned command_id);
  void run_engine_command(const std::string& command);
  void on_file_open_project();
  void on_recent_project_menu(unsigned command_id);
  void on_app_about();
  // Asks for words and shows the help pages that hold them all.
  void on_help_search();
  // A file of that name in a folder of pages the frame writes (removed at exit).
  std::string generated_page_path(const char* name);
  void toggle_bar(QDockWidget* bar);
  void shutdown_engine();
  QWidget* make_placeholder(const QString& title, const QString& text);
  QWidget* make_home_page();
  void update_status_panes();

  static LUM_DETACHED_FRAME* m_instance;

  LUM_CONSOLE_CTRL* m_console = nullptr;
  LUM_CONSOLE_VIEW* m_console_view = nullptr;
  QDockWidget* m_console_bar = nullptr;
  QDockWidget* m_tasks_bar = nullptr;
  QDockWidget* m_report_bar = nullptr;
  LUM_DOCK_PINS* m_pins = nullptr;
  QLabel* m_status_panes[STATUS_PANES] = {};
  QProgressBar* m_busy_bar = nullptr;
  QLabel* m_home_project = nullptr;
  QMenu* m_recent_menu = nullptr;
  std::map<unsigned, QAction*> m_actions;
  std::vector<QAction*> m_recent_actions;
  QMenu* m_script_menu = nullptr;
  std::vector<QAction*> m_script_actions;
  LUM_SCRIPT_LISTS m_scripts;
  std::map<unsigned, COMMAND_DIALOG> m_dialogs;
  PANE_HOOKS m_hooks;
  LUM_MENU_FILES m_menu_files;

  char m_project_is_open = '\0';
  char m_netlist_is_created = '\0';
  char m_sdc_file_is_loaded = '\0';
  char m_netlist_is_up_to_date = '\0';
  bool m_sdc_needs_saving = false;
  bool m_busy = false;
  bool m_placement_loaded = false;
  bool m_engine_shut_down = false;
  bool m_home_page_shown = false;
  std::string m_netlist_description;
  std::string m_panel_to_select;
  std::string m_time_unit;
  std::vector<std::string> m_clock_names;

  // The front end's record of the open project (standing in for the design
  // suite's project manager).
  std::string m_project_path;
  std::string m_revision;
  bool m_family_has_rise_fall = false;
  std::vector<std::string> m_speed_grades;
  LUM_RECENT_PROJECTS m_recent;
};
