#include "frame/lum_detached_frame.hh"

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QCloseEvent>
#include <QDockWidget>
#include <QFile>
#include <QInputDialog>
#include <QTemporaryDir>
#include <QKeySequence>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QProgressBar>
#include <QScreen>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>
#include <QVBoxLayout>
#include <QWindow>

#include <fstream>

#include <tinyxml2.h>

#include <fstream>

#include "engine/lum_console_ctrl.hh"
#include "engine/lum_console_view.hh"
#include "engine/lum_help.hh"
#include "frame/lum_command_lines.hh"
#include "frame/lum_dock_pins.hh"
#include "frame/lum_engine_ended_dlg.hh"
#include "frame/lum_file_dialogs.hh"
#include "frame/lum_frame_icons.hh"
#include "frame/lum_home_page.hh"
#include "frame/lum_main_menu.hh"
#include "frame/lum_script_menus.hh"
#include "frame/lum_window_placement.hh"
#include "platform/atcl.hh"
#include "platform/cfg.hh"
#include "platform/gen.hh"
#include "platform/msg.hh"

namespace {

const char* const MODULE = "lum_detached_frame";
const char* const PROGRAM_NAME = "Chronel Timing Analyzer";
const char* const DOCK_STATE_KEY = "DOCKSTATE";

// Commands whose action opens a dialog that composes the command line.
bool needs_dialog(unsigned id) {
  switch (id) {
    case LUM_ID_REPORT_TIMING:
    case LUM_ID_REPORT_NET_TIMING:
    case LUM_ID_REPORT_MIN_PULSE_WIDTH:
    case LUM_ID_CREATE_SLACK_HISTOGRAM:
    case LUM_ID_LIST_PATHS:
    case LUM_ID_CREATE_CLOCK:
    case LUM_ID_CREATE_GENERATED_CLOCK:
    case LUM_ID_SET_CLOCK_LATENCY:
    case LUM_ID_SET_CLOCK_UNCERTAINTY:
    case LUM_ID_REMOVE_CLOCK:
    case LUM_ID_SET_INPUT_DELAY:
    case LUM_ID_SET_OUTPUT_DELAY:
    case LUM_ID_SET_FALSE_PATH:
    case LUM_ID_SET_MULTICYCLE_PATH:
    case LUM_ID_SET_MIN_DELAY:
    case LUM_ID_SET_MAX_DELAY:
    case LUM_ID_VIEW_NAME_FINDER:
      return true;
    default:
      return false;
  }
}

QString flag_text(char flag) {
  switch (flag) {
    case '1': return "yes";
    case '0': return "no";
    case 'e': return "error";
    default: return "?";
  }
}

}  // namespace

LUM_DETACHED_FRAME* LUM_DETACHED_FRAME::m_instance = nullptr;

namespace {
std::string& engine_command_line() {
  static std::string command_line;
  return command_line;
}
}  // namespace

void LUM_DETACHED_FRAME::set_engine_command_line(const std::string& command_line) {
  engine_command_line() = command_line;
}

LUM_DETACHED_FRAME* LUM_DETACHED_FRAME::load_frame() {
  if (!MSG_ASSERT(LUM_DETACHED_FRAME::get_instance() == NULL, MODULE)) return m_instance;
  auto* frame = new LUM_DETACHED_FRAME();
  if (!frame->create_client()) {
    delete frame;
    return nullptr;
  }
  frame->build_menus();
  m_instance = frame;
  lum_set_frame(frame);
  frame->install_dialogs();
  frame->update_command_states();
  return frame;
}

LUM_DETACHED_FRAME::LUM_DETACHED_FRAME() : QMainWindow(nullptr) {
  setAttribute(Qt::WA_DeleteOnClose);
  setObjectName("LUM_DETACHED_FRAME");
  setWindowIcon(lum_icon(LUM_ICON::APPLICATION));
  setDockNestingEnabled(true);
  setCorner(Qt::BottomLeftCorner, Qt::LeftDockWidgetArea);
  resize(1280, 820);
  m_recent.load();
  update_frame_title();
}

LUM_DETACHED_FRAME::~LUM_DETACHED_FRAME() {
  delete m_pins;  // before the bars it watches
  m_pins = nullptr;
  if (m_instance == this) m_instance = nullptr;
  if (lum_get_frame() == this) lum_set_frame(nullptr);
  uninstall_dialogs();
  shutdown_engine();
  // The panes outlive this body (the base class deletes them); their signals
  // must no longer reach members that are already gone.
  for (QObject* sender : {static_cast<QObject*>(m_console_bar), static_cast<QObject*>(m_tasks_bar),
                          static_cast<QObject*>(m_report_bar), static_cast<QObject*>(m_console)})
    if (sender != nullptr) sender->disconnect(this);
}

void LUM_DETACHED_FRAME::shutdown_engine() {
  if (m_engine_shut_down || m_console == nullptr) return;
  m_engine_shut_down = true;
  QApplication::setOverrideCursor(Qt::WaitCursor);
  // "exit" is sent once and the reader thread joined; queued call-backs run
  // while no frame is registered, so they cannot touch a half-destroyed window.
  m_console->MwShutdown();
  QApplication::restoreOverrideCursor();
}

// ---- client area -------------------------------------------------------------------

QWidget* LUM_DETACHED_FRAME::make_placeholder(const QString& title, const QString& text) {
  auto* pane = new QWidget;
  auto* layout = new QVBoxLayout(pane);
  auto* label = new QLabel(QString("<p style='color:#6b7480'><b>%1</b><br>%2</p>").arg(title, text));
  label->setWordWrap(true);
  label->setAlignment(Qt::AlignCenter);
  layout->addStretch(1);
  layout->addWidget(label);
  layout->addStretch(2);
  return pane;
}

