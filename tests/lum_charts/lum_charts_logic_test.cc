// Chart geometry, path window arithmetic and the commands charts lead to,
// without a screen. Texts are measured by a fixed-pitch rule (7 pixels a
// character; labels 10 pixels high, titles 14) so that every figure can be
// worked out by hand.
#include "charts/lum_chart_layout.hh"
#include "report/lum_chart_commands.hh"
#include "report/lum_path_wnd.hh"

#include <gtest/gtest.h>
#include <tcl.h>

#include <cmath>
#include <numeric>

namespace {

QSize fixed_measure(LUM_CHART_FONT font, const QString& text) {
  return QSize(7 * static_cast<int>(text.size()), font == LUM_CHART_FONT::TITLE ? 14 : 10);
}

LUM_HISTOGRAM_DATA histogram(const std::vector<long long>& counts, double from = -1.0, double width = 0.5) {
  LUM_HISTOGRAM_DATA data;
  data.x_title = "Setup Slack";
  data.y_title = "Number of End Points";
  data.unit = "ns";
  data.precision = 4;
  for (size_t i = 0; i < counts.size(); ++i)
    data.bins.push_back({from + width * static_cast<double>(i), from + width * static_cast<double>(i + 1), counts[i]});
  return data;
}

LUM_CHART_DATA chart(const std::vector<long long>& counts) {
  LUM_CHART_DATA data;
  data.x_title = "Delay Type";
  data.y_title = "Delay (ps)";
  for (size_t i = 0; i < counts.size(); ++i) data.rows.push_back({"row" + std::to_string(i), counts[i]});
  return data;
}

int bottom_of(const QRect& r) { return r.y() + r.height(); }

std::vector<std::string> tcl_words(const std::string& line) {
  int count = 0;
  const char** elements = nullptr;
  std::vector<std::string> words;
  if (Tcl_SplitList(nullptr, line.c_str(), &count, &elements) != TCL_OK) return words;
  for (int i = 0; i < count; ++i) words.emplace_back(elements[i]);
  Tcl_Free(reinterpret_cast<char*>(elements));
  return words;
}

// ---- scales -----------------------------------------------------------------------------

TEST(LumChartScale, StepIsTheFirstOfItsTableWhoseLabelsFitTheScale) {
  struct CASE {
    long long max;
    int label_height, scale_height;
    bool bar_chart;
    long long step;
  };
  const CASE cases[] = {
      {7, 10, 200, false, 1},           // 7*10/1 + 10 = 80 < 200
      {1000, 10, 200, false, 100},      // 50 gives 210, 100 gives 110
      {300, 10, 200, true, 20},         // 1, 5 and 10 fail; 300*10/20 + 10 = 160
      {100000, 10, 30, true, 100000},   // even 500 fails: the maximum itself
      {10000000, 10, 30, false, 10000000},
      {0, 10, 200, false, 1},           // nothing to count: no division by zero
  };
  for (const CASE& c : cases) {
    const auto& steps = c.bar_chart ? lum_bar_chart_steps() : lum_histogram_steps();
    EXPECT_EQ(lum_scale_step(c.max, c.label_height, c.scale_height, steps), c.step) << "max " << c.max;
  }
}

TEST(LumChartScale, BinsMergeIntoPixelColumnsOnlyWhenThereAreMoreBinsThanPixels) {
  struct CASE {
    int bins, pixels;
    std::vector<int> firsts;
  };
  const CASE cases[] = {
      {5, 100, {0, 1, 2, 3, 4, 5}},
      {10, 3, {0, 3, 6, 10}},
      {1, 1, {0, 1}},
      {4, 0, {0, 4}},  // no room: one column
      {0, 100, {}},
  };
  for (const CASE& c : cases) EXPECT_EQ(lum_bin_columns(c.bins, c.pixels), c.firsts) << c.bins << " in " << c.pixels;
  // A 100,000-bin histogram in 800 columns: 125 bins each, all bins once.
  const std::vector<int> columns = lum_bin_columns(100000, 800);
  ASSERT_EQ(columns.size(), 801u);
  for (size_t c = 0; c + 1 < columns.size(); ++c) EXPECT_EQ(columns[c + 1] - columns[c], 125);
  EXPECT_EQ(columns.back(), 100000);
}

// ---- histogram ----------------------------------------------------------------------------

TEST(LumHistogramLayout, FrameBarsAndLabelsFollowTheLayoutArithmetic) {
  const LUM_HISTOGRAM_DATA data = histogram({2, 0, 8, 4});
  const QRect rect(0, 0, 600, 400);
  const LUM_AXIS_CHART_LAYOUT layout = lum_layout_histogram(data, rect, fixed_measure);
  // Margins: the top grows by a title line (14), the right shrinks by half of one.
  const int top = 14, right = 600 - 7;
  const int wyl = 14 + 4, wys = 7 * 1 + 6, hx = 14, hxs = 12;  // max count 8 has one digit
  EXPECT_EQ(layout.y_title_rect, QRect(0, top, wyl, 400 - 2 * hx - hxs - top));
  EXPECT_EQ(layout.x_title_rect, QRect(wyl + wys, 400 - 2 * hx, right - wyl - wys, 2 * hx));
  EXPECT_EQ(layout.x_scale_rect, QRect(wyl + wys, 400 - 2 * hx - hxs, right - wyl - wys, hxs));
  // The bar area is inset by half the edge digits' width (70 / 2) on both sides.
  const QRect area = layout.bar_area;
  EXPECT_EQ(area.x(), wyl + wys + 35);
  EXPECT_EQ(area.x() + area.width(), right - 35);
  EXPECT_EQ(bottom_of(area), layout.x_scale_rect.y() - 5);
  EXPECT_FALSE(layout.merged);

  ASSERT_EQ(layout.bars.size(), 4u);
  const int bin_width = area.width() / 4;
  const double ppc = (area.height() - 10) / 8.0;
  EXPECT_DOUBLE_EQ(layout.pixels_per_count, ppc);
  for (int i = 0; i < 4; ++i) {
    const LUM_CHART_BAR& bar = layout.bars[i];
    EXPECT_EQ(bar.rect.x(), area.x() + i * bin_width) << i;
    EXPECT_EQ(bar.rect.width(), bin_width) << i;
    EXPECT_EQ(bottom_of(bar.rect), bottom_of(area)) << i;
    EXPECT_EQ(bar.rect.height(), static_cast<int>(data.bins[i].count * ppc)) << i;
    EXPECT_EQ(bar.tooltip, QString::number(data.bins[i].count));
  }
  EXPECT_EQ(layout.bars[1].rect.height(), 0);  // an empty bin draws no height
  EXPECT_EQ(layout.bars[1].tooltip, "0");

  // Every edge has its label, centred on it, in the bin unit with the data's decimals.
  ASSERT_EQ(layout.x_labels.size(), 5u);
  EXPECT_EQ(layout.x_labels.front().text, "-1.0000 ns");
  EXPECT_EQ(layout.x_labels[2].text, "0.0000 ns");
  EXPECT_EQ(layout.x_labels.back().text, "1.0000 ns");
  for (int e = 0; e <= 4; ++e) {
    const QRect& r = layout.x_labels[e].rect;
    EXPECT_NEAR(r.x() + r.width() / 2.0, area.x() + e * bin_width, 1.0) << e;
  }
  // Count labels 0..8 with step 1, each label's foot at its count's height.
  EXPECT_EQ(layout.y_step, 1);
  ASSERT_EQ(layout.y_labels.size(), 9u);
  EXPECT_EQ(layout.y_labels.back().text, "8");
  EXPECT_EQ(bottom_of(layout.y_labels[4].rect), bottom_of(layout.y_scale_rect) - static_cast<int>(std::lround(4 * ppc)));
  EXPECT_TRUE(layout.message.isEmpty());
}

TEST(LumHistogramLayout, BadDataDrawsSomethingSensibleOrSaysWhy) {
  const QRect rect(0, 0, 500, 300);
  {  // no rows
    const LUM_AXIS_CHART_LAYOUT layout = lum_layout_histogram(histogram({}), rect, fixed_measure);
    EXPECT_EQ(layout.message, "No data");
    EXPECT_TRUE(layout.bars.empty());
    EXPECT_FALSE(layout.x_title_rect.isEmpty());  // axes and titles stay
  }
  {  // every bin empty: bars of no height, no count labels, no division by zero
    const LUM_AXIS_CHART_LAYOUT layout = lum_layout_histogram(histogram({0, 0, 0}), rect, fixed_measure);
    EXPECT_EQ(layout.message, "All bins are empty");
    ASSERT_EQ(layout.bars.size(), 3u);
    for (const LUM_CHART_BAR& bar : layout.bars) EXPECT_EQ(bar.rect.height(), 0);
    EXPECT_EQ(layout.pixels_per_count, 0.0);
    EXPECT_TRUE(layout.y_labels.empty());
    EXPECT_EQ(layout.x_labels.size(), 4u);
  }
  {  // one bin spans the area, with both its edges labelled
    const LUM_AXIS_CHART_LAYOUT layout = lum_layout_histogram(histogram({5}), rect, fixed_measure);
    ASSERT_EQ(layout.bars.size(), 1u);
    EXPECT_EQ(layout.bars[0].rect.width(), layout.bar_area.width());
    ASSERT_EQ(layout.x_labels.size(), 2u);
  }
  {  // negative-only and positive-only ranges label their own edges
    const LUM_AXIS_CHART_LAYOUT negative = lum_layout_histogram(histogram({1, 2}, -3.0, 1.0), rect, fixed_measure);
    EXPECT_EQ(negative.x_labels.front().text, "-3.0000 ns");
    EXPECT_EQ(negative.x_labels.back().text, "-1.0000 ns");
    const LUM_AXIS_CHART_LAYOUT positive = lum_layout_histogram(histogram({1, 2}, 2.0, 0.25), rect, fixed_measure);
    EXPECT_EQ(positive.x_labels.back().text, "2.5000 ns");
  }
  {  // a rectangle too small for a bar area
    const LUM_AXIS_CHART_LAYOUT layout = lum_layout_histogram(histogram({1, 2}), QRect(0, 0, 40, 30), fixed_measure);
    EXPECT_FALSE(layout.message.isEmpty());
    EXPECT_TRUE(layout.bars.empty());
  }
}

TEST(LumHistogramLayout, AHundredThousandBinsMergePerPixelColumnKeepingEveryCount) {
  std::vector<long long> counts(100000);
  for (size_t i = 0; i < counts.size(); ++i) counts[i] = static_cast<long long>(i % 7);
  const LUM_HISTOGRAM_DATA data = histogram(counts, -50.0, 0.001);
  const LUM_AXIS_CHART_LAYOUT layout = lum_layout_histogram(data, QRect(0, 0, 900, 400), fixed_measure);
  ASSERT_TRUE(layout.merged);
  ASSERT_EQ(static_cast<int>(layout.bars.size()), layout.bar_area.width());
  long long drawn = 0, biggest = 0;
  for (size_t c = 0; c < layout.bars.size(); ++c) {
    const LUM_CHART_BAR& bar = layout.bars[c];
    EXPECT_EQ(bar.rect.width(), 1);
    EXPECT_EQ(bar.rect.x(), layout.bar_area.x() + static_cast<int>(c));
    EXPECT_LE(bar.rect.height(), layout.bar_area.height());
    drawn += bar.count;
    biggest = std::max(biggest, bar.count);
  }
  EXPECT_EQ(drawn, std::accumulate(counts.begin(), counts.end(), 0LL));
  EXPECT_EQ(layout.max_count, biggest);
  EXPECT_EQ(layout.bars.front().first, 0);
  EXPECT_EQ(layout.bars.back().last, 99999);
  EXPECT_TRUE(layout.bars.front().tooltip.contains("bins"));
  // Edge labels are thinned so that none overlaps the next.
  ASSERT_GE(layout.x_labels.size(), 2u);
  for (size_t i = 1; i < layout.x_labels.size(); ++i)
    EXPECT_GE(layout.x_labels[i].rect.x(), layout.x_labels[i - 1].rect.x() + layout.x_labels[i - 1].rect.width());
}

TEST(LumHistogramLayout, BarUnderAPointIsFoundByItsColumnEvenWhenEmpty) {
  const LUM_AXIS_CHART_LAYOUT layout = lum_layout_histogram(histogram({3, 0, 6}), QRect(0, 0, 400, 300), fixed_measure);
  const QRect& area = layout.bar_area;
  const int foot = bottom_of(area) - 1;
  EXPECT_EQ(lum_bar_at(layout, QPoint(layout.bars[0].rect.x() + 1, foot)), 0);
  EXPECT_EQ(lum_bar_at(layout, QPoint(layout.bars[0].rect.x() + 1, area.y() + 1)), 0);
  EXPECT_EQ(lum_bar_at(layout, QPoint(layout.bars[1].rect.x() + 1, foot)), 1);  // the empty bin: tooltip "0"
  EXPECT_EQ(lum_bar_at(layout, QPoint(layout.bars[2].rect.x() + layout.bars[2].rect.width() - 1, foot)), 2);
  // Outside the bar area there is no bar.
  EXPECT_EQ(lum_bar_at(layout, QPoint(area.x() - 3, foot)), -1);
  EXPECT_EQ(lum_bar_at(layout, QPoint(layout.bars[0].rect.x() + 1, bottom_of(area) + 2)), -1);
}

// ---- bar chart -------------------------------------------------------------------------------

TEST(LumBarChartLayout, OneLabelledBarPerRowInEqualSlots) {
  LUM_CHART_DATA data = chart({30, 10, 0, -5});
  const LUM_AXIS_CHART_LAYOUT layout = lum_layout_bar_chart(data, QRect(0, 0, 400, 300), fixed_measure);
  // No horizontal inset: the bar area starts at the count scale's right edge.
  EXPECT_EQ(layout.bar_area.x(), layout.y_scale_rect.x() + layout.y_scale_rect.width());
  EXPECT_EQ(layout.bar_area.x() + layout.bar_area.width(), 400 - 14);  // a whole title line off the right
  ASSERT_EQ(layout.bars.size(), 4u);
  ASSERT_EQ(layout.x_labels.size(), 4u);
  const int slot = layout.bar_area.width() / 4;
  for (int i = 0; i < 4; ++i) {
    EXPECT_EQ(layout.bars[i].rect.x(), layout.bar_area.x() + i * slot);
    EXPECT_EQ(layout.x_labels[i].rect, QRect(layout.bar_area.x() + i * slot, layout.x_scale_rect.y(), slot,
                                             layout.x_scale_rect.height()));
  }
  // Percentages of the total of what can be drawn (40): negative counts draw nothing.
  EXPECT_EQ(layout.bars[0].tooltip, "row0 [30] (75%)");
  EXPECT_EQ(layout.bars[3].tooltip, "row3 [-5] (0%)");
  EXPECT_EQ(layout.bars[3].rect.height(), 0);
  EXPECT_EQ(layout.max_count, 30);
}

TEST(LumBarChartLayout, EmptyZeroAndCrowdedChartsNeverDivideByZero) {
  EXPECT_EQ(lum_layout_bar_chart(chart({}), QRect(0, 0, 300, 200), fixed_measure).message, "No data");
  const LUM_AXIS_CHART_LAYOUT zero = lum_layout_bar_chart(chart({0, 0}), QRect(0, 0, 300, 200), fixed_measure);
  EXPECT_EQ(zero.message, "All counts are zero");
  EXPECT_TRUE(zero.y_labels.empty());
  // More rows than pixels: the bars that fit are drawn, one pixel apart.
  const LUM_AXIS_CHART_LAYOUT crowded =
      lum_layout_bar_chart(chart(std::vector<long long>(5000, 2)), QRect(0, 0, 300, 200), fixed_measure);
  EXPECT_EQ(static_cast<int>(crowded.bars.size()), crowded.bar_area.width());
}

// ---- pie and legend --------------------------------------------------------------------------

TEST(LumPieLayout, SlicesRunInWholeDegreesCounterClockwiseFromThePositiveXAxis) {
  struct CASE {
    std::vector<long long> counts;
    std::vector<std::pair<int, int>> degrees;
    std::vector<bool> large;
  };
  const CASE cases[] = {
      {{1, 1, 2}, {{0, 90}, {90, 180}, {180, 360}}, {false, false, false}},
      {{0, 0}, {{0, 0}, {0, 0}}, {false, false}},               // total 1: nothing spans
      {{9, 1}, {{0, 324}, {324, 360}}, {true, false}},          // 90 percent is large
      // Negative: nothing. Nine tenths of 4 is 3 in whole counts, so 3 is large.
      {{3, -4, 1}, {{0, 270}, {270, 270}, {270, 360}}, {true, false, false}},
      {{1, 2}, {{0, 120}, {120, 360}}, {false, true}},
  };
  const QRect square(0, 0, 200, 200);
  for (const CASE& c : cases) {
    const std::vector<LUM_PIE_SLICE> slices = lum_pie_slices(chart(c.counts), square);
    ASSERT_EQ(slices.size(), c.counts.size());
    for (size_t i = 0; i < slices.size(); ++i) {
      EXPECT_EQ(slices[i].start_degrees, c.degrees[i].first) << i;
      EXPECT_EQ(slices[i].end_degrees, c.degrees[i].second) << i;
      EXPECT_EQ(slices[i].large, c.large[i]) << i;
    }
  }
  // Points on the circle: screen y grows downwards.
  const std::vector<LUM_PIE_SLICE> slices = lum_pie_slices(chart({1, 1, 2}), square);
  EXPECT_EQ(slices[0].start_point, QPoint(200, 100));
  EXPECT_EQ(slices[0].end_point, QPoint(100, 0));
  EXPECT_EQ(slices[1].end_point, QPoint(0, 100));
  EXPECT_EQ(slices[0].tooltip, "1, row0, 25%");
  EXPECT_EQ(slices[2].tooltip, "2, row2, 50%");
}

TEST(LumPieLayout, ColoursRepeatAfterFourteenAndHitsFindTheSliceUnderThePoint) {
  const std::vector<LUM_PIE_SLICE> slices = lum_pie_slices(chart(std::vector<long long>(15, 1)), QRect(0, 0, 100, 100));
  EXPECT_EQ(slices[13].color_index, 13);
  EXPECT_EQ(slices[14].color_index, slices[0].color_index);

  const LUM_PIE_LAYOUT layout = lum_layout_pie(chart({1, 1, 2}), QRect(0, 0, 500, 300), fixed_measure);
  const QPoint c = layout.center;
  const int r = layout.radius / 2;
  EXPECT_EQ(lum_slice_at(layout, c + QPoint(r, -r)), 0);   // 45 degrees
  EXPECT_EQ(lum_slice_at(layout, c + QPoint(-r, -r)), 1);  // 135 degrees
  EXPECT_EQ(lum_slice_at(layout, c + QPoint(0, r)), 2);    // 270 degrees
  EXPECT_EQ(lum_slice_at(layout, c + QPoint(layout.radius + 2, 0)), -1);
  // The pie sits left of its legend in a wide rectangle.
  EXPECT_LT(layout.pie.x() + layout.pie.width(), layout.legend_rect.x());
  EXPECT_EQ(layout.legend_title.text, "Legend");
  ASSERT_EQ(layout.legend.size(), 3u);
  EXPECT_EQ(layout.legend[2].text.text, "row2: 2 (50%)");
  EXPECT_EQ(layout.legend[2].tooltip, "Delay Type: row2 [Delay (ps): 2]");
  EXPECT_TRUE(layout.message.isEmpty());
  EXPECT_EQ(lum_layout_pie(chart({0, 0}), QRect(0, 0, 500, 300), fixed_measure).message, "No data");
}

TEST(LumLegendLayout, EntriesWrapIntoColumnsAndWhatFitsNowhereIsCounted) {
  // Lines are 16 pixels (a 12-pixel swatch + 4); 50 pixels hold three.
  std::vector<QString> texts;
  for (int i = 0; i < 7; ++i) texts.push_back(QStringLiteral("entry %1").arg(i));  // 7 chars: 49 px
  int hidden = -1;
  const QRect wide(10, 0, 400, 50);
  std::vector<LUM_LEGEND_ENTRY> entries = lum_layout_legend(texts, wide, 0, fixed_measure, &hidden);
  ASSERT_EQ(entries.size(), 7u);
  EXPECT_EQ(hidden, 0);
  const int column = 12 + 4 + 49 + 16;
  const int expected_x[] = {10, 10, 10, 10 + column, 10 + column, 10 + column, 10 + 2 * column};
  for (int i = 0; i < 7; ++i) {
    EXPECT_EQ(entries[i].swatch.x(), expected_x[i]) << i;
    EXPECT_EQ(entries[i].swatch.y(), (i % 3) * 16 + 2) << i;
  }
  // A narrow legend keeps its first column and counts the rest.
  entries = lum_layout_legend(texts, QRect(0, 0, 100, 50), 0, fixed_measure, &hidden);
  EXPECT_EQ(entries.size(), 3u);
  EXPECT_EQ(hidden, 4);
  // No room for one line: everything is counted, nothing placed.
  entries = lum_layout_legend(texts, QRect(0, 0, 100, 10), 0, fixed_measure, &hidden);
  EXPECT_TRUE(entries.empty());
  EXPECT_EQ(hidden, 7);
}

// ---- path window -----------------------------------------------------------------------------

TEST(LumPathWindow, RowHeightsGiveEachTableItsRowsAndTheLargerOneTheRemainder) {
  struct CASE {
    int total, summary, arrival, required;
    std::array<int, 3> rows;
  };
  const CASE cases[] = {
      {900, 210, 400, 150, {210, 400, 290}},  // everything fits; the rest goes to the last row
      {600, 210, 400, 150, {210, 240, 150}},  // too small: the smaller keeps its need
      {600, 210, 100, 500, {210, 100, 290}},
      {600, 210, 500, 500, {210, 195, 195}},  // both large: halves
      {300, 400, 100, 100, {200, 50, 50}},    // the summary takes at most two thirds
      {0, 210, 100, 100, {0, 0, 0}},
  };
  for (const CASE& c : cases) {
    const std::array<int, 3> rows = lum_path_row_heights(c.total, c.summary, c.arrival, c.required);
    EXPECT_EQ(rows, c.rows) << c.total << " " << c.summary << " " << c.arrival << " " << c.required;
    EXPECT_EQ(rows[0] + rows[1] + rows[2], c.total);
  }
  EXPECT_EQ(lum_path_slack_caption(-0.123, true), "SLACK: -0.123 ns (VIOLATED)");
  EXPECT_EQ(lum_path_slack_caption(2.5, false), "SLACK: 2.500 ns");
}

// ---- commands --------------------------------------------------------------------------------

TEST(LumChartCommands, SlackRangeCommandQuotesNamesAndKeepsTheHistogramsAnalysis) {
  LUM_SLACK_RANGE range;
  range.from = -0.25;
  range.to = 0;
  range.count = 3;
  range.unit = "ns";
  std::string why;
  // A clock name that would break a command pasted into braces or quotes.
  const std::string histogram_command = lum_command_from_words(
      {"create_slack_histogram", "-clock_name", "c}k [x] \"y\"", "-hold", "-num_bins", "20", "-panel_name", "H"});
  const std::string command = lum_slack_range_command(histogram_command, range, &why);
  const std::vector<std::string> words = tcl_words(command);
  const std::vector<std::string> expected = {"report_timing", "-to_clock", "c}k [x] \"y\"", "-hold", "-min_slack",
                                             "-0.25", "-less_than_slack", "0", "-npaths", "3", "-panel_name",
                                             "Slack -0.25 to 0 ns (c}k [x] \"y\")"};
  EXPECT_EQ(words, expected) << command;

  // The last bin holds its upper edge.
  range.to_inclusive = true;
  range.to = 1.5;
  const std::vector<std::string> last = tcl_words(
      lum_slack_range_command("create_slack_histogram -clock_name clk", range, &why));
  ASSERT_GE(last.size(), 8u);
  EXPECT_EQ(last[3], "-setup");
  EXPECT_GT(std::stod(last[7]), 1.5);
  EXPECT_LT(std::stod(last[7]), 1.5001);
}

TEST(LumChartCommands, SlackRangeCommandIsRefusedWithAReason) {
  LUM_SLACK_RANGE range;
  range.count = 2;
  struct CASE {
    const char* histogram_command;
    long long count;
    const char* reason;
  };
  const CASE cases[] = {
      {"", 2, "create_slack_histogram"},
      {"report_timing -to_clock clk", 2, "create_slack_histogram"},
      {"create_slack_histogram -num_bins 5", 2, "names no clock"},
      {"create_slack_histogram -clock_name clk", 0, "no end point"},
      {"create_slack_histogram {unbalanced", 2, "create_slack_histogram"},
  };
  for (const CASE& c : cases) {
    range.count = c.count;
    std::string why;
    EXPECT_EQ(lum_slack_range_command(c.histogram_command, range, &why), "") << c.histogram_command;
    EXPECT_NE(why.find(c.reason), std::string::npos) << why;
  }
  EXPECT_EQ(lum_command_number(-0.0), "0");
  EXPECT_EQ(lum_command_number(0.1 + 0.2), "0.3");
  EXPECT_EQ(lum_command_number(-12.125), "-12.125");
}

}  // namespace
