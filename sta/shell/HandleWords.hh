// The object handles written in a text.
//
// OpenSTA's Tcl layer names a design object by a handle
// "_<16 hex digits>_p_<Type>": the object's address, byte by byte in memory
// order, and its type. handle_words finds each handle that stands as a word
// of its own (bounded by the text's ends, blanks, braces, brackets or
// quotes) and decodes its address.
#pragma once

#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

namespace vexa {

struct HandleWord
{
  std::string_view text;   // the whole handle
  std::string_view type;   // "Pin", "Clock", ...
  const void *address = nullptr;
};

inline std::vector<HandleWord> handle_words(std::string_view text)
{
  auto hex = [](char c) -> int {
    if (c >= '0' && c <= '9')
      return c - '0';
    if (c >= 'a' && c <= 'f')
      return c - 'a' + 10;
    return -1;
  };
  auto boundary = [](char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '{' || c == '}' || c == '['
           || c == ']' || c == '"';
  };
  constexpr size_t digits = 2 * sizeof(void *);
  std::vector<HandleWord> found;
  size_t at = 0;
  while ((at = text.find("_p_", at)) != std::string_view::npos) {
    size_t type_start = at + 3;
    at = type_start;
    if (type_start < digits + 4)
      continue;
    size_t start = type_start - 3 - digits - 1;
    if (text[start] != '_' || (start > 0 && !boundary(text[start - 1])))
      continue;
    unsigned char bytes[sizeof(void *)];
    bool ok = true;
    for (size_t i = 0; ok && i < sizeof(void *); ++i) {
      int high = hex(text[start + 1 + 2 * i]);
      int low = hex(text[start + 2 + 2 * i]);
      ok = high >= 0 && low >= 0;
      bytes[i] = static_cast<unsigned char>(high * 16 + low);
    }
    size_t end = type_start;
    while (end < text.size() && ((text[end] >= 'A' && text[end] <= 'Z')
                                 || (text[end] >= 'a' && text[end] <= 'z')
                                 || (text[end] >= '0' && text[end] <= '9') || text[end] == '_'))
      ++end;
    if (!ok || end == type_start || (end < text.size() && !boundary(text[end])))
      continue;
    HandleWord word;
    word.text = text.substr(start, end - start);
    word.type = text.substr(type_start, end - type_start);
    std::memcpy(&word.address, bytes, sizeof(void *));
    found.push_back(word);
  }
  return found;
}

} // namespace vexa
