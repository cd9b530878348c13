// The engine's one state object.
//
// Everything the Tcl commands of vexa_sta share lives here rather than in
// globals: the Tcl interpreter, the OpenSTA instance, the open project and
// revision, the four state flags the front end mirrors, the record of entered
// constraints, and the output sink. Command modules (sta/project,
// sta/netlist, sta/sdc, sta/collections, sta/reports) register their Tcl
// commands against an Engine and reach each other only through it.
//
// Output rules for command modules: print text through sink() (or through
// OpenSTA's report, or Tcl's stdout, which all end up there); report
// problems with post() or, inside a Tcl command, by returning TCL_ERROR with
// a message in the interpreter result; notify the front end with callback().
#pragma once

#include "protocol/OutputSink.hh"
#include "project/DeviceFamilies.hh"
#include "project/ProjectFiles.hh"
#include "sdc/ConstraintRecord.hh"

#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

struct Tcl_Interp;
struct Tcl_AsyncHandler_;

namespace sta {
class Sta;
class Network;
} // namespace sta

namespace vexa {

enum class MessageKind { info, extra_info, warning, critical_warning, error };
const char *message_kind_name(MessageKind kind);

// A sub-message of a post: {KIND ID TEXT SUBS} on the wire.
struct SubMessage
{
  MessageKind kind = MessageKind::extra_info;
  std::string id;
  std::string text;
  std::vector<SubMessage> subs;
};

// The project that project_open opened, with its selected revision.
struct OpenProject
{
  ProjectFile project;          // the parsed .vpf (absolute path in project.path)
  std::string revision;         // the selected revision's name
  RevisionSettings settings;    // the parsed <revision>.vsf
  std::string directory() const { return project.directory; }
};

// The flags the front end mirrors through lum_set_state.
struct EngineState
{
  bool project_is_open = false;
  bool netlist_is_created = false;
  bool sdc_file_is_loaded = false;
  bool netlist_is_up_to_date = false;
};

class Engine
{
public:
  // misc_dir holds device_families.txt.
  Engine(OutputMode mode, std::string misc_dir);
  ~Engine();
  Engine(const Engine &) = delete;
  Engine &operator=(const Engine &) = delete;

  // Makes the interpreter and the OpenSTA instance and registers every
  // command (OpenSTA's, the engine's, register_report_commands). On failure
  // returns false with a reason in error.
  bool start(std::string &error);

  // --- Access for command modules -----------------------------------------
  Tcl_Interp *interp() const { return m_interp; }
  sta::Sta *sta() const { return m_sta; }
  // OpenSTA's network (the linked design once a netlist exists).
  sta::Network *network() const;
  OutputSink &sink() { return m_sink; }
  OutputMode mode() const { return m_sink.mode(); }
  const DeviceFamilies &families() const { return m_families; }
  const std::string &misc_dir() const { return m_misc_dir; }

  // Replaces the OpenSTA instance by a fresh one. OpenSTA cannot unload a
  // Liberty library, and its linker binds cells to the first library read,
  // so every timing netlist is built in a new instance. Pointers taken from
  // sta() or network() before the call are invalid after it.
  void renew_sta();
  // Counts the changes of the design objects' set: renew_sta and
  // discard_objects step it, so that lists of valid objects can tell that
  // they are out of date.
  unsigned objects_generation() const { return m_objects_generation; }
  // Clears OpenSTA's design (netlist, libraries, constraints).
  void discard_objects();

  // --- Project ---------------------------------------------------------------
  // The open project, or nullptr.
  const OpenProject *project() const { return m_project ? &*m_project : nullptr; }
  // Directory of the open project ("" when none) and the revision's name.
  std::string project_dir() const;
  std::string revision() const;
  // Installs a freshly opened project and calls back lum_open_project and
  // lum_set_state -project_is_open 1. Any previous project must be closed.
  void set_project(OpenProject project);
  // Deletes the netlist and the constraints, forgets the project and calls
  // back -project_is_open 0. Does nothing without a project.
  void close_project();

  // --- State flags (each setter calls back lum_set_state on a change) ------
  const EngineState &state() const { return m_state; }
  void set_netlist_created(bool created);
  void set_sdc_loaded(bool loaded);
  void set_up_to_date(bool up_to_date);
  // Netlist or constraints changed: -netlist_is_up_to_date 0 (always sent,
  // so the front end learns of every change) and report panels made before
  // are flagged as possibly out of date.
  void mark_stale();
  bool reports_may_be_stale() const { return m_reports_stale; }
  void clear_reports_stale() { m_reports_stale = false; }

