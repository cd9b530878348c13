// The message library: message posts with sub-messages and locations, reports
// that hand posts to a display, the message catalogue with its boxes, the
// internal-error service and the debug channel.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

struct Tcl_Interp;

enum class MSG_KIND { INFO, EXTRA_INFO, WARNING, CRITICAL_WARNING, ERROR, INTERNAL_ERROR };

// "info", "extra_info", "warning", "critical_warning", "error", "internal_error".
const char* msg_kind_name(MSG_KIND kind);
// The kind for one of those names; false when the name is unknown.
bool msg_kind_from_name(const std::string& name, MSG_KIND* kind);

struct MSG_LOCATION {
  std::string file;
  int line = 0;  // 0: no line
};

// One message: kind, stable identifier, text, optional location and any number
// of sub-messages (each a full message, so levels nest).
class MSG_POST {
 public:
  MSG_POST() = default;
  MSG_POST(MSG_KIND kind, std::string id, std::string text);

  MSG_KIND get_kind() const { return m_kind; }
  const std::string& get_id() const { return m_id; }
  const std::string& get_text() const { return m_text; }
  const std::vector<MSG_POST>& get_sub_messages() const { return m_subs; }
  const MSG_LOCATION* get_location() const { return m_has_location ? &m_location : nullptr; }

  void add_sub_message(MSG_POST sub) { m_subs.push_back(std::move(sub)); }
  void set_location(MSG_LOCATION location);

  // Parses the Tcl list form {KIND ID TEXT ?SUBS?} (SUBS a list of the same
  // form) used by the engine's posts. False with a reason in *error if malformed.
  static bool from_tcl_list(const std::string& list, MSG_POST* post, std::string* error);

 private:
  MSG_KIND m_kind = MSG_KIND::INFO;
  std::string m_id;
  std::string m_text;
  std::vector<MSG_POST> m_subs;
  MSG_LOCATION m_location;
  bool m_has_location = false;
};

// Receives the posts of a report. The console implements it.
class MSG_DISPLAY {
 public:
  virtual ~MSG_DISPLAY() = default;
  virtual void post_display(const MSG_POST* post, int flags) = 0;
  virtual void internal_error_display(const char* text) = 0;
};

// A report hands posts to its display (if any). Each report has a numeric
// target identifier, printed into the engine's rewritten post lines, by which
// the Tcl commands msg_post and msg_internal_error find it again.
class MSG_REPORT {
 public:
  MSG_REPORT();
  ~MSG_REPORT();
  MSG_REPORT(const MSG_REPORT&) = delete;
  MSG_REPORT& operator=(const MSG_REPORT&) = delete;

  void set_display(MSG_DISPLAY* display) { m_display = display; }
  MSG_DISPLAY* get_display() const { return m_display; }
  long get_target_id() const { return m_target_id; }
  void post(const MSG_POST& post, int flags = 0);
  void internal_error(const char* text);

  // The report registered under a target identifier, or null.
  static MSG_REPORT* find_by_target_id(long id);

 private:
  MSG_DISPLAY* m_display = nullptr;
  long m_target_id;
};

// Names of the two Tcl commands by which the engine's posts and internal errors
// reach the front end: "msg_post" and "msg_internal_error".
const char* msg_tcl_post_cmd();
const char* msg_tcl_ie_cmd();

// Registers msg_post (target kind id text ?subs?) and msg_internal_error
// (target text) in an interpreter. A target of 0 or an unknown target goes to
// the default report, if one is set.
void msg_register_tcl_commands(Tcl_Interp* interp);
void msg_set_default_report(MSG_REPORT* report);
MSG_REPORT* msg_get_default_report();

// ---- internal-error service -------------------------------------------------
// Reports a broken invariant (the failed condition as text, the source module
// name without extension, the line) and returns: the operation goes on.
void msg_internal_error(const char* condition, const char* module, int line);
// Where internal errors go (default: standard error). Tests install their own.
using MSG_INTERNAL_ERROR_HANDLER =
    std::function<void(const std::string& condition, const std::string& module, int line)>;
void msg_set_internal_error_handler(MSG_INTERNAL_ERROR_HANDLER handler);

// Checks a condition; on failure reports it and evaluates to false.
#define MSG_ASSERT(cond, module) \
  ((cond) ? true : (msg_internal_error(#cond, module, __LINE__), false))

// ---- debug channel ------------------------------------------------------------
// Writes a printf-style line to the debug channel when the switch "debug_msg"
// is on; otherwise does nothing.
void msg_debug(const char* format, ...) __attribute__((format(printf, 1, 2)));
bool msg_debug_is_on();
// Receives debug lines (default: standard error). The console's debug tab installs one.
void msg_set_debug_sink(std::function<void(const std::string& line)> sink);

// ---- catalogue ------------------------------------------------------------------
enum class MSG_BOX_KIND { OK, YES_NO, CONFIRM, INFORMATION, ERROR };
enum MSG_ANSWER { MSG_ANSWER_OK = 1, MSG_ANSWER_CANCEL = 2, MSG_ANSWER_YES = 6, MSG_ANSWER_NO = 7 };

// A catalogue entry "text/KIND ID": the text (with "%1!s!" insertion marks),
// the box kind from the letters after the last slash (O, YN, CO, I, E) and the
// identifier that follows them.
struct MSG_CATALOGUE_ENTRY {
  std::string text;
  MSG_BOX_KIND box = MSG_BOX_KIND::OK;
  std::string id;
  static MSG_CATALOGUE_ENTRY parse(const char* entry);
  // The text with every "%1!s!" replaced by insert.
  std::string format(const char* insert = nullptr) const;
};

// Shows a catalogue message in its box (QMessageBox over the active window) and
// returns the answer. Tests install a handler that answers without a window.
int msg_show_catalogue_message(const char* entry, const char* insert = nullptr);
using MSG_BOX_HANDLER = std::function<int(const MSG_CATALOGUE_ENTRY& entry, const std::string& text)>;
void msg_set_box_handler(MSG_BOX_HANDLER handler);
