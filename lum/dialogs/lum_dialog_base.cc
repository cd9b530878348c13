#include "dialogs/lum_dialog_base.hh"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QShortcut>
#include <QToolButton>
#include <QVBoxLayout>

#include "dialogs/lum_name_finder_dlg.hh"
#include "engine/lum_frame_iface.hh"
#include "engine/lum_help.hh"

namespace {

LUM_DIALOG_BASE::NAME_FINDER& name_finder_override() {
  static LUM_DIALOG_BASE::NAME_FINDER finder;
  return finder;
}

}  // namespace

LUM_DIALOG_BASE::LUM_DIALOG_BASE(QWidget* parent, const QString& title) : QDialog(parent) {
  setWindowTitle(title);
  setSizeGripEnabled(true);
  setModal(true);

  // F1 opens the dialog's own help page: the constraint dialogs share one
  // section, a dialog that belongs elsewhere names its page in the property
  // "help_page" (read when the key is pressed, so constructors may set it).
  auto* help = new QShortcut(QKeySequence(Qt::Key_F1), this);
  help->setContext(Qt::WidgetWithChildrenShortcut);
  connect(help, &QShortcut::activated, this, [this] {
    const QString page = property("help_page").toString();
    lum_show_help(page.isEmpty() ? "dialogs#constraints" : page.toStdString());
  });

  auto* outer = new QVBoxLayout(this);
  m_form = new QGridLayout;
  m_form->setColumnStretch(1, 1);
  outer->addLayout(m_form);
  outer->addStretch(1);

  auto* command_label = new QLabel("Command:", this);
  outer->addWidget(command_label);
  m_command_edit = new QLineEdit(this);
  m_command_edit->setObjectName("command");
  m_command_edit->setReadOnly(true);
  m_command_edit->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  m_command_edit->setMinimumWidth(420);
  command_label->setBuddy(m_command_edit);
  outer->addWidget(m_command_edit);

  m_refusal_label = new QLabel(this);
  m_refusal_label->setObjectName("refusal");
  m_refusal_label->setStyleSheet("color: #b00020;");
  m_refusal_label->setVisible(false);
  outer->addWidget(m_refusal_label);

  m_buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  connect(m_buttons, &QDialogButtonBox::accepted, this, [this] {
    if (m_refusal.empty()) accept();
  });
  connect(m_buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  outer->addWidget(m_buttons);
}

LUM_DIALOG_BASE::~LUM_DIALOG_BASE() = default;

QPushButton* LUM_DIALOG_BASE::get_ok_button() const { return m_buttons->button(QDialogButtonBox::Ok); }

void LUM_DIALOG_BASE::on_change() {
  if (m_writing_back) return;
  m_command = compose();
  m_refusal = refusal();
  m_command_edit->setText(QString::fromStdString(m_command));
  m_command_edit->setCursorPosition(0);
  m_refusal_label->setText(QString::fromStdString(m_refusal));
  m_refusal_label->setVisible(!m_refusal.empty());
  get_ok_button()->setEnabled(m_refusal.empty());
  after_compose();
}

void LUM_DIALOG_BASE::write_back() {
  m_writing_back = true;
  for (auto& write : m_write_backs) write();
  m_writing_back = false;
  on_change();
}

// ---- the name finder ---------------------------------------------------------------

void LUM_DIALOG_BASE::set_name_finder(NAME_FINDER finder) { name_finder_override() = std::move(finder); }

std::string LUM_DIALOG_BASE::run_name_finder(QWidget* parent) {
  if (name_finder_override()) return name_finder_override()(parent);
  LUM_NAME_FINDER_DLG finder(parent);
  if (finder.exec() != QDialog::Accepted) return std::string();
  return finder.get_sdc_expression();
}

// ---- frame data ----------------------------------------------------------------------

QString LUM_DIALOG_BASE::time_unit() {
  LUM_FRAME_IFACE* frame = lum_get_frame();
  return frame ? QString::fromStdString(frame->get_time_unit()) : QString();
}

std::vector<std::string> LUM_DIALOG_BASE::known_clocks() {
  LUM_FRAME_IFACE* frame = lum_get_frame();
  return frame ? frame->get_clock_names() : std::vector<std::string>();
}

// ---- binders -----------------------------------------------------------------------

void LUM_DIALOG_BASE::bind_edit(QLineEdit* edit, std::string* field) {
  edit->setText(QString::fromStdString(*field));
  connect(edit, &QLineEdit::textChanged, this, [this, field](const QString& text) {
    if (m_writing_back) return;
    *field = text.toStdString();
    on_change();
  });
  m_write_backs.push_back([edit, field] { edit->setText(QString::fromStdString(*field)); });
}

void LUM_DIALOG_BASE::bind_combo(QComboBox* combo, std::string* field) {
  combo->setEditable(true);
  combo->setInsertPolicy(QComboBox::NoInsert);
  combo->setEditText(QString::fromStdString(*field));
  connect(combo, &QComboBox::editTextChanged, this, [this, field](const QString& text) {
    if (m_writing_back) return;
    *field = text.toStdString();
    on_change();
  });
  // A choice from the list lands in the edit part (and so in the field).
  connect(combo, &QComboBox::activated, this, [combo](int index) {
    if (index >= 0) combo->setEditText(combo->itemText(index));
  });
  m_write_backs.push_back([combo, field] { combo->setEditText(QString::fromStdString(*field)); });
}

void LUM_DIALOG_BASE::bind_check(QCheckBox* check, bool* field) {
  check->setChecked(*field);
  connect(check, &QCheckBox::toggled, this, [this, field](bool on) {
    if (m_writing_back) return;
    *field = on;
    on_change();
  });
  m_write_backs.push_back([check, field] { check->setChecked(*field); });
}

void LUM_DIALOG_BASE::bind_choice(QButtonGroup* group, int* field) {
  if (QAbstractButton* button = group->button(*field)) button->setChecked(true);
  connect(group, &QButtonGroup::idToggled, this, [this, field](int id, bool on) {
    if (m_writing_back || !on) return;
    *field = id;
    on_change();
  });
  m_write_backs.push_back([group, field] {
    if (QAbstractButton* button = group->button(*field)) button->setChecked(true);
  });
}

QToolButton* LUM_DIALOG_BASE::make_name_finder_button(QLineEdit* edit, std::string* field, const char* object_name) {
  auto* button = new QToolButton(this);
  button->setText("...");
  button->setToolTip("Find names in the timing netlist");
  button->setObjectName(QString(object_name) + "_finder");
  connect(button, &QToolButton::clicked, this, [this, edit, field] {
    const std::string expression = run_name_finder(this);
    // Cancel or an empty result leaves the field as it was.
    if (expression.empty()) return;
    *field = expression;
    write_back();
    edit->setFocus();
  });
  return button;
}

// ---- rows ------------------------------------------------------------------------------

int LUM_DIALOG_BASE::take_row() { return m_rows++; }

namespace {
QLabel* row_label(QWidget* parent, const QString& text, QWidget* buddy) {
  auto* label = new QLabel(text, parent);
  label->setBuddy(buddy);
  return label;
}
}  // namespace

QLineEdit* LUM_DIALOG_BASE::add_edit(const QString& label, std::string* field, const char* object_name) {
  auto* edit = new QLineEdit(this);
  edit->setObjectName(object_name);
  const int row = take_row();
  m_form->addWidget(row_label(this, label, edit), row, 0);
  m_form->addWidget(edit, row, 1);
  bind_edit(edit, field);
  return edit;
}

QLineEdit* LUM_DIALOG_BASE::add_time_edit(const QString& label, std::string* field, const char* object_name) {
  QLineEdit* edit = add_edit(label, field, object_name);
  auto* unit = new QLabel(time_unit(), this);
  unit->setObjectName(QString(object_name) + "_unit");
  m_form->addWidget(unit, m_rows - 1, 2);
  return edit;
}

QLineEdit* LUM_DIALOG_BASE::add_name_edit(const QString& label, std::string* field, const char* object_name) {
  QLineEdit* edit = add_edit(label, field, object_name);
  m_form->addWidget(make_name_finder_button(edit, field, object_name), m_rows - 1, 2);
  return edit;
}

QComboBox* LUM_DIALOG_BASE::add_clock_combo(const QString& label, std::string* field, const char* object_name) {
  auto* combo = new QComboBox(this);
  combo->setObjectName(object_name);
  combo->setEditable(true);
  for (const std::string& clock : known_clocks()) combo->addItem(QString::fromStdString(clock));
  const int row = take_row();
  m_form->addWidget(row_label(this, label, combo), row, 0);
  m_form->addWidget(combo, row, 1);
  bind_combo(combo, field);
  return combo;
}

QCheckBox* LUM_DIALOG_BASE::add_check(const QString& text, bool* field, const char* object_name) {
  auto* check = new QCheckBox(text, this);
  check->setObjectName(object_name);
  m_form->addWidget(check, take_row(), 1, 1, 2);
  bind_check(check, field);
  return check;
}

QButtonGroup* LUM_DIALOG_BASE::add_choice(const QString& label, const QStringList& texts, int* field,
                                          const char* object_name) {
  auto* group = new QButtonGroup(this);
  group->setObjectName(object_name);
  auto* row_widget = new QWidget(this);
  auto* layout = new QHBoxLayout(row_widget);
  layout->setContentsMargins(0, 0, 0, 0);
  for (int i = 0; i < texts.size(); ++i) {
    auto* radio = new QRadioButton(texts[i], row_widget);
    radio->setObjectName(QString("%1_%2").arg(object_name).arg(i));
    group->addButton(radio, i);
    layout->addWidget(radio);
  }
  layout->addStretch(1);
  const int row = take_row();
  m_form->addWidget(new QLabel(label, this), row, 0);
  m_form->addWidget(row_widget, row, 1, 1, 2);
  bind_choice(group, field);
  return group;
}
