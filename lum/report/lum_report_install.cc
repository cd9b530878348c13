#include "report/lum_report_install.hh"

#include "engine/lum_console_ctrl.hh"
#include "frame/lum_detached_frame.hh"
#include "rdb/rdb_manager.hh"
#include "report/lum_report_browser.hh"
#include "report/lum_report_view.hh"
#include "report/lum_sta_report_toc_tree.hh"

#include <QUrl>

#include <filesystem>
#include <memory>
#include <string>

namespace {

// The report database manager follows the frame's open project and revision.
void follow_project(LUM_DETACHED_FRAME* frame) {
  DBMUI_MANAGER* manager = DBMUI_MANAGER::get_instance();
  if (!frame->project_recorded() || frame->get_revision().empty()) {
    if (manager->has_project()) manager->clear_project();
    return;
  }
  const std::string dir = std::filesystem::path(frame->get_project_path()).parent_path().string();
  if (manager->get_project_dir() != dir || manager->get_revision() != frame->get_revision())
    manager->set_project(dir, frame->get_revision());
}

}  // namespace

LUM_REPORT_BROWSER* lum_install_report_browser(LUM_DETACHED_FRAME* frame) {
  if (!frame) return nullptr;
  auto* browser = new LUM_REPORT_BROWSER(nullptr, nullptr, frame);
  frame->set_report_tree(browser->get_tree());
  frame->set_report_view(browser->get_report_view());

  // A panel that a report menu command asked for, used once.
  auto last_requested = std::make_shared<std::string>();
  // Only the report hooks change; the tasks pane's stay as they are.
  LUM_DETACHED_FRAME::PANE_HOOKS hooks = frame->get_pane_hooks();
  hooks.reload_sta_report = [frame, browser, last_requested](const char* open_panel) {
    follow_project(frame);
    const std::string& requested = frame->get_panel_to_select();
    if ((!open_panel || !*open_panel) && !requested.empty() && requested != *last_requested)
      browser->select_panel_after_report(requested);
    *last_requested = requested;
    browser->reload_sta_report(open_panel);
  };
  // An update of the netlist marks the panels made before it out of date in
  // the database; the marks are read again once the command has ended.
  auto reread_marks = std::make_shared<bool>(false);
  hooks.update_report_tree_status = [frame, browser, reread_marks] {
    if (frame->get_state_flag(LUM_STATE_FLAG::NETLIST_IS_UP_TO_DATE) == '1') *reread_marks = true;
    browser->update_status(frame->get_sdc_needs_saving());
  };
  if (LUM_CONSOLE_CTRL* console = frame->get_console_ctrl()) {
    QObject::connect(console, &LUM_CONSOLE_CTRL::busy_changed, browser, [frame, browser, reread_marks](bool busy) {
      if (busy || !*reread_marks) return;
      *reread_marks = false;
      follow_project(frame);
      if (frame->project_recorded()) browser->reload_sta_report(nullptr);
    });
  }
  hooks.clear_report = [frame, browser, last_requested] {
    follow_project(frame);
    last_requested->clear();
    browser->reload_sta_report(nullptr);
    browser->update_status(frame->get_sdc_needs_saving());
  };
  hooks.report_panel_exists = [browser](const std::string& name) { return browser->get_tree()->find_item(name) >= 0; };
  hooks.open_report_panel = [browser](const std::string& name) {
    LUM_STA_REPORT_TOC_TREE* tree = browser->get_tree();
    tree->open_item(tree->find_item(name));
  };
  hooks.open_web_page = [browser](const std::string& target) {
    if (LUM_VIEW_CTRL* ctrl = browser->get_report_view()->get_target_view_ctrl())
      ctrl->open_page(LUM_VIEW_WEB_PAGE, target);
  };
  frame->set_pane_hooks(std::move(hooks));
  // A project linked from a page (the start page's recent projects and
  // examples) opens as from the File menu.
  LUM_VIEW_CTRL::set_link_handler([](const std::string& url) {
    const QUrl link(QString::fromStdString(url));
    const QString path = link.isLocalFile() ? link.toLocalFile() : QString();
    if (!path.endsWith(".vpf") && !path.endsWith(".vsf")) return false;
    if (LUM_DETACHED_FRAME* frame = LUM_DETACHED_FRAME::get_instance()) frame->open_project(path.toStdString().c_str());
    return true;
  });

  // A project that opens shows the reports it already has.
  QObject::connect(frame, &LUM_DETACHED_FRAME::project_changed, browser, [frame, browser] {
    follow_project(frame);
    if (frame->project_recorded()) browser->reload_sta_report(nullptr);
  });
  follow_project(frame);
  return browser;
}
