#include "frame/lum_main_menu.hh"

#include <QAction>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>
#include <QVBoxLayout>

#include <tinyxml2.h>

#include "frame/lum_frame_commands.hh"
#include "platform/atcl.hh"
#include "platform/cfg.hh"
#include "platform/msg.hh"

namespace {

const char* const MODULE = "lum_main_menu";

QString attr(const tinyxml2::XMLElement* e, const char* name) {
  const char* v = e->Attribute(name);
  return v ? QString::fromUtf8(v) : QString();
}

std::string child_text(const tinyxml2::XMLElement* e, const char* name) {
  const tinyxml2::XMLElement* child = e->FirstChildElement(name);
  const char* text = child ? child->GetText() : nullptr;
  return text ? text : "";
}

void fill_fixed_menu(QMenu* menu, const tinyxml2::XMLElement* element, const LUM_MENU_TARGETS& targets) {
  for (const tinyxml2::XMLElement* e = element->FirstChildElement(); e; e = e->NextSiblingElement()) {
    const std::string tag = e->Name();
    if (tag == "item") {
      if (QAction* action = targets.action_for ? targets.action_for(e->UnsignedAttribute("id")) : nullptr)
        menu->addAction(action);
    } else if (tag == "separator") {
      menu->addSeparator();
    } else if (tag == "menu") {
      fill_fixed_menu(menu->addMenu(attr(e, "name")), e, targets);
    } else if (tag == "recent") {
      QMenu* recent = menu->addMenu(attr(e, "name"));
      recent->setObjectName("RecentProjects");
      if (targets.recent_menu) targets.recent_menu(recent);
    }
  }
}

// The top-level popup of the bar whose text, without "&", is name.
QMenu* find_popup(QMenuBar* bar, const QString& name) {
  for (QAction* action : bar->actions())
    if (action->menu() && lum_menu_text_without_ampersands(action->text()) == name) return action->menu();
  return nullptr;
}

QAction* find_bar_action(QMenuBar* bar, const QString& name) {
  for (QAction* action : bar->actions())
    if (action->menu() && lum_menu_text_without_ampersands(action->text()) == name) return action;
  return nullptr;
}

QAction* find_item(QMenu* popup, const QString& name) {
  for (QAction* action : popup->actions())
    if (!action->isSeparator() && lum_menu_text_without_ampersands(action->text()) == name) return action;
  return nullptr;
}

}  // namespace

QString lum_menu_text_without_ampersands(const QString& text) {
  QString t = text;
  return t.remove('&');
}

bool lum_build_frame_menus(const char* xml, QMenuBar* menu_bar, QToolBar* tool_bar, const LUM_MENU_TARGETS& targets) {
  tinyxml2::XMLDocument document;
  if (xml == nullptr || document.Parse(xml) != tinyxml2::XML_SUCCESS) return false;
  const tinyxml2::XMLElement* root = document.RootElement();
  if (root == nullptr) return false;
  if (const tinyxml2::XMLElement* bar = root->FirstChildElement("menubar"); bar && menu_bar) {
    for (const tinyxml2::XMLElement* m = bar->FirstChildElement("menu"); m; m = m->NextSiblingElement("menu"))
      fill_fixed_menu(menu_bar->addMenu(attr(m, "name")), m, targets);
  }
  if (const tinyxml2::XMLElement* tools = root->FirstChildElement("toolbar"); tools && tool_bar) {
    for (const tinyxml2::XMLElement* e = tools->FirstChildElement(); e; e = e->NextSiblingElement()) {
      const std::string tag = e->Name();
      if (tag == "separator") tool_bar->addSeparator();
      else if (tag == "item" && targets.action_for)
        if (QAction* action = targets.action_for(e->UnsignedAttribute("id"))) tool_bar->addAction(action);
    }
  }
  return true;
}

std::string lum_compose_quick_command(const std::string& command_template, const std::string& field1,
                                      const std::string& field2, bool has_second_field) {
  std::string out;
  for (size_t i = 0; i < command_template.size(); ++i) {
    if (command_template[i] == '$' && i + 1 < command_template.size()) {
      if (command_template[i + 1] == '1') {
        out += field1;
        ++i;
        continue;
      }
      if (command_template[i + 1] == '2' && has_second_field) {
        out += field2;
        ++i;
        continue;
      }
    }
    out += command_template[i];
  }
  return out;
}

// ---- prompt dialog ----------------------------------------------------------------

