// The frame's menus. The fixed menu bar and tool bar come from the frame's own
// XML resource, whose items name command identifiers of the command table.
// Site menu files ("lumex_main_menu.xml" in the misc folder, and the file the
// switch "lum_extension_command_file" names) then add quick commands: menu
// items that run a Tcl command line in the engine or in the front end's own
// interpreter, optionally after asking for one or two arguments.
#pragma once

#include <QDialog>
#include <QString>

#include <functional>
#include <memory>
#include <string>
#include <vector>

class QAction;
class QLineEdit;
class QMenu;
class QMenuBar;
class QToolBar;

namespace tinyxml2 {
class XMLDocument;
class XMLElement;
}  // namespace tinyxml2

struct LUM_MENU_TARGETS {
  // The action of a command identifier (null: the item is left out).
  std::function<QAction*(unsigned id)> action_for;
  // Called with the popup that holds the recent-project list.
  std::function<void(QMenu* menu)> recent_menu;
};

// Builds the menu bar and the tool bar from the frame's menu resource. False
// when the text does not parse (the bars are then left as they were).
bool lum_build_frame_menus(const char* xml, QMenuBar* menu_bar, QToolBar* tool_bar, const LUM_MENU_TARGETS& targets);

// A menu or action text without its mnemonic marks ("&File" -> "File").
QString lum_menu_text_without_ampersands(const QString& text);

// One quick command of a site menu file.
struct LUM_MENUITEM {
  enum WHERE { IN_ENGINE = 1, IN_FRONT_END = 2 };
  std::string command;
  int where = IN_ENGINE;
  std::string dialog_title;
  std::string dialog_info;
  std::string field1_label, field1_default;
  std::string field2_label, field2_default;
  bool has_second_field = false;
  bool has_dialog = false;
};

// The command a prompt composes: every "$1" replaced by the first field's
// text, every "$2" by the second's (when there is a second field).
std::string lum_compose_quick_command(const std::string& command_template, const std::string& field1,
                                      const std::string& field2, bool has_second_field);

// The argument prompt of a quick command: title, information, one or two
// labelled fields, and a read-only preview of the command that will run.
class LUM_TCL_ARG_PROMPT_DLG : public QDialog {
  Q_OBJECT
 public:
  LUM_TCL_ARG_PROMPT_DLG(const LUM_MENUITEM& item, QWidget* parent);
  std::string get_command() const;
  QLineEdit* field(int index) const { return index == 0 ? m_field1 : m_field2; }

 private:
  void update_preview();
  LUM_MENUITEM m_item;
  QLineEdit* m_field1 = nullptr;
  QLineEdit* m_field2 = nullptr;
  QLineEdit* m_preview = nullptr;
};

class LUM_MENU_FILES {
 public:
  LUM_MENU_FILES();
  ~LUM_MENU_FILES();

  // Loads the main document and, when extension_path names an existing file,
  // the extension document. Missing or malformed files leave their document empty.
  void load(const std::string& main_path, const std::string& extension_path);
  // Loads one document from text (tests).
  bool load_main_from_text(const char* xml);

  // Merges both documents into the bar, in that order. Quick-command items
  // call on_command with their identifier.
  void merge_into(QMenuBar* menu_bar, std::function<void(unsigned id)> on_command);
  // Quick commands are enabled while the engine is idle.
  void update_enabled(bool idle);

  // Runs the quick command of an identifier: prompts first when it has a
  // dialog (cancel sends nothing); the command goes to run_in_engine or, for
  // "run_in" "lum", to the front end's interpreter.
  void run_quick_command(unsigned id, QWidget* parent, const std::function<void(const std::string&)>& run_in_engine);
  // Replaces the prompt (tests): returns the composed command, or empty when cancelled.
  using PROMPT = std::function<std::string(const LUM_MENUITEM& item)>;
  void set_prompt(PROMPT prompt) { m_prompt = std::move(prompt); }

  const std::vector<LUM_MENUITEM>& get_menuitems() const { return m_menuitems; }
  // Mistakes found while loading and merging, one line each: a file that is
  // not XML, an extension file that does not exist, unknown elements.
  const std::vector<std::string>& get_problems() const { return m_problems; }

 private:
  void merge_document(tinyxml2::XMLDocument& document, QMenuBar* menu_bar);
  void append_to_menu(QMenu* popup, tinyxml2::XMLElement* menu_element);
  void note_unknown(const tinyxml2::XMLElement* element);

  std::unique_ptr<tinyxml2::XMLDocument> m_main;
  std::unique_ptr<tinyxml2::XMLDocument> m_extension;
  std::vector<LUM_MENUITEM> m_menuitems;
  std::vector<QAction*> m_actions;
  std::function<void(unsigned id)> m_on_command;
  PROMPT m_prompt;
  std::vector<std::string> m_problems;
  std::string m_main_name, m_extension_name;
};
