// Reader of the engine's human-editable "key = value" text files.
//
// One entry per line; blank lines and lines whose first non-blank character
// is "#" are ignored; keys are lower case; values are trimmed and may be
// double-quoted to keep blanks (inside quotes \" and \\ stand for " and \).
// Sections "[name]" are allowed where a format asks for them. Every fault is
// reported with the file name and line number so the user can fix it.
#pragma once

#include <string>
#include <vector>

namespace vexa {

struct KeyValueEntry
{
  int line = 0;          // 1-based line number
  std::string section;   // the last "[section]" seen, "" before any
  std::string key;
  std::string value;
};

struct KeyValueFile
{
  std::string path;
  std::vector<KeyValueEntry> entries;
};

// Reads path. Returns false with error set to "FILE:LINE: reason" (or
// "FILE: reason" for an unreadable file). allow_sections permits "[name]".
bool read_key_value_file(const std::string &path, bool allow_sections,
                         KeyValueFile &out, std::string &error);

// The same over text already in memory (path is used in messages only).
bool parse_key_value_text(const std::string &path, const std::string &text,
                          bool allow_sections, KeyValueFile &out, std::string &error);

// "FILE:LINE: reason".
std::string located_error(const std::string &path, int line, const std::string &reason);

// Joins a path relative to directory (absolute paths stay as they are).
std::string resolve_path(const std::string &directory, const std::string &path);

} // namespace vexa
