#include "lum_msg_display.hh"

#include <cstring>

void LUM_MSG_DISPLAY::append(std::unique_ptr<LUM_KRO_OUTPUT_LINE> line) {
  bool was_empty = m_lines.empty();
  m_lines.push_back(std::move(line));
  if (was_empty && m_lines_queued) m_lines_queued();
}

void LUM_MSG_DISPLAY::post_display(const MSG_POST* post, int /*flags*/) {
  if (post == nullptr) return;
  append(std::make_unique<LUM_KRO_OUTPUT_LINE>(post));
}

void LUM_MSG_DISPLAY::internal_error_display(const char* text) {
  const char* shown = text ? text : "";
  // The console shows it like any message, so that it is seen in context and
  // kept in a saved log; the platform's service records it as well.
  MSG_POST post(MSG_KIND::INTERNAL_ERROR, "vexa_sta", shown);
  append(std::make_unique<LUM_KRO_OUTPUT_LINE>(&post));
  msg_internal_error(shown, "vexa_sta", 0);
  m_internal_error_seen.reset();
}

void LUM_MSG_DISPLAY::display_tcl_prompt() { append(std::make_unique<LUM_KRO_OUTPUT_LINE>(LUM_KRO_OUTPUT_TCL_PROMPT)); }

void LUM_MSG_DISPLAY::display_tcl_cont_prompt() {
  append(std::make_unique<LUM_KRO_OUTPUT_LINE>(LUM_KRO_OUTPUT_TCL_CONT_PROMPT));
}

void LUM_MSG_DISPLAY::echo_stdout(const char* text) {
  if (text == nullptr) return;
  const char* p = text;
  while (*p) {
    size_t skip = strspn(p, "\r\n\f");
    p += skip;
    if (*p == 0) break;
    size_t n = strcspn(p, "\r\n\f");
    std::string* block = nullptr;
    if (!m_lines.empty() && m_lines.back()->get_type() == LUM_KRO_OUTPUT_STDOUT)
      block = m_lines.back()->get_stdout_text();
    if (block != nullptr && block->size() < TEXT_BLOCK_BYTES) {
      block->push_back('\n');
      block->append(p, n);
    } else {
      append(std::make_unique<LUM_KRO_OUTPUT_LINE>(std::string(p, n)));
    }
    p += n;
  }
}

std::unique_ptr<LUM_KRO_OUTPUT_LINE> LUM_MSG_DISPLAY::take_front() {
  if (m_lines.empty()) return nullptr;
  std::unique_ptr<LUM_KRO_OUTPUT_LINE> line = std::move(m_lines.front());
  m_lines.pop_front();
  return line;
}
