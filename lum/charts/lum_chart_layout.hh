// Chart geometry: plain functions from the chart data and a rectangle to the
// shapes a painter draws (rectangles, texts, slices). Nothing here paints or
// needs a screen; text sizes come from a measuring function, which the
// widgets take from their fonts and the tests from a fixed-pitch rule.
//
// Histogram and bar chart share one frame: the Y-axis title at the left, the
// count scale beside it, the bar area, the X scale under the bars and the
// X-axis title at the bottom. A histogram with more bins than its bar area
// has pixel columns merges the bins of each pixel column into one bar (their
// counts summed), so that a 100,000-bin histogram draws at most one bar per
// column and its scale stays true to what is drawn.
#pragma once

#include "charts/lum_chart_data.hh"

#include <QPoint>
#include <QRect>
#include <QSize>
#include <QString>

#include <functional>
#include <vector>

enum class LUM_CHART_FONT { TITLE, LABEL };
using LUM_TEXT_MEASURE = std::function<QSize(LUM_CHART_FONT font, const QString& text)>;

// The count label step of a scale H pixels high whose labels are h pixels
// high: the first step s of the table with (max * h) / s + h < H (integer
// division); the maximum itself when none fits (1 when the maximum is 0).
long long lum_scale_step(long long max_count, int label_height, int scale_height, const std::vector<long long>& steps);
const std::vector<long long>& lum_histogram_steps();  // 1, 5, 10, 25, 50, ... 100000
const std::vector<long long>& lum_bar_chart_steps();  // 1, 5, 10, 20, 25, 50, 100, 500

struct LUM_CHART_TEXT {
  QRect rect;
  QString text;
  int align = 0;  // Qt::Alignment flags
};

// One drawn bar: a histogram column (bins first..last merged) or a chart row.
struct LUM_CHART_BAR {
  QRect rect;  // empty height for a zero count
  int first = 0;
  int last = 0;
  long long count = 0;
  uint32_t color = 0xffffffffu;
  QString tooltip;
};

struct LUM_AXIS_CHART_LAYOUT {
  QRect y_title_rect;
  QRect x_title_rect;
  QRect y_scale_rect;
  QRect x_scale_rect;
  QRect bar_area;
  QString x_title;
  QString y_title;
  std::vector<LUM_CHART_TEXT> y_labels;
  std::vector<LUM_CHART_TEXT> x_labels;
  std::vector<LUM_CHART_BAR> bars;
  long long max_count = 0;
  double pixels_per_count = 0;
  long long y_step = 0;
  // Bins per drawn bar: 1 unless bins were merged per pixel column.
  bool merged = false;
  // Said in the bar area when there is nothing to draw; empty otherwise.
  QString message;
};

// The whole histogram in a rectangle.
LUM_AXIS_CHART_LAYOUT lum_layout_histogram(const LUM_HISTOGRAM_DATA& data, const QRect& rect,
                                           const LUM_TEXT_MEASURE& measure);
// The bar presentation of a chart table.
LUM_AXIS_CHART_LAYOUT lum_layout_bar_chart(const LUM_CHART_DATA& data, const QRect& rect,
                                           const LUM_TEXT_MEASURE& measure);
// The bar whose column (its width, the bar area's height) holds a point; -1 when none.
int lum_bar_at(const LUM_AXIS_CHART_LAYOUT& layout, const QPoint& point);

// How the bins of a histogram fall into drawn columns: the first bin of each
// column, with one entry more than columns (the end). With no more bins than
// pixels every bin is a column; else each of `pixels` columns takes the bins
// whose index i satisfies column * bins / pixels <= i < (column+1) * bins / pixels.
std::vector<int> lum_bin_columns(int bins, int pixels);

// ---- pie and legend --------------------------------------------------------------

// The number of slice colours before they repeat.
inline constexpr int LUM_PIE_COLOR_COUNT = 14;

struct LUM_PIE_SLICE {
  int row = 0;
  long long count = 0;
  int start_degrees = 0;
  int end_degrees = 0;
  QPoint start_point;
  QPoint end_point;
  bool large = false;  // at least nine tenths of the total
  int color_index = 0;
  QString tooltip;  // "count, label, percent%"
};

struct LUM_LEGEND_ENTRY {
  int row = 0;
  QRect swatch;
  LUM_CHART_TEXT text;
  int color_index = 0;
  QString tooltip;  // the long row text
};

struct LUM_PIE_LAYOUT {
  QRect pie;  // the pie's square
  QPoint center;
  int radius = 0;
  std::vector<LUM_PIE_SLICE> slices;
  QRect legend_rect;
  LUM_CHART_TEXT legend_title;
  std::vector<LUM_LEGEND_ENTRY> legend;
  // Rows whose legend entries did not fit.
  int hidden_entries = 0;
  QString message;
};

// The slices' angles, walking the rows with a running sum s: a slice runs
// from s * 360 / total to (s + count) * 360 / total whole degrees. Negative
// counts draw as nothing.
std::vector<LUM_PIE_SLICE> lum_pie_slices(const LUM_CHART_DATA& data, const QRect& square);
// Legend entries placed top to bottom in columns that wrap to the right;
// entries that fit in no column are counted in *hidden.
std::vector<LUM_LEGEND_ENTRY> lum_layout_legend(const std::vector<QString>& texts, const QRect& rect, int first_top,
                                                const LUM_TEXT_MEASURE& measure, int* hidden);
LUM_PIE_LAYOUT lum_layout_pie(const LUM_CHART_DATA& data, const QRect& rect, const LUM_TEXT_MEASURE& measure);
// The slice under a point; -1 outside the pie or on an empty slice.
int lum_slice_at(const LUM_PIE_LAYOUT& layout, const QPoint& point);
