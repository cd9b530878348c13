#include "frame/lum_steps_wnd.hh"

#include <QApplication>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPainter>
#include <QVBoxLayout>

#include "engine/lum_console_ctrl.hh"
#include "frame/lum_detached_frame.hh"
#include "frame/lum_frame_icons.hh"
#include "platform/atcl.hh"
#include "platform/gen.hh"
#include "platform/msg.hh"

namespace {

const char* const MODULE = "lum_steps_wnd";
constexpr int ROW_ROLE = Qt::UserRole + 1;
constexpr int SLOT = 16;

// The status colours: OK, error, out of date.
const QColor kOkColour(0x1e, 0x7d, 0x34);
const QColor kErrorColour(0xc6, 0x28, 0x28);
const QColor kOutOfDateColour(0xa8, 0x62, 0x00);

QColor status_colour(int status) {
  switch (status) {
    case LUM_STEP_OK: return kOkColour;
    case LUM_STEP_ERROR: return kErrorColour;
    case LUM_STEP_OUT_OF_DATE: return kOutOfDateColour;
    default: return {};
  }
}

const char* status_word(int status) {
  switch (status) {
    case LUM_STEP_OK: return "done";
    case LUM_STEP_ERROR: return "failed";
    case LUM_STEP_OUT_OF_DATE: return "out of date";
    default: return "not done";
  }
}

// A status mark: a filled disc with a tick, a cross or an exclamation mark.
void draw_status(QPainter& p, const QRectF& r, int status) {
  if (status == LUM_STEP_NOT_DONE) {
    p.setPen(QPen(QColor(0xa0, 0xa6, 0xae), 1.1));
    p.setBrush(Qt::NoBrush);
    p.drawEllipse(r.adjusted(2.5, 2.5, -2.5, -2.5));
    return;
  }
  const QColor fill = status_colour(status);
  p.setPen(QPen(fill.darker(125), 0.8));
  p.setBrush(fill);
  p.drawEllipse(r.adjusted(1, 1, -1, -1));
  QPen mark(Qt::white, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
  p.setPen(mark);
  const double x = r.left(), y = r.top();
  if (status == LUM_STEP_OK) {
    p.drawPolyline(QPolygonF({QPointF(x + 4.5, y + 8.3), QPointF(x + 7, y + 10.8), QPointF(x + 11.6, y + 5.4)}));
  } else if (status == LUM_STEP_ERROR) {
    p.drawLine(QPointF(x + 5.3, y + 5.3), QPointF(x + 10.7, y + 10.7));
    p.drawLine(QPointF(x + 10.7, y + 5.3), QPointF(x + 5.3, y + 10.7));
  } else {
    p.drawLine(QPointF(x + 8, y + 4.2), QPointF(x + 8, y + 8.8));
    p.drawPoint(QPointF(x + 8, y + 11.6));
  }
}

void draw_picture(QPainter& p, const QRectF& r, LUM_STEP_PICTURE picture) {
  const QColor ink(0x4a, 0x55, 0x63);
  p.setPen(QPen(ink, 1.1));
  p.setBrush(Qt::white);
  const QRectF box = r.adjusted(3, 3, -3, -3);
  switch (picture) {
    case LUM_STEP_PICTURE::CHECKBOX_CHECKED:
    case LUM_STEP_PICTURE::CHECKBOX_UNCHECKED:
      p.drawRoundedRect(box, 1.5, 1.5);
      if (picture == LUM_STEP_PICTURE::CHECKBOX_CHECKED) {
        p.setPen(QPen(ink, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        p.drawPolyline(QPolygonF({QPointF(box.left() + 2, box.center().y()),
                                  QPointF(box.left() + 4.2, box.bottom() - 2.2),
                                  QPointF(box.right() - 1.8, box.top() + 2)}));
      }
      break;
    case LUM_STEP_PICTURE::RADIOBUTTON_HOLLOW:
    case LUM_STEP_PICTURE::RADIOBUTTON_FILLED:
      p.drawEllipse(box);
      if (picture == LUM_STEP_PICTURE::RADIOBUTTON_FILLED) {
        p.setBrush(ink);
        p.drawEllipse(box.adjusted(2.5, 2.5, -2.5, -2.5));
      }
      break;
    case LUM_STEP_PICTURE::BLANK:
      break;
  }
}

QIcon bitmap_icon(LUM_STEP_BITMAP bitmap) {
  switch (bitmap) {
    case LUM_STEP_BITMAP::OPEN_PROJECT: return lum_icon(LUM_ICON::OPEN_PROJECT);
    case LUM_STEP_BITMAP::TASK_START: return lum_icon(LUM_ICON::UPDATE_NETLIST);
    case LUM_STEP_BITMAP::REPORT_TABLE: return lum_icon(LUM_ICON::REPORT);
    case LUM_STEP_BITMAP::DIALOG_BOX: return lum_icon(LUM_ICON::REPORT_TIMING);
    case LUM_STEP_BITMAP::NONE: break;
  }
  return {};
}

// The picture of column 0: the status mark, then the row's item bitmap (or
// its cell picture when it has no bitmap).
QIcon row_icon(const LUM_STEP_ROW& row, int status) {
  QIcon icon;
  for (int scale : {1, 2}) {
    QPixmap pixmap(2 * SLOT * scale + 4 * scale, SLOT * scale);
    pixmap.setDevicePixelRatio(scale);
    pixmap.fill(Qt::transparent);
    QPainter p(&pixmap);
    p.setRenderHint(QPainter::Antialiasing);
    if (!row.param.status_condition.empty()) draw_status(p, QRectF(0, 0, SLOT, SLOT), status);
    const QRectF second(SLOT + 4, 0, SLOT, SLOT);
    if (row.bitmap != LUM_STEP_BITMAP::NONE)
      bitmap_icon(row.bitmap).paint(&p, second.toRect());
    else
      draw_picture(p, second, row.picture);
    p.end();
    icon.addPixmap(pixmap);
  }
  return icon;
}

QIcon properties_icon() {
  static const QIcon icon = [] {
    QPixmap pixmap(SLOT * 2, SLOT * 2);
    pixmap.setDevicePixelRatio(2);
    pixmap.fill(Qt::transparent);
    QPainter p(&pixmap);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(QPen(QColor(0x4a, 0x55, 0x63), 1));
    p.setBrush(QColor(0xf2, 0xf4, 0xf7));
    p.drawRoundedRect(QRectF(2.5, 2.5, 11, 11), 1.5, 1.5);
    for (double y : {5.5, 8.0, 10.5}) p.drawLine(QPointF(5, y), QPointF(11, y));
    return QIcon(pixmap);
  }();
  return icon;
}

// A tree whose double click starts a step only over the name cell, and which
// never expands rows on a double click of its own.
class STEPS_TREE : public QTreeWidget {
 public:
  explicit STEPS_TREE(QWidget* parent) : QTreeWidget(parent) {}
  std::function<void(QTreeWidgetItem*)> on_double_click_text;

 protected:
  void mouseDoubleClickEvent(QMouseEvent* event) override {
    const QModelIndex index = indexAt(event->position().toPoint());
    if (index.isValid() && index.column() == 0 && visualRect(index).contains(event->position().toPoint()) &&
        on_double_click_text)
      on_double_click_text(itemFromIndex(index));
    event->accept();
  }
};

}  // namespace

LUM_STEPS_WND::LUM_STEPS_WND(LUM_DETACHED_FRAME* frame, QWidget* parent) : QWidget(parent), m_frame(frame) {
  setObjectName("LUM_STEPS_WND");
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  m_message = new QLabel(this);
  m_message->setObjectName("LUM_STEPS_MESSAGE");
  m_message->setWordWrap(true);
  m_message->setContentsMargins(6, 4, 6, 4);
  m_message->setStyleSheet("QLabel { background: #fff4e0; color: #7a4a00; border-bottom: 1px solid #e8c98f; }");
  m_message->hide();
  auto* tree = new STEPS_TREE(this);
  m_tree = tree;
  m_tree->setObjectName("LUM_STEPS_TREE");
  m_tree->setColumnCount(2);
  m_tree->setHeaderLabels({"Step", "Information"});
  m_tree->header()->setSectionsMovable(false);
  m_tree->header()->setSectionResizeMode(QHeaderView::Interactive);
  m_tree->header()->setStretchLastSection(true);
  m_tree->setExpandsOnDoubleClick(false);
  m_tree->setIconSize(QSize(2 * SLOT + 4, SLOT));
  m_tree->setUniformRowHeights(true);
  m_tree->setTextElideMode(Qt::ElideNone);
  m_tree->setContextMenuPolicy(Qt::CustomContextMenu);
  m_tree->setStyleSheet("QTreeWidget { background: #e6e6e6; }");
  m_tree->installEventFilter(this);
  tree->on_double_click_text = [this](QTreeWidgetItem* item) { start(row_of(item)); };
  connect(m_tree, &QWidget::customContextMenuRequested, this, &LUM_STEPS_WND::show_context_menu);
  layout->addWidget(m_message);
  layout->addWidget(m_tree, 1);

  LUM_STEP_RUNNER::ACTIONS actions;
  actions.run_menu = [this](const std::string& text) { run_menu_command(text); };
  actions.run_in_engine = [this](const std::string& command) {
    if (m_frame && m_frame->get_console_ctrl()) m_frame->get_console_ctrl()->run_command(command);
  };
  actions.run_in_front_end = [](const std::string& command) { atcl_post(command.c_str(), 0, nullptr); };
  actions.panel_exists = [this](const std::string& name) {
    return m_frame && m_frame->get_pane_hooks().report_panel_exists && m_frame->get_pane_hooks().report_panel_exists(name);
  };
  actions.open_panel = [this](const std::string& name) {
    if (m_frame && m_frame->get_pane_hooks().open_report_panel) m_frame->get_pane_hooks().open_report_panel(name);
  };
  actions.has_children = [this](int row) { return item_of(row) && item_of(row)->childCount() > 0; };
  actions.toggle_expansion = [this](int row) { item_of(row)->setExpanded(!item_of(row)->isExpanded()); };
  actions.prereq_failed = [this](const std::string& condition) { prereq_failed(condition); };
  m_runner = std::make_unique<LUM_STEP_RUNNER>(&m_rows, &m_enabled, std::move(actions));
}

LUM_STEPS_WND::~LUM_STEPS_WND() = default;

void LUM_STEPS_WND::load_steps(const std::string& path) { load_steps_from(lum_load_steps_file(path)); }

void LUM_STEPS_WND::load_steps_from(LUM_STEPS_FILE steps) {
  m_runner->clear();
  m_rows = std::move(steps.rows);
  m_enabled.assign(m_rows.size(), false);
  QStringList lines;
  if (!steps.error.empty()) lines << QString::fromStdString(steps.error);
  for (const std::string& problem : steps.problems) lines << QString::fromStdString(problem);
  // Said once, here; the debug channel keeps a copy for logs.
  for (const QString& line : lines) msg_debug("%s", line.toUtf8().constData());
  m_message->setText(lines.join('\n'));
  m_message->setToolTip(lines.join('\n'));
  m_message->setVisible(!lines.isEmpty());
  populate_tree();
  update_status();
}

void LUM_STEPS_WND::populate_tree() {
  m_tree->setUpdatesEnabled(false);
  m_tree->clear();
  m_items.clear();
  std::vector<QTreeWidgetItem*> parents;
  for (int i = 0; i < static_cast<int>(m_rows.size()); ++i) {
    const LUM_STEP_ROW& row = m_rows[i];
    parents.resize(std::min<size_t>(parents.size(), row.level));
    QTreeWidgetItem* item = parents.empty() ? new QTreeWidgetItem(m_tree) : new QTreeWidgetItem(parents.back());
    item->setText(0, QString::fromStdString(row.name));
    // One line in the cell; the whole text is the tooltip.
    const QString info = QString::fromStdString(row.param.info);
    item->setText(1, QString(info).replace('\n', "  "));
    item->setData(0, ROW_ROLE, i);
    if (row.bold) {
      QFont font = item->font(0);
      font.setBold(true);
      item->setFont(0, font);
    }
    if (row.properties) item->setIcon(1, properties_icon());
    m_items.push_back(item);
    parents.push_back(item);
  }
  for (int i = 0; i < static_cast<int>(m_rows.size()); ++i) m_items[i]->setExpanded(!m_rows[i].collapsed);
  m_tree->setUpdatesEnabled(true);
  resize_columns();
}

void LUM_STEPS_WND::resize_columns() {
  if (m_tree->columnCount() < 2) return;
  m_tree->resizeColumnToContents(0);
  m_tree->setColumnWidth(0, m_tree->columnWidth(0) + 5);
}

void LUM_STEPS_WND::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  resize_columns();
}

QTreeWidgetItem* LUM_STEPS_WND::item_of(int row) const {
  return row >= 0 && row < static_cast<int>(m_items.size()) ? m_items[row] : nullptr;
}

int LUM_STEPS_WND::row_of(const QTreeWidgetItem* item) const {
  if (item == nullptr) return -1;
  bool ok = false;
  const int row = item->data(0, ROW_ROLE).toInt(&ok);
  return ok ? row : -1;
}

int LUM_STEPS_WND::find_row(const std::string& name) const {
  for (int i = 0; i < static_cast<int>(m_rows.size()); ++i)
    if (m_rows[i].name == name) return i;
  return -1;
}

int LUM_STEPS_WND::get_status(int row) const {
  return row >= 0 && row < static_cast<int>(m_rows.size()) ? m_rows[row].param.status : LUM_STEP_NOT_DONE;
}

bool LUM_STEPS_WND::is_enabled(int row) const {
  return row >= 0 && row < static_cast<int>(m_enabled.size()) && m_enabled[row];
}

void LUM_STEPS_WND::update_status() {
  if (!MSG_ASSERT(m_frame != NULL, MODULE)) return;
  LUM_STEP_FLAGS flags;
  flags.project_is_open = m_frame->get_state_flag(LUM_STATE_FLAG::PROJECT_IS_OPEN);
  flags.netlist_is_created = m_frame->get_state_flag(LUM_STATE_FLAG::NETLIST_IS_CREATED);
  flags.sdc_file_is_loaded = m_frame->get_state_flag(LUM_STATE_FLAG::SDC_FILE_IS_LOADED);
  flags.netlist_is_up_to_date = m_frame->get_state_flag(LUM_STATE_FLAG::NETLIST_IS_UP_TO_DATE);
  flags.busy = m_frame->get_console_ctrl() != nullptr && m_frame->get_console_ctrl()->is_busy();
  const auto& hooks = m_frame->get_pane_hooks();
  auto panel_exists = [&hooks](const std::string& name) {
    return hooks.report_panel_exists && hooks.report_panel_exists(name);
  };
  for (int i = 0; i < static_cast<int>(m_rows.size()); ++i) {
    LUM_STEP_ROW& row = m_rows[i];
    const LUM_STEP_STATE state = lum_step_state(&row.param, flags, panel_exists);
    const bool changed = row.param.status != state.status || m_enabled[i] != state.enabled;
    row.param.status = state.status;
    m_enabled[i] = state.enabled;
    QTreeWidgetItem* item = m_items[i];
    if (!changed && !item->icon(0).isNull()) continue;
    item->setIcon(0, row_icon(row, state.status));
    QColor colour = status_colour(state.status);
    if (!colour.isValid() && row.has_color) colour = QColor::fromRgb(row.color);
    item->setForeground(0, colour.isValid() ? QBrush(colour) : QBrush());
    QString tip = QString::fromStdString(row.param.info);
    if (!row.param.status_condition.empty()) tip += QString(tip.isEmpty() ? "" : "\n") + "Status: " + status_word(state.status);
    item->setToolTip(0, tip);
    item->setToolTip(1, tip);
    // Greyed rather than disabled, so that a busy engine does not collapse
    // or deselect anything; start() refuses rows that are not enabled.
    const QColor grey = palette().color(QPalette::Disabled, QPalette::Text);
    if (!state.enabled) {
      item->setForeground(0, grey);
      item->setForeground(1, grey);
    } else {
      item->setForeground(1, QBrush());
    }
  }
}

void LUM_STEPS_WND::start(int row) {
  update_status();
  m_runner->start(row);
}

void LUM_STEPS_WND::start_next_task() {
  update_status();
  m_runner->start_next_task();
}

void LUM_STEPS_WND::run_menu_command(const std::string& text) {
  if (!MSG_ASSERT(m_frame != NULL, MODULE)) return;
  // Depth first through the menu bar, in item order; the first match runs.
  std::function<QAction*(const QList<QAction*>&)> find = [&](const QList<QAction*>& actions) -> QAction* {
    for (QAction* action : actions) {
      if (action->menu() != nullptr) {
        if (QAction* found = find(action->menu()->actions())) return found;
      } else if (!action->isSeparator() && lum_menu_text_matches(action->text().left(256).toStdString(), text)) {
        return action;
      }
    }
    return nullptr;
  };
  QAction* action = find(m_frame->menuBar()->actions());
  if (action != nullptr && action->isEnabled()) action->trigger();
}

void LUM_STEPS_WND::prereq_failed(const std::string& condition) {
  if (condition == "netlist_is_created") {
    m_frame->set_netlist_is_created('e');
  } else if (condition == "sdc_file_is_loaded") {
    m_frame->set_state_flag(LUM_STATE_FLAG::SDC_FILE_IS_LOADED, 'e');
    update_status();
  } else if (condition == "netlist_is_up_to_date") {
    m_frame->set_state_flag(LUM_STATE_FLAG::NETLIST_IS_UP_TO_DATE, 'e');
    m_frame->update_report_tree_status();
    update_status();
  }
}

QMenu* LUM_STEPS_WND::make_context_menu(int row) {
  auto* menu = new QMenu(this);
  menu->setObjectName("LUM_STEPS_CONTEXT_MENU");
  QAction* start_action = menu->addAction("&Start");
  start_action->setObjectName("start");
  const bool has_action = row >= 0 && row < static_cast<int>(m_rows.size()) &&
                          m_rows[row].param.action_type != LUM_STEP_ACTION_NONE;
  start_action->setEnabled(has_action && is_enabled(row));
  connect(start_action, &QAction::triggered, this, [this, row] { start(row); });
  QAction* properties = menu->addAction("&Properties");
  properties->setObjectName("properties");
  properties->setEnabled(false);
  connect(properties, &QAction::triggered, this, &LUM_STEPS_WND::on_properties);
  return menu;
}

void LUM_STEPS_WND::show_context_menu(const QPoint& pos) {
  QTreeWidgetItem* item = m_tree->itemAt(pos);
  if (item == nullptr) return;
  m_tree->setCurrentItem(item);
  QMenu* menu = make_context_menu(row_of(item));
  menu->setAttribute(Qt::WA_DeleteOnClose);
  menu->popup(m_tree->viewport()->mapToGlobal(pos));
}

void LUM_STEPS_WND::on_properties() { QMessageBox::information(this, "Tasks", "Properties!"); }

bool LUM_STEPS_WND::eventFilter(QObject* watched, QEvent* event) {
  if (watched == m_tree && event->type() == QEvent::KeyPress) {
    auto* key = static_cast<QKeyEvent*>(event);
    QTreeWidgetItem* item = m_tree->currentItem();
    if (item != nullptr && (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter)) {
      start(row_of(item));
      return true;
    }
    if (item != nullptr && (key->key() == Qt::Key_Space || key->key() == Qt::Key_Asterisk)) {
      // Space toggles the caret row; with Ctrl (or "*") all below it too.
      const bool expand = !item->isExpanded();
      if (key->modifiers() & Qt::ControlModifier || key->key() == Qt::Key_Asterisk) {
        if (expand) m_tree->expandRecursively(m_tree->indexFromItem(item));
        else m_tree->collapseItem(item);
      } else {
        item->setExpanded(expand);
      }
      return true;
    }
  }
  return QWidget::eventFilter(watched, event);
}

LUM_STEPS_WND* lum_install_tasks_pane(LUM_DETACHED_FRAME* frame) {
  if (frame == nullptr) return nullptr;
  auto* pane = new LUM_STEPS_WND(frame);
  frame->set_tasks_pane(pane);
  LUM_DETACHED_FRAME::PANE_HOOKS hooks = frame->get_pane_hooks();
  hooks.update_tasks_status = [pane] { pane->update_status(); };
  hooks.start_next_task = [pane] { pane->start_next_task(); };
  frame->set_pane_hooks(std::move(hooks));
  // Busy and idle change what may be started.
  QObject::connect(frame, &LUM_DETACHED_FRAME::command_states_changed, pane, [pane] { pane->update_status(); });
  pane->load_steps(gen_get_common_misc_fullpath("lumex_tasks.xml"));
  return pane;
}
