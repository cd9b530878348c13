// Number-aware ("natural") comparison of table cells, and sort keys that
// reproduce it with a plain byte comparison.
//
// lum_lexcmp walks both strings together: runs of digits compare by their
// value (and, when equal, the longer run is greater, so "007" follows "7"),
// other characters compare as signed bytes, and text sorts before numbers.
// A leading "-" is skipped and makes every number of that string negative:
// the sign belongs to the whole string, which is what report cells such as
// "-0.125" need and keeps the rule simple.
//
// Sorting a million cells by calling the comparison on strings would parse
// every cell again at every comparison. lum_sort_key parses a cell once into
// a byte string whose lexicographic (memcmp) order is exactly the order of
// lum_lexcmp, so a sort compares keys only.
//
// Both saturate alike so that they always agree: numbers above 10^18 count as
// 10^18, and runs of more than 255 digits count as 255 digits long.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Negative, zero or positive as a sorts before, with or after b.
int lum_lexcmp(const char* a, const char* b);
// Less-or-equal predicate for sorting name lists with the shared library's
// natural comparison (gen_lexcmp(a, b) <= 0).
bool lum_compare_lexcmp(const char* a, const char* b);

// Appends to *key the sort key of text (the key is cleared first).
// For all strings a and b:
//   sign(lum_lexcmp(a, b)) == sign(lum_sort_key(a).compare(lum_sort_key(b))).
void lum_sort_key(std::string_view text, std::string* key);
// Appends the sort key of text to *key (for keys packed into one buffer).
void lum_append_sort_key(std::string_view text, std::string* key);
// Writes the sort key of text at out, which has room for
// lum_sort_key_room(text.size()) bytes, and returns its length.
size_t lum_write_sort_key(std::string_view text, char* out);
constexpr size_t lum_sort_key_room(size_t text_length) { return text_length * 4 + 8; }
std::string lum_sort_key(std::string_view text);
