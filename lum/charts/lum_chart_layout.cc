#include "charts/lum_chart_layout.hh"

#include <algorithm>
#include <cmath>

namespace {

// Rectangles by their edges, right and bottom exclusive.
QRect edges(int left, int top, int right, int bottom) {
  return QRect(left, top, std::max(0, right - left), std::max(0, bottom - top));
}
int right_of(const QRect& r) { return r.x() + r.width(); }
int bottom_of(const QRect& r) { return r.y() + r.height(); }

const QString kAlphabet = QStringLiteral("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ");
// The digit strings measured for the edge labels and the count labels.
const QString kEdgeDigits = QStringLiteral("0123456778");
const QString kCountDigits = QStringLiteral("0123456789");

constexpr int kScalePadding = 6;  // between the count labels and the bars
constexpr int kMaxCountLabels = 1000;

enum class FRAME_KIND { HISTOGRAM, BAR_CHART };

// The frame of an axis chart: titles and scales around the bar area.
void layout_frame(FRAME_KIND kind, const QRect& rect, long long max_count, const LUM_TEXT_MEASURE& measure,
                  LUM_AXIS_CHART_LAYOUT* layout) {
  int left = rect.x(), top = rect.y(), right = right_of(rect), bottom = bottom_of(rect);
  const int h0 = measure(LUM_CHART_FONT::TITLE, kAlphabet).height();
  if (kind == FRAME_KIND::HISTOGRAM) {
    top += h0;
    right -= h0 / 2;
  } else {
    right -= h0;
  }
  const int hx = measure(LUM_CHART_FONT::TITLE, layout->x_title).height();
  // The Y-axis title is written upwards: its height is the room it takes.
  const int wyl = measure(LUM_CHART_FONT::TITLE, layout->y_title).height() + 4;
  const int wys = measure(LUM_CHART_FONT::LABEL, QString::number(max_count)).width() + kScalePadding;
  const int hxs = measure(LUM_CHART_FONT::LABEL, kEdgeDigits).height() + 2;
  layout->y_title_rect = edges(left, top, left + wyl, bottom - 2 * hx - hxs);
  layout->x_title_rect = edges(left + wyl + wys, bottom - 2 * hx, right, bottom);
  layout->y_scale_rect = edges(left + wyl, top, left + wyl + wys, bottom - 2 * hx - hxs);
  layout->x_scale_rect = edges(left + wyl + wys, bottom - 2 * hx - hxs, right, bottom - 2 * hx);
  if (kind == FRAME_KIND::HISTOGRAM) {
    const QSize digits = measure(LUM_CHART_FONT::LABEL, kEdgeDigits);
    layout->bar_area = edges(layout->x_scale_rect.x() + digits.width() / 2, top, right - digits.width() / 2,
                             layout->x_scale_rect.y() - digits.height() / 2);
  } else {
    const int h = measure(LUM_CHART_FONT::LABEL, kCountDigits).height();
    layout->bar_area = edges(right_of(layout->y_scale_rect), top, right, layout->x_scale_rect.y() - h / 2);
  }
}

// Pixels per count, leaving a label's height above the tallest bar.
double pixels_per_count(const QRect& area, long long max_count, const LUM_TEXT_MEASURE& measure) {
  if (max_count <= 0) return 0;
  const int hl = measure(LUM_CHART_FONT::LABEL, kCountDigits).height();
  return std::max(0, area.height() - hl) / static_cast<double>(max_count);
}

int bar_height(long long count, double ppc) {
  if (count <= 0) return 0;
  return static_cast<int>(static_cast<double>(count) * ppc);
}

void layout_count_scale(const std::vector<long long>& steps, const LUM_TEXT_MEASURE& measure,
                        LUM_AXIS_CHART_LAYOUT* layout) {
  layout->y_labels.clear();
  layout->y_step = 0;
  if (layout->max_count <= 0 || layout->pixels_per_count <= 0) return;
  const long long max = layout->max_count;
  const int h = measure(LUM_CHART_FONT::LABEL, QString::number(max)).height();
  const QRect& scale = layout->y_scale_rect;
  layout->y_step = lum_scale_step(max, h, scale.height(), steps);
  const double pixel_step = static_cast<double>(layout->y_step) * layout->pixels_per_count;
  for (long long k = 0; k * layout->y_step <= max && k < kMaxCountLabels; ++k) {
    const int label_bottom = bottom_of(scale) - static_cast<int>(std::lround(static_cast<double>(k) * pixel_step));
    LUM_CHART_TEXT label;
    label.rect = edges(scale.x(), label_bottom - h, right_of(scale) - kScalePadding / 2, label_bottom);
    label.text = QString::number(k * layout->y_step);
    label.align = Qt::AlignRight | Qt::AlignBottom;
    layout->y_labels.push_back(label);
  }
}

QRect bar_rect(const QRect& area, int left, int width, long long count, double ppc) {
  const int bottom = bottom_of(area);
  return edges(left, bottom - bar_height(count, ppc), left + width, bottom);
}

}  // namespace

