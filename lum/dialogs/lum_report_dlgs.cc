#include "dialogs/lum_report_dlgs.hh"

#include <QApplication>
#include <QButtonGroup>
#include <QStyle>
#include <QCheckBox>
#include <QComboBox>
#include <QDesktopServices>
#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QToolButton>
#include <QUrl>

#include "dialogs/lum_dialog_registry.hh"
#include "engine/lum_console_ctrl.hh"
#include "engine/lum_console_model.hh"
#include "engine/lum_frame_iface.hh"
#include "platform/atcl.hh"
#include "platform/atcl_args.hh"
#include "platform/cfg.hh"
#include "platform/msg.hh"
#include "tcl/lum_tcl_args_auto.hh"
#include "tcl/lum_tcl_dialogs.hh"

namespace {

const char* const MODULE = "lum_report_timing_dlg";

LUM_CONSOLE_CTRL* frame_console() {
  LUM_FRAME_IFACE* frame = lum_get_frame();
  return frame != nullptr ? frame->get_console() : nullptr;
}

LUM_REPORT_OUTPUT_DLG::FILE_CHOOSER& file_chooser() {
  static LUM_REPORT_OUTPUT_DLG::FILE_CHOOSER chooser;
  return chooser;
}

// A row of widgets in one grid cell.
QWidget* row_of(QWidget* parent, std::initializer_list<QWidget*> widgets) {
  auto* row = new QWidget(parent);
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  for (QWidget* widget : widgets) {
    widget->setParent(row);
    layout->addWidget(widget);
  }
  layout->addStretch(1);
  return row;
}

}  // namespace

// ---- output rows ----------------------------------------------------------------------

void LUM_REPORT_OUTPUT_DLG::set_file_chooser(FILE_CHOOSER chooser) { file_chooser() = std::move(chooser); }

void LUM_REPORT_OUTPUT_DLG::add_output_rows(LUM_REPORT_OUTPUT* output) {
  m_output = output;
  QGridLayout* grid = form();

  auto* to_panel = new QCheckBox("Report &panel:", this);
  to_panel->setObjectName("to_panel");
  auto* panel_name = new QLineEdit(this);
  panel_name->setObjectName("panel_name");
  int row = take_row();
  grid->addWidget(to_panel, row, 0);
  grid->addWidget(panel_name, row, 1, 1, 2);
  bind_check(to_panel, &output->to_panel);
  bind_edit(panel_name, &output->panel_name);
  m_panel_name = panel_name;

  auto* to_file = new QCheckBox("&File:", this);
  to_file->setObjectName("to_file");
  auto* file_name = new QLineEdit(this);
  file_name->setObjectName("file_name");
  auto* browse = new QToolButton(this);
  browse->setObjectName("browse");
  browse->setText("...");
  browse->setToolTip("Choose the output file");
  row = take_row();
  grid->addWidget(to_file, row, 0);
  grid->addWidget(file_name, row, 1);
  grid->addWidget(browse, row, 2);
  bind_check(to_file, &output->to_file);
  bind_edit(file_name, &output->file_name);
  m_file_name = file_name;
  m_browse = browse;
  connect(browse, &QToolButton::clicked, this, [this] {
    std::string chosen;
    if (file_chooser()) {
      chosen = file_chooser()(this, m_output->file_name);
    } else {
      chosen = QFileDialog::getSaveFileName(this, "Output File", QString::fromStdString(m_output->file_name),
                                            "All Files (*)", nullptr, QFileDialog::DontConfirmOverwrite)
                   .toStdString();
    }
    if (chosen.empty()) return;
    m_output->file_name = QFileInfo(QString::fromStdString(chosen)).absoluteFilePath().toStdString();
    write_back();
  });

  auto* modes = new QButtonGroup(this);
  auto* overwrite = new QRadioButton("&Overwrite", this);
  overwrite->setObjectName("file_mode_0");
  auto* append = new QRadioButton("&Append", this);
  append->setObjectName("file_mode_1");
  modes->addButton(overwrite, LUM_FILE_MODE_OVERWRITE);
  modes->addButton(append, LUM_FILE_MODE_APPEND);
  auto* open = new QPushButton("Op&en File", this);
  open->setObjectName("open_file");
  connect(open, &QPushButton::clicked, this, [this] {
    QDesktopServices::openUrl(QUrl::fromLocalFile(QString::fromStdString(m_output->file_name)));
  });
  m_modes = row_of(this, {overwrite, append, open});
  grid->addWidget(m_modes, take_row(), 1, 1, 2);
  bind_choice(modes, &output->file_mode);
  m_open = open;

  auto* to_console = new QCheckBox("&Console", this);
  to_console->setObjectName("to_console");
  grid->addWidget(to_console, take_row(), 0, 1, 3);
  bind_check(to_console, &output->to_console);
}

