// The data the charts draw, read out of the report database once per page.
//
// A histogram is a list of bins (from, to, count, colour) with two axis
// titles, a scale by which the stored bin edges are divided and the unit
// they are shown in. A chart table is a list of labelled counts with two
// axis titles and the presentation the engine suggests (bars or a pie).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

class RDB_OBJECT;

struct LUM_HISTOGRAM_BIN {
  double from = 0;  // in the x unit (already divided by the scale)
  double to = 0;
  long long count = 0;
  uint32_t color = 0xffffffffu;  // 0xRRGGBB, or all bits set for the default
};

struct LUM_HISTOGRAM_DATA {
  std::string x_title;
  std::string y_title;
  std::string unit;
  // Decimals of the edge labels: the number of digits of the x scale.
  int precision = 1;
  std::vector<LUM_HISTOGRAM_BIN> bins;
};

// The edge label of a bin edge: the value with the data's decimals and unit.
std::string lum_histogram_edge_label(const LUM_HISTOGRAM_DATA& data, double value);

struct LUM_CHART_ROW {
  std::string label;
  long long count = 0;
};

enum class LUM_CHART_MODE { BARS = 1, PIE = 2 };

struct LUM_CHART_DATA {
  std::string x_title;
  std::string y_title;
  LUM_CHART_MODE default_mode = LUM_CHART_MODE::BARS;
  std::vector<LUM_CHART_ROW> rows;
};

// The share of a count in percent, by integer division of the counts that a
// pie can show (negative counts count as nothing; a zero total counts as 1).
long long lum_chart_total(const LUM_CHART_DATA& data);
int lum_chart_percent(long long count, long long total);

// Readers of the database objects; false (an internal error) when the object
// is of another kind.
bool lum_read_histogram(const RDB_OBJECT* object, LUM_HISTOGRAM_DATA* data);
bool lum_read_chart(const RDB_OBJECT* object, LUM_CHART_DATA* data);
