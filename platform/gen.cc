// Small string and path helpers.
#include "platform/gen.hh"

#include <cctype>
#include <climits>
#include <cstring>
#include <filesystem>
#include <system_error>

#include <unistd.h>

namespace {

bool gen_is_digit(char c) { return c >= '0' && c <= '9'; }

// Characters after which a "-" that precedes a digit is a minus sign rather
// than part of a name such as "a-1": the start of the text, blanks and
// separators. "x-1" and "x-2" thus compare as x, "-", then 1 against 2.
bool gen_is_sign_context(const char* start, const char* p) {
  if (p == start) return true;
  char before = p[-1];
  return std::isspace(static_cast<unsigned char>(before)) || std::strchr("([{=,;:", before) != nullptr;
}

// A number token of gen_lexcmp: an optional minus sign, a run of digits and an
// optional fraction ("." followed by digits).
struct GEN_NUMBER {
  bool negative = false;
  const char* int_begin = nullptr;  // without leading zeros
  const char* int_end = nullptr;
  const char* frac_begin = nullptr;
  const char* frac_end = nullptr;  // without trailing zeros
  const char* raw_begin = nullptr;
  const char* raw_end = nullptr;
  bool is_zero() const { return int_begin == int_end && frac_begin == frac_end; }
};

// Reads a number token at p, or returns false when p does not start one.
bool gen_read_number(const char* start, const char* p, GEN_NUMBER* number) {
  const char* q = p;
  bool negative = false;
  if (*q == '-' && gen_is_digit(q[1]) && gen_is_sign_context(start, q)) {
    negative = true;
    ++q;
  }
  if (!gen_is_digit(*q)) return false;
  number->raw_begin = p;
  number->negative = negative;
  while (*q == '0') ++q;
  number->int_begin = q;
  while (gen_is_digit(*q)) ++q;
  number->int_end = q;
  number->frac_begin = number->frac_end = q;
  if (*q == '.' && gen_is_digit(q[1])) {
    ++q;
    number->frac_begin = q;
    while (gen_is_digit(*q)) ++q;
    const char* end = q;
    while (end > number->frac_begin && end[-1] == '0') --end;
    number->frac_end = end;
  }
  number->raw_end = q;
  return true;
}

int gen_sign(int value) { return (value > 0) - (value < 0); }

// Compares two numbers by value, digit strings only, so no length overflows.
int gen_compare_numbers(const GEN_NUMBER& a, const GEN_NUMBER& b) {
  bool a_negative = a.negative && !a.is_zero();
  bool b_negative = b.negative && !b.is_zero();
  if (a_negative != b_negative) return a_negative ? -1 : 1;
  int magnitude = 0;
  size_t a_int = static_cast<size_t>(a.int_end - a.int_begin);
  size_t b_int = static_cast<size_t>(b.int_end - b.int_begin);
  if (a_int != b_int) {
    magnitude = a_int < b_int ? -1 : 1;
  } else {
    magnitude = gen_sign(std::memcmp(a.int_begin, b.int_begin, a_int));
    const char* fa = a.frac_begin;
    const char* fb = b.frac_begin;
    while (magnitude == 0 && (fa < a.frac_end || fb < b.frac_end)) {
      char da = fa < a.frac_end ? *fa++ : '0';
      char db = fb < b.frac_end ? *fb++ : '0';
      magnitude = gen_sign(da - db);
    }
  }
  return a_negative ? -magnitude : magnitude;
}

int gen_fold(char c) { return std::tolower(static_cast<unsigned char>(c)); }

// One pass over both texts, token by token. The first pass (exact == false)
// compares numbers by value and characters without case; the second pass,
// reached only when the first finds no difference, breaks ties by the exact
// spelling: shorter number spellings ("7" before "007", "1.5" before "1.50")
// and upper case before lower case.
int gen_lexcmp_pass(const char* a, const char* b, bool exact) {
  const char* a_start = a;
  const char* b_start = b;
  while (*a != '\0' && *b != '\0') {
    GEN_NUMBER na;
    GEN_NUMBER nb;
    bool a_number = gen_read_number(a_start, a, &na);
    bool b_number = gen_read_number(b_start, b, &nb);
    if (a_number && b_number) {
      int result;
      if (exact) {
        size_t a_length = static_cast<size_t>(na.raw_end - na.raw_begin);
        size_t b_length = static_cast<size_t>(nb.raw_end - nb.raw_begin);
        result = a_length != b_length ? (a_length < b_length ? -1 : 1)
                                      : gen_sign(std::memcmp(na.raw_begin, nb.raw_begin, a_length));
      } else {
        result = gen_compare_numbers(na, nb);
      }
      if (result != 0) return result;
      a = na.raw_end;
      b = nb.raw_end;
      continue;
    }
    // A number sorts where its digits stand among the characters: after
    // blanks and punctuation below "0", before letters.
    if (a_number) return gen_fold(*b) < '0' ? 1 : -1;
    if (b_number) return gen_fold(*a) < '0' ? -1 : 1;
    int ca = exact ? static_cast<unsigned char>(*a) : gen_fold(*a);
    int cb = exact ? static_cast<unsigned char>(*b) : gen_fold(*b);
    if (ca != cb) return ca < cb ? -1 : 1;
    ++a;
    ++b;
  }
  if (*a != '\0') return 1;
  if (*b != '\0') return -1;
  return 0;
}

}  // namespace

