#include "lum_ipc_object.hh"

#include <tcl.h>

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <mutex>

#include "lum_msg_display.hh"
#include "platform/atcl.hh"
#include "platform/cfg.hh"
#include "platform/msg.hh"

namespace {

const char* const MODULE = "lum_console_ctrl";

bool starts_with(const std::string& line, const char* prefix, size_t length) {
  return line.size() >= length && line.compare(0, length, prefix, length) == 0;
}

bool starts_with(const std::string& line, const std::string& prefix) {
  return starts_with(line, prefix.data(), prefix.size());
}

std::string target_prefix(const char* command, MSG_REPORT* target) {
  char number[32];
  snprintf(number, sizeof number, " %ld ", target ? target->get_target_id() : 0L);
  return std::string(command) + number;
}

// Flow control between the reader threads and the GUI thread's queue.
std::atomic<int> g_outstanding{0};
std::mutex g_flow_mutex;
std::condition_variable g_flow_drained;

// The data of a post is the number of lines it carries.
void post_done(int /*code*/, const char* /*result*/, void* data) {
  const int lines = static_cast<int>(reinterpret_cast<intptr_t>(data));
  const int before = g_outstanding.fetch_sub(lines);
  constexpr int half = LUM_IPC_OBJECT::MAX_OUTSTANDING_LINES / 2;
  if (before > half && before - lines <= half) {
    std::lock_guard<std::mutex> lock(g_flow_mutex);
    g_flow_drained.notify_all();
  }
}

// A bare Tcl word that stands for itself: no blanks, no substitutions, no
// quoting, no braces (so it may also go inside a braced word).
bool is_literal_word(std::string_view text) {
  if (text.empty()) return false;
  for (char c : text) {
    switch (c) {
      case ' ': case '\t': case '\n': case '\r': case '\f': case '\v':
      case '[': case ']': case '{': case '}': case '$': case '\\': case '"': case ';':
        return false;
      default:
        break;
    }
  }
  return true;
}

// True when "{" text "\n}" is one braced Tcl word whose value is text + "\n":
// its braces pair up without ever closing the outer one, and it does not end
// in a backslash that would escape the line feed.
bool braces_keep_text_literal(std::string_view text) {
  int depth = 0;
  for (size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (c == '\\') {
      if (++i == text.size()) return false;
    } else if (c == '{') {
      ++depth;
    } else if (c == '}') {
      if (depth-- == 0) return false;
    }
  }
  return depth == 0;
}

}  // namespace

int LUM_IPC_OBJECT::get_outstanding_lines() { return g_outstanding.load(); }

void LUM_IPC_OBJECT::set_unthrottled(bool unthrottled) {
  m_unthrottled.store(unthrottled);
  std::lock_guard<std::mutex> lock(g_flow_mutex);
  g_flow_drained.notify_all();
}

void LUM_IPC_OBJECT::post_command(const std::string& command, int lines) {
  if (g_outstanding.load() >= MAX_OUTSTANDING_LINES && !m_first_prompt.load()) {
    std::unique_lock<std::mutex> lock(g_flow_mutex);
    while (g_outstanding.load() > MAX_OUTSTANDING_LINES / 2 && !m_unthrottled.load()) {
      g_flow_drained.wait_for(lock, std::chrono::milliseconds(10));
    }
  }
  g_outstanding.fetch_add(lines);
  atcl_post(command.c_str(), 0, post_done, reinterpret_cast<void*>(static_cast<intptr_t>(lines)));
}

THR_EVENT& LUM_IPC_OBJECT::get_startup_event() {
  static THR_EVENT startup;
  return startup;
}

LUM_IPC_OBJECT::LUM_IPC_OBJECT() {
  m_post_prefix = std::string(msg_tcl_post_cmd()) + " 0 ";
  m_ie_prefix = std::string(msg_tcl_ie_cmd()) + " 0 ";
}

LUM_IPC_OBJECT::~LUM_IPC_OBJECT() = default;

void LUM_IPC_OBJECT::set_msg_target(MSG_REPORT* report) { m_msg_target.store(report); }

void LUM_IPC_OBJECT::mark_ended() {
  flush_held_text();
  m_ended.store(true);
  // Whoever waits (a hidden command, the start-up) must not wait for a prompt
  // that will never come.
  m_hidden_done.post();
  m_idle.post();
}

void LUM_IPC_OBJECT::forward_buffer() {
  post_command(m_line_buffer, 1);
  m_line_buffer.clear();
}

