#include "netlist/InputChecks.hh"

#include <cctype>
#include <cmath>
#include <cstdlib>
#include <set>

namespace vexa {

namespace {

struct Token
{
  std::string_view text;
  int line = 0;
};

// Verilog tokens: identifiers (escaped ones with their backslash), numbers,
// strings and one-character punctuation. Comments, attributes (* ... *) and
// compiler directives are skipped.
class VerilogTokens
{
public:
  explicit VerilogTokens(std::string_view text) : m_text(text) {}

  bool next(Token &token)
  {
    skip_blanks();
    if (m_pos >= m_text.size())
      return false;
    size_t start = m_pos;
    token.line = m_line;
    char c = m_text[m_pos];
    if (c == '\\') {
      while (m_pos < m_text.size() && !std::isspace(static_cast<unsigned char>(m_text[m_pos])))
        ++m_pos;
    } else if (std::isalpha(static_cast<unsigned char>(c)) || c == '_') {
      while (m_pos < m_text.size() && (std::isalnum(static_cast<unsigned char>(m_text[m_pos]))
                                       || m_text[m_pos] == '_' || m_text[m_pos] == '$'))
        ++m_pos;
    } else if (std::isdigit(static_cast<unsigned char>(c))) {
      while (m_pos < m_text.size()
             && (std::isdigit(static_cast<unsigned char>(m_text[m_pos])) || m_text[m_pos] == '_'))
        ++m_pos;
    } else if (c == '"') {
      ++m_pos;
      while (m_pos < m_text.size() && m_text[m_pos] != '"' && m_text[m_pos] != '\n')
        m_pos += m_text[m_pos] == '\\' ? 2 : 1;
      m_pos = std::min(m_pos + 1, m_text.size());
    } else {
      ++m_pos;
    }
    token.text = m_text.substr(start, m_pos - start);
    return true;
  }

private:
  bool at(std::string_view s) const { return m_text.substr(m_pos, s.size()) == s; }

  // Skips to just past end (counting lines), or to the end of the text.
  void skip_past(std::string_view end)
  {
    size_t found = m_text.find(end, m_pos);
    size_t stop = found == std::string_view::npos ? m_text.size() : found + end.size();
    for (; m_pos < stop; ++m_pos)
      if (m_text[m_pos] == '\n')
        ++m_line;
  }

  void skip_blanks()
  {
    while (m_pos < m_text.size()) {
      char c = m_text[m_pos];
      if (c == '\n') {
        ++m_line;
        ++m_pos;
      } else if (std::isspace(static_cast<unsigned char>(c))) {
        ++m_pos;
      } else if (at("//") || c == '`') {
        skip_past("\n");
      } else if (at("/*")) {
        m_pos += 2;
        skip_past("*/");
      } else if (at("(*") && !at("(*)")) {
        m_pos += 2;
        skip_past("*)");
      } else {
        return;
      }
    }
  }