LUM_TCL_ARG_PROMPT_DLG::LUM_TCL_ARG_PROMPT_DLG(const LUM_MENUITEM& item, QWidget* parent)
    : QDialog(parent), m_item(item) {
  setWindowTitle(QString::fromStdString(item.dialog_title));
  setSizeGripEnabled(true);
  auto* layout = new QVBoxLayout(this);
  if (!item.dialog_info.empty()) {
    auto* info = new QLabel(QString::fromStdString(item.dialog_info));
    info->setWordWrap(true);
    layout->addWidget(info);
  }
  auto* form = new QFormLayout;
  m_field1 = new QLineEdit(QString::fromStdString(item.field1_default));
  form->addRow(QString::fromStdString(item.field1_label), m_field1);
  if (item.has_second_field) {
    m_field2 = new QLineEdit(QString::fromStdString(item.field2_default));
    form->addRow(QString::fromStdString(item.field2_label), m_field2);
  }
  m_preview = new QLineEdit;
  m_preview->setReadOnly(true);
  form->addRow("Command:", m_preview);
  layout->addLayout(form);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  layout->addWidget(buttons);
  connect(m_field1, &QLineEdit::textChanged, this, [this] { update_preview(); });
  if (m_field2) connect(m_field2, &QLineEdit::textChanged, this, [this] { update_preview(); });
  update_preview();
  resize(480, sizeHint().height());
}

void LUM_TCL_ARG_PROMPT_DLG::update_preview() {
  m_preview->setText(QString::fromStdString(get_command()));
}

std::string LUM_TCL_ARG_PROMPT_DLG::get_command() const {
  return lum_compose_quick_command(m_item.command, m_field1->text().toStdString(),
                                   m_field2 ? m_field2->text().toStdString() : std::string(),
                                   m_item.has_second_field);
}

// ---- site menu files ----------------------------------------------------------------

LUM_MENU_FILES::LUM_MENU_FILES()
    : m_main(std::make_unique<tinyxml2::XMLDocument>()), m_extension(std::make_unique<tinyxml2::XMLDocument>()) {}

LUM_MENU_FILES::~LUM_MENU_FILES() = default;

void LUM_MENU_FILES::load(const std::string& main_path, const std::string& extension_path) {
  m_main->Clear();
  m_extension->Clear();
  m_problems.clear();
  m_main_name = main_path.substr(main_path.find_last_of('/') + 1);
  m_extension_name = extension_path.substr(extension_path.find_last_of('/') + 1);
  // A missing main file is no mistake (a site may not have one); a file that
  // is there but does not parse is said once, and the built-in menus stay.
  if (!main_path.empty() && QFileInfo(QString::fromStdString(main_path)).isFile() &&
      m_main->LoadFile(main_path.c_str()) != tinyxml2::XML_SUCCESS) {
    m_problems.push_back(m_main_name + " is not valid XML (line " + std::to_string(m_main->ErrorLineNum()) +
                         "): its menu entries are left out");
    m_main->Clear();
  }
  if (extension_path.empty()) return;
  if (!QFileInfo(QString::fromStdString(extension_path)).isFile()) {
    m_problems.push_back("The menu file " + extension_path + " named by lum_extension_command_file does not exist");
  } else if (m_extension->LoadFile(extension_path.c_str()) != tinyxml2::XML_SUCCESS) {
    m_problems.push_back(m_extension_name + " is not valid XML (line " + std::to_string(m_extension->ErrorLineNum()) +
                         "): its menu entries are left out");
    m_extension->Clear();
  }
}

void LUM_MENU_FILES::note_unknown(const tinyxml2::XMLElement* element) {
  const std::string& file = element->GetDocument() == m_extension.get() ? m_extension_name : m_main_name;
  m_problems.push_back((file.empty() ? std::string("menu file") : file) + " line " +
                       std::to_string(element->GetLineNum()) + ": unknown element <" + element->Name() +
                       "> left out");
}

bool LUM_MENU_FILES::load_main_from_text(const char* xml) {
  m_main->Clear();
  if (m_main->Parse(xml) == tinyxml2::XML_SUCCESS) return true;
  m_main->Clear();
  return false;
}

void LUM_MENU_FILES::merge_into(QMenuBar* menu_bar, std::function<void(unsigned id)> on_command) {
  m_on_command = std::move(on_command);
  merge_document(*m_main, menu_bar);
  merge_document(*m_extension, menu_bar);
}