bool LUM_IPC_OBJECT::batch_text_line(const std::string& line) {
  if (line.size() < 13 || !starts_with(line, "echo_stdout ", 12)) return false;
  const std::string_view text(line.data() + 13, line.size() - 13);
  if (line[12] == ' ' && (text == "{}" || is_literal_word(text))) {
    add_to_batch(line, false);
    return true;
  }
  if (line[12] == '{' && braces_keep_text_literal(text)) {
    m_brace_line = line;
    return true;
  }
  return false;
}

void LUM_IPC_OBJECT::add_to_batch(const std::string& line, bool braced) {
  const std::string_view text(line.data() + 13, line.size() - 13);
  if (m_batch_lines == 0) {
    m_batch_single = "lum_echo_stdout";
    if (!text.empty() && text[0] == '-') m_batch_single += " --";
    m_batch_single += ' ';
    m_batch_single.append(line, 12, std::string::npos);
    if (braced) m_batch_single += "\n}";
  } else {
    m_batch_text += '\n';
  }
  if (text != "{}" || braced) m_batch_text.append(text);
  // A batch stays a bounded share of the flow control's window.
  if (++m_batch_lines >= MAX_OUTSTANDING_LINES / 8 || m_batch_text.size() >= BATCH_BYTES) flush_text_batch();
}

void LUM_IPC_OBJECT::flush_text_batch() {
  if (m_batch_lines == 0) return;
  if (m_batch_lines == 1) {
    post_command(m_batch_single, 1);
  } else {
    std::string command;
    command.reserve(m_batch_text.size() + 20);
    command = "lum_echo_stdout -- {";
    command += m_batch_text;
    command += '}';
    post_command(command, m_batch_lines);
  }
  m_batch_text.clear();
  m_batch_single.clear();
  m_batch_lines = 0;
}

void LUM_IPC_OBJECT::flush_held_text() {
  flush_text_batch();
  if (!m_brace_line.empty()) {
    std::string held;
    held.swap(m_brace_line);
    classify_line(held);
  }
}

void LUM_IPC_OBJECT::block_delivered() { flush_text_batch(); }

void LUM_IPC_OBJECT::process_line(const std::string& engine_line) {
  const bool hidden = m_hidden_mode.load();
  // The interpreter's queue takes commands as C strings, where a NUL byte
  // would end the command early (and a brace before it would then never be
  // closed). Tcl writes the character NUL as the bytes C0 80 in its strings.
  std::string with_nul;
  if (!hidden && engine_line.find('\0') != std::string::npos) {
    with_nul = engine_line;
    for (size_t at = with_nul.find('\0'); at != std::string::npos; at = with_nul.find('\0', at + 2))
      with_nul.replace(at, 1, "\xC0\x80");
  }
  const std::string& line = with_nul.empty() ? engine_line : with_nul;
  if (!hidden) {
    if (!m_brace_line.empty() && line == "}") {
      add_to_batch(m_brace_line, true);
      m_brace_line.clear();
      return;
    }
    if (m_brace_line.empty() && m_line_buffer.empty() && m_msg_target.load() != nullptr && batch_text_line(line))
      return;
  }
  flush_held_text();
  if (hidden)
    hidden_line(line);
  else
    classify_line(line);
}

void LUM_IPC_OBJECT::hidden_line(const std::string& line) {
  if (starts_with(line, "echo_stdout ", 12)) {
    // The encoder puts one extra character after the prefix; it is dropped
    // here. After a blank the text is a plain word, the empty word "{}", or
    // a word with backslash escapes (texts that braces cannot carry), which
    // are undone so that the result is the engine's text exactly. After a
    // brace it is the braced text itself (its lone "}" line is dropped below).
    std::string text = line.size() > 13 ? line.substr(13) : std::string();
    if (line.size() > 12 && line[12] == ' ') {
      if (text == "{}") {
        text.clear();
      } else if (text.find('\\') != std::string::npos) {
        std::string plain;
        for (size_t i = 0; i < text.size(); ++i) {
          if (text[i] == '\\' && i + 1 < text.size()) ++i;
          plain += text[i];
        }
        text.swap(plain);
      }
    }
    if (m_hidden_result) m_hidden_result->push_back(std::move(text));
  } else if (starts_with(line, "tcl> ", 5) || starts_with(line, "> ", 2)) {
    // A continuation prompt ends the wait too: the engine is waiting for
    // input, so no other prompt would come and the window would hang.
    m_hidden_done.post();
  } else if (starts_with(line, m_ie_prefix)) {
    if (m_hidden_result) {
      m_hidden_result->clear();
      m_hidden_result->push_back("Chronel Internal Error");
      m_hidden_result->push_back(line.substr(m_ie_prefix.size()));
    }
    m_hidden_done.post();
  }
}