QWidget* LUM_DETACHED_FRAME::make_home_page() {
  auto* page = new QWidget;
  page->setObjectName("LUM_HOME_PAGE");
  page->setAutoFillBackground(true);
  QPalette palette = page->palette();
  palette.setColor(QPalette::Window, QColor(0xf7, 0xf8, 0xfa));
  page->setPalette(palette);
  auto* layout = new QVBoxLayout(page);
  auto* icon = new QLabel;
  icon->setPixmap(lum_icon(LUM_ICON::APPLICATION).pixmap(64, 64));
  icon->setAlignment(Qt::AlignCenter);
  auto* text = new QLabel(
      "<h2 style='color:#24406b'>Chronel Timing Analyzer</h2>"
      "<p style='color:#4a5360'>Open a project with <b>File &gt; Open Project</b> (Ctrl+O),<br>"
      "create the timing netlist with <b>Netlist &gt; Create Timing Netlist</b>,<br>"
      "then choose a report from the <b>Reports</b> menu.</p>"
      "<p style='color:#6b7480'>The Console below talks to the timing engine: "
      "type any engine command at its prompt.</p>");
  text->setAlignment(Qt::AlignCenter);
  text->setTextFormat(Qt::RichText);
  m_home_project = new QLabel;
  m_home_project->setObjectName("LUM_HOME_PROJECT");
  m_home_project->setAlignment(Qt::AlignCenter);
  m_home_project->setTextFormat(Qt::RichText);
  layout->addStretch(1);
  layout->addWidget(icon);
  layout->addWidget(text);
  layout->addSpacing(12);
  layout->addWidget(m_home_project);
  layout->addStretch(2);
  return page;
}

bool LUM_DETACHED_FRAME::create_client() {
  // Status bar with its four panes.
  QStatusBar* bar = statusBar();
  for (int i = 0; i < STATUS_PANES; ++i) {
    m_status_panes[i] = new QLabel;
    m_status_panes[i]->setObjectName(QString("status_pane_%1").arg(i));
    m_status_panes[i]->setContentsMargins(6, 0, 6, 0);
  }
  m_status_panes[1]->setMinimumWidth(60);
  m_status_panes[1]->setAlignment(Qt::AlignCenter);
  m_busy_bar = new QProgressBar;
  m_busy_bar->setMaximumWidth(120);
  m_busy_bar->setMaximumHeight(14);
  m_busy_bar->setTextVisible(false);
  m_busy_bar->setRange(0, 0);
  m_busy_bar->hide();
  bar->addWidget(m_status_panes[0], 1);
  bar->addPermanentWidget(m_busy_bar);
  bar->addPermanentWidget(m_status_panes[1]);
  bar->addPermanentWidget(m_status_panes[2]);
  bar->addPermanentWidget(m_status_panes[3]);

  // The Console bar at the bottom; its control starts the engine.
  m_console = new LUM_CONSOLE_CTRL(this);
  if (!engine_command_line().empty()) m_console->set_engine_command_line(engine_command_line());
  m_console_view = new LUM_CONSOLE_VIEW(m_console);
  m_console_bar = new QDockWidget("Console", this);
  m_console_bar->setObjectName("Console");
  m_console_bar->setWidget(m_console_view);
  addDockWidget(Qt::BottomDockWidgetArea, m_console_bar);

  // Tasks and Report bars share the left side, Report below Tasks.
  m_tasks_bar = new QDockWidget("Tasks", this);
  m_tasks_bar->setObjectName("Tasks");
  m_tasks_bar->setWidget(make_placeholder("Tasks", "The standard flow appears here."));
  addDockWidget(Qt::LeftDockWidgetArea, m_tasks_bar);
  m_report_bar = new QDockWidget("Report", this);
  m_report_bar->setObjectName("Report");
  m_report_bar->setWidget(make_placeholder("Report", "Reports of the open project appear here."));
  splitDockWidget(m_tasks_bar, m_report_bar, Qt::Vertical);
  resizeDocks({m_console_bar}, {300}, Qt::Vertical);
  resizeDocks({m_tasks_bar}, {280}, Qt::Horizontal);

  setCentralWidget(make_home_page());

  m_pins = new LUM_DOCK_PINS(this);
  for (QDockWidget* dock : {m_console_bar, m_tasks_bar, m_report_bar}) {
    m_pins->add_bar(dock);
    connect(dock, &QDockWidget::visibilityChanged, this, [this] { update_command_states(); });
  }
  connect(m_pins, &LUM_DOCK_PINS::pins_changed, this, [this] { update_command_states(); });
  connect(m_console, &LUM_CONSOLE_CTRL::busy_changed, this, [this](bool busy) {
    m_busy = busy;
    update_command_states();
  });

  // The frame is registered before the engine starts, so that the engine's
  // first call-backs find it.
  lum_set_frame(this);
  set_status_pane_text(1, "Ready");
  update_status_panes();
  if (!cfg_is_on("lum_dont_startup_sta")) {
    QLabel* loading = nullptr;
    if (QGuiApplication::platformName() != "offscreen") {
      loading = new QLabel(QString("  %1  ").arg(LUM_MSG_LOADING), nullptr,
                           Qt::SplashScreen | Qt::WindowStaysOnTopHint);
      loading->setWindowTitle(PROGRAM_NAME);
      loading->setMinimumHeight(60);
      loading->show();
      QApplication::processEvents();
    }
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const bool started = m_console->startup();
    QApplication::restoreOverrideCursor();
    delete loading;
    if (!started) {
      msg_show_catalogue_message(LUM_MSG_CANT_START_KRO);
      lum_set_frame(nullptr);
      m_engine_shut_down = true;
      return false;
    }
    // The engine's first prompt is already posted; show it at once.
    atcl_flush_queue(1, 0);
    m_console->drain_lines();
  }
  m_console->set_interactive(true);
  return true;
}

QWidget* LUM_DETACHED_FRAME::get_report_view() const { return centralWidget(); }

void LUM_DETACHED_FRAME::set_tasks_pane(QWidget* pane) {
  m_pins->set_pane(m_tasks_bar, pane);
  update_command_states();
}

void LUM_DETACHED_FRAME::set_report_tree(QWidget* tree) {
  m_pins->set_pane(m_report_bar, tree);
  update_command_states();
}

void LUM_DETACHED_FRAME::set_report_view(QWidget* view) {
  m_home_project = nullptr;  // the home page goes with the old centre
  setCentralWidget(view);
}

