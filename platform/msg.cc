// Message posts, reports and their target registry, the Tcl commands through
// which the engine's posts arrive, the internal-error service and the debug
// channel. The catalogue and its boxes live in msg_catalogue.cc.
#include "platform/msg.hh"

#include "platform/cfg.hh"

#include <tcl.h>

#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <mutex>
#include <unordered_map>

namespace {

const char* const k_kind_names[] = {"info",    "extra_info", "warning", "critical_warning",
                                    "error",   "internal_error"};

// Target identifiers are handed out from 1 up and never reused, so a stale
// identifier in a late engine line can never reach a newer report by accident.
std::mutex g_reports_mutex;
std::unordered_map<long, MSG_REPORT*> g_reports;
long g_next_target_id = 1;
MSG_REPORT* g_default_report = nullptr;

void msg_print_post_to_stderr(const MSG_POST& post, int level) {
  std::fprintf(stderr, "%*s%s (%s): %s\n", level * 2, "", msg_kind_name(post.get_kind()),
               post.get_id().c_str(), post.get_text().c_str());
  for (const MSG_POST& sub : post.get_sub_messages()) msg_print_post_to_stderr(sub, level + 1);
}

}  // namespace

const char* msg_kind_name(MSG_KIND kind) {
  int index = static_cast<int>(kind);
  if (index < 0 || index >= static_cast<int>(std::size(k_kind_names))) return "info";
  return k_kind_names[index];
}

bool msg_kind_from_name(const std::string& name, MSG_KIND* kind) {
  for (size_t i = 0; i < std::size(k_kind_names); ++i) {
    if (name == k_kind_names[i]) {
      if (kind != nullptr) *kind = static_cast<MSG_KIND>(i);
      return true;
    }
  }
  return false;
}

// ---- MSG_POST -------------------------------------------------------------------

MSG_POST::MSG_POST(MSG_KIND kind, std::string id, std::string text)
    : m_kind(kind), m_id(std::move(id)), m_text(std::move(text)) {}

void MSG_POST::set_location(MSG_LOCATION location) {
  m_location = std::move(location);
  m_has_location = true;
}

namespace {

// Splits a Tcl list into its elements; false (with a reason) if malformed.
// No interpreter is involved, so this works on any thread.
bool msg_split_list(const char* list, std::vector<std::string>* elements, std::string* error) {
  int count = 0;
  const char** argv = nullptr;
  if (Tcl_SplitList(nullptr, list, &count, &argv) != TCL_OK) {
    if (error != nullptr) *error = std::string("unbalanced braces or quotes in \"") + list + "\"";
    return false;
  }
  elements->assign(argv, argv + count);
  Tcl_Free(reinterpret_cast<char*>(argv));
  return true;
}

bool msg_post_from_elements(const std::vector<std::string>& elements, MSG_POST* post,
                            std::string* error, int depth);

// Parses SUBS, a list of sub-messages, into post.
bool msg_add_subs(const std::string& subs, MSG_POST* post, std::string* error, int depth) {
  std::vector<std::string> list;
  if (!msg_split_list(subs.c_str(), &list, error)) {
    if (error != nullptr) *error = "malformed sub-message list: " + *error;
    return false;
  }
  for (const std::string& item : list) {
    std::vector<std::string> elements;
    if (!msg_split_list(item.c_str(), &elements, error)) {
      if (error != nullptr) *error = "malformed sub-message: " + *error;
      return false;
    }
    MSG_POST sub;
    if (!msg_post_from_elements(elements, &sub, error, depth + 1)) return false;
    post->add_sub_message(std::move(sub));
  }
  return true;
}

bool msg_post_from_elements(const std::vector<std::string>& elements, MSG_POST* post,
                            std::string* error, int depth) {
  // Deep nesting only comes from broken input; refuse it before the stack suffers.
  if (depth > 64) {
    if (error != nullptr) *error = "sub-messages nested too deeply";
    return false;
  }
  if (elements.size() < 3 || elements.size() > 4) {
    if (error != nullptr)
      *error = "a message must be a list {kind id text ?subs?}, got " +
               std::to_string(elements.size()) + " element(s)";
    return false;
  }
  MSG_KIND kind;
  if (!msg_kind_from_name(elements[0], &kind)) {
    if (error != nullptr)
      *error = "unknown message kind \"" + elements[0] +
               "\": must be info, extra_info, warning, critical_warning, error or internal_error";
    return false;
  }
  MSG_POST result(kind, elements[1], elements[2]);
  if (elements.size() == 4 && !msg_add_subs(elements[3], &result, error, depth)) return false;
  *post = std::move(result);
  return true;
}

}  // namespace

