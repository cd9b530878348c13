// The console pane as the user sees it: a tab window with the "Console" tab
// (the rows of LUM_CONSOLE_MODEL with kind icons and sub-message levels, and
// the edit line on the last, empty prompt row), the "History" tab, and with
// the switch "debug_msg" a third tab of debug lines. The engine link itself is
// LUM_CONSOLE_CTRL; this file only shows it and lets the user act on it.
#pragma once

#include <QLineEdit>

#include <map>
#include <string>
#include <vector>
#include <QListView>
#include <QPointer>
#include <QTabWidget>

#include <string>
#include <vector>

class LUM_CONSOLE_CTRL;
class LUM_CONSOLE_MODEL;
class LUM_HISTORY_CTRL;
class QMenu;
class QListWidget;
class QListWidgetItem;
class QPlainTextEdit;

// Texts of console rows as Copy and Save write them: four blanks per level
// before each text; separator between rows; after the last one too when
// trailing is set.
std::string lum_console_rows_text(const LUM_CONSOLE_MODEL& model, const std::vector<int>& rows,
                                  const std::string& separator, bool trailing);

// The edit line on the last console row. Return submits; Tab completes the
// word under the cursor (engine commands, their options, clock and port
// names: one candidate is put in at once, several are offered in a popup
// list), or inserts four blanks at the start of a line; Up, Down, Page Up and
// Page Down walk the console's command history.
class LUM_CONSOLE_EDIT_CTRL : public QLineEdit {
  Q_OBJECT
 public:
  // The console must exist before the edit line is made.
  LUM_CONSOLE_EDIT_CTRL(LUM_CONSOLE_CTRL* console, QWidget* parent);

 signals:
  void submitted(const QString& text);
  void abandoned();

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  bool event(QEvent* event) override;

 public:
  // The popup list of the last Tab with several candidates (null before).
  QListWidget* get_completer() const { return m_completer; }

 private:
  void complete();
  void take_candidate(QListWidgetItem* item);
  bool eventFilter(QObject* watched, QEvent* event) override;
  LUM_CONSOLE_CTRL* m_console;
  QListWidget* m_completer = nullptr;
  int m_word_start = 0;
  int m_word_end = 0;
  // Engine commands and options are asked once per engine; objects every Tab.
  std::map<std::string, std::vector<std::string>> m_commands;
};

// The "Console" tab: one row per console line.
class LUM_CONSOLE_ROWS : public QListView {
  Q_OBJECT
 public:
  LUM_CONSOLE_ROWS(LUM_CONSOLE_CTRL* console, QWidget* parent);

  // Opens the edit line on the last row when it is an empty prompt row and the
  // engine is idle. Returns the edit line, or null.
  LUM_CONSOLE_EDIT_CTRL* open_edit_line(bool take_focus);
  LUM_CONSOLE_EDIT_CTRL* get_edit_line() const { return m_edit; }
  // Return on the edit line: the trimmed text goes to the console (an empty
  // line too: the engine answers it with a fresh prompt).
  void on_validate_edit();
  void close_edit_line();

  // Selected rows, in row order.
  std::vector<int> selected_rows() const;
  // Copy: the selected rows to the clipboard, joined by "\r\n".
  void on_copy();
  // Save: asks for a file ("log.txt") and writes every row followed by "\n".
  bool on_save();
  bool write_rows_to(const std::string& path) const;
  // Clear: every row removed; the engine is sent a blank line for a new prompt.
  void clear();
  // Folds or unfolds the sub-message rows below a message row.
  void toggle_expand(int row);

  // The context menu for a point of the viewport; null outside any row.
  QMenu* make_context_menu(const QPoint& viewport_pos);

  // Width of the widest row (the horizontal extent), kept as rows arrive, and
  // never less than the visible width so that the edit line spans the pane.
  int content_width() const;

 protected:
  void contextMenuEvent(QContextMenuEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void on_rows_drained(int last_row);
  void measure_new_rows();
  void update_focus_state();

  LUM_CONSOLE_CTRL* m_console;
  QPointer<LUM_CONSOLE_EDIT_CTRL> m_edit;
  int m_edit_row = -1;
  int m_measured_rows = 0;
  int m_content_width = 0;
};

class LUM_CONSOLE_VIEW : public QTabWidget {
  Q_OBJECT
 public:
  explicit LUM_CONSOLE_VIEW(LUM_CONSOLE_CTRL* console, QWidget* parent = nullptr);

  LUM_CONSOLE_CTRL* get_console_ctrl() const { return m_console; }
  LUM_CONSOLE_ROWS* get_rows() const { return m_rows; }
  LUM_HISTORY_CTRL* get_history() const { return m_history; }
  // The debug tab, or null when "debug_msg" is off.
  QPlainTextEdit* get_debug_tab() const { return m_debug; }

 private:
  void take_debug_lines();

  LUM_CONSOLE_CTRL* m_console;
  LUM_CONSOLE_ROWS* m_rows = nullptr;
  LUM_HISTORY_CTRL* m_history = nullptr;
  QPlainTextEdit* m_debug = nullptr;
};
