#include "frame/lum_dock_pins.hh"

#include <QApplication>
#include <QBoxLayout>
#include <QDockWidget>
#include <QEnterEvent>
#include <QFrame>
#include <QLabel>
#include <QMainWindow>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QStyle>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>
#include <QVariantAnimation>

#include <algorithm>

namespace {

const int SLIDE_MS = 150;       // how long a panel takes to slide out or back
const int HOVER_DWELL_MS = 250;  // the pointer rests this long on a tab before its panel peeks out
const int LEAVE_GRACE_MS = 400;  // a peeking panel waits this long for the pointer to come back

LUM_DOCK_EDGE edge_of_area(Qt::DockWidgetArea area) {
  switch (area) {
    case Qt::RightDockWidgetArea: return LUM_DOCK_EDGE::RIGHT;
    case Qt::TopDockWidgetArea: return LUM_DOCK_EDGE::TOP;
    case Qt::BottomDockWidgetArea: return LUM_DOCK_EDGE::BOTTOM;
    default: return LUM_DOCK_EDGE::LEFT;
  }
}

Qt::ToolBarArea tool_bar_area(LUM_DOCK_EDGE edge) {
  switch (edge) {
    case LUM_DOCK_EDGE::LEFT: return Qt::LeftToolBarArea;
    case LUM_DOCK_EDGE::RIGHT: return Qt::RightToolBarArea;
    case LUM_DOCK_EDGE::TOP: return Qt::TopToolBarArea;
    case LUM_DOCK_EDGE::BOTTOM: return Qt::BottomToolBarArea;
  }
  return Qt::LeftToolBarArea;
}

LUM_RECT to_rect(const QRect& r) { return {r.x(), r.y(), r.width(), r.height()}; }
QRect to_qrect(const LUM_RECT& r) { return {r.x, r.y, r.width, r.height}; }

// A push-pin, upright when pinned, lying on its side with the point to the
// left when the bar is unpinned.
QIcon pin_icon(bool pinned) {
  QPixmap pixmap(32, 32);
  pixmap.fill(Qt::transparent);
  QPainter p(&pixmap);
  p.setRenderHint(QPainter::Antialiasing);
  if (!pinned) {
    p.translate(32, 0);
    p.rotate(90);
  }
  const QColor ink(0x3a, 0x46, 0x58);
  p.setPen(QPen(ink, 2.2, Qt::SolidLine, Qt::RoundCap));
  p.drawLine(QPointF(16, 21), QPointF(16, 30));  // the needle
  p.setPen(QPen(ink, 2));
  p.setBrush(QColor(0xd9, 0x5b, 0x43));
  p.drawRoundedRect(QRectF(11, 3, 10, 12), 2, 2);  // the grip
  p.drawRoundedRect(QRectF(7, 15, 18, 5), 2, 2);   // the collar
  p.end();
  return QIcon(pixmap);
}

QToolButton* title_button(QWidget* parent, const QIcon& icon, const QString& tip, const char* name) {
  auto* button = new QToolButton(parent);
  button->setObjectName(name);
  button->setIcon(icon);
  button->setToolTip(tip);
  button->setAutoRaise(true);
  button->setIconSize(QSize(14, 14));
  button->setFocusPolicy(Qt::NoFocus);
  return button;
}

// The title row of a bar or of its slid-out panel. Presses it does not use go
// on to the bar, which moves and floats as usual when dragged or double-clicked.
QWidget* make_title_bar(const QString& title, QToolButton** pin, QToolButton** floating, QToolButton** close) {
  auto* bar = new QWidget;
  bar->setObjectName("lum_dock_title");
  bar->setAutoFillBackground(true);
  QPalette palette = bar->palette();
  palette.setColor(QPalette::Window, palette.color(QPalette::Window).darker(106));
  bar->setPalette(palette);
  auto* layout = new QHBoxLayout(bar);
  layout->setContentsMargins(6, 1, 2, 1);
  layout->setSpacing(1);
  auto* label = new QLabel(title, bar);
  QFont font = label->font();
  font.setBold(true);
  label->setFont(font);
  layout->addWidget(label, 1);
  *pin = title_button(bar, pin_icon(true), "Auto Hide: collapse to a tab on the window edge", "lum_pin");
  layout->addWidget(*pin);
  if (floating != nullptr) {
    *floating = title_button(bar, bar->style()->standardIcon(QStyle::SP_TitleBarNormalButton), "Float or dock",
                             "lum_float");
    layout->addWidget(*floating);
  }
  if (close != nullptr) {
    *close = title_button(bar, bar->style()->standardIcon(QStyle::SP_TitleBarCloseButton), "Close", "lum_close");
    layout->addWidget(*close);
  }
  return bar;
}

// The handle on the inner side of a slid-out panel; dragging it sets the
// panel's size.
class SLIDE_GRIP : public QWidget {
 public:
  SLIDE_GRIP(LUM_DOCK_EDGE edge, std::function<void(QPoint)> dragged, QWidget* parent)
      : QWidget(parent), m_dragged(std::move(dragged)) {
    setObjectName("lum_slide_grip");
    const bool vertical = lum_dock_edge_is_vertical(edge);
    setCursor(vertical ? Qt::SplitHCursor : Qt::SplitVCursor);
    if (vertical) setFixedWidth(5);
    else setFixedHeight(5);
  }

