// The "History" tab of the console pane: every command the console started,
// oldest at the top, repeats and empty lines included. Selected entries can be
// run again, and the whole list saved as a Tcl script ("history.tcl").
// (The arrow-key history of the edit line is the console control's own list.)
#pragma once

#include <QListView>
#include <QStringListModel>

#include <string>
#include <vector>

class LUM_CONSOLE_CTRL;
class QMenu;

class LUM_HISTORY_CTRL : public QListView {
  Q_OBJECT

 public:
  explicit LUM_HISTORY_CTRL(LUM_CONSOLE_CTRL* console, QWidget* parent = nullptr);

  void add_entry(const QString& text);
  int entry_count() const { return m_model.rowCount(); }
  QString entry(int row) const;

  // Run: the selected entries, in the order they were selected, are queued
  // again through the console (shown and recorded anew). Nothing without a selection.
  void run_selected();
  // Save As: asks for a file ("history.tcl") when the list has rows and writes
  // every entry followed by "\n". Returns whether a file was written.
  bool save_as();
  // Writes every entry followed by "\n" to path. False when it cannot be opened.
  bool write_to(const std::string& path) const;

  // The context menu for a point of the viewport; null outside any row.
  QMenu* make_context_menu(const QPoint& viewport_pos);

 protected:
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  LUM_CONSOLE_CTRL* m_console;
  QStringListModel m_model;
};