void LUM_REPORT_OUTPUT_DLG::update_output_controls() {
  if (m_output == nullptr) return;
  if (!m_output->to_panel && !m_output->to_file && !m_output->to_console) {
    m_output->apply_output_rule();
    write_back();  // shows the console ticked; recomposes (the rule then holds)
    return;
  }
  m_panel_name->setEnabled(m_output->panel_name_enabled());
  m_file_name->setEnabled(m_output->file_controls_enabled());
  m_browse->setEnabled(m_output->file_controls_enabled());
  m_modes->setEnabled(m_output->file_controls_enabled());
  m_open->setEnabled(m_output->open_file_enabled());
}

// ---- report timing ----------------------------------------------------------------------

namespace {
QPointer<LUM_REPORT_TIMING_DLG>& report_timing_dlg() {
  static QPointer<LUM_REPORT_TIMING_DLG> dialog;
  return dialog;
}
}  // namespace

LUM_REPORT_TIMING_DLG::LUM_REPORT_TIMING_DLG(QWidget* parent) : LUM_REPORT_OUTPUT_DLG(parent, "Report Timing") {
  setObjectName("LUM_REPORT_TIMING_DLG");
  setProperty("help_page", "dialogs#reports");
  setModal(false);
  QGridLayout* grid = form();

  add_clock_combo("From &clock:", &m_fields.from_clock, "from_clock");
  add_clock_combo("To c&lock:", &m_fields.to_clock, "to_clock");
  add_name_edit("&From:", &m_fields.from, "from");
  add_name_edit("T&hrough:", &m_fields.thru, "thru");
  add_name_edit("&To:", &m_fields.to, "to");

  auto* setup = new QCheckBox("&Setup", this);
  setup->setObjectName("setup");
  auto* hold = new QCheckBox("H&old", this);
  hold->setObjectName("hold");
  auto* recovery = new QCheckBox("&Recovery", this);
  recovery->setObjectName("recovery");
  auto* removal = new QCheckBox("Re&moval", this);
  removal->setObjectName("removal");
  int row = take_row();
  grid->addWidget(new QLabel("Analysis:", this), row, 0);
  grid->addWidget(row_of(this, {setup, hold, recovery, removal}), row, 1, 1, 2);
  bind_check(setup, &m_fields.setup);
  bind_check(hold, &m_fields.hold);
  bind_check(recovery, &m_fields.recovery);
  bind_check(removal, &m_fields.removal);

  add_edit("&Number of paths:", &m_fields.npaths, "npaths");
  add_time_edit("Slack &less than:", &m_fields.less_than_slack, "less_than_slack");
  add_choice("Detail:", {"F&ull path", "Summar&y"}, &m_fields.detail_level, "detail_level");
  add_output_rows(&m_fields.output);

  m_engine_message = new QLabel(this);
  m_engine_message->setObjectName("engine_message");
  m_engine_message->setStyleSheet("color: #b00020;");
  m_engine_message->setWordWrap(true);
  m_engine_message->setVisible(false);
  grid->addWidget(m_engine_message, take_row(), 0, 1, 3);

  // The push-pin keeps the dialog open after OK, for the next report.
  m_pin = new QToolButton(this);
  m_pin->setObjectName("pin");
  m_pin->setCheckable(true);
  m_pin->setText("Keep open");
  m_pin->setToolTip("Keep this dialog open after OK");
  m_pin->setIcon(style()->standardIcon(QStyle::SP_DialogApplyButton));
  m_pin->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  grid->addWidget(m_pin, take_row(), 0, 1, 3, Qt::AlignRight);

  if (LUM_CONSOLE_CTRL* console = frame_console())
    connect(console, &LUM_CONSOLE_CTRL::busy_changed, this, [this](bool busy) {
      if (!busy) command_finished();
    });
  on_change();
}

void LUM_REPORT_TIMING_DLG::clear_data() {
  m_fields = LUM_REPORT_TIMING_FIELDS();
  m_detail_level_shown = m_fields.detail_level;
  m_engine_message->setVisible(false);
  write_back();
}