 protected:
  void mousePressEvent(QMouseEvent* event) override { event->accept(); }
  void mouseMoveEvent(QMouseEvent* event) override {
    if (event->buttons() & Qt::LeftButton) m_dragged(event->globalPosition().toPoint());
  }
  void paintEvent(QPaintEvent*) override {
    QPainter p(this);
    p.fillRect(rect(), palette().color(QPalette::Mid));
  }

 private:
  std::function<void(QPoint)> m_dragged;
};

}  // namespace

// ---- edge tab ---------------------------------------------------------------------

LUM_EDGE_TAB::LUM_EDGE_TAB(const QString& text, LUM_DOCK_EDGE edge, QWidget* parent)
    : QAbstractButton(parent), m_edge(edge) {
  setText(text);
  setFocusPolicy(Qt::NoFocus);
  setToolTip(QString("%1 (auto-hidden): point at it or click to slide it out").arg(text));
  setAttribute(Qt::WA_Hover);
}

QSize LUM_EDGE_TAB::sizeHint() const {
  const QFontMetrics metrics(font());
  const QSize upright(metrics.height() + 10, metrics.horizontalAdvance(text()) + 24);
  return lum_dock_edge_is_vertical(m_edge) ? upright : upright.transposed();
}

void LUM_EDGE_TAB::paintEvent(QPaintEvent*) {
  QPainter p(this);
  p.setRenderHint(QPainter::Antialiasing);
  const bool lit = underMouse() || isDown();
  p.setPen(palette().color(QPalette::Mid));
  p.setBrush(lit ? palette().color(QPalette::Highlight).lighter(170) : palette().color(QPalette::Button));
  p.drawRoundedRect(QRectF(rect()).adjusted(1.5, 1.5, -1.5, -1.5), 3, 3);
  p.setPen(palette().color(QPalette::ButtonText));
  if (lum_dock_edge_is_vertical(m_edge)) {
    // Upright text reads from bottom to top on the left edge and from top to
    // bottom on the right one, its foot towards the window's inside.
    p.translate(rect().center());
    p.rotate(m_edge == LUM_DOCK_EDGE::LEFT ? -90 : 90);
    const QRect turned(-height() / 2, -width() / 2, height(), width());
    p.drawText(turned, Qt::AlignCenter, text());
  } else {
    p.drawText(rect(), Qt::AlignCenter, text());
  }
}

void LUM_EDGE_TAB::enterEvent(QEnterEvent* event) {
  QAbstractButton::enterEvent(event);
  update();
  emit hovered();
}

void LUM_EDGE_TAB::leaveEvent(QEvent* event) {
  QAbstractButton::leaveEvent(event);
  update();
  emit pointer_left();
}

// ---- the pins ---------------------------------------------------------------------

struct LUM_DOCK_PINS::BAR {
  QPointer<QDockWidget> dock;
  QToolButton* pin = nullptr;  // in the bar's own title
  LUM_DOCK_PIN_STATE state;
  LUM_SLIDE slide = LUM_SLIDE::HIDDEN;
  // While unpinned:
  QPointer<QWidget> pane;
  QPointer<QFrame> panel;
  QBoxLayout* pane_layout = nullptr;
  QToolButton* panel_pin = nullptr;
  QPointer<LUM_EDGE_TAB> tab;
  QAction* tab_action = nullptr;
  QVariantAnimation* animation = nullptr;
  QTimer hover_timer;
  QTimer leave_timer;
  bool pointer_on_tab = false;
  bool pointer_in_panel = false;
  double shown_fraction = 0.0;
};

