// The common frame of the constraint and report dialogs.
//
// HOW TO ADD A DIALOG
//  1. Fields and composition first, with no widget: a plain struct of the
//     dialog's fields with `std::string compose() const` (the command built
//     from scratch, in the dialog's option order) and, when some field values
//     give a command the engine refuses, `std::string refusal() const` (one
//     line, empty when the command is fine). Test it with a table of fields
//     and expected texts; see lum_constraint_fields.hh.
//  2. The window: derive from LUM_DIALOG_BASE, keep the fields struct as a
//     member, and in the constructor add one row per field with the add_*
//     helpers below (each binds its control to the field: a change of the
//     control writes the field and recomposes). Override compose() and
//     refusal() to call the struct's, and after_compose() for what follows a
//     composition (controls enabled by a mode, a preview repainted). End the
//     constructor with on_change().
//  3. Registration: in the dialog's .cc, a static LUM_DIALOG_REGISTRATION
//     (lum_dialog_registry.hh) names the frame's handler of the menu command
//     ("on_set_false_path"), the dialog-opening Tcl command (if any), how to make the dialog and how to
//     fill it from that command's arguments. The frame then enables the menu
//     entry and tool bar button by the command's rule, opens the dialog from
//     them, and the Tcl command opens it too. No frame file needs an edit.
//  4. Tests: a GUI test that opens it from its menu entry and from its Tcl
//     command, types into its controls and presses OK.
//
// What the frame gives every dialog: the live command line in a read-only
// edit (object name "command"); under it a one-line reason while OK is
// disabled (object name "refusal"); OK and Cancel (OK only returns Accepted,
// the caller sends the command through the console's run_command; Cancel
// sends nothing); a size grip (the dialog is resizable, the field column
// grows); "..." buttons that open the name finder and put its result into
// their field; clock combo boxes filled with the frame's known clocks; time
// unit labels with the frame's current unit.
#pragma once

#include <QDialog>
#include <QString>
#include <QStringList>

#include <functional>
#include <string>
#include <vector>

class QButtonGroup;
class QCheckBox;
class QComboBox;
class QDialogButtonBox;
class QGridLayout;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QToolButton;

class LUM_DIALOG_BASE : public QDialog {
  Q_OBJECT

 public:
  LUM_DIALOG_BASE(QWidget* parent, const QString& title);
  ~LUM_DIALOG_BASE() override;

  // Reads nothing from the controls (they write their fields as they change):
  // composes the command, shows it and the refusal reason, enables OK, then
  // runs after_compose().
  void on_change();
  // Puts every field's value back into its control (after a field was set
  // from outside: a Tcl command's arguments, the name finder), then recomposes.
  void write_back();

  const std::string& get_command() const { return m_command; }
  const std::string& get_refusal() const { return m_refusal; }

  QLineEdit* get_command_edit() const { return m_command_edit; }
  QLabel* get_refusal_label() const { return m_refusal_label; }
  QPushButton* get_ok_button() const;

  // The name finder used by the "..." buttons: returns the SDC expression
  // chosen, or empty when cancelled. Tests replace it.
  using NAME_FINDER = std::function<std::string(QWidget* parent)>;
  static void set_name_finder(NAME_FINDER finder);
  static std::string run_name_finder(QWidget* parent);

 protected:
  virtual std::string compose() const = 0;
  virtual std::string refusal() const { return std::string(); }
  virtual void after_compose() {}

  // The grid of field rows: label in column 0, control in column 1 (which
  // stretches), an extra button or unit label in column 2.
  QGridLayout* form() const { return m_form; }
  // The next free row of the form (counted, so that rows laid out by hand
  // and by the helpers do not overlap).
  int take_row();

  // Rows bound to fields. object_name names the control for tests.
  QLineEdit* add_edit(const QString& label, std::string* field, const char* object_name);
  // An edit with the frame's time unit beside it.
  QLineEdit* add_time_edit(const QString& label, std::string* field, const char* object_name);
  // An edit with a "..." button that opens the name finder (object name
  // object_name + "_finder").
  QLineEdit* add_name_edit(const QString& label, std::string* field, const char* object_name);
  // An editable combo box listing the frame's clocks; choosing one copies it
  // into the edit part.
  QComboBox* add_clock_combo(const QString& label, std::string* field, const char* object_name);
  QCheckBox* add_check(const QString& text, bool* field, const char* object_name);
  // Radio buttons in one row, ids 0.. in the order of texts.
  QButtonGroup* add_choice(const QString& label, const QStringList& texts, int* field, const char* object_name);

  // Binders for controls laid out by the dialog itself.
  void bind_edit(QLineEdit* edit, std::string* field);
  void bind_combo(QComboBox* combo, std::string* field);
  void bind_check(QCheckBox* check, bool* field);
  void bind_choice(QButtonGroup* group, int* field);
  QToolButton* make_name_finder_button(QLineEdit* edit, std::string* field, const char* object_name);

  // The frame's time unit, e.g. "ns" (empty before the engine told one).
  static QString time_unit();
  static std::vector<std::string> known_clocks();

 private:
  QGridLayout* m_form = nullptr;
  QLineEdit* m_command_edit = nullptr;
  QLabel* m_refusal_label = nullptr;
  QDialogButtonBox* m_buttons = nullptr;
  std::string m_command;
  std::string m_refusal;
  std::vector<std::function<void()>> m_write_backs;
  bool m_writing_back = false;
  int m_rows = 0;
};
