// The report dialogs: report timing (modeless, can be pinned open), report
// net timing, report minimum pulse width, create slack histogram, create
// timing netlist and list paths. Each keeps its fields struct
// (lum_report_dlg_fields.hh) and binds its controls to it.
#pragma once

#include <functional>

#include "dialogs/lum_dialog_base.hh"
#include "dialogs/lum_report_dlg_fields.hh"

class QCheckBox;
class QComboBox;
class QLabel;
class QToolButton;

// The output rows shared by report timing and minimum pulse width: panel,
// file (with browse, open and the overwrite/append choice) and console.
class LUM_REPORT_OUTPUT_DLG : public LUM_DIALOG_BASE {
 public:
  LUM_REPORT_OUTPUT_DLG(QWidget* parent, const QString& title) : LUM_DIALOG_BASE(parent, title) {}

  // The file chooser of the browse button: the chosen path, or empty when
  // cancelled. Tests replace it.
  using FILE_CHOOSER = std::function<std::string(QWidget* parent, const std::string& current)>;
  static void set_file_chooser(FILE_CHOOSER chooser);

 protected:
  void add_output_rows(LUM_REPORT_OUTPUT* output);
  // Ticks the console when the report goes nowhere else and enables the
  // output controls; call from after_compose().
  void update_output_controls();

 private:
  LUM_REPORT_OUTPUT* m_output = nullptr;
  QWidget* m_panel_name = nullptr;
  QWidget* m_file_name = nullptr;
  QWidget* m_browse = nullptr;
  QWidget* m_open = nullptr;
  QWidget* m_modes = nullptr;
};

// The main path report. It is modeless: OK sends the command and closes the
// dialog unless the push-pin keeps it open; while the engine is busy OK sends
// nothing. The frame keeps one instance (lum_show_report_timing_dlg).
class LUM_REPORT_TIMING_DLG : public LUM_REPORT_OUTPUT_DLG {
  Q_OBJECT

 public:
  explicit LUM_REPORT_TIMING_DLG(QWidget* parent);
  LUM_REPORT_TIMING_FIELDS& fields() { return m_fields; }
  // The fields back to their defaults (a project opened, a flow finished).
  void clear_data();
  bool is_pinned() const;
  QToolButton* get_pin_button() const { return m_pin; }

  // Presses OK: sends the command unless the engine is busy, and asks the
  // frame to select the panel once it exists. Returns whether it was sent.
  // When the engine has run it, the dialog closes unless pinned; when the
  // engine refused it, the dialog stays with the engine's message.
  bool send();
  // The engine's message about the last command sent, empty if none.
  QString get_engine_message() const;
  void accept() override;

 protected:
  std::string compose() const override { return m_fields.compose(); }
  void after_compose() override;

 private:
  void command_finished();

  LUM_REPORT_TIMING_FIELDS m_fields;
  int m_detail_level_shown = LUM_DETAIL_LEVEL_FULL_PATH;
  QToolButton* m_pin = nullptr;
  QLabel* m_engine_message = nullptr;
  // Console rows from which the running command's output starts; -1 while
  // no command of this dialog runs.
  int m_watch_from = -1;
};

// The frame's one report timing dialog, made on first use with parent as its
// parent window, shown and raised. Null when no frame exists.
LUM_REPORT_TIMING_DLG* lum_show_report_timing_dlg(QWidget* parent);
// The frame's report timing dialog if it was made, else null.
LUM_REPORT_TIMING_DLG* lum_get_report_timing_dlg();
// Lets "lum_report_timing" fill and show that dialog (false: no longer).
void lum_install_report_timing_opener(bool install);

class LUM_REPORT_NET_TIMING_DLG : public LUM_DIALOG_BASE {
 public:
  explicit LUM_REPORT_NET_TIMING_DLG(QWidget* parent);
  LUM_NET_TIMING_FIELDS& fields() { return m_fields; }

 protected:
  std::string compose() const override { return m_fields.compose(); }
  void after_compose() override;

 private:
  LUM_NET_TIMING_FIELDS m_fields;
  QWidget* m_delay = nullptr;
  QWidget* m_fanout = nullptr;
};

class LUM_REPORT_MIN_PULSE_WIDTH_DLG : public LUM_REPORT_OUTPUT_DLG {
 public:
  explicit LUM_REPORT_MIN_PULSE_WIDTH_DLG(QWidget* parent);
  LUM_MIN_PULSE_WIDTH_FIELDS& fields() { return m_fields; }

 protected:
  std::string compose() const override { return m_fields.compose(); }
  void after_compose() override { update_output_controls(); }

 private:
  LUM_MIN_PULSE_WIDTH_FIELDS m_fields;
};

class LUM_CREATE_SLACK_HISTOGRAM_DLG : public LUM_DIALOG_BASE {
 public:
  explicit LUM_CREATE_SLACK_HISTOGRAM_DLG(QWidget* parent);
  LUM_SLACK_HISTOGRAM_FIELDS& fields() { return m_fields; }

 protected:
  std::string compose() const override { return m_fields.compose(); }
  void after_compose() override;

 private:
  LUM_SLACK_HISTOGRAM_FIELDS m_fields;
  std::string m_clock_shown;
};

class LUM_CREATE_TIMING_NETLIST_DLG : public LUM_DIALOG_BASE {
 public:
  // grades: the speed grades of the project's device family, in order.
  LUM_CREATE_TIMING_NETLIST_DLG(QWidget* parent, const std::vector<std::string>& grades);
  LUM_TIMING_NETLIST_FIELDS& fields() { return m_fields; }

 protected:
  std::string compose() const override { return m_fields.compose(); }
  void after_compose() override;

 private:
  LUM_TIMING_NETLIST_FIELDS m_fields;
  QComboBox* m_grade = nullptr;
};

// List paths: OK evaluates the list_path command in the front end's
// interpreter and reports the outcome in the console's messages.
class LUM_ADV_LIST_PATHS_DLG : public LUM_DIALOG_BASE {
 public:
  explicit LUM_ADV_LIST_PATHS_DLG(QWidget* parent);
  LUM_LIST_PATHS_FIELDS& fields() { return m_fields; }
  // Evaluates the command; the message text posted (number of paths or the error).
  std::string run_list_path();
  void accept() override;

 protected:
  std::string compose() const override { return m_fields.compose(); }

 private:
  LUM_LIST_PATHS_FIELDS m_fields;
};