LUM_DOCK_PINS::LUM_DOCK_PINS(QMainWindow* frame) : QObject(frame), m_frame(frame) {
  connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) { on_focus_changed(now); });
  frame->installEventFilter(this);
}

LUM_DOCK_PINS::~LUM_DOCK_PINS() = default;

void LUM_DOCK_PINS::add_bar(QDockWidget* dock) {
  if (dock == nullptr || find(dock) != nullptr) return;
  auto bar = std::make_unique<BAR>();
  bar->dock = dock;
  QToolButton* floating = nullptr;
  QToolButton* close = nullptr;
  QWidget* title = make_title_bar(dock->windowTitle(), &bar->pin, &floating, &close);
  dock->setTitleBarWidget(title);
  connect(bar->pin, &QToolButton::clicked, this, [this, dock] { unpin(dock); });
  connect(floating, &QToolButton::clicked, dock, [dock] { dock->setFloating(!dock->isFloating()); });
  connect(close, &QToolButton::clicked, dock, [dock] { dock->hide(); });
  BAR* raw = bar.get();
  for (QTimer* timer : {&raw->hover_timer, &raw->leave_timer}) timer->setSingleShot(true);
  raw->hover_timer.setInterval(HOVER_DWELL_MS);
  raw->leave_timer.setInterval(LEAVE_GRACE_MS);
  connect(&raw->hover_timer, &QTimer::timeout, this, [this, raw] {
    if (raw->pointer_on_tab) slide(raw->dock, LUM_SLIDE_EVENT::TAB_HOVERED);
  });
  connect(&raw->leave_timer, &QTimer::timeout, this, [this, raw] {
    if (!raw->pointer_on_tab && !raw->pointer_in_panel) slide(raw->dock, LUM_SLIDE_EVENT::POINTER_LEFT);
  });
  raw->animation = new QVariantAnimation(this);
  raw->animation->setDuration(SLIDE_MS);
  raw->animation->setEasingCurve(QEasingCurve::OutCubic);
  connect(raw->animation, &QVariantAnimation::valueChanged, this, [this, raw](const QVariant& value) {
    place(raw, value.toDouble());
  });
  connect(raw->animation, &QVariantAnimation::finished, this, [raw] {
    if (raw->slide == LUM_SLIDE::HIDDEN && raw->panel) raw->panel->hide();
  });
  m_bars.push_back(std::move(bar));
}

LUM_DOCK_PINS::BAR* LUM_DOCK_PINS::find(QDockWidget* dock) const {
  for (const auto& bar : m_bars)
    if (bar->dock == dock) return bar.get();
  return nullptr;
}

LUM_DOCK_PINS::BAR* LUM_DOCK_PINS::find_panel(QObject* object) const {
  for (const auto& bar : m_bars)
    if (bar->panel == object || bar->tab == object) return bar.get();
  return nullptr;
}

bool LUM_DOCK_PINS::is_pinned(QDockWidget* dock) const {
  const BAR* bar = find(dock);
  return bar == nullptr || bar->state.pinned;
}

QWidget* LUM_DOCK_PINS::pane(QDockWidget* dock) const {
  const BAR* bar = find(dock);
  if (bar == nullptr || bar->state.pinned) return dock != nullptr ? dock->widget() : nullptr;
  return bar->pane;
}

void LUM_DOCK_PINS::set_pane(QDockWidget* dock, QWidget* pane) {
  BAR* bar = find(dock);
  if (bar == nullptr || bar->state.pinned) {
    delete dock->widget();
    dock->setWidget(pane);
    return;
  }
  delete bar->pane;
  bar->pane = pane;
  if (pane != nullptr) {
    bar->pane_layout->addWidget(pane, 1);
    pane->show();
  }
}

LUM_SLIDE LUM_DOCK_PINS::slide_state(QDockWidget* dock) const {
  const BAR* bar = find(dock);
  return bar != nullptr ? bar->slide : LUM_SLIDE::HIDDEN;
}

QToolButton* LUM_DOCK_PINS::pin_button(QDockWidget* dock) const {
  const BAR* bar = find(dock);
  if (bar == nullptr) return nullptr;
  return bar->state.pinned ? bar->pin : bar->panel_pin;
}