void LUM_DETACHED_FRAME::set_command_dialog(unsigned command_id, COMMAND_DIALOG dialog) {
  m_dialogs[command_id] = std::move(dialog);
  update_command_states();
}

// ---- actions and menus -------------------------------------------------------------

void LUM_DETACHED_FRAME::create_actions() {
  for (const LUM_COMMAND_DEF& def : lum_command_table()) {
    auto* action = new QAction(QString::fromUtf8(def.label), this);
    action->setObjectName(QString::fromUtf8(def.handler));
    action->setData(def.id);
    if (def.shortcut[0] != '\0') action->setShortcut(QKeySequence(QString::fromUtf8(def.shortcut)));
    action->setStatusTip(QString::fromUtf8(def.status_tip));
    action->setToolTip(QString(def.label).remove('&').remove("...") +
                       (def.shortcut[0] ? QString(" (%1)").arg(def.shortcut) : QString()));
    action->setIcon(lum_command_icon(def.id));
    if (def.rule == LUM_ENABLE_RULE::PANE_TOGGLE) action->setCheckable(true);
    if (def.rule == LUM_ENABLE_RULE::HOSTED_ONLY)
      action->setStatusTip(action->statusTip() + " (needs the design suite; not available here)");
    const unsigned id = def.id;
    connect(action, &QAction::triggered, this, [this, id] { on_command(id); });
    m_actions[id] = action;
    addAction(action);
  }
}

bool LUM_DETACHED_FRAME::build_menus() {
  create_actions();
  QFile file(":/lum/frame/lum_frame_menu.xml");
  if (!file.open(QIODevice::ReadOnly)) {
    MSG_ASSERT(file.isOpen(), MODULE);
    return false;
  }
  const QByteArray xml = file.readAll();
  LUM_MENU_TARGETS targets;
  targets.action_for = [this](unsigned id) { return find_action(id); };
  targets.recent_menu = [this](QMenu* menu) {
    m_recent_menu = menu;
    connect(menu, &QMenu::aboutToShow, this, [this] { build_recent_menu(); });
    build_recent_menu();
  };
  QToolBar* tool_bar = addToolBar("Main");
  tool_bar->setObjectName("MainToolBar");
  tool_bar->setIconSize(QSize(20, 20));
  const bool ok = lum_build_frame_menus(xml.constData(), menuBar(), tool_bar, targets);

  // The popup that starts with Run Tcl Script lists the scripts it finds
  // each time it opens.
  for (QAction* bar_item : menuBar()->actions()) {
    QMenu* popup = bar_item->menu();
    if (popup == nullptr || popup->actions().isEmpty() || popup->actions().first()->data().toUInt() != LUM_ID_RUN_TCL_SCRIPT)
      continue;
    m_script_menu = popup;
    connect(popup, &QMenu::aboutToShow, this, [this] { build_script_menu(); });
  }

  // Site menu files extend the bar (quick commands, extra popups).
  m_menu_files.load(gen_get_common_misc_fullpath("lumex_main_menu.xml"), cfg_get_value("lum_extension_command_file"));
  m_menu_files.merge_into(menuBar(), [this](unsigned id) { on_command(id); });
  // Mistakes in the menu files go to the console as warnings; the built-in
  // menus are complete without them.
  if (MSG_REPORT* report = m_console != nullptr ? m_console->get_msg_report() : nullptr)
    for (const std::string& problem : m_menu_files.get_problems())
      report->post(MSG_POST(MSG_KIND::WARNING, "LUM_MENU_FILE", problem));
  update_command_states();
  return ok;
}

void LUM_DETACHED_FRAME::build_recent_menu() {
  if (m_recent_menu == nullptr) return;
  m_recent_menu->clear();
  m_recent_actions.clear();
  m_recent.load();
  const auto& entries = m_recent.entries();
  for (int i = 0; i < static_cast<int>(entries.size()) && i < LUM_RECENT_PROJECTS::MAX_ENTRIES; ++i) {
    const unsigned id = LUM_ID_RECENT_PROJECT_FIRST + i;
    QString text = QString("&%1 %2").arg(i < 9 ? QString::number(i + 1) : QString(QChar('A' + i - 9)),
                                        QString::fromStdString(entries[i]).replace('&', "&&"));
    QAction* action = m_recent_menu->addAction(text);
    action->setData(id);
    action->setEnabled(lum_command_is_enabled(id, get_enable_state()));
    connect(action, &QAction::triggered, this, [this, id] { on_recent_project_menu(id); });
    m_recent_actions.push_back(action);
  }
  if (entries.empty()) m_recent_menu->addAction("(none)")->setEnabled(false);
}

void LUM_DETACHED_FRAME::build_script_menu() {
  if (m_script_menu == nullptr) return;
  for (QAction* action : m_script_actions) {
    m_script_menu->removeAction(action);
    delete action;
  }
  m_script_actions.clear();
  m_scripts = lum_load_tcl_scripts(project_recorded() ? lum_path_directory(m_project_path) : std::string(),
                                   lum_split_dir_list(cfg_get_value("lum_user_libraries")),
                                   cfg_get_value("lum_global_user_library"));
  const bool idle = !get_enable_state().busy;
  // After Run Tcl Script: a separator, then each list followed by a separator.
  QAction* first_separator = m_script_menu->addSeparator();
  m_script_actions.push_back(first_separator);
  for (const LUM_SCRIPT_MENU_ENTRY& entry : lum_script_menu_entries(m_scripts)) {
    if (entry.id == 0) {
      m_script_actions.push_back(m_script_menu->addSeparator());
      continue;
    }
    const QString path = QString::fromStdString(entry.path);
    QAction* action = m_script_menu->addAction(QString(path).replace('&', "&&"));
    action->setData(entry.id);
    action->setStatusTip("Run " + path + " in the timing engine");
    action->setEnabled(idle);
    const unsigned id = entry.id;
    connect(action, &QAction::triggered, this, [this, id] { on_command(id); });
    m_script_actions.push_back(action);
  }
  // No trailing separator after the last list.
  if (m_script_actions.size() > 1 && m_script_actions.back()->isSeparator()) {
    m_script_menu->removeAction(m_script_actions.back());
    delete m_script_actions.back();
    m_script_actions.pop_back();
  }
  if (m_script_actions.size() == 1) {
    QAction* none = m_script_menu->addAction("(no scripts in the project folder or the user libraries)");
    none->setEnabled(false);
    m_script_actions.push_back(none);
  }
}

