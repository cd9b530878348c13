#include "rdb/rdb_render.hh"

#include "rdb/rdb_codec.hh"
#include "rdb/rdb_report.hh"

#include <cstdio>
#include <fstream>
#include <ostream>

namespace {

const char* const REPLACEMENT = "\xEF\xBF\xBD";

// Length of the valid UTF-8 sequence at `p` that XML 1.0 can carry, or 0.
size_t xml_char_length(const unsigned char* p, const unsigned char* end) {
  unsigned char c = p[0];
  if (c < 0x80)
    return (c >= 0x20 || c == '\t' || c == '\n' || c == '\r') ? 1 : 0;
  size_t length;
  uint32_t code;
  if ((c & 0xe0) == 0xc0) {
    length = 2;
    code = c & 0x1f;
  } else if ((c & 0xf0) == 0xe0) {
    length = 3;
    code = c & 0x0f;
  } else if ((c & 0xf8) == 0xf0) {
    length = 4;
    code = c & 0x07;
  } else {
    return 0;
  }
  if (static_cast<size_t>(end - p) < length)
    return 0;
  for (size_t i = 1; i < length; ++i) {
    if ((p[i] & 0xc0) != 0x80)
      return 0;
    code = (code << 6) | (p[i] & 0x3f);
  }
  static const uint32_t minimum[] = {0, 0, 0x80, 0x800, 0x10000};
  if (code < minimum[length] || code > 0x10ffff || (code >= 0xd800 && code <= 0xdfff) ||
      code == 0xfffe || code == 0xffff)
    return 0;
  return length;
}

std::string xml_escape(std::string_view text, bool attribute) {
  std::string out;
  out.reserve(text.size());
  auto p = reinterpret_cast<const unsigned char*>(text.data());
  auto end = p + text.size();
  while (p < end) {
    size_t length = xml_char_length(p, end);
    if (length == 0) {
      out += REPLACEMENT;
      ++p;
      continue;
    }
    char ch = static_cast<char>(*p);
    if (length > 1) {
      out.append(reinterpret_cast<const char*>(p), length);
    } else if (ch == '&') {
      out += "&amp;";
    } else if (ch == '<') {
      out += "&lt;";
    } else if (ch == '>') {
      out += "&gt;";
    } else if (ch == '"' && attribute) {
      out += "&quot;";
    } else if (attribute && (ch == '\n' || ch == '\r' || ch == '\t')) {
      out += ch == '\n' ? "&#10;" : ch == '\r' ? "&#13;" : "&#9;";
    } else if (ch == '\r') {
      out += "&#13;";  // a raw CR would be normalised away by a parser
    } else {
      out += ch;
    }
    p += length;
  }
  return out;
}

std::string attr(const char* name, std::string_view value) {
  return std::string(" ") + name + "=\"" + xml_escape(value, true) + "\"";
}

std::string color_text(uint32_t color) {
  if (color == RDB_NO_COLOR)
    return "none";
  char text[16];
  std::snprintf(text, sizeof text, "#%06x", color & 0xffffffu);
  return text;
}

const char* element_name(int kind) {
  switch (kind) {
  case RDB_KIND_FOLDER: return "folder";
  case RDB_KIND_LEGAL_NOTICE: return "legal_notice";
  case RDB_KIND_TEXT: return "text";
  case RDB_KIND_TABLE:
  case RDB_KIND_HEADERLESS_TABLE:
  case RDB_KIND_DETAIL_TABLE: return "table";
  case RDB_KIND_CHART_TABLE: return "chart_table";
  case RDB_KIND_EMBEDDED: return "embedded";
  case RDB_KIND_TCL_TABLE: return "tcl_table";
  case RDB_KIND_HISTOGRAM: return "histogram";
  case RDB_KIND_PATH: return "path";
  default: return "object";
  }
}

void write_rows(const RDB_TABLE_OBJECT& table, std::ostream& out, const std::string& indent) {
  if (table.has_header()) {
    out << indent << "<columns>";
    for (const std::string& title : table.get_column_names())
      out << "<column>" << xml_escape(title, false) << "</column>";
    out << "</columns>\n";
  }
  int first = table.has_header() ? 1 : 0;
  int end = table.get_number_of_rows();
  for (int row = first; row < end; row += 512) {
    int index = row;
    for (const RDB_TABLE_ROW& data : table.get_rows(row, 512)) {
      out << indent << "<row index=\"" << index++ << "\">";
      for (size_t c = 0; c < data.cells.size(); ++c) {
        out << "<cell";
        for (const RDB_CELL_COLOR& color : data.colors)
          if (color.column == static_cast<int>(c))
            out << attr("foreground", color_text(color.foreground))
                << attr("background", color_text(color.background));
        out << ">" << xml_escape(data.cells[c], false) << "</cell>";
      }
      out << "</row>\n";
    }
  }
}

void write_object(const RDB_OBJECT& object, std::ostream& out, int depth) {
  std::string indent(2 * depth, ' ');
  const char* name = element_name(object.get_type());
  out << indent << "<" << name << attr("name", object.get_name())
      << " kind=\"" << object.get_type() << "\"" << attr("path", object.get_path(false))
      << " enabled=\"" << (object.is_enable() ? "true" : "false") << "\"";
  std::string inner = indent + "  ";
  switch (object.get_type()) {
  case RDB_KIND_TEXT: {
    const auto& text = static_cast<const RDB_TEXT_OBJECT&>(object);
    out << " html=\"" << (text.is_html() ? "true" : "false") << "\">"
        << xml_escape(text.get_text(), false) << "</" << name << ">\n";
    return;
  }
  case RDB_KIND_LEGAL_NOTICE:
    out << ">" << xml_escape(static_cast<const RDB_LEGAL_OBJECT&>(object).get_text(), false)
        << "</" << name << ">\n";
    return;
  case RDB_KIND_EMBEDDED: {
    const auto& embedded = static_cast<const RDB_EMBEDDED_OBJECT&>(object);
    out << " embedded_type=\"" << embedded.get_embedded_type() << "\""
        << attr("info", embedded.get_info_str()) << "/>\n";
    return;
  }
  case RDB_KIND_PATH: {
    const auto& path = static_cast<const RDB_PATH_OBJECT&>(object);
    out << attr("slack", rdb_internal::format_double(path.get_slack()))
        << " violated=\"" << (path.path_is_violated() ? "true" : "false") << "\"";
    break;
  }
  case RDB_KIND_CHART_TABLE: {
    const auto& chart = static_cast<const RDB_CHART_TABLE_OBJECT&>(object);
    out << attr("x_axis", chart.get_x_axis()) << attr("y_axis", chart.get_y_axis())
        << " default_chart_type=\"" << chart.get_default_chart_type() << "\"";
    break;
  }
  case RDB_KIND_HISTOGRAM: {
    const auto& histogram = static_cast<const RDB_HISTOGRAM_TABLE_OBJECT&>(object);
    out << attr("x_label", histogram.get_x_axis_label())
        << attr("y_label", histogram.get_y_axis_label()) << " x_scale=\""
        << histogram.get_x_scale() << "\"" << attr("x_unit", histogram.get_x_unit()) << ">\n";
    for (int row = 1; row < histogram.get_number_of_rows(); ++row)
      out << inner << "<bin" << attr("from", rdb_internal::format_double(histogram.get_from(row)))
          << attr("to", rdb_internal::format_double(histogram.get_to(row))) << " value=\""
          << histogram.get_value(row) << "\"" << attr("color", color_text(histogram.get_color(row)))
          << "/>\n";
    out << indent << "</" << name << ">\n";
    return;
  }
  default:
    break;
  }
  if (auto* table = dynamic_cast<const RDB_TABLE_OBJECT*>(&object))
    out << " rows=\"" << table->get_number_of_data_rows() << "\" columns=\""
        << table->get_number_of_columns() << "\"";
  out << ">\n";
  if (auto* tcl = dynamic_cast<const RDB_TCL_TABLE_OBJECT*>(&object))
    for (int i = 0; i < tcl->get_number_of_cmds(); ++i)
      out << inner << "<command index=\"" << i << "\"" << attr("gui_name", tcl->get_gui_cmd_name(i))
          << ">" << xml_escape(tcl->get_cmd_template(i), false) << "</command>\n";
  if (auto* table = dynamic_cast<const RDB_TABLE_OBJECT*>(&object))
    write_rows(*table, out, inner);
  for (const RDB_OBJECT* child : object.get_children())
    write_object(*child, out, depth + 1);
  out << indent << "</" << name << ">\n";
}

}  // namespace

std::string rdb_xml_escape(std::string_view text) { return xml_escape(text, true); }

void rdb_write_xml_report(const RDB_OBJECT& object, std::ostream& out) {
  out << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<report";
  if (const RDB_REPORT* report = object.get_report())
    out << attr("file", report->get_file()) << " type=\"" << report->get_report_type() << "\"";
  out << ">\n";
  write_object(object, out, 1);
  out << "</report>\n";
}

bool rdb_write_xml_report(const RDB_OBJECT* object, const std::string& path, std::string* error) {
  if (!object) {
    if (error)
      *error = "No report object to write to \"" + path + "\"";
    return false;
  }
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  if (out)
    rdb_write_xml_report(*object, out);
  out.flush();
  if (!out) {
    if (error)
      *error = "Cannot write the XML report \"" + path + "\"";
    return false;
  }
  return true;
}
