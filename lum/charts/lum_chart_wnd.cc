#include "charts/lum_chart_wnd.hh"

#include <QActionGroup>
#include <QMenu>
#include <QPainter>

LUM_CHART_WND::LUM_CHART_WND(QWidget* parent) : LUM_CHART_CANVAS(parent) {
  setObjectName(QStringLiteral("lum_chart"));
}

bool LUM_CHART_WND::load_rdb_chart(const RDB_OBJECT* object) {
  LUM_CHART_DATA data;
  if (!lum_read_chart(object, &data)) return false;
  set_data(std::move(data));
  return true;
}

void LUM_CHART_WND::set_data(LUM_CHART_DATA data) {
  m_data = std::move(data);
  m_mode = m_data.default_mode;
  relayout();
}

void LUM_CHART_WND::set_mode(LUM_CHART_MODE mode) {
  m_mode = mode;
  relayout();
}

void LUM_CHART_WND::layout_chart(const QRect& rect) {
  const LUM_TEXT_MEASURE measure = lum_chart_measure(get_fonts());
  m_bars = lum_layout_bar_chart(m_data, rect, measure);
  m_pie = lum_layout_pie(m_data, rect, measure);
}

void LUM_CHART_WND::paint_chart(QPainter* painter) {
  if (m_mode == LUM_CHART_MODE::PIE)
    lum_paint_pie(painter, m_pie, get_fonts(), get_hot_index());
  else
    lum_paint_axis_chart(painter, m_bars, get_fonts(), get_hot_index());
}

int LUM_CHART_WND::hot_index_at(const QPoint& point) const {
  return m_mode == LUM_CHART_MODE::PIE ? lum_slice_at(m_pie, point) : lum_bar_at(m_bars, point);
}

QString LUM_CHART_WND::tooltip_at(const QPoint& point) const {
  if (m_mode == LUM_CHART_MODE::BARS) {
    const int bar = lum_bar_at(m_bars, point);
    return bar < 0 ? QString() : m_bars.bars[static_cast<size_t>(bar)].tooltip;
  }
  const int slice = lum_slice_at(m_pie, point);
  if (slice >= 0) return m_pie.slices[static_cast<size_t>(slice)].tooltip;
  for (const LUM_LEGEND_ENTRY& entry : m_pie.legend) {
    if (entry.swatch.united(entry.text.rect).contains(point)) return entry.tooltip;
  }
  return QString();
}

QMenu* LUM_CHART_WND::create_context_menu() {
  QMenu* menu = LUM_CHART_CANVAS::create_context_menu();
  QAction* first = menu->actions().isEmpty() ? nullptr : menu->actions().front();
  auto* group = new QActionGroup(menu);
  QAction* bars = new QAction(QStringLiteral("&Bar Chart"), menu);
  QAction* pie = new QAction(QStringLiteral("P&ie Chart"), menu);
  bars->setObjectName(QStringLiteral("show_bars"));
  pie->setObjectName(QStringLiteral("show_pie"));
  for (QAction* action : {bars, pie}) {
    action->setCheckable(true);
    group->addAction(action);
  }
  bars->setChecked(m_mode == LUM_CHART_MODE::BARS);
  pie->setChecked(m_mode == LUM_CHART_MODE::PIE);
  connect(bars, &QAction::triggered, this, [this] { set_mode(LUM_CHART_MODE::BARS); });
  connect(pie, &QAction::triggered, this, [this] { set_mode(LUM_CHART_MODE::PIE); });
  menu->insertAction(first, bars);
  menu->insertAction(first, pie);
  menu->insertSeparator(first);
  return menu;
}