void LUM_DETACHED_FRAME::on_run_user_tcl_script(unsigned id) {
  if (id > LUM_ID_RUN_GLOBAL_USER_LIBS_TCL_SCRIPT_MAX) {
    msg_debug("Ooops, an invalid menu command was chosen.");
    return;
  }
  const std::string script = lum_script_for_id(m_scripts, id);
  if (!MSG_ASSERT(!script.empty(), MODULE)) return;
  run_engine_command(lum_source_command(script));
}

QAction* LUM_DETACHED_FRAME::find_action(unsigned command_id) const {
  auto it = m_actions.find(command_id);
  return it == m_actions.end() ? nullptr : it->second;
}

LUM_ENABLE_STATE LUM_DETACHED_FRAME::get_enable_state() const {
  LUM_ENABLE_STATE s;
  s.project_is_open = m_project_is_open;
  s.netlist_is_created = m_netlist_is_created;
  s.sdc_file_is_loaded = m_sdc_file_is_loaded;
  s.netlist_is_up_to_date = m_netlist_is_up_to_date;
  s.busy = m_console != nullptr && m_console->is_busy();
  s.project_recorded = project_recorded();
  s.family_has_rise_fall = m_family_has_rise_fall;
  s.hosted = gen_is_in_ui_process();
  return s;
}

bool LUM_DETACHED_FRAME::is_command_enabled(unsigned id) const {
  const LUM_ENABLE_STATE state = get_enable_state();
  if (!lum_command_is_enabled(id, state)) return false;
  if (needs_dialog(id) && m_dialogs.find(id) == m_dialogs.end()) return false;
  if (id == LUM_ID_VIEW_REPORT_TREE) return m_pins != nullptr && m_pins->pane(m_report_bar) != nullptr;
  return true;
}

void LUM_DETACHED_FRAME::update_command_states() {
  for (auto& [id, action] : m_actions) {
    action->setEnabled(is_command_enabled(id));
    // A bar is "on" while docked and shown or collapsed to its edge tab.
    const auto on = [this](QDockWidget* bar) { return bar && (bar->isVisible() || (m_pins && !m_pins->is_pinned(bar))); };
    if (id == LUM_ID_VIEW_TASK_PANE) action->setChecked(on(m_tasks_bar));
    if (id == LUM_ID_VIEW_REPORT_TREE) action->setChecked(on(m_report_bar));
    if (id == LUM_ID_VIEW_CONSOLE) action->setChecked(on(m_console_bar));
  }
  const LUM_ENABLE_STATE state = get_enable_state();
  for (QAction* action : m_recent_actions) action->setEnabled(lum_command_is_enabled(action->data().toUInt(), state));
  m_menu_files.update_enabled(!state.busy);
  update_status_panes();
  emit command_states_changed();
}

void LUM_DETACHED_FRAME::run_menu_command(unsigned command_id) {
  if (QAction* action = find_action(command_id)) {
    if (action->isEnabled()) action->trigger();
    return;
  }
  on_command(command_id);
}

void LUM_DETACHED_FRAME::run_engine_command(const std::string& command) {
  if (m_console != nullptr) m_console->run_command(command);
}

void LUM_DETACHED_FRAME::on_command(unsigned id) {
  const LUM_COMMAND_DEF* def = lum_find_command(id);
  if (id >= LUM_ID_RECENT_PROJECT_FIRST && id <= LUM_ID_RECENT_PROJECT_LAST) {
    on_recent_project_menu(id);
    return;
  }
  if (id >= LUM_ID_QUICK_COMMAND_MIN && id <= LUM_ID_QUICK_COMMAND_MAX) {
    m_menu_files.run_quick_command(id, this, [this](const std::string& command) { run_engine_command(command); });
    return;
  }
  if (id >= LUM_ID_RUN_PROJECT_TCL_SCRIPT_MIN && id <= LUM_ID_RUN_GLOBAL_USER_LIBS_TCL_SCRIPT_MAX) {
    on_run_user_tcl_script(id);
    return;
  }
  if (def == nullptr) return;
  switch (id) {
    case LUM_ID_FILE_OPEN_PROJECT: on_file_open_project(); return;
    case LUM_ID_FILE_CLOSE_PROJECT: close_project(); return;
    case LUM_ID_FILE_CLOSE: post_close_request(); return;
    case LUM_ID_RUN_TCL_SCRIPT: run_tcl_script(); return;
    case LUM_ID_LOAD_SDC_FILE: read_sdc_file(); return;
    case LUM_ID_WRITE_SDC_FILE: write_sdc(false); return;
    case LUM_ID_VIEW_TASK_PANE: toggle_bar(m_tasks_bar); return;
    case LUM_ID_VIEW_REPORT_TREE: toggle_bar(m_report_bar); return;
    case LUM_ID_VIEW_CONSOLE: toggle_bar(m_console_bar); return;
    case LUM_ID_APP_ABOUT: on_app_about(); return;
    case LUM_ID_HELP_CONTENTS: lum_show_help("index"); return;
    case LUM_ID_HELP_SEARCH: on_help_search(); return;
    default: break;
  }
  if (def->rule == LUM_ENABLE_RULE::HOSTED_ONLY && !gen_is_in_ui_process()) return;

  auto dialog = m_dialogs.find(id);
  if (dialog != m_dialogs.end()) {
    const std::string command = dialog->second(this);
    if (!command.empty()) run_engine_command(command);
    return;
  }
  if (id == LUM_ID_CREATE_TIMING_NETLIST) {
    // Until its dialog is registered the command builds the netlist with
    // the default options.
    run_engine_command("create_timing_netlist");
    return;
  }
  if (def->command_line != nullptr) {
    run_engine_command(def->command_line);
    if (def->panel_name != nullptr) m_panel_to_select = def->panel_name;
  }
}