LUM_EDGE_TAB* LUM_DOCK_PINS::edge_tab(QDockWidget* dock) const {
  const BAR* bar = find(dock);
  return bar != nullptr ? bar->tab.data() : nullptr;
}

QWidget* LUM_DOCK_PINS::slide_panel(QDockWidget* dock) const {
  const BAR* bar = find(dock);
  return bar != nullptr ? bar->panel.data() : nullptr;
}

QToolBar* LUM_DOCK_PINS::strip(LUM_DOCK_EDGE edge) {
  QPointer<QToolBar>& strip = m_strips[edge];
  if (strip) return strip;
  strip = new QToolBar(m_frame);
  strip->setObjectName(QString("lum_edge_tabs_%1").arg(lum_dock_edge_name(edge)));
  strip->setWindowTitle("Auto-hidden panes");
  strip->setMovable(false);
  strip->setFloatable(false);
  strip->setContextMenuPolicy(Qt::PreventContextMenu);
  strip->toggleViewAction()->setVisible(false);
  strip->layout()->setContentsMargins(1, 1, 1, 1);
  if (edge == LUM_DOCK_EDGE::TOP) m_frame->addToolBarBreak(Qt::TopToolBarArea);
  m_frame->addToolBar(tool_bar_area(edge), strip);
  return strip;
}

void LUM_DOCK_PINS::update_strips() {
  for (auto& [edge, strip] : m_strips)
    if (strip) strip->setVisible(!strip->actions().isEmpty());
}

void LUM_DOCK_PINS::unpin(QDockWidget* dock) {
  BAR* bar = find(dock);
  if (bar == nullptr || !bar->state.pinned) return;
  if (dock->isFloating()) dock->setFloating(false);
  bar->state.edge = edge_of_area(m_frame->dockWidgetArea(dock));
  const int current = lum_dock_edge_is_vertical(bar->state.edge) ? dock->width() : dock->height();
  if (dock->isVisible() && current > 0) bar->state.slide_size = current;
  bar->state.pinned = false;
  bar->slide = LUM_SLIDE::HIDDEN;

  // The pane moves into the panel; the empty bar stays hidden in the layout,
  // which keeps its place for the day it is pinned again.
  QWidget* pane = dock->widget();
  dock->setWidget(nullptr);
  dock->hide();
  dock->toggleViewAction()->setEnabled(false);

  const LUM_DOCK_EDGE edge = bar->state.edge;
  auto* panel = new QFrame(m_frame);
  panel->setObjectName(QString("lum_slide_panel_%1").arg(dock->objectName()));
  panel->setFrameShape(QFrame::StyledPanel);
  panel->setAutoFillBackground(true);
  const bool vertical = lum_dock_edge_is_vertical(edge);
  auto* outer = new QBoxLayout(vertical ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom, panel);
  outer->setContentsMargins(0, 0, 0, 0);
  outer->setSpacing(0);
  auto* column = new QVBoxLayout;
  column->setSpacing(0);
  QToolButton* panel_pin = nullptr;
  column->addWidget(make_title_bar(dock->windowTitle(), &panel_pin, nullptr, nullptr));
  panel_pin->setIcon(pin_icon(false));
  panel_pin->setToolTip("Dock: pin the pane back in its place");
  auto* grip = new SLIDE_GRIP(
      edge,
      [this, bar](QPoint global) {
        const LUM_RECT area = slide_area();
        const QPoint at = m_frame->mapFromGlobal(global);
        int size = 0;
        switch (bar->state.edge) {
          case LUM_DOCK_EDGE::LEFT: size = at.x() - area.x; break;
          case LUM_DOCK_EDGE::RIGHT: size = area.x + area.width - at.x(); break;
          case LUM_DOCK_EDGE::TOP: size = at.y() - area.y; break;
          case LUM_DOCK_EDGE::BOTTOM: size = area.y + area.height - at.y(); break;
        }
        bar->state.slide_size = lum_clamp_slide_size(bar->state.edge, size, area);
        place(bar, 1.0);
      },
      panel);
  const bool grip_first = edge == LUM_DOCK_EDGE::RIGHT || edge == LUM_DOCK_EDGE::BOTTOM;
  if (grip_first) outer->addWidget(grip);
  outer->addLayout(column, 1);
  if (!grip_first) outer->addWidget(grip);
  if (pane != nullptr) {
    column->addWidget(pane, 1);
    pane->show();
  }
  panel->installEventFilter(this);
  panel->hide();
  bar->panel = panel;
  bar->pane = pane;
  bar->pane_layout = column;
  bar->panel_pin = panel_pin;
  connect(panel_pin, &QToolButton::clicked, this, [this, dock] { pin(dock); });

  auto* tab = new LUM_EDGE_TAB(dock->windowTitle(), edge);
  tab->setObjectName(QString("lum_edge_tab_%1").arg(dock->objectName()));
  bar->tab = tab;
  bar->tab_action = strip(edge)->addWidget(tab);
  connect(tab, &LUM_EDGE_TAB::clicked, this, [this, dock] { slide(dock, LUM_SLIDE_EVENT::TAB_CLICKED); });
  connect(tab, &LUM_EDGE_TAB::hovered, this, [bar] {
    bar->pointer_on_tab = true;
    bar->leave_timer.stop();
    bar->hover_timer.start();
  });
  connect(tab, &LUM_EDGE_TAB::pointer_left, this, [bar] {
    bar->pointer_on_tab = false;
    bar->hover_timer.stop();
    bar->leave_timer.start();
  });
  update_strips();
  emit pins_changed();
}