void LUM_IPC_OBJECT::classify_line(const std::string& line) {
  bool first_line = m_line_buffer.empty();
  if (first_line)
    m_forward = false;
  else
    m_line_buffer += '\n';
  m_line_buffer += line;

  MSG_REPORT* target = m_msg_target.load();
  if (first_line && target != nullptr) {
    if (starts_with(line, m_post_prefix)) {
      m_line_buffer = target_prefix(msg_tcl_post_cmd(), target) + line.substr(m_post_prefix.size());
      m_forward = true;
    } else if (starts_with(line, m_ie_prefix)) {
      m_line_buffer = target_prefix(msg_tcl_ie_cmd(), target) + line.substr(m_ie_prefix.size());
      m_forward = true;
      m_idle.post();
      if (m_display) m_display->get_internal_error_seen_event().post();
    } else if (starts_with(line, "tcl> ", 5)) {
      m_line_buffer = "lum_tcl_prompt";
      m_forward = true;
      if (m_first_prompt.load()) {
        if (!cfg_is_on("lum_dont_wait_for_sta_to_startup")) get_startup_event().post();
        m_first_prompt.store(false);
      }
      m_idle.post();
    } else if (starts_with(line, "> ", 2)) {
      m_line_buffer = "lum_tcl_cont_prompt";
      m_forward = true;
      m_idle.post();
    } else if (starts_with(line, "echo_stdout ", 12)) {
      m_line_buffer = "lum_echo_stdout";
      // A text that could read as an option ("-h", "{-x}") is marked as the
      // text after "--", so that the command shows it instead of its help.
      const size_t word = line.size() > 12 && line[12] == ' ' ? 13 : 12;
      const bool quoted = word < line.size() && (line[word] == '{' || line[word] == '\\');
      if (word + (quoted ? 1 : 0) < line.size() && line[word + (quoted ? 1 : 0)] == '-') m_line_buffer += " --";
      m_line_buffer += ' ';
      m_line_buffer.append(line, 12, std::string::npos);
      m_forward = true;
    } else if (starts_with(line, "report_status ", 14)) {
      m_line_buffer = "lum_report_status ";
      m_line_buffer.append(line, 14, std::string::npos);
      m_line_buffer += '%';
      m_forward = true;
    } else if (starts_with(line, "lum_", 4)) {
      m_forward = true;
    } else {
      msg_debug("Warning: LUM ignoring line from %s: %s", "vexa_sta", line.c_str());
      m_line_buffer.clear();
    }
  }

  if (m_forward && !m_line_buffer.empty() && Tcl_CommandComplete(m_line_buffer.c_str())) forward_buffer();

  if (m_line_buffer.size() > LUM_LINE_BUFFER_LIMIT) {
    m_line_buffer.clear();
    m_line_buffer.shrink_to_fit();
    msg_debug("Warning: LUM line buffer exceeded 100MB and will now reset");
  }
}

int LUM_IPC_OBJECT::write_to_stdin(const char* text, size_t length) {
  m_idle.reset();
  return IPC_COMMAND::write_to_stdin(text, length);
}

bool LUM_IPC_OBJECT::write_to_stdin_hidden(const char* text, std::vector<std::string>* result) {
  m_hidden_result = result;
  m_hidden_done.reset();
  m_hidden_mode.store(true);
  bool ok = !m_ended.load();
  if (ok) {
    m_idle.reset();
    ok = IPC_COMMAND::write_to_stdin(text, strlen(text)) >= 0;
  }
  // mark_ended() posts the event after setting the flag, so an engine that
  // ends at any moment from here on wakes this wait.
  if (ok && !m_ended.load()) m_hidden_done.wait(-1);
  m_hidden_mode.store(false);
  m_hidden_result = nullptr;
  m_hidden_done.reset();
  return ok;
}

unsigned lum_read_thread_proc(void* param) {
  auto* thread_param = static_cast<LUM_READ_THREAD_PARAM*>(param);
  if (!MSG_ASSERT(thread_param != NULL, MODULE)) return 0;
  if (!MSG_ASSERT(thread_param->m_ipc_object != NULL, MODULE)) return 0;
  thread_param->m_ipc_object->run(thread_param->m_command_line.c_str(), "", "");
  thread_param->m_ipc_object->mark_ended();
  return 0;
}