void LUM_DETACHED_FRAME::toggle_bar(QDockWidget* bar) {
  if (bar == nullptr) return;
  if (!m_pins->is_pinned(bar)) {
    // An auto-hidden bar comes back docked in its place.
    m_pins->pin(bar);
  } else if (bar->isFloating() && bar->isVisible()) {
    // A floating bar, perhaps lost behind other windows or off screen, docks again.
    bar->setFloating(false);
    bar->raise();
  } else {
    bar->setVisible(!bar->isVisible());
  }
  update_command_states();
}

void LUM_DETACHED_FRAME::open_help_page(const std::string& target) {
  if (m_hooks.open_web_page) m_hooks.open_web_page(target);
}

void LUM_DETACHED_FRAME::on_help_search() {
  bool ok = false;
  const QString query =
      QInputDialog::getText(this, "Search Help", "Words to find (a page must hold them all):", QLineEdit::Normal, {}, &ok);
  if (!ok || query.trimmed().isEmpty()) return;
  const std::string words = query.trimmed().toStdString();
  const std::string path = generated_page_path("search.html");
  if (path.empty()) return;
  std::ofstream(path, std::ios::binary) << lum_help_results_html(words, lum_search_help(lum_help_dir(), words));
  open_help_page(path);
}

std::string LUM_DETACHED_FRAME::generated_page_path(const char* name) {
  static QTemporaryDir pages;
  return pages.isValid() ? pages.filePath(name).toStdString() : std::string();
}

void LUM_DETACHED_FRAME::show_home_page() {
  const std::string path = generated_page_path("home.html");
  if (path.empty() || !m_hooks.open_web_page) return;
  m_recent.load();
  const std::string misc = lum_path_directory(gen_get_common_misc_fullpath("device_families.txt"));
  std::ofstream(path, std::ios::binary) << lum_home_page_html(m_recent.entries(),
                                                              lum_example_projects(misc + "../examples"),
                                                              lum_help_dir());
  open_help_page(path);
  m_home_page_shown = true;
}

void LUM_DETACHED_FRAME::on_app_about() {
  QMessageBox box(this);
  box.setWindowTitle("About Chronel Timing Analyzer");
  box.setIconPixmap(lum_icon(LUM_ICON::APPLICATION).pixmap(64, 64));
  box.setTextFormat(Qt::RichText);
  box.setText(QString("<h3>Chronel Timing Analyzer</h3><p>Version %1</p>").arg(gen_get_version()));
  box.setInformativeText(
      "An open-source static timing analysis workbench.<br>"
      "Front end built with Qt " QT_VERSION_STR "; timing engine vexa_sta.");
  box.setStandardButtons(QMessageBox::Ok);
  box.exec();
}

// ---- status bar ---------------------------------------------------------------------

void LUM_DETACHED_FRAME::set_statusbar_text(int pane, const char* text) {
  set_status_pane_text(pane, text ? text : "");
}

void LUM_DETACHED_FRAME::set_status_pane_text(int pane, const std::string& text) {
  if (pane < 0 || pane >= STATUS_PANES || m_status_panes[pane] == nullptr) return;
  m_status_panes[pane]->setText(QString::fromStdString(text));
  // A percentage in the busy pane turns the indicator into a progress bar.
  if (pane == 1 && m_busy_bar != nullptr) {
    QString value = QString::fromStdString(text);
    bool ok = false;
    int percent = value.endsWith('%') ? value.chopped(1).toInt(&ok) : 0;
    if (ok) {
      m_busy_bar->setRange(0, 100);
      m_busy_bar->setValue(std::clamp(percent, 0, 100));
    } else {
      m_busy_bar->setRange(0, 0);
    }
  }
}

QString LUM_DETACHED_FRAME::get_statusbar_text(int pane) const {
  if (pane < 0 || pane >= STATUS_PANES || m_status_panes[pane] == nullptr) return {};
  return m_status_panes[pane]->text();
}

void LUM_DETACHED_FRAME::update_status_panes() {
  if (m_status_panes[2] == nullptr) return;
  QString netlist;
  if (m_project_is_open == '1') {
    if (m_netlist_is_created == '1')
      netlist = m_netlist_is_up_to_date == '0' ? "out of date" : "current";
    else
      netlist = "not created";
  }
  m_status_panes[2]->setText(netlist.isEmpty() ? QString() : "Netlist: " + netlist);
  m_status_panes[2]->setToolTip(QString("project_is_open %1, netlist_is_created %2, sdc_file_is_loaded %3, "
                                        "netlist_is_up_to_date %4")
                                    .arg(flag_text(m_project_is_open), flag_text(m_netlist_is_created),
                                         flag_text(m_sdc_file_is_loaded), flag_text(m_netlist_is_up_to_date)));
  m_status_panes[3]->setText(m_revision.empty() ? QString() : QString("Revision: %1").arg(QString::fromStdString(m_revision)));
  if (m_home_project != nullptr) {
    if (!project_recorded()) {
      m_home_project->setText(QString());
    } else {
      m_home_project->setText(
          QString("<table style='color:#33404f' cellspacing='4'>"
                  "<tr><td align='right'><b>Project</b></td><td>%1</td></tr>"
                  "<tr><td align='right'><b>Revision</b></td><td>%2</td></tr>"
                  "<tr><td align='right'><b>Timing netlist</b></td><td>%3</td></tr>"
                  "<tr><td align='right'><b>Clocks</b></td><td>%4</td></tr></table>")
              .arg(QString::fromStdString(m_project_path).toHtmlEscaped(),
                   QString::fromStdString(m_revision).toHtmlEscaped(),
                   netlist.isEmpty() ? QString("none") : netlist.toHtmlEscaped(),
                   m_clock_names.empty() ? QString("none registered")
                                         : QString::fromStdString([this] {
                                             std::string all;
                                             for (const std::string& c : m_clock_names) all += (all.empty() ? "" : ", ") + c;
                                             return all;
                                           }()).toHtmlEscaped()));
    }
  }
}

