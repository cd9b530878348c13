#include "rdb/rdb_render.hh"

#include "rdb/rdb_codec.hh"

#include <algorithm>
#include <cstdio>
#include <functional>
#include <ostream>
#include <sstream>

namespace {

// Display width in characters of UTF-8 text (continuation bytes do not count).
size_t text_width(std::string_view text) {
  size_t width = 0;
  for (unsigned char ch : text)
    if ((ch & 0xc0) != 0x80)
      ++width;
  return width;
}

// Number of rows fetched from the database at a time while rendering.
constexpr int RENDER_BATCH = 512;

// A table as the renderers see it: titles (empty for kind 7) and a source of
// data rows whose cells may be rewritten (histogram edges are shown scaled).
struct TABLE_VIEW {
  std::vector<std::string> titles;
  int first_data_row = 0;
  int end_row = 0;
  std::function<std::vector<RDB_TABLE_ROW>(int first, int count)> rows;
};

TABLE_VIEW view_of(const RDB_TABLE_OBJECT& table) {
  TABLE_VIEW view;
  if (table.has_header())
    view.titles = table.get_column_names();
  view.first_data_row = table.has_header() ? 1 : 0;
  view.end_row = table.get_number_of_rows();
  view.rows = [&table](int first, int count) { return table.get_rows(first, count); };
  if (auto* histogram = dynamic_cast<const RDB_HISTOGRAM_TABLE_OBJECT*>(&table)) {
    double scale = histogram->get_x_scale() == 0 ? 1 : histogram->get_x_scale();
    std::string unit = histogram->get_x_unit();
    if (!unit.empty()) {
      view.titles[0] += " (" + unit + ")";
      view.titles[1] += " (" + unit + ")";
    }
    view.rows = [&table, scale](int first, int count) {
      auto rows = table.get_rows(first, count);
      for (auto& row : rows)
        for (int c = 0; c < 2 && c < static_cast<int>(row.cells.size()); ++c)
          row.cells[c] = rdb_internal::format_double(std::strtod(row.cells[c].c_str(), nullptr) /
                                                     scale);
      return rows;
    };
  }
  return view;
}

template <typename ROW_FN>
void for_each_row(const TABLE_VIEW& view, ROW_FN&& fn) {
  for (int row = view.first_data_row; row < view.end_row; row += RENDER_BATCH)
    for (const RDB_TABLE_ROW& data : view.rows(row, RENDER_BATCH))
      fn(data);
}

void heading(std::ostream& out, const std::string& name, char underline) {
  out << name << '\n' << std::string(std::max<size_t>(1, text_width(name)), underline) << '\n';
}

void write_table_text(const TABLE_VIEW& view, size_t columns, std::ostream& out) {
  std::vector<size_t> widths(columns, 0);
  for (size_t c = 0; c < view.titles.size() && c < columns; ++c)
    widths[c] = text_width(view.titles[c]);
  for_each_row(view, [&](const RDB_TABLE_ROW& row) {
    for (size_t c = 0; c < columns && c < row.cells.size(); ++c)
      widths[c] = std::max(widths[c], text_width(row.cells[c]));
  });
  std::string rule = "+";
  for (size_t width : widths)
    rule += std::string(width + 2, '-') + "+";
  auto line = [&](const std::vector<std::string>& cells) {
    out << ';';
    for (size_t c = 0; c < columns; ++c) {
      const std::string& cell = c < cells.size() ? cells[c] : std::string();
      out << ' ' << cell << std::string(widths[c] - text_width(cell), ' ') << " ;";
    }
    out << '\n';
  };
  out << rule << '\n';
  if (!view.titles.empty()) {
    line(view.titles);
    out << rule << '\n';
  }
  for_each_row(view, [&](const RDB_TABLE_ROW& row) { line(row.cells); });
  out << rule << '\n';
}

void write_text(const RDB_OBJECT& object, std::ostream& out, int depth) {
  heading(out, object.get_name(), depth == 0 ? '=' : '-');
  switch (object.get_type()) {
  case RDB_KIND_FOLDER:
    for (const RDB_OBJECT* child : object.get_children()) {
      out << '\n';
      write_text(*child, out, depth + 1);
    }
    return;
  case RDB_KIND_TEXT: {
    std::string text = static_cast<const RDB_TEXT_OBJECT&>(object).get_text();
    out << text;
    if (!text.empty() && text.back() != '\n')
      out << '\n';
    return;
  }
  case RDB_KIND_LEGAL_NOTICE:
    out << static_cast<const RDB_LEGAL_OBJECT&>(object).get_text() << '\n';
    return;
  case RDB_KIND_EMBEDDED: {
    const auto& embedded = static_cast<const RDB_EMBEDDED_OBJECT&>(object);
    out << "Embedded object of type " << embedded.get_embedded_type() << ": "
        << embedded.get_info_str() << '\n';
    return;
  }
  case RDB_KIND_PATH: {
    const auto& path = static_cast<const RDB_PATH_OBJECT&>(object);
    char slack[64];
    std::snprintf(slack, sizeof slack, "%.3f", path.get_slack());
    out << "Slack: " << slack << " ns" << (path.path_is_violated() ? " (VIOLATED)" : "") << '\n';
    for (const RDB_OBJECT* child : object.get_children()) {
      out << '\n';
      write_text(*child, out, depth + 1);
    }
    return;
  }
  default:
    break;
  }
  if (auto* table = dynamic_cast<const RDB_TABLE_OBJECT*>(&object)) {
    if (auto* chart = dynamic_cast<const RDB_CHART_TABLE_OBJECT*>(table))
      out << "Chart of " << chart->get_y_axis() << " by " << chart->get_x_axis() << '\n';
    if (auto* histogram = dynamic_cast<const RDB_HISTOGRAM_TABLE_OBJECT*>(table))
      out << "Histogram of " << histogram->get_y_axis_label() << " by "
          << histogram->get_x_axis_label() << '\n';
    write_table_text(view_of(*table), table->get_number_of_columns(), out);
  }
}

std::string html_color(uint32_t color) {
  char text[8];
  std::snprintf(text, sizeof text, "#%06x", color & 0xffffffu);
  return text;
}

void write_table_html(const RDB_TABLE_OBJECT& table, std::ostream& out) {
  TABLE_VIEW view = view_of(table);
  out << "<table border=\"1\" cellspacing=\"0\" cellpadding=\"2\">\n";
  if (!view.titles.empty()) {
    out << "<tr>";
    for (const std::string& title : view.titles)
      out << "<th>" << rdb_html_escape(title) << "</th>";
    out << "</tr>\n";
  }
  for_each_row(view, [&](const RDB_TABLE_ROW& row) {
    out << "<tr>";
    for (size_t c = 0; c < row.cells.size(); ++c) {
      std::string style;
      for (const RDB_CELL_COLOR& color : row.colors) {
        if (color.column != static_cast<int>(c))
          continue;
        if (color.foreground != RDB_NO_COLOR)
          style += "color:" + html_color(color.foreground) + ";";
        if (color.background != RDB_NO_COLOR)
          style += "background-color:" + html_color(color.background) + ";";
      }
      out << (style.empty() ? "<td>" : "<td style=\"" + style + "\">")
          << rdb_html_escape(row.cells[c]) << "</td>";
    }
    out << "</tr>\n";
  });
  out << "</table>\n";
}

void write_html(const RDB_OBJECT& object, std::ostream& out, int depth) {
  int level = std::min(depth + 1, 6);
  out << "<h" << level << ">" << rdb_html_escape(object.get_name()) << "</h" << level << ">\n";
  switch (object.get_type()) {
  case RDB_KIND_FOLDER:
    for (const RDB_OBJECT* child : object.get_children())
      write_html(*child, out, depth + 1);
    return;
  case RDB_KIND_TEXT: {
    const auto& text = static_cast<const RDB_TEXT_OBJECT&>(object);
    if (text.is_html())
      out << text.get_text() << '\n';
    else
      out << "<pre>" << rdb_html_escape(text.get_text()) << "</pre>\n";
    return;
  }
  case RDB_KIND_LEGAL_NOTICE:
    out << "<pre>" << rdb_html_escape(static_cast<const RDB_LEGAL_OBJECT&>(object).get_text())
        << "</pre>\n";
    return;
  case RDB_KIND_EMBEDDED: {
    const auto& embedded = static_cast<const RDB_EMBEDDED_OBJECT&>(object);
    out << "<p>Embedded object of type " << embedded.get_embedded_type() << ": "
        << rdb_html_escape(embedded.get_info_str()) << "</p>\n";
    return;
  }
  case RDB_KIND_PATH: {
    const auto& path = static_cast<const RDB_PATH_OBJECT&>(object);
    char slack[64];
    std::snprintf(slack, sizeof slack, "%.3f", path.get_slack());
    out << "<p" << (path.path_is_violated() ? " style=\"color:#ff0000\"" : "") << ">Slack: "
        << slack << " ns" << (path.path_is_violated() ? " (VIOLATED)" : "") << "</p>\n";
    for (const RDB_OBJECT* child : object.get_children())
      write_html(*child, out, depth + 1);
    return;
  }
  default:
    break;
  }
  if (auto* table = dynamic_cast<const RDB_TABLE_OBJECT*>(&object))
    write_table_html(*table, out);
}

}  // namespace

std::string rdb_html_escape(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (char ch : text) {
    switch (ch) {
    case '&': out += "&amp;"; break;
    case '<': out += "&lt;"; break;
    case '>': out += "&gt;"; break;
    case '"': out += "&quot;"; break;
    case '\'': out += "&#39;"; break;
    default: out += ch;
    }
  }
  return out;
}

void rdb_write_text(const RDB_OBJECT& object, std::ostream& out) { write_text(object, out, 0); }

void rdb_write_html(const RDB_OBJECT& object, std::ostream& out) { write_html(object, out, 0); }

std::string RDB_OBJECT::to_text() const {
  std::ostringstream out;
  rdb_write_text(*this, out);
  return out.str();
}

std::string RDB_OBJECT::to_html() const {
  std::ostringstream out;
  rdb_write_html(*this, out);
  return out.str();
}
