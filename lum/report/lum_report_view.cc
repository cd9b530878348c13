#include "report/lum_report_view.hh"

#include "platform/gen.hh"
#include "platform/msg.hh"

#include <QApplication>
#include <QVBoxLayout>

#include <algorithm>

LUM_REPORT_VIEW::LUM_REPORT_VIEW(QWidget* parent) : QWidget(parent) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  m_top = new LUM_VIEW_CTRL(this, this);
  layout->addWidget(m_top);
  m_active = m_top;
  connect(qApp, &QApplication::focusChanged, this, &LUM_REPORT_VIEW::on_focus_changed);
}

LUM_REPORT_VIEW::~LUM_REPORT_VIEW() {
  m_destroying = true;
  // The controls are children; they unregister while this object still exists.
  delete m_top;
  m_top = nullptr;
}

void LUM_REPORT_VIEW::register_view_ctrl(LUM_VIEW_CTRL* ctrl) { m_ctrls.push_back(ctrl); }

void LUM_REPORT_VIEW::unregister_view_ctrl(LUM_VIEW_CTRL* ctrl) {
  m_ctrls.erase(std::remove(m_ctrls.begin(), m_ctrls.end(), ctrl), m_ctrls.end());
  if (m_active == ctrl) m_active = nullptr;
}

void LUM_REPORT_VIEW::set_active_view_ctrl(LUM_VIEW_CTRL* ctrl, bool focus) {
  if (ctrl && std::find(m_ctrls.begin(), m_ctrls.end(), ctrl) == m_ctrls.end()) return;
  m_active = ctrl;
  if (ctrl && focus) ctrl->setFocus(Qt::OtherFocusReason);
}

void LUM_REPORT_VIEW::on_focus_changed(QWidget*, QWidget* now) {
  if (m_destroying) return;
  for (QWidget* w = now; w; w = w->parentWidget()) {
    if (auto* ctrl = qobject_cast<LUM_VIEW_CTRL*>(w)) {
      if (ctrl->get_parent_view() == this && !ctrl->is_split()) m_active = ctrl;
      return;
    }
  }
}

LUM_VIEW_CTRL* LUM_REPORT_VIEW::get_target_view_ctrl() const {
  if (m_active && !m_active->is_split()) return m_active;
  LUM_VIEW_CTRL* ctrl = m_top;
  while (ctrl && ctrl->is_split()) ctrl = ctrl->get_panes().front();
  return ctrl;
}

void LUM_REPORT_VIEW::refresh_all() {
  // Re-opening a page never adds or removes controls, but be safe against it.
  const std::vector<LUM_VIEW_CTRL*> ctrls = m_ctrls;
  for (LUM_VIEW_CTRL* ctrl : ctrls) {
    if (std::find(m_ctrls.begin(), m_ctrls.end(), ctrl) == m_ctrls.end() || ctrl->is_split()) continue;
    if (ctrl->get_type() != LUM_VIEW_NONE) ctrl->open_page(ctrl->get_type(), ctrl->get_path());
  }
}

bool LUM_REPORT_VIEW::can_split() const { return m_active != nullptr && !m_active->is_split(); }

bool LUM_REPORT_VIEW::can_unsplit() const {
  if (!m_active) return false;
  LUM_VIEW_CTRL* parent = m_active->get_parent_ctrl();
  return parent != nullptr && parent->is_split();
}

void LUM_REPORT_VIEW::on_window_split_horizontally() {
  if (can_split()) m_active->split(LUM_SPLIT_HORIZONTAL);
}

void LUM_REPORT_VIEW::on_window_split_vertically() {
  if (can_split()) m_active->split(LUM_SPLIT_VERTICAL);
}

void LUM_REPORT_VIEW::on_window_split_four_way() {
  if (can_split()) m_active->split(LUM_SPLIT_FOUR_WAY);
}

void LUM_REPORT_VIEW::on_window_unsplit() {
  if (!can_unsplit()) return;
  m_active->get_parent_ctrl()->split(LUM_SPLIT_NONE);
}

void LUM_REPORT_VIEW::on_window_unsplit_all() {
  if (!m_top) return;
  while (m_top->is_split()) m_top->split(LUM_SPLIT_NONE);
}

void LUM_REPORT_VIEW::open_getting_started_page() {
  const std::string path = gen_get_common_misc_fullpath("lumex_getting_started.html");
  const std::string display_text = get_help_prefix() + path;
  msg_debug("Opening %s", display_text.c_str());
  if (LUM_VIEW_CTRL* ctrl = get_target_view_ctrl()) ctrl->open_page(LUM_VIEW_WEB_PAGE, path);
}