void LUM_DOCK_PINS::pin(QDockWidget* dock) {
  BAR* bar = find(dock);
  if (bar == nullptr || bar->state.pinned) return;
  bar->animation->stop();
  bar->hover_timer.stop();
  bar->leave_timer.stop();
  const bool had_focus = bar->panel && bar->panel->isAncestorOf(QApplication::focusWidget());
  QWidget* pane = bar->pane;
  if (pane != nullptr) dock->setWidget(pane);
  // The pin just clicked sits in the panel: the panel goes once the click is over.
  if (bar->panel) {
    bar->panel->hide();
    bar->panel->deleteLater();
  }
  if (bar->tab_action != nullptr) {
    if (QWidget* strip = bar->tab ? bar->tab->parentWidget() : nullptr) strip->removeAction(bar->tab_action);
    bar->tab_action->deleteLater();  // takes the tab with it
    bar->tab_action = nullptr;
  }
  if (bar->tab) bar->tab->hide();
  bar->tab = nullptr;
  bar->panel = nullptr;
  bar->pane = nullptr;
  bar->pane_layout = nullptr;
  bar->panel_pin = nullptr;
  bar->slide = LUM_SLIDE::HIDDEN;
  bar->pointer_on_tab = bar->pointer_in_panel = false;
  bar->state.pinned = true;
  dock->toggleViewAction()->setEnabled(true);
  dock->show();
  if (bar->state.slide_size > 0)
    m_frame->resizeDocks({dock}, {bar->state.slide_size},
                         lum_dock_edge_is_vertical(bar->state.edge) ? Qt::Horizontal : Qt::Vertical);
  if (had_focus && pane != nullptr) pane->setFocus();
  update_strips();
  emit pins_changed();
}

LUM_RECT LUM_DOCK_PINS::slide_area() const {
  // The panes' region: the centre and the docked bars, without the tab strips,
  // tool bar and status bar around them.
  QRect area = m_frame->centralWidget() != nullptr ? m_frame->centralWidget()->geometry() : QRect();
  for (QDockWidget* dock : m_frame->findChildren<QDockWidget*>(Qt::FindDirectChildrenOnly))
    if (dock->isVisible() && !dock->isFloating()) area = area.united(dock->geometry());
  if (area.isEmpty()) area = m_frame->rect();
  return to_rect(area);
}

void LUM_DOCK_PINS::place(BAR* bar, double fraction) {
  if (!bar->panel) return;
  bar->shown_fraction = fraction;
  const LUM_RECT area = slide_area();
  bar->state.slide_size = lum_clamp_slide_size(bar->state.edge, bar->state.slide_size, area);
  bar->panel->setGeometry(to_qrect(lum_slide_rect(bar->state.edge, bar->state.slide_size, area, fraction)));
  bar->panel->raise();
}

void LUM_DOCK_PINS::slide(QDockWidget* dock, LUM_SLIDE_EVENT event) {
  BAR* bar = find(dock);
  if (bar == nullptr || bar->state.pinned) return;
  apply(bar, lum_next_slide(bar->slide, event));
}