bool MSG_POST::from_tcl_list(const std::string& list, MSG_POST* post, std::string* error) {
  std::vector<std::string> elements;
  if (!msg_split_list(list.c_str(), &elements, error)) {
    if (error != nullptr) *error = "malformed message: " + *error;
    return false;
  }
  return msg_post_from_elements(elements, post, error, 0);
}

// ---- MSG_REPORT ---------------------------------------------------------------------

MSG_REPORT::MSG_REPORT() {
  std::lock_guard<std::mutex> lock(g_reports_mutex);
  m_target_id = g_next_target_id++;
  g_reports[m_target_id] = this;
}

MSG_REPORT::~MSG_REPORT() {
  std::lock_guard<std::mutex> lock(g_reports_mutex);
  g_reports.erase(m_target_id);
  if (g_default_report == this) g_default_report = nullptr;
}

void MSG_REPORT::post(const MSG_POST& post, int flags) {
  if (m_display != nullptr)
    m_display->post_display(&post, flags);
  else
    msg_print_post_to_stderr(post, 0);
}

void MSG_REPORT::internal_error(const char* text) {
  if (text == nullptr) text = "";
  if (m_display != nullptr)
    m_display->internal_error_display(text);
  else
    std::fprintf(stderr, "Internal Error: %s\n", text);
}

MSG_REPORT* MSG_REPORT::find_by_target_id(long id) {
  std::lock_guard<std::mutex> lock(g_reports_mutex);
  auto it = g_reports.find(id);
  return it != g_reports.end() ? it->second : nullptr;
}

void msg_set_default_report(MSG_REPORT* report) {
  std::lock_guard<std::mutex> lock(g_reports_mutex);
  g_default_report = report;
}

MSG_REPORT* msg_get_default_report() {
  std::lock_guard<std::mutex> lock(g_reports_mutex);
  return g_default_report;
}

// ---- Tcl commands ---------------------------------------------------------------------

const char* msg_tcl_post_cmd() { return "msg_post"; }
const char* msg_tcl_ie_cmd() { return "msg_internal_error"; }

namespace {

// The report a target names: the registered one, else the default report.
MSG_REPORT* msg_report_for_target(long target) {
  MSG_REPORT* report = target != 0 ? MSG_REPORT::find_by_target_id(target) : nullptr;
  return report != nullptr ? report : msg_get_default_report();
}

bool msg_get_target(Tcl_Interp* interp, Tcl_Obj* obj, const char* command, long* target) {
  if (Tcl_GetLongFromObj(nullptr, obj, target) == TCL_OK) return true;
  Tcl_SetObjResult(interp, Tcl_ObjPrintf("%s: the target must be an integer, got \"%s\"", command,
                                         Tcl_GetString(obj)));
  return false;
}

// msg_post target kind id text ?subs?
int msg_post_cmd(ClientData, Tcl_Interp* interp, int objc, Tcl_Obj* const objv[]) {
  if (objc < 5 || objc > 6) {
    Tcl_WrongNumArgs(interp, 1, objv, "target kind id text ?subs?");
    return TCL_ERROR;
  }
  long target = 0;
  if (!msg_get_target(interp, objv[1], "msg_post", &target)) return TCL_ERROR;
  MSG_KIND kind;
  std::string kind_name = Tcl_GetString(objv[2]);
  if (!msg_kind_from_name(kind_name, &kind)) {
    Tcl_SetObjResult(interp, Tcl_ObjPrintf("msg_post: unknown message kind \"%s\": must be info, "
                                           "extra_info, warning, critical_warning, error or "
                                           "internal_error",
                                           kind_name.c_str()));
    return TCL_ERROR;
  }
  int id_length = 0;
  int text_length = 0;
  const char* id = Tcl_GetStringFromObj(objv[3], &id_length);
  const char* text = Tcl_GetStringFromObj(objv[4], &text_length);
  MSG_POST post(kind, std::string(id, id_length), std::string(text, text_length));
  if (objc == 6) {
    int sub_count = 0;
    Tcl_Obj** subs = nullptr;
    if (Tcl_ListObjGetElements(nullptr, objv[5], &sub_count, &subs) != TCL_OK) {
      Tcl_SetObjResult(interp, Tcl_ObjPrintf("msg_post: the sub-messages are not a Tcl list: %s",
                                             Tcl_GetString(objv[5])));
      return TCL_ERROR;
    }
    for (int i = 0; i < sub_count; ++i) {
      MSG_POST sub;
      std::string error;
      if (!MSG_POST::from_tcl_list(Tcl_GetString(subs[i]), &sub, &error)) {
        Tcl_SetObjResult(interp, Tcl_ObjPrintf("msg_post: sub-message %d: %s", i + 1,
                                               error.c_str()));
        return TCL_ERROR;
      }
      post.add_sub_message(std::move(sub));
    }
  }
  MSG_REPORT* report = msg_report_for_target(target);
  if (report != nullptr)
    report->post(post);
  else
    msg_print_post_to_stderr(post, 0);
  Tcl_ResetResult(interp);
  return TCL_OK;
}

// msg_internal_error target text
int msg_internal_error_cmd(ClientData, Tcl_Interp* interp, int objc, Tcl_Obj* const objv[]) {
  if (objc != 3) {
    Tcl_WrongNumArgs(interp, 1, objv, "target text");
    return TCL_ERROR;
  }
  long target = 0;
  if (!msg_get_target(interp, objv[1], "msg_internal_error", &target)) return TCL_ERROR;
  const char* text = Tcl_GetString(objv[2]);
  MSG_REPORT* report = msg_report_for_target(target);
  if (report != nullptr)
    report->internal_error(text);
  else
    std::fprintf(stderr, "Internal Error: %s\n", text);
  Tcl_ResetResult(interp);
  return TCL_OK;
}

}  // namespace