long long lum_scale_step(long long max_count, int label_height, int scale_height,
                         const std::vector<long long>& steps) {
  if (max_count <= 0) return 1;
  for (long long s : steps) {
    if ((max_count * label_height) / s + label_height < scale_height) return s;
  }
  return max_count;
}

const std::vector<long long>& lum_histogram_steps() {
  static const std::vector<long long> steps = {1, 5, 10, 25, 50, 100, 500, 1000, 5000, 10000, 50000, 100000};
  return steps;
}

const std::vector<long long>& lum_bar_chart_steps() {
  static const std::vector<long long> steps = {1, 5, 10, 20, 25, 50, 100, 500};
  return steps;
}

std::vector<int> lum_bin_columns(int bins, int pixels) {
  std::vector<int> firsts;
  if (bins <= 0) return firsts;
  if (pixels <= 0) pixels = 1;
  const int columns = std::min(bins, pixels);
  firsts.reserve(static_cast<size_t>(columns) + 1);
  for (int c = 0; c <= columns; ++c)
    firsts.push_back(static_cast<int>(static_cast<int64_t>(c) * bins / columns));
  return firsts;
}

LUM_AXIS_CHART_LAYOUT lum_layout_histogram(const LUM_HISTOGRAM_DATA& data, const QRect& rect,
                                           const LUM_TEXT_MEASURE& measure) {
  LUM_AXIS_CHART_LAYOUT layout;
  layout.x_title = QString::fromStdString(data.x_title);
  layout.y_title = QString::fromStdString(data.y_title);
  const int n = static_cast<int>(data.bins.size());
  long long max_bin = 0;
  for (const LUM_HISTOGRAM_BIN& bin : data.bins) max_bin = std::max(max_bin, bin.count);
  layout_frame(FRAME_KIND::HISTOGRAM, rect, max_bin, measure, &layout);
  if (n == 0) {
    layout.message = QStringLiteral("No data");
    return layout;
  }
  std::vector<int> columns = lum_bin_columns(n, layout.bar_area.width());
  if (static_cast<int>(columns.size()) - 1 < n) {
    // Merged columns hold larger counts: lay the frame out again for the
    // widest count label, and the columns for the area that leaves.
    long long max_column = 0;
    for (size_t c = 0; c + 1 < columns.size(); ++c) {
      long long sum = 0;
      for (int i = columns[c]; i < columns[c + 1]; ++i) sum += data.bins[i].count;
      max_column = std::max(max_column, sum);
    }
    layout_frame(FRAME_KIND::HISTOGRAM, rect, max_column, measure, &layout);
    columns = lum_bin_columns(n, layout.bar_area.width());
  }
  const QRect& area = layout.bar_area;
  if (area.width() <= 0 || area.height() <= 0) {
    layout.message = QStringLiteral("Too small to draw");
    return layout;
  }
  const int column_count = static_cast<int>(columns.size()) - 1;
  layout.merged = column_count < n;
  const int column_width = layout.merged ? 1 : area.width() / n;
  layout.bars.reserve(static_cast<size_t>(column_count));
  for (int c = 0; c < column_count; ++c) {
    LUM_CHART_BAR bar;
    bar.first = columns[c];
    bar.last = columns[c + 1] - 1;
    long long biggest = -1;
    for (int i = bar.first; i <= bar.last; ++i) {
      const LUM_HISTOGRAM_BIN& bin = data.bins[i];
      bar.count += bin.count;
      if (bin.count > biggest) {
        biggest = bin.count;
        bar.color = bin.color;
      }
    }
    layout.max_count = std::max(layout.max_count, bar.count);
    layout.bars.push_back(bar);
  }
  layout.pixels_per_count = pixels_per_count(area, layout.max_count, measure);
  for (int c = 0; c < column_count; ++c) {
    LUM_CHART_BAR& bar = layout.bars[c];
    int width = column_width;
    // Narrow bars get one pixel more so that they still show as bars.
    if (!layout.merged && width < 3) width += 1;
    bar.rect = bar_rect(area, area.x() + c * column_width, width, bar.count, layout.pixels_per_count);
    if (layout.merged) {
      bar.tooltip = QStringLiteral("%1 (%2 to %3, %4 bins)")
                        .arg(bar.count)
                        .arg(QString::fromStdString(lum_histogram_edge_label(data, data.bins[bar.first].from)),
                             QString::fromStdString(lum_histogram_edge_label(data, data.bins[bar.last].to)))
                        .arg(bar.last - bar.first + 1);
    } else {
      bar.tooltip = QString::number(bar.count);
    }
  }
  if (layout.max_count <= 0) layout.message = QStringLiteral("All bins are empty");
  layout_count_scale(lum_histogram_steps(), measure, &layout);

  // Edge labels: one per column edge, thinned so that they never overlap.
  auto edge_text = [&](int edge) {
    const double value = edge < column_count ? data.bins[columns[edge]].from : data.bins.back().to;
    return QString::fromStdString(lum_histogram_edge_label(data, value));
  };
  int widest = measure(LUM_CHART_FONT::LABEL, kEdgeDigits).width();
  widest = std::max(widest, measure(LUM_CHART_FONT::LABEL, edge_text(0)).width());
  widest = std::max(widest, measure(LUM_CHART_FONT::LABEL, edge_text(column_count)).width());
  const int room = widest + 8;
  const int every = std::max(1, (room + column_width - 1) / column_width);
  for (int edge = 0; edge <= column_count; edge += every) {
    LUM_CHART_TEXT label;
    label.text = edge_text(edge);
    const int width = measure(LUM_CHART_FONT::LABEL, label.text).width();
    const int x = area.x() + edge * column_width;
    label.rect = QRect(x - width / 2, layout.x_scale_rect.y(), width, layout.x_scale_rect.height());
    label.align = Qt::AlignHCenter | Qt::AlignTop;
    layout.x_labels.push_back(label);
  }
  return layout;
}

