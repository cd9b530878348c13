// Renderings of report objects for export and for the engine's console:
// plain text laid out like a terminal report, an HTML fragment with real
// tables, and an XML document carrying every kind's data. Tables are
// rendered page by page from the database, so a large table is never held
// whole in memory by the renderer (only the output is).
#pragma once

#include "rdb/rdb_object.hh"

#include <iosfwd>
#include <string>
#include <string_view>

// Plain text: every object starts with its name as a heading; folders
// render their children in order (legal notices included); tables are
// aligned columns framed by separator lines.
void rdb_write_text(const RDB_OBJECT& object, std::ostream& out);
// HTML fragment (no <html> element): headings, <pre> for plain text, the
// object's own markup for HTML text, <table> for tables with cell colours as
// inline styles. Every text from the database is escaped.
void rdb_write_html(const RDB_OBJECT& object, std::ostream& out);

// A whole XML document for `object` and everything below it. Text is escaped;
// characters that XML 1.0 cannot carry (control characters, invalid UTF-8)
// become U+FFFD. Returns false and sets `error` (naming the file) when the
// file cannot be written or `object` is null.
bool rdb_write_xml_report(const RDB_OBJECT* object, const std::string& path,
                          std::string* error = nullptr);
void rdb_write_xml_report(const RDB_OBJECT& object, std::ostream& out);

std::string rdb_html_escape(std::string_view text);
std::string rdb_xml_escape(std::string_view text);