void msg_register_tcl_commands(Tcl_Interp* interp) {
  if (interp == nullptr) return;
  Tcl_CreateObjCommand(interp, msg_tcl_post_cmd(), msg_post_cmd, nullptr, nullptr);
  Tcl_CreateObjCommand(interp, msg_tcl_ie_cmd(), msg_internal_error_cmd, nullptr, nullptr);
}

// ---- internal-error service -----------------------------------------------------------------

namespace {
std::mutex g_handler_mutex;
MSG_INTERNAL_ERROR_HANDLER g_internal_error_handler;
std::function<void(const std::string&)> g_debug_sink;
}  // namespace

void msg_internal_error(const char* condition, const char* module, int line) {
  std::string condition_text = condition != nullptr ? condition : "";
  std::string module_text = module != nullptr ? module : "";
  MSG_INTERNAL_ERROR_HANDLER handler;
  {
    std::lock_guard<std::mutex> lock(g_handler_mutex);
    handler = g_internal_error_handler;
  }
  if (handler) {
    handler(condition_text, module_text, line);
    return;
  }
  std::fprintf(stderr, "Internal Error: %s (%s, line %d)\n", condition_text.c_str(),
               module_text.c_str(), line);
  std::fflush(stderr);
}

void msg_set_internal_error_handler(MSG_INTERNAL_ERROR_HANDLER handler) {
  std::lock_guard<std::mutex> lock(g_handler_mutex);
  g_internal_error_handler = std::move(handler);
}

// ---- debug channel ----------------------------------------------------------------------------

bool msg_debug_is_on() { return cfg_is_on("debug_msg"); }

void msg_debug(const char* format, ...) {
  if (format == nullptr || !msg_debug_is_on()) return;
  va_list args;
  va_start(args, format);
  va_list copy;
  va_copy(copy, args);
  int length = std::vsnprintf(nullptr, 0, format, copy);
  va_end(copy);
  std::string line;
  if (length > 0) {
    line.resize(static_cast<size_t>(length));
    std::vsnprintf(line.data(), line.size() + 1, format, args);
  }
  va_end(args);
  std::function<void(const std::string&)> sink;
  {
    std::lock_guard<std::mutex> lock(g_handler_mutex);
    sink = g_debug_sink;
  }
  if (sink) {
    sink(line);
  } else {
    std::fprintf(stderr, "%s\n", line.c_str());
    std::fflush(stderr);
  }
}

void msg_set_debug_sink(std::function<void(const std::string& line)> sink) {
  std::lock_guard<std::mutex> lock(g_handler_mutex);
  g_debug_sink = std::move(sink);
}