LUM_AXIS_CHART_LAYOUT lum_layout_bar_chart(const LUM_CHART_DATA& data, const QRect& rect,
                                           const LUM_TEXT_MEASURE& measure) {
  LUM_AXIS_CHART_LAYOUT layout;
  layout.x_title = QString::fromStdString(data.x_title);
  layout.y_title = QString::fromStdString(data.y_title);
  for (const LUM_CHART_ROW& row : data.rows) layout.max_count = std::max(layout.max_count, row.count);
  layout_frame(FRAME_KIND::BAR_CHART, rect, layout.max_count, measure, &layout);
  const int n = static_cast<int>(data.rows.size());
  if (n == 0) {
    layout.message = QStringLiteral("No data");
    return layout;
  }
  const QRect& area = layout.bar_area;
  if (area.width() <= 0 || area.height() <= 0) {
    layout.message = QStringLiteral("Too small to draw");
    return layout;
  }
  layout.pixels_per_count = pixels_per_count(area, layout.max_count, measure);
  const long long total = lum_chart_total(data);
  const int slot = std::max(1, area.width() / n);
  for (int i = 0; i < n; ++i) {
    const int left = area.x() + i * slot;
    // More rows than pixels: the rows past the right edge are not drawn.
    if (left >= right_of(area)) break;
    const LUM_CHART_ROW& row = data.rows[i];
    LUM_CHART_BAR bar;
    bar.first = bar.last = i;
    bar.count = row.count;
    int width = slot;
    if (width < 3) width += 1;
    bar.rect = bar_rect(area, left, width, row.count, layout.pixels_per_count);
    bar.tooltip = QStringLiteral("%1 [%2] (%3%)")
                      .arg(QString::fromStdString(row.label))
                      .arg(row.count)
                      .arg(lum_chart_percent(row.count, total));
    layout.bars.push_back(bar);
    LUM_CHART_TEXT label;
    label.rect = QRect(left, layout.x_scale_rect.y(), slot, layout.x_scale_rect.height());
    label.text = QString::fromStdString(row.label);
    label.align = Qt::AlignHCenter | Qt::AlignTop;
    layout.x_labels.push_back(label);
  }
  if (layout.max_count <= 0) layout.message = QStringLiteral("All counts are zero");
  layout_count_scale(lum_bar_chart_steps(), measure, &layout);
  return layout;
}