void LUM_MENU_FILES::merge_document(tinyxml2::XMLDocument& document, QMenuBar* menu_bar) {
  tinyxml2::XMLElement* root = document.RootElement();
  if (root == nullptr || menu_bar == nullptr) return;
  for (tinyxml2::XMLElement* m = root->FirstChildElement(); m; m = m->NextSiblingElement()) {
    if (std::string(m->Name()) != "menu") {
      note_unknown(m);
      continue;
    }
    const QString name = attr(m, "name");
    if (QMenu* popup = find_popup(menu_bar, name)) {
      append_to_menu(popup, m);
      continue;
    }
    const QString before = attr(m, "insert_before");
    QAction* before_action = before.isEmpty() ? nullptr : find_bar_action(menu_bar, before);
    if (before_action == nullptr) continue;
    auto* popup = new QMenu(name, menu_bar);
    append_to_menu(popup, m);
    if (popup->actions().isEmpty()) {
      delete popup;
      continue;
    }
    menu_bar->insertMenu(before_action, popup);
  }
}

void LUM_MENU_FILES::append_to_menu(QMenu* popup, tinyxml2::XMLElement* menu_element) {
  if (!MSG_ASSERT(popup != NULL, MODULE) || !MSG_ASSERT(menu_element != NULL, MODULE)) return;
  for (tinyxml2::XMLElement* e = menu_element->FirstChildElement(); e; e = e->NextSiblingElement()) {
    if (attr(e, "debug") == "true" && !cfg_is_on("lum_show_debug_commands")) continue;
    const QString before = attr(e, "insert_before");
    QAction* before_action = before.isEmpty() ? nullptr : find_item(popup, before);
    const std::string tag = e->Name();
    QAction* added = nullptr;
    if (tag == "menu") {
      auto* sub = new QMenu(attr(e, "name"), popup);
      append_to_menu(sub, e);
      added = sub->menuAction();
    } else if (tag == "menuitem" && attr(e, "type") == "separator") {
      added = new QAction(popup);
      added->setSeparator(true);
    } else if (tag == "menuitem") {
      if (m_menuitems.size() > LUM_ID_QUICK_COMMAND_MAX - LUM_ID_QUICK_COMMAND_MIN) continue;
      LUM_MENUITEM item;
      item.command = child_text(e, "tcl");
      item.where = child_text(e, "run_in") == "lum" ? LUM_MENUITEM::IN_FRONT_END : LUM_MENUITEM::IN_ENGINE;
      if (const tinyxml2::XMLElement* dialog = e->FirstChildElement("dialog")) {
        item.has_dialog = true;
        item.dialog_title = child_text(dialog, "title");
        item.dialog_info = child_text(dialog, "info");
        const tinyxml2::XMLElement* field = dialog->FirstChildElement("field");
        if (field) {
          item.field1_label = field->GetText() ? field->GetText() : "";
          item.field1_default = field->Attribute("default") ? field->Attribute("default") : "";
          field = field->NextSiblingElement("field");
        }
        if (field) {
          item.has_second_field = true;
          item.field2_label = field->GetText() ? field->GetText() : "";
          item.field2_default = field->Attribute("default") ? field->Attribute("default") : "";
        }
      }
      const unsigned id = LUM_ID_QUICK_COMMAND_MIN + static_cast<unsigned>(m_menuitems.size());
      m_menuitems.push_back(std::move(item));
      added = new QAction(attr(e, "name"), popup);
      added->setData(id);
      QObject::connect(added, &QAction::triggered, popup, [this, id] {
        if (m_on_command) m_on_command(id);
      });
      m_actions.push_back(added);
    } else {
      note_unknown(e);
    }
    if (added != nullptr) popup->insertAction(before_action, added);
  }
}

void LUM_MENU_FILES::update_enabled(bool idle) {
  for (QAction* action : m_actions) action->setEnabled(idle);
}

void LUM_MENU_FILES::run_quick_command(unsigned id, QWidget* parent,
                                       const std::function<void(const std::string&)>& run_in_engine) {
  if (!MSG_ASSERT(m_menuitems.size() > id - LUM_ID_QUICK_COMMAND_MIN, MODULE)) return;
  const LUM_MENUITEM& item = m_menuitems[id - LUM_ID_QUICK_COMMAND_MIN];
  std::string command = item.command;
  if (item.has_dialog) {
    if (m_prompt) {
      command = m_prompt(item);
    } else {
      LUM_TCL_ARG_PROMPT_DLG dialog(item, parent);
      command = dialog.exec() == QDialog::Accepted ? dialog.get_command() : std::string();
    }
    if (command.empty()) return;
  }
  if (item.where == LUM_MENUITEM::IN_FRONT_END) atcl_post(command.c_str(), 0, nullptr);
  else if (run_in_engine) run_in_engine(command);
}