void LUM_DETACHED_FRAME::show_busy(bool busy) {
  if (busy == m_busy && m_busy_bar && m_busy_bar->isVisible() == busy) return;
  m_busy = busy;
  if (m_busy_bar != nullptr) {
    m_busy_bar->setRange(0, 0);
    m_busy_bar->setVisible(busy);
  }
  // The wait cursor everywhere over the frame while the engine works.
  if (busy) setCursor(Qt::WaitCursor);
  else unsetCursor();
}

void LUM_DETACHED_FRAME::post_close_request() {
  QMetaObject::invokeMethod(this, &QWidget::close, Qt::QueuedConnection);
}

bool LUM_DETACHED_FRAME::engine_ended(const LUM_ENGINE_END& end) {
  // What the engine knew went with it; the project is remembered for the restart.
  m_project_is_open = '0';
  m_netlist_is_created = '0';
  m_sdc_file_is_loaded = '0';
  m_netlist_is_up_to_date = '0';
  m_clock_names.clear();
  update_tasks_status();
  update_command_states();
  set_status_pane_text(1, "Stopped");
  const int constraints = static_cast<int>(m_console->get_session_constraints().size());
  LUM_ENGINE_ENDED_DLG::ACTIONS actions;
  actions.save_constraints = [this] { return save_session_constraints(); };
  actions.restart = [this] { restart_engine(); };
  auto* box = new LUM_ENGINE_ENDED_DLG(this, end, constraints,
                                       project_recorded() ? lum_path_base_name(m_project_path) : std::string(),
                                       std::move(actions));
  box->setAttribute(Qt::WA_DeleteOnClose);
  box->open();
  return true;
}

std::string LUM_DETACHED_FRAME::save_session_constraints() {
  LUM_FILE_REQUEST request;
  request.save = true;
  request.title = "Save Constraints as SDC File";
  request.default_suffix = "sdc";
  request.default_name = "session.sdc";
  request.filters = {"SDC Files (*.sdc)", "All Files (*)"};
  if (project_recorded()) request.directory = QString::fromStdString(lum_path_directory(m_project_path));
  const std::string path = lum_ask_file(this, request);
  if (path.empty()) return std::string();
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out << lum_session_sdc_text(m_console->get_session_constraints());
  out.flush();
  if (!out) return "The file \"" + path + "\" could not be written.";
  return "The constraints were saved to \"" + path + "\".";
}

void LUM_DETACHED_FRAME::restart_engine() {
  const std::string project = m_project_path;
  const std::string revision = m_revision;
  QApplication::setOverrideCursor(Qt::WaitCursor);
  const bool started = m_console->restart();
  QApplication::restoreOverrideCursor();
  if (!started) {
    msg_show_catalogue_message(LUM_MSG_CANT_RESTART_KRO);
    return;
  }
  set_status_pane_text(1, "Ready");
  if (!project.empty()) sta_open_project(project.c_str(), revision.c_str());
}

// ---- state flags -----------------------------------------------------------------------

char LUM_DETACHED_FRAME::get_state_flag(LUM_STATE_FLAG flag) const {
  switch (flag) {
    case LUM_STATE_FLAG::PROJECT_IS_OPEN: return m_project_is_open;
    case LUM_STATE_FLAG::NETLIST_IS_CREATED: return m_netlist_is_created;
    case LUM_STATE_FLAG::SDC_FILE_IS_LOADED: return m_sdc_file_is_loaded;
    case LUM_STATE_FLAG::NETLIST_IS_UP_TO_DATE: return m_netlist_is_up_to_date;
  }
  return '\0';
}

void LUM_DETACHED_FRAME::set_state_flag(LUM_STATE_FLAG flag, char value) {
  switch (flag) {
    case LUM_STATE_FLAG::PROJECT_IS_OPEN: m_project_is_open = value; break;
    case LUM_STATE_FLAG::NETLIST_IS_CREATED: m_netlist_is_created = value; break;
    case LUM_STATE_FLAG::SDC_FILE_IS_LOADED: m_sdc_file_is_loaded = value; break;
    case LUM_STATE_FLAG::NETLIST_IS_UP_TO_DATE: m_netlist_is_up_to_date = value; break;
  }
  update_command_states();
}

void LUM_DETACHED_FRAME::set_netlist_is_created(char value) {
  // The description names what the netlist was built from; the design suite
  // would be told about it, and the status bar shows it here.
  if (value == '1' && project_recorded())
    m_netlist_description = lum_path_base_name(m_project_path) + " (revision " + m_revision + ")";
  else
    m_netlist_description.clear();
  m_netlist_is_created = value;
  update_tasks_status();
  update_command_states();
}

void LUM_DETACHED_FRAME::reload_sta_report(const char* open_panel) {
  if (open_panel != nullptr && open_panel[0] != '\0') m_panel_to_select = open_panel;
  if (m_hooks.reload_sta_report) m_hooks.reload_sta_report(open_panel);
}

void LUM_DETACHED_FRAME::update_report_tree_status() {
  if (m_hooks.update_report_tree_status) m_hooks.update_report_tree_status();
}

void LUM_DETACHED_FRAME::update_tasks_status() {
  if (m_hooks.update_tasks_status) m_hooks.update_tasks_status();
}

void LUM_DETACHED_FRAME::start_next_task() {
  if (m_hooks.start_next_task) m_hooks.start_next_task();
}

void LUM_DETACHED_FRAME::add_clock(const char* name) {
  if (name == nullptr || name[0] == '\0') return;
  for (const std::string& clock : m_clock_names)
    if (clock == name) return;
  m_clock_names.push_back(name);
}

void LUM_DETACHED_FRAME::remove_clock(const char* name) {
  if (name == nullptr) return;
  for (auto it = m_clock_names.begin(); it != m_clock_names.end(); ++it) {
    if (*it == name) {
      m_clock_names.erase(it);
      return;
    }
  }
}

// ---- projects ---------------------------------------------------------------------------

