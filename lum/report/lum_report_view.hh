// LUM_REPORT_VIEW: the main frame's document area. It holds the top page
// control, knows every page control (so that all of them can be re-opened
// after an engine run) and which one is active (the one the user last worked
// in), and carries the window commands that split and unsplit.
#pragma once

#include "report/lum_view_ctrl.hh"

#include <QWidget>

#include <string>
#include <vector>

class LUM_STA_REPORT_TOC_TREE;

class LUM_REPORT_VIEW : public QWidget {
  Q_OBJECT

 public:
  explicit LUM_REPORT_VIEW(QWidget* parent = nullptr);
  ~LUM_REPORT_VIEW() override;

  LUM_VIEW_CTRL* get_top_view_ctrl() const { return m_top; }
  // Every page control, in the order they were made.
  const std::vector<LUM_VIEW_CTRL*>& get_view_ctrls() const { return m_ctrls; }

  // The report contents tree that says whether a panel is out of date.
  void set_report_tree(LUM_STA_REPORT_TOC_TREE* tree) { m_tree = tree; }
  LUM_STA_REPORT_TOC_TREE* get_report_tree() const { return m_tree; }

  // The active page control (never a split one); null when none.
  LUM_VIEW_CTRL* get_active_view_ctrl() const { return m_active; }
  // Makes ctrl active; with focus true it also takes the keyboard focus.
  void set_active_view_ctrl(LUM_VIEW_CTRL* ctrl, bool focus);

  // Where a report panel opens: the active control, else the top one.
  LUM_VIEW_CTRL* get_target_view_ctrl() const;
  // Re-opens the page of every control that shows one (after an engine run).
  void refresh_all();

  // Window commands and their enablers.
  void on_window_split_horizontally();
  void on_window_split_vertically();
  void on_window_split_four_way();
  void on_window_unsplit();
  void on_window_unsplit_all();
  bool can_split() const;
  bool can_unsplit() const;

  // The getting-started page of the shared miscellaneous folder, as a web page.
  void open_getting_started_page();
  std::string get_help_prefix() const { return "Getting Started::"; }

  // Called by page controls as they are made and destroyed.
  void register_view_ctrl(LUM_VIEW_CTRL* ctrl);
  void unregister_view_ctrl(LUM_VIEW_CTRL* ctrl);

 private:
  void on_focus_changed(QWidget* old_widget, QWidget* now);

  LUM_VIEW_CTRL* m_top = nullptr;
  LUM_VIEW_CTRL* m_active = nullptr;
  LUM_STA_REPORT_TOC_TREE* m_tree = nullptr;
  std::vector<LUM_VIEW_CTRL*> m_ctrls;
  bool m_destroying = false;
};
