// The Tasks pane: the steps of the analysis flow as a two-column tree (step
// name, explanation), each row with its status mark (OK, error, out of date)
// and colour. Double-clicking a step (or Start in its context menu, or Enter)
// runs it after its unsatisfied prerequisites, one step per engine prompt.
// The steps, their status rules and the queue are LUM_STEP_RUNNER's and the
// steps file parser's (lum_steps.hh); this class draws them and connects them
// to the frame.
#pragma once

#include <QTreeWidget>

#include <memory>
#include <string>
#include <vector>

#include "frame/lum_steps.hh"

class LUM_DETACHED_FRAME;
class QLabel;
class QMenu;

class LUM_STEPS_WND : public QWidget {
  Q_OBJECT

 public:
  explicit LUM_STEPS_WND(LUM_DETACHED_FRAME* frame, QWidget* parent = nullptr);
  ~LUM_STEPS_WND() override;

  // Reads the steps file (once, at start) and fills the tree. A file that
  // cannot be used leaves the tree empty and says so in one line above it;
  // mistakes in a usable file are listed there once.
  void load_steps(const std::string& path);
  void load_steps_from(LUM_STEPS_FILE steps);

  // Recomputes every row's status and enabled state.
  void update_status();
  void start(int row);
  void start_next_task();

  QTreeWidget* get_tree() const { return m_tree; }
  QLabel* get_message_line() const { return m_message; }
  // The tree item of a row, and the row of a step name (-1 if none).
  QTreeWidgetItem* item_of(int row) const;
  int find_row(const std::string& name) const;
  int get_status(int row) const;
  bool is_enabled(int row) const;
  const LUM_STEP_RUNNER& get_runner() const { return *m_runner; }
  // Shows the context menu of a row at a point of the tree's viewport.
  QMenu* make_context_menu(int row);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void populate_tree();
  void resize_columns();
  void show_context_menu(const QPoint& pos);
  int row_of(const QTreeWidgetItem* item) const;
  void run_menu_command(const std::string& text);
  void prereq_failed(const std::string& condition);
  void on_properties();

  LUM_DETACHED_FRAME* m_frame;
  QTreeWidget* m_tree = nullptr;
  QLabel* m_message = nullptr;
  std::vector<LUM_STEP_ROW> m_rows;
  std::vector<bool> m_enabled;
  std::vector<QTreeWidgetItem*> m_items;
  std::unique_ptr<LUM_STEP_RUNNER> m_runner;
};

// Puts a Tasks pane into the frame, with the steps file "lumex_tasks.xml" of
// the misc folder, and points the frame's tasks hooks at it. Returns the pane
// (owned by the frame), or null without a frame.
LUM_STEPS_WND* lum_install_tasks_pane(LUM_DETACHED_FRAME* frame);