  // Time unit of the netlist's Liberty library ("ns"; "" without a netlist).
  const std::string &time_unit() const { return m_time_unit; }
  // Stores the unit and calls back lum_set_time_unit.
  void set_time_unit(const std::string &unit);

  // --- Guards for Tcl commands (set an error result and return false) -------
  bool require_project(const char *command);
  bool require_netlist(const char *command);
  // Brings timing up to date when the netlist is stale (reports call this
  // first). Returns a Tcl code.
  int ensure_up_to_date();

  // --- Constraints -------------------------------------------------------------
  ConstraintRecord &constraints() { return m_constraints; }
  // Compares OpenSTA's clocks with those the front end knows and calls back
  // lum_register_clock for each clock made or removed since the last call.
  void sync_clocks();
  // Forgets every clock the front end knows (with -remove call-backs).
  void forget_clocks();
  // A constraint command succeeded: records line for write_sdc and, unless
  // an SDC file is being read, marks the netlist stale and syncs clocks.
  void constraint_applied(std::string line);
  // While an SDC file is read, its commands only record themselves; the
  // reader marks the netlist stale and syncs clocks once at the end.
  void set_reading_sdc(bool reading) { m_reading_sdc = reading; }

  // --- Output to the front end ------------------------------------------------
  // One call-back line, e.g. "lum_set_state -project_is_open 1". Arguments
  // must already be Tcl words (use callback_word / quote_word).
  void callback(std::string_view line);
  // A message post "msg_post 0 KIND ID TEXT SUBS" (plain mode: "Error: TEXT").
  void post(MessageKind kind, std::string_view id, std::string_view text,
            const std::vector<SubMessage> &subs = {});
  // Number of error posts so far (a step that adds some has failed even
  // when OpenSTA's command itself returned normally).
  int error_count() const { return m_error_count; }
  // Text of the latest warning post (a reader's syntax warning names the
  // line that a command turning it into an error repeats).
  const std::string &last_warning() const { return m_last_warning; }
  // A broken invariant of the engine: "msg_internal_error 0 TEXT".
  void internal_error(std::string_view text);
  // Progress of long work, 0..100: "report_status N".
  void progress(int percent);

  // Sets msg as the interpreter result and returns TCL_ERROR.
  int tcl_error(std::string_view msg);
  // The errorInfo of the error just returned by the interpreter. Read from
  // the return options rather than the global variable: an error that never
  // passed through Tcl's evaluator (Tcl_EvalFile on a missing file) leaves
  // the variable holding an older error's trace.
  std::string error_info();
  // The interpreter result of a failed command without the "Error: " that
  // OpenSTA puts before its own messages (the post gives the kind already).
  std::string error_message();
  // Evaluates script at global level; a Tcl code.
  int eval(std::string_view script);

  // --- Interruption (SIGINT) ---------------------------------------------------
  // Asks the running command to stop at its next check point; safe to call
  // from a signal handler.
  void request_interrupt();
  // True while a command given to the shell is being evaluated.
  bool command_running() const { return m_command_running; }
  void set_command_running(bool running) { m_command_running = running; }
  // After a command: true (once) when it was interrupted; lifts the stop.
  bool take_interrupt();
  // True once the running command has been interrupted. Commands that
  // evaluate many scripts of their own (read_sdc) stop at once: every
  // further evaluation would only fail with "time limit exceeded".
  bool interrupt_requested() const { return m_interrupted; }

private:
  void send_state(const char *flag, bool value);
  static int async_interrupt(void *client_data, Tcl_Interp *interp, int code);

  OutputSink m_sink;
  std::string m_misc_dir;
  Tcl_Interp *m_interp = nullptr;
  sta::Sta *m_sta = nullptr;
  Tcl_AsyncHandler_ *m_async = nullptr;
  DeviceFamilies m_families;
  std::optional<OpenProject> m_project;
  EngineState m_state;
  bool m_reports_stale = false;
  std::string m_time_unit;
  ConstraintRecord m_constraints;
  std::vector<std::string> m_known_clocks;
  volatile bool m_command_running = false;
  bool m_interrupted = false;
  bool m_reading_sdc = false;
  int m_error_count = 0;
  std::string m_last_warning;
  unsigned m_objects_generation = 0;
};

} // namespace vexa