bool LUM_REPORT_TIMING_DLG::is_pinned() const { return m_pin->isChecked(); }

void LUM_REPORT_TIMING_DLG::after_compose() {
  if (m_fields.detail_level != m_detail_level_shown) {
    m_detail_level_shown = m_fields.detail_level;
    m_fields.detail_level_changed();
    write_back();
    return;
  }
  update_output_controls();
}

QString LUM_REPORT_TIMING_DLG::get_engine_message() const {
  return m_engine_message->isVisible() ? m_engine_message->text() : QString();
}

bool LUM_REPORT_TIMING_DLG::send() {
  LUM_FRAME_IFACE* frame = lum_get_frame();
  if (!MSG_ASSERT(frame != NULL, MODULE)) return false;
  LUM_CONSOLE_CTRL* console = frame->get_console();
  // Busy: nothing is sent and nothing is said (OK is greyed meanwhile).
  if (console == nullptr || console->is_busy() || m_watch_from >= 0) return false;
  m_engine_message->setVisible(false);
  m_watch_from = console->get_model()->row_count();
  const std::string command = get_command();
  if (m_fields.output.to_panel && !m_fields.output.panel_name.empty())
    frame->set_panel_to_select(m_fields.output.panel_name);
  get_ok_button()->setEnabled(false);
  console->run_command(command);
  return true;
}

void LUM_REPORT_TIMING_DLG::command_finished() {
  if (m_watch_from < 0) return;
  LUM_CONSOLE_CTRL* console = frame_console();
  const int from = m_watch_from;
  m_watch_from = -1;
  get_ok_button()->setEnabled(get_refusal().empty());
  if (console == nullptr) return;
  LUM_CONSOLE_MODEL* model = console->get_model();
  for (int row = from; row < model->row_count(); ++row) {
    if (model->row_kind(row) == static_cast<int>(MSG_KIND::ERROR) && model->row_level(row) == 0) {
      // Refused: the fields stay for the user to mend.
      const MSG_POST* post = model->row_message(row);
      m_engine_message->setText(QString::fromStdString(post ? post->get_text() : std::string(model->row_text(row))));
      m_engine_message->setVisible(true);
      if (!isVisible() && !cfg_is_on("dialog_auto_ok")) show();
      return;
    }
  }
  if (!is_pinned() && isVisible()) QDialog::accept();
}

void LUM_REPORT_TIMING_DLG::accept() {
  if (!get_refusal().empty()) return;
  send();
}

LUM_REPORT_TIMING_DLG* lum_get_report_timing_dlg() { return report_timing_dlg().data(); }

LUM_REPORT_TIMING_DLG* lum_show_report_timing_dlg(QWidget* parent) {
  if (lum_get_frame() == nullptr) return nullptr;
  QPointer<LUM_REPORT_TIMING_DLG>& dialog = report_timing_dlg();
  if (dialog.isNull()) dialog = new LUM_REPORT_TIMING_DLG(parent);
  if (!cfg_is_on("dialog_auto_ok")) {
    dialog->show();
    dialog->raise();
    dialog->activateWindow();
  }
  return dialog.data();
}

// ---- net timing ---------------------------------------------------------------------------

LUM_REPORT_NET_TIMING_DLG::LUM_REPORT_NET_TIMING_DLG(QWidget* parent)
    : LUM_DIALOG_BASE(parent, "Report Net Timing") {
  setObjectName("LUM_REPORT_NET_TIMING_DLG");
  setProperty("help_page", "dialogs#reports");
  add_choice("Worst nets by:", {"&Delay", "Fan-&out"}, &m_fields.mode, "mode");
  m_delay = add_edit("Number by d&elay:", &m_fields.nworst_delay, "nworst_delay");
  m_fanout = add_edit("Number by &fan-out:", &m_fields.nworst_fanout, "nworst_fanout");
  add_name_edit("&Nets:", &m_fields.nets, "nets");
  on_change();
}

void LUM_REPORT_NET_TIMING_DLG::after_compose() {
  m_delay->setEnabled(m_fields.nworst_delay_enabled());
  m_fanout->setEnabled(m_fields.nworst_fanout_enabled());
}

// ---- minimum pulse width ----------------------------------------------------------------------