void LUM_DETACHED_FRAME::on_file_open_project() {
  LUM_FILE_REQUEST request;
  request.title = "Open Project";
  request.filters = {"Project Files (*.vpf)", "Revision Settings Files (*.vsf)", "All Files (*)"};
  request.directory = project_recorded() ? QString::fromStdString(lum_path_directory(m_project_path)) : QString();
  const std::string path = lum_ask_file(this, request);
  if (!path.empty()) open_project(path.c_str());
}

void LUM_DETACHED_FRAME::on_recent_project_menu(unsigned id) {
  if (id < LUM_ID_RECENT_PROJECT_FIRST || id > LUM_ID_RECENT_PROJECT_LAST) return;
  const std::string entry = m_recent.at(static_cast<int>(id - LUM_ID_RECENT_PROJECT_FIRST));
  if (!entry.empty()) open_project(entry.c_str());
}

bool LUM_DETACHED_FRAME::open_project(const char* path) {
  if (path == nullptr || path[0] == '\0') return false;
  LUM_PROJECT_OPEN_PLAN plan = lum_plan_project_open(path);
  for (const std::string& line : plan.debug_lines) msg_debug("%s", line.c_str());
  if (plan.error_entry != nullptr) {
    msg_show_catalogue_message(plan.error_entry, plan.error_insert.c_str());
    return false;
  }
  const std::string db_problem = lum_project_database_problem(plan.project_path, plan.revision);
  if (!db_problem.empty()) {
    msg_debug("LUMEX project database of '%s': %s", plan.project_path.c_str(), db_problem.c_str());
    // Cancel leaves everything as it was and sends nothing.
    if (msg_show_catalogue_message(LUM_MSG_PROJECT_INCOMPATIBLE) != MSG_ANSWER_OK) return false;
  }
  if (m_project_is_open == '1' && !close_project()) return false;
  if (!db_problem.empty() && !lum_remove_project_database(plan.project_path, plan.revision)) {
    msg_show_catalogue_message(LUM_MSG_CANT_REPLACE_PROJECT_DATABASE, plan.project_path.c_str());
    return false;
  }
  if (plan.create_project_file && !lum_create_project_file_for_revision(plan.project_path, plan.revision)) {
    msg_show_catalogue_message(LUM_MSG_CANT_CREATE_PROJECT, plan.project_path.c_str());
    return false;
  }
  sta_open_project(plan.project_path.c_str(), plan.revision.c_str());
  m_recent.load();
  m_recent.add(plan.project_path);
  m_recent.save();
  return true;
}

void LUM_DETACHED_FRAME::sta_open_project(const char* project, const char* revision) {
  std::string path = project != nullptr ? project : "";
  if (path.empty()) {
    if (!MSG_ASSERT(project_recorded(), MODULE)) return;
    path = m_project_path;
  }
  path = lum_path_with_extension(path, LUM_PROJECT_EXTENSION);
  std::string rev = revision != nullptr ? revision : "";
  if (rev.empty()) {
    LUM_PROJECT_FILE file;
    if (lum_read_project_file(path, &file) && !file.revisions.empty()) rev = file.revisions.front();
  }
  QApplication::setOverrideCursor(Qt::WaitCursor);
  run_engine_command(lum_project_open_command(path, rev));
  QApplication::restoreOverrideCursor();
}

void LUM_DETACHED_FRAME::sta_opened_a_project(const std::string& vpf, const std::string& revision) {
  // A project the engine has just opened has no timing netlist until the
  // engine reports one, so creating it is possible at once.
  if (m_netlist_is_created != '1') m_netlist_is_created = '0';
  m_project_path = vpf;
  m_revision = revision;
  LUM_REVISION_SETTINGS settings;
  const std::string vsf = lum_path_directory(vpf) + revision + "." + LUM_REVISION_EXTENSION;
  const bool read = lum_read_revision_settings(vsf, &settings);
  const std::string families = gen_get_common_misc_fullpath("device_families.txt");
  m_family_has_rise_fall = read && lum_family_has_rise_fall(families, settings.family);
  m_speed_grades = read ? lum_family_speed_grades(families, settings.family) : std::vector<std::string>();
  update_frame_title();
  // The start page makes way for the project's reports.
  if (m_home_page_shown) open_help_page("");
  m_home_page_shown = false;
  update_command_states();
  emit project_changed();
}

bool LUM_DETACHED_FRAME::close_project() {
  if (m_console == nullptr || !m_console->is_kro_running()) return true;
  if (m_sdc_needs_saving) {
    const int answer = msg_show_catalogue_message(LUM_MSG_PROMPT_TO_WRITE_SDC);
    // Cancel, or a file dialog given up after Yes, keeps the project open.
    if (answer == MSG_ANSWER_CANCEL || (answer == MSG_ANSWER_YES && !write_sdc(true))) return false;
    m_sdc_needs_saving = false;
  }
  run_engine_command("project_close");
  return true;
}

void LUM_DETACHED_FRAME::sta_close_project() { run_engine_command("project_close"); }

void LUM_DETACHED_FRAME::sta_closed_a_project() {
  // Constraints sent so far belonged to the project that closed.
  if (m_console != nullptr) m_console->clear_session_constraints();
  m_project_path.clear();
  m_revision.clear();
  m_family_has_rise_fall = false;
  m_speed_grades.clear();
  update_frame_title();
  if (m_hooks.clear_report) m_hooks.clear_report();
  show_home_page();
  m_panel_to_select.clear();
  set_netlist_is_created('0');
  update_tasks_status();
  if (m_project_is_open == '1' && m_netlist_is_up_to_date == '1') update_report_tree_status();
  update_tasks_status();
  m_clock_names.clear();
  update_command_states();
  emit project_changed();
}

void LUM_DETACHED_FRAME::update_frame_title() {
  // The window system writes the application's display name after every
  // title but one equal to it; the product name is written here only when
  // the display name is another one, so that it never shows twice.
  const bool named_by_window_system = QGuiApplication::applicationDisplayName() == PROGRAM_NAME;
  QString title = PROGRAM_NAME;
  if (project_recorded()) {
    const QString project = QString::fromStdString(lum_path_directory(m_project_path) + lum_path_base_name(m_project_path)) +
                            " - " + QString::fromStdString(m_revision);
    title = named_by_window_system ? project : title + " - " + project;
  }
  setWindowTitle(title);
}

