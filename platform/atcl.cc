// Interpreter services: the front end's interpreter, the post queue that hands
// commands from any thread to the GUI thread, string escaping and package set-up.
#include "platform/atcl.hh"

#include "platform/msg.hh"

#include <QCoreApplication>
#include <QMetaObject>
#include <QPointer>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <condition_variable>
#include <deque>
#include <mutex>

#include <unistd.h>

namespace {

Tcl_Interp* g_interp = nullptr;

// One posted command. The string is moved, never copied, on its way through.
struct ATCL_POSTED {
  std::string command;
  ATCL_POST_DONE done;
  void* data;
};

// The queue proper, shared by all threads.
std::mutex g_queue_mutex;
std::condition_variable g_queue_arrived;
std::deque<ATCL_POSTED> g_queue;
// True while a drain request is queued in the application's event loop; posts
// made meanwhile add no further request, so a burst of posts costs one wake-up.
// The application it was queued to is kept too: a request queued to an
// application that has since gone away will never run.
bool g_wake_pending = false;
QPointer<QCoreApplication> g_wake_app;

// Commands taken from the shared queue in one batch, owned by the GUI thread.
// A command that runs the queue again (for instance through a modal dialog's
// event loop) continues with this batch first, so the order is kept.
std::deque<ATCL_POSTED> g_batch;
// Its size, for atcl_queue_size() on other threads.
std::atomic<size_t> g_batch_size{0};

void atcl_run_posted(ATCL_POSTED& posted) {
  Tcl_Interp* interp = atcl_get_interpreter();
  Tcl_Preserve(interp);
  int code = Tcl_EvalEx(interp, posted.command.data(), static_cast<int>(posted.command.size()),
                        TCL_EVAL_GLOBAL);
  // Keep the result object alive: reading errorInfo below runs Tcl code of
  // its own (a variable trace) and may replace the interpreter's result.
  Tcl_Obj* result = Tcl_GetObjResult(interp);
  Tcl_IncrRefCount(result);
  if (code == TCL_ERROR) {
    const char* info = Tcl_GetVar(interp, "errorInfo", TCL_GLOBAL_ONLY);
    msg_debug("Error in posted command \"%s\": %s", posted.command.c_str(),
              info != nullptr ? info : Tcl_GetString(result));
  }
  if (posted.done != nullptr) posted.done(code, Tcl_GetString(result), posted.data);
  Tcl_DecrRefCount(result);
  Tcl_ResetResult(interp);
  Tcl_Release(interp);
}

// Moves everything posted so far into the GUI thread's batch. Returns false
// when there was nothing to take.
bool atcl_take_batch() {
  std::lock_guard<std::mutex> lock(g_queue_mutex);
  g_wake_pending = false;
  if (g_queue.empty()) return false;
  if (g_batch.empty()) {
    g_batch.swap(g_queue);
  } else {
    for (auto& posted : g_queue) g_batch.push_back(std::move(posted));
    g_queue.clear();
  }
  g_batch_size.store(g_batch.size(), std::memory_order_relaxed);
  return true;
}

// Runs one command of the batch; false when the batch is empty.
bool atcl_run_one_of_batch() {
  if (g_batch.empty()) return false;
  ATCL_POSTED posted = std::move(g_batch.front());
  g_batch.pop_front();
  g_batch_size.store(g_batch.size(), std::memory_order_relaxed);
  atcl_run_posted(posted);
  return true;
}

// The drain request run by the event loop: it runs what was posted up to now
// and returns, so that a steady stream of posts never starves the event loop;
// posts arriving meanwhile have queued a new request.
void atcl_drain_from_event_loop() {
  atcl_take_batch();
  while (atcl_run_one_of_batch()) {
  }
}

}  // namespace

Tcl_Interp* atcl_get_interpreter() {
  if (g_interp == nullptr) {
    // The program's own path, so that [info nameofexecutable] is right.
    char exe[4096];
    ssize_t length = ::readlink("/proc/self/exe", exe, sizeof exe - 1);
    if (length > 0) exe[length] = '\0';
    Tcl_FindExecutable(length > 0 ? exe : nullptr);
    g_interp = Tcl_CreateInterp();
    // Without its library scripts the interpreter lacks unknown, clock and
    // friends: say so where a user can see it, the front end still runs.
    if (Tcl_Init(g_interp) != TCL_OK)
      std::fprintf(stderr, "Tcl_Init failed: %s\n", Tcl_GetStringResult(g_interp));
    Tcl_ResetResult(g_interp);
    msg_register_tcl_commands(g_interp);
  }
  return g_interp;
}

int atcl_tcl_eval(const char* script, std::string* result) {
  Tcl_Interp* interp = atcl_get_interpreter();
  int code = Tcl_EvalEx(interp, script != nullptr ? script : "", -1, TCL_EVAL_GLOBAL);
  if (result != nullptr) result->assign(Tcl_GetStringResult(interp));
  return code;
}

