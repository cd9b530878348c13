#include "charts/lum_histogram_wnd.hh"

#include <QMouseEvent>
#include <QPainter>

LUM_HISTOGRAM_WND::LUM_HISTOGRAM_WND(QWidget* parent) : LUM_CHART_CANVAS(parent) {
  setObjectName(QStringLiteral("lum_histogram"));
}

bool LUM_HISTOGRAM_WND::load_rdb_histogram(const RDB_OBJECT* object) {
  LUM_HISTOGRAM_DATA data;
  if (!lum_read_histogram(object, &data)) return false;
  set_data(std::move(data));
  return true;
}

void LUM_HISTOGRAM_WND::set_data(LUM_HISTOGRAM_DATA data) {
  m_data = std::move(data);
  relayout();
}

void LUM_HISTOGRAM_WND::layout_chart(const QRect& rect) {
  m_layout = lum_layout_histogram(m_data, rect, lum_chart_measure(get_fonts()));
}

void LUM_HISTOGRAM_WND::paint_chart(QPainter* painter) {
  lum_paint_axis_chart(painter, m_layout, get_fonts(), get_hot_index());
}

int LUM_HISTOGRAM_WND::hot_index_at(const QPoint& point) const { return lum_bar_at(m_layout, point); }

QString LUM_HISTOGRAM_WND::tooltip_at(const QPoint& point) const {
  const int bar = lum_bar_at(m_layout, point);
  return bar < 0 ? QString() : m_layout.bars[static_cast<size_t>(bar)].tooltip;
}

void LUM_HISTOGRAM_WND::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) {
    const int bar = lum_bar_at(m_layout, event->position().toPoint());
    if (bar >= 0) {
      const LUM_CHART_BAR& hit = m_layout.bars[static_cast<size_t>(bar)];
      emit bins_clicked(hit.first, hit.last);
      return;
    }
  }
  LUM_CHART_CANVAS::mouseReleaseEvent(event);
}