int lum_bar_at(const LUM_AXIS_CHART_LAYOUT& layout, const QPoint& point) {
  const QRect& area = layout.bar_area;
  if (point.y() < area.y() || point.y() >= bottom_of(area)) return -1;
  for (size_t i = 0; i < layout.bars.size(); ++i) {
    const QRect& bar = layout.bars[i].rect;
    if (point.x() >= bar.x() && point.x() < right_of(bar)) return static_cast<int>(i);
  }
  return -1;
}

// ---- pie and legend --------------------------------------------------------------

std::vector<LUM_PIE_SLICE> lum_pie_slices(const LUM_CHART_DATA& data, const QRect& square) {
  std::vector<LUM_PIE_SLICE> slices;
  const long long total = lum_chart_total(data);
  const int radius = std::min(square.width(), square.height()) / 2;
  const QPoint center(square.x() + square.width() / 2, square.y() + square.height() / 2);
  auto point_at = [&](int degrees) {
    const double radians = degrees * 3.141592653589793 / 180.0;
    return QPoint(center.x() + static_cast<int>(radius * std::cos(radians)),
                  center.y() - static_cast<int>(radius * std::sin(radians)));
  };
  long long sum = 0;
  for (size_t i = 0; i < data.rows.size(); ++i) {
    const LUM_CHART_ROW& row = data.rows[i];
    const long long count = std::max(0LL, row.count);
    LUM_PIE_SLICE slice;
    slice.row = static_cast<int>(i);
    slice.count = row.count;
    slice.start_degrees = static_cast<int>(sum * 360 / total);
    slice.end_degrees = static_cast<int>((sum + count) * 360 / total);
    slice.start_point = point_at(slice.start_degrees);
    slice.end_point = point_at(slice.end_degrees);
    slice.large = count > 0 && count >= total * 9 / 10;
    slice.color_index = static_cast<int>(i % LUM_PIE_COLOR_COUNT);
    slice.tooltip = QStringLiteral("%1, %2, %3%")
                        .arg(row.count)
                        .arg(QString::fromStdString(row.label))
                        .arg(lum_chart_percent(row.count, total));
    slices.push_back(slice);
    sum += count;
  }
  return slices;
}

std::vector<LUM_LEGEND_ENTRY> lum_layout_legend(const std::vector<QString>& texts, const QRect& rect, int first_top,
                                                const LUM_TEXT_MEASURE& measure, int* hidden) {
  constexpr int kSwatch = 12;
  constexpr int kGap = 16;
  std::vector<LUM_LEGEND_ENTRY> entries;
  *hidden = 0;
  int x = rect.x(), y = first_top, column_width = 0;
  for (size_t i = 0; i < texts.size(); ++i) {
    const QSize size = measure(LUM_CHART_FONT::LABEL, texts[i]);
    const int line = std::max(size.height(), kSwatch) + 4;
    const int width = kSwatch + 4 + size.width();
    if (y + line > bottom_of(rect) && y > first_top) {
      // This column is full: the next one starts to the right of its widest entry.
      x += column_width + kGap;
      y = first_top;
      column_width = 0;
    }
    const bool first_column = x == rect.x();
    if (y + line > bottom_of(rect) || (!first_column && x + width > right_of(rect))) {
      *hidden = static_cast<int>(texts.size() - i);
      break;
    }
    LUM_LEGEND_ENTRY entry;
    entry.row = static_cast<int>(i);
    entry.color_index = static_cast<int>(i % LUM_PIE_COLOR_COUNT);
    entry.swatch = QRect(x, y + (line - kSwatch) / 2, kSwatch, kSwatch);
    // An entry of the first column may be cut at the right edge.
    entry.text.rect = edges(x + kSwatch + 4, y, std::min(x + width, right_of(rect)), y + line);
    entry.text.text = texts[i];
    entry.text.align = Qt::AlignLeft | Qt::AlignVCenter;
    entries.push_back(entry);
    column_width = std::max(column_width, width);
    y += line;
  }
  return entries;
}