LUM_REPORT_MIN_PULSE_WIDTH_DLG::LUM_REPORT_MIN_PULSE_WIDTH_DLG(QWidget* parent)
    : LUM_REPORT_OUTPUT_DLG(parent, "Report Minimum Pulse Width") {
  setObjectName("LUM_REPORT_MIN_PULSE_WIDTH_DLG");
  setProperty("help_page", "dialogs#reports");
  add_edit("&Number of rows:", &m_fields.nworst, "nworst");
  add_name_edit("&Targets:", &m_fields.targets, "targets");
  add_output_rows(&m_fields.output);
  on_change();
}

// ---- slack histogram ------------------------------------------------------------------------

LUM_CREATE_SLACK_HISTOGRAM_DLG::LUM_CREATE_SLACK_HISTOGRAM_DLG(QWidget* parent)
    : LUM_DIALOG_BASE(parent, "Create Slack Histogram") {
  setObjectName("LUM_CREATE_SLACK_HISTOGRAM_DLG");
  setProperty("help_page", "dialogs#reports");
  add_clock_combo("&Clock:", &m_fields.clock_name, "clock_name");
  add_time_edit("Ma&ximum slack:", &m_fields.max_slack, "max_slack");
  add_time_edit("Mi&nimum slack:", &m_fields.min_slack, "min_slack");
  add_edit("Number of &bins:", &m_fields.num_bins, "num_bins");
  add_edit("&Panel name:", &m_fields.panel_name, "panel_name");
  on_change();
}

void LUM_CREATE_SLACK_HISTOGRAM_DLG::after_compose() {
  // A new clock names the panel after it, over any name typed before.
  if (m_fields.clock_name == m_clock_shown) return;
  m_clock_shown = m_fields.clock_name;
  m_fields.clock_changed();
  write_back();
}

// ---- timing netlist --------------------------------------------------------------------------

LUM_CREATE_TIMING_NETLIST_DLG::LUM_CREATE_TIMING_NETLIST_DLG(QWidget* parent, const std::vector<std::string>& grades)
    : LUM_DIALOG_BASE(parent, "Create Timing Netlist") {
  setObjectName("LUM_CREATE_TIMING_NETLIST_DLG");
  setProperty("help_page", "dialogs#reports");
  add_choice("Netlist:", {"Post-&fit", "Post-&route", "Post-&map"}, &m_fields.netlist_kind, "netlist_kind");
  add_choice("Delay model:", {"&Slow", "F&ast"}, &m_fields.delay_model, "delay_model");
  m_grade = new QComboBox(this);
  m_grade->setObjectName("speed_grade");
  for (const std::string& grade : grades) m_grade->addItem(QString::fromStdString(grade));
  const int row = take_row();
  auto* label = new QLabel("Speed &grade:", this);
  label->setBuddy(m_grade);
  form()->addWidget(label, row, 0);
  form()->addWidget(m_grade, row, 1);
  bind_combo(m_grade, &m_fields.speed_grade);
  add_check("Keep &rise and fall delays apart", &m_fields.risefall, "risefall");
  on_change();
}

void LUM_CREATE_TIMING_NETLIST_DLG::after_compose() { m_grade->setEnabled(m_fields.speed_grade_enabled()); }

// ---- list paths --------------------------------------------------------------------------------

#define LUM_MSG_NO_PROJECT_OPEN "No project is open. Open a project to list paths/OLUM_NO_PROJECT_OPEN"

LUM_ADV_LIST_PATHS_DLG::LUM_ADV_LIST_PATHS_DLG(QWidget* parent) : LUM_DIALOG_BASE(parent, "List Paths") {
  setObjectName("LUM_ADV_LIST_PATHS_DLG");
  setProperty("help_page", "dialogs#reports");
  add_edit("&From:", &m_fields.from, "from");
  add_edit("&To:", &m_fields.to, "to");
  add_clock_combo("&Clock filter:", &m_fields.clock_filter, "clock_filter");
  add_edit("F&ile:", &m_fields.file_name, "file_name");
  add_edit("&Number of paths:", &m_fields.npaths, "npaths");
  auto* kinds = new QWidget(this);
  auto* grid = new QGridLayout(kinds);
  grid->setContentsMargins(0, 0, 0, 0);
  for (int kind = 0; kind < LUM_PATH_KIND_COUNT; ++kind) {
    auto* check = new QCheckBox(lum_path_kind_name(kind), kinds);
    check->setObjectName(lum_path_kind_name(kind));
    grid->addWidget(check, kind / 2, kind % 2);
    bind_check(check, &m_fields.kinds[kind]);
  }
  const int row = take_row();
  form()->addWidget(new QLabel("Paths:", this), row, 0, Qt::AlignTop);
  form()->addWidget(kinds, row, 1, 1, 2);
  on_change();
}

