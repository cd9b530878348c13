// LUM_CHART_WND: a chart table of the report database (labelled counts, such
// as a path's delay statistics) drawn either as bars over a count scale or
// as a pie with its legend. It starts in the presentation the table suggests;
// the context menu switches between the two.
#pragma once

#include "charts/lum_chart_canvas.hh"

class RDB_OBJECT;

class LUM_CHART_WND : public LUM_CHART_CANVAS {
  Q_OBJECT

 public:
  explicit LUM_CHART_WND(QWidget* parent = nullptr);

  // False (an internal error) when the object is not a chart table.
  bool load_rdb_chart(const RDB_OBJECT* object);
  void set_data(LUM_CHART_DATA data);
  const LUM_CHART_DATA& get_data() const { return m_data; }

  void set_mode(LUM_CHART_MODE mode);
  LUM_CHART_MODE get_mode() const { return m_mode; }
  const LUM_AXIS_CHART_LAYOUT& get_bar_layout() const { return m_bars; }
  const LUM_PIE_LAYOUT& get_pie_layout() const { return m_pie; }

  QString tooltip_at(const QPoint& point) const override;
  QMenu* create_context_menu() override;

 protected:
  void layout_chart(const QRect& rect) override;
  void paint_chart(QPainter* painter) override;
  int hot_index_at(const QPoint& point) const override;

 private:
  LUM_CHART_DATA m_data;
  LUM_CHART_MODE m_mode = LUM_CHART_MODE::BARS;
  LUM_AXIS_CHART_LAYOUT m_bars;
  LUM_PIE_LAYOUT m_pie;
};