int gen_lexcmp(const char* a, const char* b) {
  if (a == nullptr) a = "";
  if (b == nullptr) b = "";
  int result = gen_lexcmp_pass(a, b, false);
  return result != 0 ? result : gen_lexcmp_pass(a, b, true);
}

int gen_atoi(const char** text) {
  if (text == nullptr || *text == nullptr) return 0;
  const char* p = *text;
  bool negative = false;
  if (*p == '-' || *p == '+') {
    negative = *p == '-';
    ++p;
  }
  if (!gen_is_digit(*p)) return 0;
  // Accumulate as a negative value, which has the larger range, and saturate.
  long long value = 0;
  for (; gen_is_digit(*p); ++p) {
    if (value > LLONG_MIN / 10 + 10) value = value * 10 - (*p - '0');
  }
  *text = p;
  if (!negative) value = -value;
  if (value > INT_MAX) return INT_MAX;
  if (value < INT_MIN) return INT_MIN;
  return static_cast<int>(value);
}

size_t gen_strlen(const char* text) { return text != nullptr ? std::strlen(text) : 0; }

std::string gen_get_module_path() {
  static const std::string path = [] {
    std::error_code error;
    std::filesystem::path exe = std::filesystem::read_symlink("/proc/self/exe", error);
    if (error) return std::string("./");
    std::string dir = exe.parent_path().string();
    if (dir.empty() || dir.back() != '/') dir += '/';
    return dir;
  }();
  return path;
}

std::string gen_get_common_misc_fullpath(const std::string& file_name) {
  std::string installed = gen_get_module_path() + "../share/chronel/misc/" + file_name;
  std::error_code error;
  if (std::filesystem::exists(installed, error)) return installed;
  return std::string(CHRONEL_MISC_SOURCE_DIR) + "/" + file_name;
}

std::string gen_find_file(const std::string& file_name, const std::vector<std::string>& dirs) {
  if (file_name.empty()) return std::string();
  std::error_code error;
  if (file_name[0] == '/')
    return std::filesystem::is_regular_file(file_name, error) ? file_name : std::string();
  for (const std::string& dir : dirs) {
    std::string candidate = dir;
    if (!candidate.empty() && candidate.back() != '/') candidate += '/';
    candidate += file_name;
    if (std::filesystem::is_regular_file(candidate, error)) return candidate;
  }
  return std::string();
}

bool gen_is_in_ui_process() { return false; }

const char* gen_get_version() { return CHRONEL_VERSION; }
