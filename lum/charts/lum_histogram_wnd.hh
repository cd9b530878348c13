// LUM_HISTOGRAM_WND: a histogram object of the report database drawn as bars
// over a count scale, with edge labels in the bin unit, the two axis titles
// and the count of the bar under the mouse as its tooltip. A click on a bar
// reports the range of bins it stands for (bins_clicked); the report browser
// turns that into a command.
#pragma once

#include "charts/lum_chart_canvas.hh"

class RDB_OBJECT;

class LUM_HISTOGRAM_WND : public LUM_CHART_CANVAS {
  Q_OBJECT

 public:
  explicit LUM_HISTOGRAM_WND(QWidget* parent = nullptr);

  // False (an internal error) when the object is not a histogram.
  bool load_rdb_histogram(const RDB_OBJECT* object);
  void set_data(LUM_HISTOGRAM_DATA data);
  const LUM_HISTOGRAM_DATA& get_data() const { return m_data; }
  const LUM_AXIS_CHART_LAYOUT& get_layout() const { return m_layout; }

  QString tooltip_at(const QPoint& point) const override;

 signals:
  // Bins first..last (one drawn bar) were clicked.
  void bins_clicked(int first, int last);

 protected:
  void layout_chart(const QRect& rect) override;
  void paint_chart(QPainter* painter) override;
  int hot_index_at(const QPoint& point) const override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  LUM_HISTOGRAM_DATA m_data;
  LUM_AXIS_CHART_LAYOUT m_layout;
};