// ---- SDC and scripts --------------------------------------------------------------------------

void LUM_DETACHED_FRAME::read_sdc_file() {
  if (!MSG_ASSERT(project_recorded(), MODULE)) return;
  LUM_FILE_REQUEST request;
  request.title = "Read SDC File";
  request.default_suffix = "sdc";
  request.filters = {"SDC Files (*.sdc)", "All Files (*)"};
  request.directory = QString::fromStdString(lum_path_directory(m_project_path));
  const std::string path = lum_ask_file(this, request);
  if (!path.empty()) run_engine_command(lum_read_sdc_command(path));
}

bool LUM_DETACHED_FRAME::write_sdc(bool closing) {
  LUM_FILE_REQUEST request;
  request.save = true;
  request.title = closing ? "Write SDC File Before Closing" : "Write SDC File";
  request.default_suffix = "sdc";
  request.filters = {"SDC Files (*.sdc)", "All Files (*)"};
  request.directory = QString::fromStdString(lum_path_directory(m_project_path));
  const std::string path = lum_ask_file(this, request);
  if (path.empty()) return false;
  run_engine_command(lum_write_sdc_command(path));
  // The session's constraints are in a file now.
  m_sdc_needs_saving = false;
  return true;
}

void LUM_DETACHED_FRAME::run_tcl_script() {
  LUM_FILE_REQUEST request;
  request.title = "Run Tcl Script";
  request.filters = {"Tcl Script Files (*.tcl)", "All Files (*)"};
  if (project_recorded()) request.directory = QString::fromStdString(lum_path_directory(m_project_path));
  const std::string path = lum_ask_file(this, request);
  if (!path.empty()) run_engine_command(lum_source_command(path));
}

// ---- window placement and lifetime -------------------------------------------------------------

void LUM_DETACHED_FRAME::activate_frame(int show_cmd) {
  if (show_cmd == -1) {
    if (!isVisible()) show_cmd = LUM_WINDOW_PLACEMENT::SHOW_NORMAL;
    else if (isMinimized()) show_cmd = LUM_WINDOW_PLACEMENT::SHOW_RESTORE;
    else show_cmd = 0;
  }
  if (show_cmd != LUM_WINDOW_PLACEMENT::SHOW_RESTORE && !isVisible()) {
    load_window_state();
  } else if (show_cmd == LUM_WINDOW_PLACEMENT::SHOW_RESTORE) {
    showNormal();
  } else if (!isVisible()) {
    show();
  }
  raise();
  activateWindow();
}

void LUM_DETACHED_FRAME::save_window_state() {
  LUM_WINDOW_PLACEMENT p;
  const QRect normal = normalGeometry().isValid() ? normalGeometry() : geometry();
  p.left = normal.left();
  p.top = normal.top();
  p.right = normal.left() + normal.width();
  p.bottom = normal.top() + normal.height();
  p.show_cmd = isMinimized()   ? LUM_WINDOW_PLACEMENT::SHOW_MINIMIZED
               : isMaximized() ? LUM_WINDOW_PLACEMENT::SHOW_MAXIMIZED
                               : LUM_WINDOW_PLACEMENT::SHOW_NORMAL;
  lum_save_window_placement(p);
  CFG_REGISTRY_KEY(DOCK_STATE_KEY).set_string("state", saveState().toBase64().toStdString());
  CFG_REGISTRY_KEY(DOCK_STATE_KEY).set_string("pins", m_pins->save());
}

void LUM_DETACHED_FRAME::load_window_state() {
  m_placement_loaded = true;
  LUM_WINDOW_PLACEMENT current;
  const QRect g = geometry();
  current.left = g.left();
  current.top = g.top();
  current.right = g.left() + g.width();
  current.bottom = g.top() + g.height();
  current.show_cmd = LUM_WINDOW_PLACEMENT::SHOW_NORMAL;
  QSize screen(1920, 1080);
  if (QScreen* s = QGuiApplication::primaryScreen()) screen = s->availableGeometry().size();
  LUM_WINDOW_PLACEMENT p =
      lum_sanitise_window_placement(lum_read_window_placement(current), screen.width(), screen.height());
  if (p.right - p.left > 100 && p.bottom - p.top > 100) setGeometry(p.left, p.top, p.right - p.left, p.bottom - p.top);
  const std::string dock_state = CFG_REGISTRY_KEY(DOCK_STATE_KEY).get_string("state");
  if (!dock_state.empty()) restoreState(QByteArray::fromBase64(QByteArray::fromStdString(dock_state)));
  m_pins->restore(CFG_REGISTRY_KEY(DOCK_STATE_KEY).get_string("pins"));
  if (p.show_cmd == LUM_WINDOW_PLACEMENT::SHOW_MAXIMIZED) showMaximized();
  else show();
  if (dock_state.empty()) {
    // First run: room for the console and a left column of readable width,
    // once the window has its size.
    QTimer::singleShot(0, this, [this] {
      resizeDocks({m_console_bar}, {height() * 3 / 8}, Qt::Vertical);
      resizeDocks({m_tasks_bar}, {std::max(340, width() / 4)}, Qt::Horizontal);
    });
  }
  update_command_states();
}

void LUM_DETACHED_FRAME::closeEvent(QCloseEvent* event) {
  if (m_console != nullptr && m_console->is_busy()) {
    msg_show_catalogue_message(LUM_MSG_CANT_CLOSE_WHILE_KRO_IS_BUSY);
    event->ignore();
    return;
  }
  if (m_project_is_open == '1' && !close_project()) {
    event->ignore();
    return;
  }
  save_window_state();
  event->accept();
  emit closing();
  // Unregister now: nothing may reach the frame after this point, and the
  // engine is told to exit before the widgets go.
  if (m_instance == this) m_instance = nullptr;
  if (lum_get_frame() == this) lum_set_frame(nullptr);
  uninstall_dialogs();
  shutdown_engine();
}
