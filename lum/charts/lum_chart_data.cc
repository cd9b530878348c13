#include "charts/lum_chart_data.hh"

#include "platform/msg.hh"
#include "rdb/rdb_object.hh"

#include <algorithm>
#include <cstdio>

std::string lum_histogram_edge_label(const LUM_HISTOGRAM_DATA& data, double value) {
  char text[96];
  std::snprintf(text, sizeof text, "%.*f", std::clamp(data.precision, 0, 12), value);
  std::string label = text;
  // "-0.000" reads as a negative slack where there is none.
  if (label.find_first_not_of("-0.") == std::string::npos && label.front() == '-') label.erase(0, 1);
  if (!data.unit.empty()) label += " " + data.unit;
  return label;
}

long long lum_chart_total(const LUM_CHART_DATA& data) {
  long long total = 0;
  for (const LUM_CHART_ROW& row : data.rows) total += std::max(0LL, row.count);
  return total > 0 ? total : 1;
}

int lum_chart_percent(long long count, long long total) {
  if (total <= 0 || count <= 0) return 0;
  return static_cast<int>(count * 100 / total);
}

bool lum_read_histogram(const RDB_OBJECT* object, LUM_HISTOGRAM_DATA* data) {
  auto* histogram_object = dynamic_cast<const RDB_HISTOGRAM_TABLE_OBJECT*>(object);
  if (!MSG_ASSERT(histogram_object != nullptr, "lum_chart_data")) return false;
  const RDB_HISTOGRAM_TABLE_OBJECT* histogram = histogram_object;
  *data = LUM_HISTOGRAM_DATA();
  data->x_title = histogram->get_x_axis_label();
  data->y_title = histogram->get_y_axis_label();
  data->unit = histogram->get_x_unit();
  const int rows = histogram->get_number_of_rows();
  if (rows <= 1) return true;
  int scale = histogram->get_x_scale();
  if (scale == 0) scale = 1;
  data->precision = static_cast<int>(std::to_string(scale).size());
  data->bins.reserve(static_cast<size_t>(rows - 1));
  for (const RDB_TABLE_ROW& row : histogram->get_rows(1, rows - 1)) {
    LUM_HISTOGRAM_BIN bin;
    if (row.cells.size() >= 3) {
      bin.from = std::strtod(row.cells[0].c_str(), nullptr) / scale;
      bin.to = std::strtod(row.cells[1].c_str(), nullptr) / scale;
      bin.count = std::max(0LL, std::strtoll(row.cells[2].c_str(), nullptr, 10));
    }
    for (const RDB_CELL_COLOR& color : row.colors)
      if (color.column == 2) bin.color = color.background;
    data->bins.push_back(bin);
  }
  return true;
}

bool lum_read_chart(const RDB_OBJECT* object, LUM_CHART_DATA* data) {
  auto* chart = dynamic_cast<const RDB_CHART_TABLE_OBJECT*>(object);
  if (!MSG_ASSERT(chart != nullptr, "lum_chart_data")) return false;
  *data = LUM_CHART_DATA();
  data->x_title = chart->get_x_axis();
  data->y_title = chart->get_y_axis();
  data->default_mode = chart->get_default_chart_type() == 2 ? LUM_CHART_MODE::PIE : LUM_CHART_MODE::BARS;
  const int rows = chart->get_number_of_rows();
  if (rows <= 1) return true;
  for (const RDB_TABLE_ROW& row : chart->get_rows(1, rows - 1)) {
    LUM_CHART_ROW entry;
    if (!row.cells.empty()) entry.label = row.cells[0];
    if (row.cells.size() >= 2) entry.count = std::strtoll(row.cells[1].c_str(), nullptr, 10);
    data->rows.push_back(std::move(entry));
  }
  return true;
}