  std::string_view m_text;
  size_t m_pos = 0;
  int m_line = 1;
};

bool is_identifier(std::string_view t)
{
  return !t.empty() && (t[0] == '\\' || t[0] == '_' || std::isalpha(static_cast<unsigned char>(t[0])));
}

// Words that begin a statement which is not an instance.
bool is_keyword(std::string_view t)
{
  static const std::set<std::string_view> keywords = {
    "input", "output", "inout", "wire", "reg", "tri", "tri0", "tri1", "wand", "wor", "triand",
    "trior", "trireg", "supply0", "supply1", "assign", "parameter", "localparam", "defparam",
    "integer", "real", "time", "genvar", "function", "endfunction", "task", "endtask",
    "initial", "always", "specify", "endspecify", "specparam", "generate", "endgenerate",
    "event", "module", "macromodule", "endmodule", "primitive", "endprimitive", "begin", "end",
    "if", "else", "for", "case", "endcase", "signed"};
  return keywords.count(t) != 0;
}

// The value of a decimal Verilog number (underscores allowed); saturates.
std::uint64_t number_value(std::string_view t)
{
  std::uint64_t value = 0;
  for (char c : t) {
    if (c == '_')
      continue;
    if (value > (UINT64_MAX - 9) / 10)
      return UINT64_MAX;
    value = value * 10 + static_cast<std::uint64_t>(c - '0');
  }
  return value;
}

bool is_number(std::string_view t)
{
  return !t.empty() && std::isdigit(static_cast<unsigned char>(t[0]));
}

} // namespace

std::string scan_verilog(std::string_view text, ModuleGraph &modules)
{
  VerilogTokens tokens(text);
  Token window[5];   // the last five tokens, newest last
  int seen = 0;
  std::string module;          // the module being read, "" outside one
  bool want_module_name = false;
  int position = 0;            // tokens since the statement began
  std::string first;           // first word of the statement
  Token token;
  while (tokens.next(token)) {
    for (int i = 0; i < 4; ++i)
      window[i] = window[i + 1];
    window[4] = token;
    ++seen;
    if (seen >= 5 && token.text == "]" && window[0].text == "[" && window[2].text == ":"
        && is_number(window[1].text) && is_number(window[3].text)) {
      std::uint64_t a = number_value(window[1].text);
      std::uint64_t b = number_value(window[3].text);
      std::uint64_t width = (a > b ? a - b : b - a);
      if (width >= max_bus_bits)
        return std::to_string(token.line) + ": the range [" + std::string(window[1].text) + ":"
               + std::string(window[3].text) + "] is wider than "
               + std::to_string(max_bus_bits) + " bits";
    }
    if (want_module_name) {
      want_module_name = false;
      module = std::string(token.text);
      modules[module].clear();
      position = 1;
      continue;
    }
    if (token.text == "module" || token.text == "macromodule") {
      want_module_name = true;
      continue;
    }
    if (token.text == "endmodule") {
      module.clear();
      position = 0;
      continue;
    }
    if (token.text == ";") {
      position = 0;
      continue;
    }
    ++position;
    if (position == 1) {
      first = std::string(token.text);
    } else if (position == 2 && !module.empty() && is_identifier(first) && !is_keyword(first)
               && (token.text == "#" || is_identifier(token.text))) {
      modules[module].push_back(first);
    }
  }
  return std::string();
}

std::string module_cycle(const ModuleGraph &modules)
{
  // Depth-first search without recursion: a chain of a million modules must
  // not overflow the stack of the checker either.
  enum Colour { white, grey, black };
  std::map<std::string_view, Colour> colour;
  for (const auto &[name, children] : modules)
    colour[name] = white;
  struct Frame
  {
    std::string_view name;
    size_t next = 0;
  };
  for (const auto &[root, ignored] : modules) {
    if (colour[root] != white)
      continue;
    std::vector<Frame> stack{{root, 0}};
    colour[root] = grey;
    while (!stack.empty()) {
      Frame &frame = stack.back();
      const std::vector<std::string> &children = modules.find(std::string(frame.name))->second;
      if (frame.next == children.size()) {
        colour[frame.name] = black;
        stack.pop_back();
        continue;
      }
      std::string_view child = children[frame.next++];
      auto it = colour.find(child);
      if (it == colour.end() || it->second == black)
        continue;
      if (it->second == grey) {
        std::string chain;
        bool on = false;
        for (const Frame &f : stack) {
          on = on || f.name == child;
          if (on)
            chain += std::string(f.name) + " -> ";
        }
        return chain + std::string(child);
      }
      it->second = grey;
      stack.push_back(Frame{it->first, 0});
    }
  }
  return std::string();
}

namespace {

// A SPEF value, possibly a triplet "min:typ:max"; false when a part is not
// a number at all (the reader reports that itself).
bool spef_values(std::string_view word, std::vector<double> &values)
{
  values.clear();
  size_t start = 0;
  for (;;) {
    size_t colon = word.find(':', start);
    std::string part(word.substr(start, colon == std::string_view::npos ? colon : colon - start));
    char *end = nullptr;
    double v = std::strtod(part.c_str(), &end);
    if (part.empty() || *end != '\0')
      return false;
    values.push_back(v);
    if (colon == std::string_view::npos)
      return true;
    start = colon + 1;
  }
}

std::vector<std::string_view> words_of(std::string_view line)
{
  std::vector<std::string_view> words;
  size_t i = 0;
  while (i < line.size()) {
    while (i < line.size() && std::isspace(static_cast<unsigned char>(line[i])))
      ++i;
    size_t start = i;
    while (i < line.size() && !std::isspace(static_cast<unsigned char>(line[i])))
      ++i;
    if (i > start)
      words.push_back(line.substr(start, i - start));
  }
  return words;
}

} // namespace

std::string scan_spef(std::string_view text)
{
  enum class Section { none, cap, res };
  bool started = false;
  int net_line = 0;            // line of the open net's header, 0 outside a net
  Section section = Section::none;
  int line_no = 0;
  size_t pos = 0;
  std::vector<double> values;
  while (pos < text.size()) {
    size_t nl = text.find('\n', pos);
    std::string_view line = text.substr(pos, nl == std::string_view::npos ? nl : nl - pos);
    pos = nl == std::string_view::npos ? text.size() : nl + 1;
    ++line_no;
    size_t comment = line.find("//");
    if (comment != std::string_view::npos)
      line = line.substr(0, comment);
    std::vector<std::string_view> words = words_of(line);
    if (words.empty())
      continue;
    std::string_view head = words[0];
    if (!started) {
      if (head != "*SPEF")
        return std::to_string(line_no) + ": not a SPEF file (it must begin with *SPEF)";
      started = true;
      continue;
    }
    if (head == "*D_NET" || head == "*R_NET" || head == "*D_PNET" || head == "*R_PNET") {
      if (net_line)
        return std::to_string(line_no) + ": " + std::string(head)
               + " before the *END of the net begun on line " + std::to_string(net_line);
      net_line = line_no;
      section = Section::none;
    } else if (head == "*END") {
      if (!net_line)
        return std::to_string(line_no) + ": *END outside a net";
      net_line = 0;
      section = Section::none;
    } else if (head == "*CAP" || head == "*RES") {
      section = head == "*CAP" ? Section::cap : Section::res;
    } else if (head[0] == '*' && head.size() > 1 && std::isupper(static_cast<unsigned char>(head[1]))
               && head != "*P" && head != "*I" && head != "*N" && head != "*C" && head != "*L"
               && head != "*S" && head != "*D") {
      section = Section::none;
    } else if (section != Section::none && net_line && words.size() >= 3
               && spef_values(words.back(), values)) {
      for (double v : values)
        if (!std::isfinite(v) || v < 0 || v > max_spef_value)
          return std::to_string(line_no) + ": "
                 + (section == Section::res ? "resistance " : "capacitance ")
                 + std::string(words.back()) + " is out of range (0 to 1e12)";
    }
  }
  if (!started)
    return "1: the file is empty, not a SPEF file";
  if (net_line)
    return std::to_string(line_no) + ": the file ends inside the net begun on line "
           + std::to_string(net_line) + " (truncated?)";
  return std::string();
}

} // namespace vexa