std::string LUM_ADV_LIST_PATHS_DLG::run_list_path() {
  LUM_FRAME_IFACE* frame = lum_get_frame();
  if (frame == nullptr || frame->get_state_flag(LUM_STATE_FLAG::PROJECT_IS_OPEN) != '1') {
    msg_show_catalogue_message(LUM_MSG_NO_PROJECT_OPEN);
    return std::string();
  }
  LUM_CONSOLE_CTRL* console = frame->get_console();
  MSG_REPORT* report = console != nullptr ? console->get_msg_report() : msg_get_default_report();
  auto post = [report](MSG_KIND kind, const char* id, const std::string& text) {
    if (report != nullptr) report->post(MSG_POST(kind, id, text));
  };
  const std::string command = get_command();
  post(MSG_KIND::INFO, "LUM_TCL_LIST_PATHS_COMMAND", "Running tcl command: " + command);
  std::string result;
  if (atcl_tcl_eval(command.c_str(), &result) != TCL_OK) {
    post(MSG_KIND::ERROR, "LUM_TCL_OUTPUT", result);
    return result;
  }
  if (result.empty()) return result;
  const std::string text = "Number of paths listed in report is " + result;
  post(MSG_KIND::INFO, "LUM_NUMBER_OF_PATHS_LISTED", text);
  return text;
}

void LUM_ADV_LIST_PATHS_DLG::accept() {
  // A failing command leaves the dialog open; its message is in the console.
  QApplication::setOverrideCursor(Qt::WaitCursor);
  run_list_path();
  QApplication::restoreOverrideCursor();
}

// ---- registration ------------------------------------------------------------------------------

