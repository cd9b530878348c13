#include "report/lum_lexcmp.hh"

#include "platform/gen.hh"

#include <climits>
#include <cstdint>

namespace {

// Numbers saturate here so that the difference of two of them never overflows.
constexpr int64_t NUMBER_LIMIT = 1000000000000000000LL;
// Digit runs longer than this compare as if they had this length.
constexpr int64_t RUN_LIMIT = 0xff;

bool is_digit(char c) { return c >= '0' && c <= '9'; }

// Reads the run of digits at *text, advances past it and returns its value;
// *length receives the number of digits.
int64_t read_number(const char** text, const char* end, int64_t* length) {
  const char* p = *text;
  int64_t value = 0;
  // Eighteen digits stay below NUMBER_LIMIT: no check is needed for them.
  const char* unchecked_end = end - p > 18 ? p + 18 : end;
  while (p < unchecked_end && is_digit(*p)) value = value * 10 + (*p++ - '0');
  while (p < end && is_digit(*p)) {
    // Checked before multiplying: a run of nineteen digits would overflow.
    const int digit = *p - '0';
    value = value > (NUMBER_LIMIT - digit) / 10 ? NUMBER_LIMIT : value * 10 + digit;
    ++p;
  }
  if (value > NUMBER_LIMIT) value = NUMBER_LIMIT;
  *length = p - *text;
  if (*length > RUN_LIMIT) *length = RUN_LIMIT;
  *text = p;
  return value;
}

int clamp_to_int(int64_t value) {
  if (value > INT_MAX) return INT_MAX;
  if (value < INT_MIN) return INT_MIN;
  return static_cast<int>(value);
}

// Keys are written through a raw pointer into a buffer known to be large
// enough (at most four bytes per character of text), then appended at once.
char* put_big_endian(char* out, uint64_t value, int bytes) {
  for (int shift = (bytes - 1) * 8; shift >= 0; shift -= 8) *out++ = static_cast<char>((value >> shift) & 0xff);
  return out;
}

int byte_count(uint64_t value) {
  int bytes = 0;
  while (value != 0) {
    ++bytes;
    value >>= 8;
  }
  return bytes;
}

// An order-preserving variable-length form of a signed number: a header byte
// that grows with the value's magnitude (and is below 0x80 for negative
// values, whose header shrinks as the magnitude grows), then the fewest bytes
// that hold the magnitude (for negative values, its complement, so that a
// larger magnitude sorts first). A number of one digit takes two bytes, one
// of n digits at most n + 1, so most cell keys stay short.
char* put_number(char* out, int64_t value) {
  if (value >= 0) {
    const int bytes = byte_count(static_cast<uint64_t>(value));
    *out++ = static_cast<char>(0x80 + bytes);
    return put_big_endian(out, static_cast<uint64_t>(value), bytes);
  }
  const uint64_t magnitude = static_cast<uint64_t>(-value);
  const int bytes = byte_count(magnitude);
  const uint64_t all_ones = bytes == 8 ? ~uint64_t{0} : (uint64_t{1} << (8 * bytes)) - 1;
  *out++ = static_cast<char>(0x7f - bytes);
  return put_big_endian(out, all_ones - magnitude, bytes);
}

}  // namespace

int lum_lexcmp(const char* a, const char* b) {
  if (!a) a = "";
  if (!b) b = "";
  const char* a_end = a + gen_strlen(a);
  const char* b_end = b + gen_strlen(b);
  const bool a_negative = *a == '-';
  const bool b_negative = *b == '-';
  if (a_negative) ++a;
  if (b_negative) ++b;

  int64_t result = 0;
  while (a < a_end && b < b_end && result == 0) {
    const signed char ca = static_cast<signed char>(*a);
    const signed char cb = static_cast<signed char>(*b);
    if (!is_digit(*a)) {
      if (is_digit(*b)) return -1;
      result = ca - cb;
      ++a;
      ++b;
    } else if (!is_digit(*b)) {
      return 1;
    } else {
      int64_t a_length = 0, b_length = 0;
      int64_t a_value = read_number(&a, a_end, &a_length);
      int64_t b_value = read_number(&b, b_end, &b_length);
      if (a_negative) a_value = -a_value;
      if (b_negative) b_value = -b_value;
      result = a_value - b_value;
      if (result == 0) result = a_length - b_length;
    }
  }
  if (result != 0) return clamp_to_int(result);
  if (a < a_end) return 1;
  if (b < b_end) return -1;
  return 0;
}

bool lum_compare_lexcmp(const char* a, const char* b) { return gen_lexcmp(a, b) <= 0; }

// Key layout, token by token. A character is one byte, its value with the
// sign bit flipped (so unsigned byte order is signed character order); the
// two largest such bytes, 0xfe and 0xff, are written as 0xfe followed by 0x00
// or 0x01. A number is 0xff (above every character, so text sorts before
// numbers), its value (put_number) and its digit count (one byte). A key
// that is a prefix of another sorts first, as a string with characters left
// over sorts after. Keys are therefore about as long as the cell text.
size_t lum_write_sort_key(std::string_view text, char* begin) {
  char* out = begin;
  const char* p = text.data();
  const char* end = p + text.size();
  const bool negative = p < end && *p == '-';
  if (negative) ++p;
  while (p < end) {
    if (!is_digit(*p)) {
      const unsigned char flipped = static_cast<unsigned char>(*p) ^ 0x80;
      if (flipped >= 0xfe) {
        *out++ = '\xfe';
        *out++ = static_cast<char>(flipped - 0xfe);
      } else {
        *out++ = static_cast<char>(flipped);
      }
      ++p;
      continue;
    }
    int64_t length = 0;
    int64_t value = read_number(&p, end, &length);
    if (negative) value = -value;
    *out++ = '\xff';
    out = put_number(out, value);
    *out++ = static_cast<char>(length);
  }
  return static_cast<size_t>(out - begin);
}

void lum_append_sort_key(std::string_view text, std::string* key) {
  const size_t old_size = key->size();
  key->resize(old_size + lum_sort_key_room(text.size()));
  key->resize(old_size + lum_write_sort_key(text, key->data() + old_size));
}

void lum_sort_key(std::string_view text, std::string* key) {
  key->clear();
  lum_append_sort_key(text, key);
}

std::string lum_sort_key(std::string_view text) {
  std::string key;
  lum_sort_key(text, &key);
  return key;
}
