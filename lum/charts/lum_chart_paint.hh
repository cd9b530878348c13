// Painting of the chart layouts (lum_chart_layout.hh) with a QPainter: on the
// screen, into a picture file or into an SVG document alike.
#pragma once

#include "charts/lum_chart_layout.hh"

#include <QColor>
#include <QFont>

class QPainter;

// The fonts a chart is laid out and painted with.
struct LUM_CHART_FONTS {
  QFont title;
  QFont label;
};
LUM_CHART_FONTS lum_chart_fonts(const QFont& base);
// Text sizes measured with the fonts.
LUM_TEXT_MEASURE lum_chart_measure(const LUM_CHART_FONTS& fonts);

// The colour of slice (and legend entry) i; they repeat after LUM_PIE_COLOR_COUNT.
QColor lum_pie_color(int index);
// The colour of a bar: its own when it has one (0xRRGGBB), else the default.
QColor lum_bar_color(uint32_t color);

// The axis chart (histogram or bar chart); `hot` is the bar under the mouse
// (-1 for none), drawn a little lighter.
void lum_paint_axis_chart(QPainter* painter, const LUM_AXIS_CHART_LAYOUT& layout, const LUM_CHART_FONTS& fonts,
                          int hot = -1);
void lum_paint_pie(QPainter* painter, const LUM_PIE_LAYOUT& layout, const LUM_CHART_FONTS& fonts, int hot = -1);
