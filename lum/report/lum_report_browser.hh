// LUM_REPORT_BROWSER: puts the report browser into the main frame: the report
// contents tree into the frame's Report dock and the report view into its
// central area, tied to each other. The frame forwards its report operations
// here:
//
//   m_report_browser = new LUM_REPORT_BROWSER(this, report_dock);  // in the constructor
//   void reload_sta_report(const char* panel) { m_report_browser->reload_sta_report(panel); }
//   void update_report_tree_status() { m_report_browser->update_status(m_sdc_needs_saving); }
#pragma once

#include <QObject>

#include <string>

class QDockWidget;
class QMainWindow;
class QWidget;
class LUM_REPORT_VIEW;
class LUM_STA_REPORT_TOC_TREE;

class LUM_REPORT_BROWSER : public QObject {
  Q_OBJECT

 public:
  // Creates the tree in report_dock (replacing its widget) and the view as
  // window's central widget (replacing it). Either may be null: tests place
  // the widgets themselves through the other constructor.
  LUM_REPORT_BROWSER(QMainWindow* window, QDockWidget* report_dock);
  // Creates the tree and the view as children of the given parents.
  LUM_REPORT_BROWSER(QWidget* tree_parent, QWidget* view_parent, QObject* owner);

  LUM_STA_REPORT_TOC_TREE* get_tree() const { return m_tree; }
  LUM_REPORT_VIEW* get_report_view() const { return m_view; }

  // lum_reload_sta_report: rebuilds the tree (opening the named panel, which
  // may be null), then re-opens every page of the report view.
  void reload_sta_report(const char* open_panel);
  // The frame's netlist_is_up_to_date changed (or a project closed).
  void update_status(bool sdc_needs_saving);
  // After a report command: open this panel once the engine has written it.
  void select_panel_after_report(const std::string& panel_name);

 private:
  void connect_parts();

  LUM_STA_REPORT_TOC_TREE* m_tree = nullptr;
  LUM_REPORT_VIEW* m_view = nullptr;
};