void atcl_post(const char* command, int flags, ATCL_POST_DONE done, void* data) {
  (void)flags;
  ATCL_POSTED posted{command != nullptr ? std::string(command) : std::string(), done, data};
  QCoreApplication* app = QCoreApplication::instance();
  bool wake = false;
  {
    std::lock_guard<std::mutex> lock(g_queue_mutex);
    g_queue.push_back(std::move(posted));
    if (app != nullptr && (!g_wake_pending || g_wake_app.data() != app)) {
      g_wake_pending = true;
      g_wake_app = app;
      wake = true;
    }
  }
  g_queue_arrived.notify_one();
  if (wake) QMetaObject::invokeMethod(app, &atcl_drain_from_event_loop, Qt::QueuedConnection);
}

int atcl_flush_queue(int run_all, int timeout_ms) {
  if (g_batch.empty() && timeout_ms > 0) {
    std::unique_lock<std::mutex> lock(g_queue_mutex);
    g_queue_arrived.wait_for(lock, std::chrono::milliseconds(timeout_ms),
                             [] { return !g_queue.empty(); });
  }
  int count = 0;
  do {
    if (g_batch.empty() && !atcl_take_batch()) break;
    if (atcl_run_one_of_batch()) ++count;
  } while (run_all != 0);
  return count;
}

size_t atcl_queue_size() {
  std::lock_guard<std::mutex> lock(g_queue_mutex);
  return g_queue.size() + g_batch_size.load(std::memory_order_relaxed);
}

std::string atcl_transform_string(const std::string& text) {
  std::string out;
  out.reserve(text.size() + text.size() / 8 + 2);
  for (char c : text) {
    switch (c) {
      case '$':
      case '[':
      case ']':
      case '"':
      case '\\':
        out.push_back('\\');
        out.push_back(c);
        break;
      case '\n':
        out += "\\n";
        break;
      case '\r':
        out += "\\r";
        break;
      case '\t':
        out += "\\t";
        break;
      default:
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7f) {
          // Other control characters as three-digit octal escapes, which Tcl
          // never extends into a following digit (unlike \x).
          unsigned char u = static_cast<unsigned char>(c);
          out.push_back('\\');
          out.push_back(static_cast<char>('0' + ((u >> 6) & 7)));
          out.push_back(static_cast<char>('0' + ((u >> 3) & 7)));
          out.push_back(static_cast<char>('0' + (u & 7)));
        } else {
          out.push_back(c);
        }
    }
  }
  return out;
}

// ---- package set-up -----------------------------------------------------------

namespace {
bool g_in_setup = false;
std::string g_setup_namespace;
}  // namespace

int atcl_begin_package_setup(const char* package_namespace, const char* version) {
  Tcl_Interp* interp = atcl_get_interpreter();
  if (package_namespace == nullptr || *package_namespace == '\0') {
    Tcl_SetResult(interp, const_cast<char*>("package set-up needs a namespace name"), TCL_STATIC);
    return TCL_ERROR;
  }
  std::string name = package_namespace;
  if (name.rfind("::", 0) != 0) name = "::" + name;
  if (Tcl_FindNamespace(interp, name.c_str(), nullptr, TCL_GLOBAL_ONLY) == nullptr &&
      Tcl_CreateNamespace(interp, name.c_str(), nullptr, nullptr) == nullptr)
    return TCL_ERROR;
  g_in_setup = true;
  g_setup_namespace = name;
  (void)version;  // the package itself provides its version (Tcl_PkgProvide)
  return TCL_OK;
}

int atcl_register_callbacks(const ATCL_CALLBACK* table) {
  Tcl_Interp* interp = atcl_get_interpreter();
  if (!g_in_setup) {
    Tcl_SetResult(interp,
                  const_cast<char*>("atcl_register_callbacks called outside package set-up"),
                  TCL_STATIC);
    return TCL_ERROR;
  }
  if (table == nullptr) return TCL_OK;
  for (const ATCL_CALLBACK* entry = table; entry->proc != nullptr || entry->name != nullptr;
       ++entry) {
    if (entry->proc == nullptr || entry->name == nullptr || *entry->name == '\0') {
      Tcl_SetObjResult(interp, Tcl_ObjPrintf("bad entry %d in the command table of %s",
                                             static_cast<int>(entry - table),
                                             g_setup_namespace.c_str()));
      return TCL_ERROR;
    }
    std::string plain = entry->name;
    while (plain.rfind("::", 0) == 0) plain.erase(0, 2);
    std::string qualified = g_setup_namespace + "::" + plain;
    Tcl_CreateCommand(interp, qualified.c_str(), entry->proc, entry->client_data, nullptr);
    Tcl_CreateCommand(interp, ("::" + plain).c_str(), entry->proc, entry->client_data, nullptr);
  }
  return TCL_OK;
}

int atcl_end_package_setup() {
  if (!g_in_setup) {
    Tcl_SetResult(atcl_get_interpreter(),
                  const_cast<char*>("atcl_end_package_setup without atcl_begin_package_setup"),
                  TCL_STATIC);
    return TCL_ERROR;
  }
  g_in_setup = false;
  g_setup_namespace.clear();
  return TCL_OK;
}

bool atcl_is_dynamically_loading() { return false; }
