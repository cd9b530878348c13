#include "Engine.hh"

#include "TclCommand.hh"
#include "protocol/Encoder.hh"
#include "protocol/EngineReport.hh"
#include "reports/report_commands.hh"
#include "shell/Interrupt.hh"

#include "Machine.hh"
#include "Network.hh"
#include "Sta.hh"
#include "StaMain.hh"
#include "VerilogReader.hh"

#include <tcl.h>

#include <algorithm>
#include <cstdio>

extern "C" int Sta_Init(Tcl_Interp *interp);

namespace sta {
extern const char *tcl_inits[];
}

namespace vexa {

namespace {

// OpenSTA makes its report in a virtual factory; this one is ours.
class EngineSta : public sta::Sta
{
public:
  explicit EngineSta(Engine &engine) : m_engine(engine) {}

protected:
  void makeReport() override { report_ = new EngineReport(m_engine); }

private:
  Engine &m_engine;
};

Tcl_Obj *sub_message_obj(const SubMessage &sub)
{
  Tcl_Obj *subs = Tcl_NewListObj(0, nullptr);
  for (const SubMessage &s : sub.subs)
    Tcl_ListObjAppendElement(nullptr, subs, sub_message_obj(s));
  Tcl_Obj *items[4] = {
    Tcl_NewStringObj(message_kind_name(sub.kind), -1),
    Tcl_NewStringObj(sub.id.c_str(), static_cast<int>(sub.id.size())),
    Tcl_NewStringObj(sub.text.c_str(), static_cast<int>(sub.text.size())),
    subs,
  };
  return Tcl_NewListObj(4, items);
}

void print_plain_message(OutputSink &sink, MessageKind kind, std::string_view text,
                         const std::vector<SubMessage> &subs, int depth, bool to_error)
{
  // Extra information (such as a Tcl stack trace) follows its message
  // without a label of its own, on the same stream.
  static const char *labels[] = {"Info: ", "", "Warning: ", "Critical Warning: ", "Error: "};
  std::string line(static_cast<size_t>(depth) * 4, ' ');
  line += labels[static_cast<int>(kind)];
  line.append(text);
  line += "\n";
  if (to_error)
    sink.write_error_text(line);
  else
    sink.write_text(line);
  for (const SubMessage &s : subs)
    print_plain_message(sink, s.kind, s.text, s.subs, depth + 1, to_error);
}

} // namespace

const char *message_kind_name(MessageKind kind)
{
  switch (kind) {
  case MessageKind::info: return "info";
  case MessageKind::extra_info: return "extra_info";
  case MessageKind::warning: return "warning";
  case MessageKind::critical_warning: return "critical_warning";
  case MessageKind::error: return "error";
  }
  return "error";
}

Engine::Engine(OutputMode mode, std::string misc_dir)
  : m_sink(mode), m_misc_dir(std::move(misc_dir))
{
}

Engine::~Engine()
{
  if (m_async)
    Tcl_AsyncDelete(m_async);
  // The OpenSTA instance and the interpreter are left to process exit:
  // tearing OpenSTA down is slow and buys nothing at the end of a run.
}

bool Engine::start(std::string &error)
{
  m_interp = Tcl_CreateInterp();
  if (Tcl_Init(m_interp) != TCL_OK) {
    // Without init.tcl a few library procedures are missing; the engine
    // still works, so this is a warning only.
    post(MessageKind::warning, "VSTA-1001",
         std::string("Tcl library initialisation failed: ") + Tcl_GetStringResult(m_interp));
  }
  sta::initSta();
  m_sta = new EngineSta(*this);
  sta::Sta::setSta(m_sta);
  m_sta->makeComponents();
  m_sta->setTclInterp(m_interp);
  Sta_Init(m_interp);
  sta::evalTclInit(m_interp, sta::tcl_inits);
  if (eval("sta::define_sta_cmds") != TCL_OK || eval("namespace import sta::*") != TCL_OK) {
    error = std::string("OpenSTA initialisation failed: ") + Tcl_GetStringResult(m_interp);
    return false;
  }
  std::string family_error;
  if (!m_families.load(m_misc_dir + "/device_families.txt", family_error))
    post(MessageKind::critical_warning, "VSTA-1002",
         "Device-family data not loaded: " + family_error);
  m_async = Tcl_AsyncCreate(async_interrupt, this);
  // OpenSTA's readers print their faults as text lines "Error: ..." and
  // "Warning: ..."; the front end gets them as posts it can count and colour.
  m_sink.set_line_filter([this](std::string_view line) {
    if (line.rfind("Error: ", 0) == 0)
      post(MessageKind::error, "STA-0", line.substr(7));
    else if (line.rfind("Warning: ", 0) == 0)
      post(MessageKind::warning, "STA-0", line.substr(9));
    else
      return false;
    return true;
  });

  register_shell_commands(*this);
  register_project_commands(*this);
  register_netlist_commands(*this);
  register_sdc_commands(*this);
  register_collection_commands(*this);
  register_report_commands(*this);
  register_input_guards(*this);
  register_tcl_guards(*this);
  Tcl_ResetResult(m_interp);
  return true;
}

void Engine::renew_sta()
{
  // The old instance goes first: its report restores Tcl's standard channels
  // when it is destroyed, and the new report then wraps those.
  // OpenSTA's Verilog reader is a single static object bound to the
  // network it was first used with; it must go with that network.
  sta::deleteVerilogReader();
  delete m_sta;
  m_sta = new EngineSta(*this);
  sta::Sta::setSta(m_sta);
  m_sta->makeComponents();
  m_sta->setTclInterp(m_interp);
  ++m_objects_generation;
}

void Engine::discard_objects()
{
  m_sta->clear();
  ++m_objects_generation;
}

sta::Network *Engine::network() const
{
  return m_sta ? m_sta->network() : nullptr;
}

std::string Engine::project_dir() const
{
  return m_project ? m_project->directory() : std::string();
}

std::string Engine::revision() const
{
  return m_project ? m_project->revision : std::string();
}

void Engine::set_project(OpenProject project)
{
  m_project = std::move(project);
  m_state.project_is_open = true;
  callback("lum_open_project -vpf " + quote_word(m_project->project.path) + " -revision "
           + quote_word(m_project->revision));
  send_state("project_is_open", true);
}

void Engine::close_project()
{
  if (!m_project)
    return;
  if (m_state.netlist_is_created)
    eval("delete_timing_netlist");
  m_project.reset();
  m_state = EngineState();
  send_state("project_is_open", false);
}

void Engine::send_state(const char *flag, bool value)
{
  callback(std::string("lum_set_state -") + flag + (value ? " 1" : " 0"));
}

void Engine::set_netlist_created(bool created)
{
  m_state.netlist_is_created = created;
  send_state("netlist_is_created", created);
}

void Engine::set_sdc_loaded(bool loaded)
{
  m_state.sdc_file_is_loaded = loaded;
  send_state("sdc_file_is_loaded", loaded);
}

void Engine::set_up_to_date(bool up_to_date)
{
  m_state.netlist_is_up_to_date = up_to_date;
  send_state("netlist_is_up_to_date", up_to_date);
}

void Engine::mark_stale()
{
  m_reports_stale = true;
  set_up_to_date(false);
}

void Engine::set_time_unit(const std::string &unit)
{
  m_time_unit = unit;
  callback("lum_set_time_unit " + callback_word(unit));
}

bool Engine::require_project(const char *command)
{
  if (m_project)
    return true;
  tcl_error(std::string(command) + ": no project is open (use project_open first)");
  return false;
}

bool Engine::require_netlist(const char *command)
{
  if (!require_project(command))
    return false;
  if (m_state.netlist_is_created)
    return true;
  tcl_error(std::string(command) + ": no timing netlist exists (use create_timing_netlist first)");
  return false;
}

int Engine::ensure_up_to_date()
{
  if (!m_state.netlist_is_created || m_state.netlist_is_up_to_date)
    return TCL_OK;
  return eval("update_timing_netlist");
}

void Engine::sync_clocks()
{
  std::vector<std::string> current;
  if (m_state.netlist_is_created) {
    // Clocks that cannot be listed (an interrupted command) are not gone:
    // the front end keeps what it was told until they can be listed again.
    if (eval("lmap ::vexa::c [all_clocks] {get_name $::vexa::c}") != TCL_OK) {
      Tcl_ResetResult(m_interp);
      return;
    }
    Tcl_Obj *list = Tcl_GetObjResult(m_interp);
    int n = 0;
    Tcl_Obj **items = nullptr;
    if (Tcl_ListObjGetElements(nullptr, list, &n, &items) == TCL_OK)
      for (int i = 0; i < n; ++i)
        current.emplace_back(Tcl_GetString(items[i]));
  }
  Tcl_ResetResult(m_interp);
  for (const std::string &old : m_known_clocks)
    if (std::find(current.begin(), current.end(), old) == current.end())
      callback("lum_register_clock -name " + quote_word(old) + " -remove");
  for (const std::string &now : current)
    if (std::find(m_known_clocks.begin(), m_known_clocks.end(), now) == m_known_clocks.end())
      callback("lum_register_clock -name " + quote_word(now));
  m_known_clocks = std::move(current);
}

void Engine::constraint_applied(std::string line)
{
  m_constraints.add(std::move(line));
  if (m_reading_sdc)
    return;
  mark_stale();
  sync_clocks();
}

void Engine::forget_clocks()
{
  for (const std::string &old : m_known_clocks)
    callback("lum_register_clock -name " + quote_word(old) + " -remove");
  m_known_clocks.clear();
}

void Engine::callback(std::string_view line)
{
  m_sink.write_protocol_line(line);
}

void Engine::post(MessageKind kind, std::string_view id, std::string_view text,
                  const std::vector<SubMessage> &subs)
{
  if (kind == MessageKind::error)
    ++m_error_count;
  else if (kind == MessageKind::warning)
    m_last_warning = text;
  if (m_sink.mode() == OutputMode::plain) {
    print_plain_message(m_sink, kind, text, subs, 0,
                        kind != MessageKind::info && kind != MessageKind::extra_info);
    return;
  }
  std::string subs_text;
  if (!subs.empty()) {
    Tcl_Obj *list = Tcl_NewListObj(0, nullptr);
    Tcl_IncrRefCount(list);
    for (const SubMessage &s : subs)
      Tcl_ListObjAppendElement(nullptr, list, sub_message_obj(s));
    subs_text = Tcl_GetString(list);
    Tcl_DecrRefCount(list);
  }
  std::string line = "msg_post 0 ";
  line += message_kind_name(kind);
  line += " ";
  line += is_plain_token(id) ? std::string(id) : quote_word(id);
  line += " " + quote_word(text) + " " + quote_word(subs_text);
  m_sink.write_protocol_line(line);
}

void Engine::internal_error(std::string_view text)
{
  if (m_sink.mode() == OutputMode::plain) {
    m_sink.write_error_text("Internal Error: " + std::string(text) + "\n");
    return;
  }
  m_sink.write_protocol_line("msg_internal_error 0 " + quote_word(text));
}

void Engine::progress(int percent)
{
  percent = std::clamp(percent, 0, 100);
  if (m_sink.mode() == OutputMode::protocol)
    m_sink.write_protocol_line("report_status " + std::to_string(percent));
}

int Engine::tcl_error(std::string_view msg)
{
  // Forget a nested command's error, so errorInfo starts with this message.
  Tcl_ResetResult(m_interp);
  Tcl_SetObjResult(m_interp, Tcl_NewStringObj(msg.data(), static_cast<int>(msg.size())));
  return TCL_ERROR;
}

std::string Engine::error_info()
{
  Tcl_Obj *options = Tcl_GetReturnOptions(m_interp, TCL_ERROR);
  Tcl_IncrRefCount(options);
  Tcl_Obj *key = Tcl_NewStringObj("-errorinfo", -1);
  Tcl_IncrRefCount(key);
  Tcl_Obj *value = nullptr;
  std::string info;
  if (Tcl_DictObjGet(nullptr, options, key, &value) == TCL_OK && value)
    info = Tcl_GetString(value);
  Tcl_DecrRefCount(key);
  Tcl_DecrRefCount(options);
  if (info.empty())
    info = Tcl_GetStringResult(m_interp);
  return info;
}

std::string Engine::error_message()
{
  std::string text = Tcl_GetStringResult(m_interp);
  if (text.rfind("Error: ", 0) == 0)
    text.erase(0, 7);
  return text;
}

int Engine::eval(std::string_view script)
{
  return Tcl_EvalEx(m_interp, script.data(), static_cast<int>(script.size()), TCL_EVAL_GLOBAL);
}

void Engine::request_interrupt()
{
  if (m_async && m_command_running) {
    interrupt_raised = 1;
    Tcl_AsyncMark(m_async);
  }
}

int Engine::async_interrupt(void *client_data, Tcl_Interp *, int code)
{
  auto *engine = static_cast<Engine *>(client_data);
  if (engine->m_command_running) {
    // An exceeded time limit stops the command and cannot be caught by the
    // script, so a loop of the form "while 1 {catch {...}}" stops as well.
    // The shell lifts the limit again once the command has unwound.
    engine->m_interrupted = true;
    Tcl_Time now;
    Tcl_GetTime(&now);
    Tcl_LimitSetTime(engine->m_interp, &now);
    Tcl_LimitSetGranularity(engine->m_interp, TCL_LIMIT_TIME, 1);
    Tcl_LimitTypeSet(engine->m_interp, TCL_LIMIT_TIME);
  }
  return code;
}

bool Engine::take_interrupt()
{
  interrupt_raised = 0;
  if (!m_interrupted)
    return false;
  m_interrupted = false;
  Tcl_LimitTypeReset(m_interp, TCL_LIMIT_TIME);
  return true;
}

} // namespace vexa
