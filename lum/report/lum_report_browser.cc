#include "report/lum_report_browser.hh"

#include "report/lum_report_view.hh"
#include "report/lum_sta_report_toc_tree.hh"

#include <QDockWidget>
#include <QMainWindow>

LUM_REPORT_BROWSER::LUM_REPORT_BROWSER(QMainWindow* window, QDockWidget* report_dock) : QObject(window) {
  m_tree = new LUM_STA_REPORT_TOC_TREE(report_dock);
  m_view = new LUM_REPORT_VIEW(window);
  if (report_dock) {
    QWidget* old = report_dock->widget();
    report_dock->setWidget(m_tree);
    if (old) old->deleteLater();
  }
  if (window) {
    QWidget* old = window->takeCentralWidget();
    window->setCentralWidget(m_view);
    if (old) old->deleteLater();
  }
  connect_parts();
}

LUM_REPORT_BROWSER::LUM_REPORT_BROWSER(QWidget* tree_parent, QWidget* view_parent, QObject* owner) : QObject(owner) {
  m_tree = new LUM_STA_REPORT_TOC_TREE(tree_parent);
  m_view = new LUM_REPORT_VIEW(view_parent);
  connect_parts();
}

void LUM_REPORT_BROWSER::connect_parts() {
  m_tree->setObjectName(QStringLiteral("lum_sta_report_toc_tree"));
  m_view->setObjectName(QStringLiteral("lum_report_view"));
  m_tree->set_report_view(m_view);
  m_view->set_report_tree(m_tree);
}

void LUM_REPORT_BROWSER::reload_sta_report(const char* open_panel) {
  m_tree->load_sta_report(true, open_panel);
  m_view->refresh_all();
}

void LUM_REPORT_BROWSER::update_status(bool sdc_needs_saving) {
  m_tree->set_sdc_needs_saving(sdc_needs_saving);
  if (m_tree->has_report()) m_tree->update_status();
}

void LUM_REPORT_BROWSER::select_panel_after_report(const std::string& panel_name) {
  m_tree->set_second_pending_open_name(panel_name);
}