LUM_PIE_LAYOUT lum_layout_pie(const LUM_CHART_DATA& data, const QRect& rect, const LUM_TEXT_MEASURE& measure) {
  LUM_PIE_LAYOUT layout;
  const QRect inner = rect.adjusted(6, 6, -6, -6);
  if (inner.width() < 24 || inner.height() < 24) {
    layout.message = QStringLiteral("Too small to draw");
    return layout;
  }
  // The pie takes the left of a wide rectangle and the top of a tall one;
  // the legend the rest.
  const bool wide = inner.width() >= inner.height();
  const int side = wide ? std::min(inner.height(), inner.width() * 55 / 100)
                        : std::min(inner.width(), inner.height() * 55 / 100);
  if (wide) {
    layout.pie = QRect(inner.x(), inner.y() + (inner.height() - side) / 2, side, side);
    layout.legend_rect = edges(inner.x() + side + 12, inner.y(), right_of(inner), bottom_of(inner));
  } else {
    layout.pie = QRect(inner.x() + (inner.width() - side) / 2, inner.y(), side, side);
    layout.legend_rect = edges(inner.x(), inner.y() + side + 12, right_of(inner), bottom_of(inner));
  }
  layout.radius = side / 2;
  layout.center = QPoint(layout.pie.x() + side / 2, layout.pie.y() + side / 2);
  layout.slices = lum_pie_slices(data, layout.pie);

  long long positive = 0;
  for (const LUM_CHART_ROW& row : data.rows) positive += std::max(0LL, row.count);
  if (positive == 0) layout.message = QStringLiteral("No data");

  layout.legend_title.text = QStringLiteral("Legend");
  const int title_height = measure(LUM_CHART_FONT::TITLE, layout.legend_title.text).height();
  layout.legend_title.rect = QRect(layout.legend_rect.x(), layout.legend_rect.y(), layout.legend_rect.width(), title_height);
  layout.legend_title.align = Qt::AlignLeft | Qt::AlignVCenter;
  const long long total = lum_chart_total(data);
  std::vector<QString> texts;
  texts.reserve(data.rows.size());
  for (const LUM_CHART_ROW& row : data.rows)
    texts.push_back(QStringLiteral("%1: %2 (%3%)")
                        .arg(QString::fromStdString(row.label))
                        .arg(row.count)
                        .arg(lum_chart_percent(row.count, total)));
  layout.legend = lum_layout_legend(texts, layout.legend_rect, layout.legend_rect.y() + title_height + 4, measure,
                                    &layout.hidden_entries);
  for (LUM_LEGEND_ENTRY& entry : layout.legend) {
    const LUM_CHART_ROW& row = data.rows[entry.row];
    entry.tooltip = QStringLiteral("%1: %2 [%3: %4]")
                        .arg(QString::fromStdString(data.x_title), QString::fromStdString(row.label),
                             QString::fromStdString(data.y_title))
                        .arg(row.count);
  }
  return layout;
}

int lum_slice_at(const LUM_PIE_LAYOUT& layout, const QPoint& point) {
  const double dx = point.x() - layout.center.x();
  const double dy = layout.center.y() - point.y();
  if (layout.radius <= 0 || dx * dx + dy * dy > static_cast<double>(layout.radius) * layout.radius) return -1;
  double degrees = std::atan2(dy, dx) * 180.0 / 3.141592653589793;
  if (degrees < 0) degrees += 360.0;
  for (size_t i = 0; i < layout.slices.size(); ++i) {
    const LUM_PIE_SLICE& slice = layout.slices[i];
    if (slice.end_degrees > slice.start_degrees && degrees >= slice.start_degrees && degrees < slice.end_degrees)
      return static_cast<int>(i);
  }
  return -1;
}
