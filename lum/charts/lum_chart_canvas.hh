// LUM_CHART_CANVAS: what the chart windows share. A chart is laid out again
// on every size change and painted from its layout; the canvas keeps the
// fonts, the out-of-date flag (the report browser supplies the watermark
// painter, so that charts need not know it), the tooltip of the shape under
// the mouse, and a context menu that saves the chart as a PNG picture or an
// SVG drawing.
#pragma once

#include "charts/lum_chart_paint.hh"

#include <QWidget>

#include <functional>

class QMenu;

class LUM_CHART_CANVAS : public QWidget {
  Q_OBJECT

 public:
  using BACKGROUND_PAINTER = std::function<void(QPainter* painter, const QRect& rect)>;

  explicit LUM_CHART_CANVAS(QWidget* parent = nullptr);

  // The out-of-date watermark is painted by this function behind the chart.
  static void set_out_of_date_painter(BACKGROUND_PAINTER painter);
  void set_out_of_date(bool out_of_date);
  bool is_out_of_date() const { return m_out_of_date; }

  const LUM_CHART_FONTS& get_fonts() const { return m_fonts; }
  // The text of the shape under a point (empty: none).
  virtual QString tooltip_at(const QPoint& point) const = 0;

  // Writes the chart at its current size; false with a reason when the
  // file cannot be written. The format follows the name's extension (.svg
  // gives a drawing, anything else a PNG picture).
  bool save_image(const QString& file, QString* error);
  // The context menu as it would pop up now (the caller owns it).
  virtual QMenu* create_context_menu();

 signals:
  // The layout was made again (after a size or data change).
  void laid_out();

 protected:
  // Lays the chart out in a rectangle / paints it there.
  virtual void layout_chart(const QRect& rect) = 0;
  virtual void paint_chart(QPainter* painter) = 0;
  // The index of the shape under a point (highlighting); -1 for none.
  virtual int hot_index_at(const QPoint& point) const = 0;
  int get_hot_index() const { return m_hot; }
  // Lays out again at the current size and repaints.
  void relayout();

  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  void save_interactive(const QString& title, const QString& filter, const QString& suffix);

  LUM_CHART_FONTS m_fonts;
  bool m_out_of_date = false;
  int m_hot = -1;
};