namespace {

void take(const char* value, std::string* field) {
  if (lum_is_value_given(value)) *field = value;
}

void take_count(const ATCL_ARGS& args, int option, std::string* field) {
  bool given = false;
  const unsigned value = args.get_uint_arg_option(option, &given);
  if (given) *field = std::to_string(value);
}

void fill_net_timing(LUM_DIALOG_BASE& base, const ATCL_ARGS& args) {
  auto& f = static_cast<LUM_REPORT_NET_TIMING_DLG&>(base).fields();
  take_count(args, LUM_AUTO_ARG_NWORST_DELAY, &f.nworst_delay);
  take_count(args, LUM_AUTO_ARG_NWORST_FANOUT, &f.nworst_fanout);
  if (!f.nworst_fanout.empty() && f.nworst_delay.empty()) f.mode = LUM_NET_TIMING_BY_FANOUT;
  take(args.get_one_arg_pos_option(LUM_AUTO_ARG_NAME), &f.nets);
}

// The output options of a report command's arguments.
void take_output(const ATCL_ARGS& args, LUM_REPORT_OUTPUT& output) {
  if (const char* panel = args.get_one_arg_option(LUM_AUTO_ARG_PANEL_NAME)) {
    output.to_panel = *panel != 0;
    output.panel_name = panel;
  }
  if (const char* file = args.get_one_arg_option(LUM_AUTO_ARG_FILE); lum_is_value_given(file)) {
    output.to_file = true;
    output.file_name = file;
  }
  if (args.get_no_arg_option(LUM_AUTO_ARG_APPEND)) output.file_mode = LUM_FILE_MODE_APPEND;
  if (args.get_no_arg_option(LUM_AUTO_ARG_STDOUT)) output.to_console = true;
}

void fill_min_pulse_width(LUM_DIALOG_BASE& base, const ATCL_ARGS& args) {
  auto& f = static_cast<LUM_REPORT_MIN_PULSE_WIDTH_DLG&>(base).fields();
  take_count(args, LUM_AUTO_ARG_NWORST, &f.nworst);
  take(args.get_one_arg_pos_option(LUM_AUTO_ARG_TARGETS), &f.targets);
  take_output(args, f.output);
}

void fill_slack_histogram(LUM_DIALOG_BASE& base, const ATCL_ARGS& args) {
  auto& f = static_cast<LUM_CREATE_SLACK_HISTOGRAM_DLG&>(base).fields();
  take(args.get_one_arg_option(LUM_AUTO_ARG_CLOCK_NAME), &f.clock_name);
  take(args.get_one_arg_option(LUM_AUTO_ARG_MAX_SLACK), &f.max_slack);
  take(args.get_one_arg_option(LUM_AUTO_ARG_MIN_SLACK), &f.min_slack);
  take_count(args, LUM_AUTO_ARG_NUM_BINS, &f.num_bins);
  f.clock_changed();
  take(args.get_one_arg_option(LUM_AUTO_ARG_PANEL_NAME), &f.panel_name);
}

// lum_report_timing fills the frame's one report timing dialog and shows it
// (with dialog_auto_ok, presses its OK at once).
int open_report_timing(const LUM_DIALOG_REQUEST& request) {
  LUM_FRAME_IFACE* frame = lum_get_frame();
  LUM_REPORT_TIMING_DLG* dialog = lum_show_report_timing_dlg(dynamic_cast<QWidget*>(frame));
  if (!MSG_ASSERT(dialog != NULL, "lum_tcl")) return TCL_OK;
  const ATCL_ARGS& args = *request.args;
  LUM_REPORT_TIMING_FIELDS& f = dialog->fields();
  f = LUM_REPORT_TIMING_FIELDS();
  take(args.get_one_arg_option(LUM_AUTO_ARG_FROM_CLOCK), &f.from_clock);
  take(args.get_one_arg_option(LUM_AUTO_ARG_TO_CLOCK), &f.to_clock);
  take(args.get_one_arg_option(LUM_AUTO_ARG_FROM), &f.from);
  take(args.get_one_arg_option(LUM_AUTO_ARG_THRU), &f.thru);
  take(args.get_one_arg_option(LUM_AUTO_ARG_TO), &f.to);
  const bool hold = args.get_no_arg_option(LUM_AUTO_ARG_HOLD), recovery = args.get_no_arg_option(LUM_AUTO_ARG_RECOVERY),
             removal = args.get_no_arg_option(LUM_AUTO_ARG_REMOVAL);
  if (hold || recovery || removal) {
    f.setup = args.get_no_arg_option(LUM_AUTO_ARG_SETUP);
    f.hold = hold;
    f.recovery = recovery;
    f.removal = removal;
  }
  take_count(args, LUM_AUTO_ARG_NPATHS, &f.npaths);
  take(args.get_one_arg_option(LUM_AUTO_ARG_LESS_THAN_SLACK), &f.less_than_slack);
  if (args.get_no_arg_option(LUM_AUTO_ARG_SUMMARY)) {
    f.detail_level = LUM_DETAIL_LEVEL_SUMMARY;
    f.detail_level_changed();
  }
  take_output(args, f.output);
  dialog->write_back();
  if (cfg_is_on("dialog_auto_ok")) dialog->send();
  return TCL_OK;
}

template <typename DIALOG>
std::function<std::unique_ptr<LUM_DIALOG_BASE>(QWidget*)> maker() {
  return [](QWidget* parent) -> std::unique_ptr<LUM_DIALOG_BASE> { return std::make_unique<DIALOG>(parent); };
}

const LUM_DIALOG_REGISTRATION registrations[] = {
    LUM_DIALOG_REGISTRATION{
        {"on_report_net_timing", "lum_report_net_timing", maker<LUM_REPORT_NET_TIMING_DLG>(), fill_net_timing}},
    LUM_DIALOG_REGISTRATION{{"on_report_min_pulse_width", "lum_report_min_pulse_width",
                             maker<LUM_REPORT_MIN_PULSE_WIDTH_DLG>(), fill_min_pulse_width}},
    LUM_DIALOG_REGISTRATION{{"on_create_slack_histogram", "lum_create_slack_histogram",
                             maker<LUM_CREATE_SLACK_HISTOGRAM_DLG>(), fill_slack_histogram}},
    LUM_DIALOG_REGISTRATION{{"on_create_timing_netlist", "",
                             [](QWidget* parent) -> std::unique_ptr<LUM_DIALOG_BASE> {
                               LUM_FRAME_IFACE* frame = lum_get_frame();
                               return std::make_unique<LUM_CREATE_TIMING_NETLIST_DLG>(
                                   parent, frame ? frame->get_speed_grades() : std::vector<std::string>());
                             },
                             nullptr}},
};

}  // namespace

void lum_install_report_timing_opener(bool install) {
  lum_set_dialog_opener("lum_report_timing", install ? LUM_DIALOG_OPENER(open_report_timing) : LUM_DIALOG_OPENER());
}