void LUM_DOCK_PINS::apply(BAR* bar, LUM_SLIDE next) {
  const LUM_SLIDE before = bar->slide;
  if (next == before || !bar->panel) return;
  bar->slide = next;
  if (next == LUM_SLIDE::HIDDEN) {
    if (bar->panel->isAncestorOf(QApplication::focusWidget()) && m_frame->centralWidget() != nullptr)
      m_frame->centralWidget()->setFocus();
    bar->animation->stop();
    bar->animation->setStartValue(bar->shown_fraction);
    bar->animation->setEndValue(0.0);
    bar->animation->start();
    return;
  }
  // One panel out at a time.
  for (const auto& other : m_bars)
    if (other.get() != bar && other->slide != LUM_SLIDE::HIDDEN)
      apply(other.get(), lum_next_slide(other->slide, LUM_SLIDE_EVENT::OTHER_OPENED));
  if (before == LUM_SLIDE::HIDDEN) {
    place(bar, bar->panel->isVisible() ? bar->shown_fraction : 0.0);
    bar->panel->show();
    bar->animation->stop();
    bar->animation->setStartValue(bar->shown_fraction);
    bar->animation->setEndValue(1.0);
    bar->animation->start();
  }
  if (next == LUM_SLIDE::OPEN && bar->pane && !bar->pane->isAncestorOf(QApplication::focusWidget())) {
    // The focus goes where it was last in the pane, else to its first widget
    // that takes clicks and keys.
    QWidget* target = bar->pane->focusWidget();
    if (target == nullptr) {
      for (QWidget* w : bar->pane->findChildren<QWidget*>()) {
        if (w->focusPolicy() == Qt::StrongFocus && w->isEnabled() && w->isVisibleTo(bar->pane)) {
          target = w;
          break;
        }
      }
    }
    (target != nullptr ? target : bar->pane.data())->setFocus(Qt::OtherFocusReason);
  }
}

void LUM_DOCK_PINS::on_focus_changed(QWidget* now) {
  if (now == nullptr || now->window() != m_frame) return;  // dialogs and menus leave panels alone
  for (const auto& bar : m_bars) {
    if (bar->slide == LUM_SLIDE::HIDDEN || !bar->panel) continue;
    const bool inside = bar->panel->isAncestorOf(now) || now == bar->panel || now == bar->tab;
    apply(bar.get(), lum_next_slide(bar->slide, inside ? LUM_SLIDE_EVENT::FOCUS_INSIDE : LUM_SLIDE_EVENT::FOCUS_OUTSIDE));
  }
}

bool LUM_DOCK_PINS::eventFilter(QObject* watched, QEvent* event) {
  if (watched == m_frame) {
    if (event->type() == QEvent::Resize || event->type() == QEvent::LayoutRequest) {
      for (const auto& bar : m_bars)
        if (bar->panel && bar->panel->isVisible()) place(bar.get(), bar->shown_fraction);
    }
    return false;
  }
  if (BAR* bar = find_panel(watched)) {
    if (event->type() == QEvent::Enter) {
      bar->pointer_in_panel = true;
      bar->leave_timer.stop();
    } else if (event->type() == QEvent::Leave) {
      bar->pointer_in_panel = false;
      bar->leave_timer.start();
    }
  }
  return false;
}

std::string LUM_DOCK_PINS::save() const {
  LUM_DOCK_PIN_STATES states;
  for (const auto& bar : m_bars)
    if (bar->dock) states[bar->dock->objectName().toStdString()] = bar->state;
  for (auto& [name, state] : states)
    if (state.pinned) state = LUM_DOCK_PIN_STATE();
  return lum_dock_pin_states_to_text(states);
}

void LUM_DOCK_PINS::restore(const std::string& text) {
  const LUM_DOCK_PIN_STATES states = lum_dock_pin_states_from_text(text);
  for (const auto& bar : m_bars) {
    if (!bar->dock) continue;
    auto it = states.find(bar->dock->objectName().toStdString());
    const bool unpinned = it != states.end() && !it->second.pinned;
    if (unpinned && bar->state.pinned) {
      bar->state.slide_size = it->second.slide_size;
      bar->dock->hide();  // its width now is the layout's, not the panel's
      unpin(bar->dock);
    } else if (!unpinned && !bar->state.pinned) {
      pin(bar->dock);
    }
  }
}
