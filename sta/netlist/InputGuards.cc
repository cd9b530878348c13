// OpenSTA's file readers behind the checks of InputChecks: read_liberty,
// read_verilog, read_spef and read_sdf refuse a folder; read_verilog refuses
// over-wide ranges and instances that recurse (across every file read for
// the current design); read_spef refuses damaged files and turns the
// reader's syntax warning into an error that names the line.
#include "Engine.hh"
#include "TclCommand.hh"
#include "netlist/InputChecks.hh"

#include <filesystem>
#include <fstream>
#include <sstream>

namespace vexa {

namespace {

// The modules read for the current design (cleared when the design objects
// are discarded, so a new design does not inherit an old one's modules).
struct ModulesRead
{
  ModuleGraph modules;
  unsigned generation = 0;
};
ModulesRead modules_read;

// ::vexa::check_input_file COMMAND PATH: the checks before COMMAND reads PATH.
int check_input_file(Engine &engine, Tcl_Interp *, int objc, Tcl_Obj *const objv[])
{
  if (objc != 3)
    return engine.tcl_error("wrong # args: should be \"::vexa::check_input_file command path\"");
  std::string command = Tcl_GetString(objv[1]);
  std::string path = Tcl_GetString(objv[2]);
  std::error_code ec;
  if (std::filesystem::is_directory(path, ec))
    return engine.tcl_error(command + ": \"" + path + "\" is a folder, not a file");
  if (command != "read_verilog" && command != "read_spef")
    return TCL_OK;
  std::ifstream in(path, std::ios::binary);
  if (!in)
    return TCL_OK;  // the reader names the missing file itself
  std::ostringstream text;
  text << in.rdbuf();
  if (command == "read_spef") {
    std::string fault = scan_spef(text.str());
    if (!fault.empty())
      return engine.tcl_error("read_spef: " + path + ":" + fault + "; no parasitics were read");
    return TCL_OK;
  }
  if (modules_read.generation != engine.objects_generation()) {
    modules_read.modules.clear();
    modules_read.generation = engine.objects_generation();
  }
  ModuleGraph modules = modules_read.modules;
  std::string fault = scan_verilog(text.str(), modules);
  if (!fault.empty())
    return engine.tcl_error("read_verilog: " + path + ":" + fault);
  std::string cycle = module_cycle(modules);
  if (!cycle.empty())
    return engine.tcl_error("read_verilog: " + path + ": module instances recurse (" + cycle
                            + "); the netlist was not read");
  modules_read.modules = std::move(modules);
  return TCL_OK;
}

// ::vexa::input_failed COMMAND PATH: the error of a reader that answered 0.
int input_failed(Engine &engine, Tcl_Interp *, int objc, Tcl_Obj *const objv[])
{
  if (objc != 3)
    return engine.tcl_error("wrong # args: should be \"::vexa::input_failed command path\"");
  std::string reason = engine.last_warning();
  return engine.tcl_error(std::string(Tcl_GetString(objv[1])) + ": " + Tcl_GetString(objv[2])
                          + " was not read" + (reason.empty() ? "" : " (" + reason + ")"));
}

const char *const input_guard_script = R"TCL(
proc ::vexa::read_input {name saved arglist} {
  if {[llength $arglist]} {
    ::vexa::check_input_file $name [lindex $arglist end]
  }
  set result [$saved {*}$arglist]
  if {$name eq "read_spef" && $result eq "0"} {
    ::vexa::input_failed $name [lindex $arglist end]
  }
  return $result
}
foreach ::vexa::cmd {read_liberty read_verilog read_spef read_sdf} {
  if {[llength [info commands ::$::vexa::cmd]]} {
    ::vexa::wrap $::vexa::cmd ::vexa::read_input
  }
}
unset ::vexa::cmd
)TCL";

} // namespace

void register_input_guards(Engine &engine)
{
  add_command(engine, "::vexa::check_input_file", check_input_file);
  add_command(engine, "::vexa::input_failed", input_failed);
  if (engine.eval(input_guard_script) != TCL_OK)
    engine.internal_error(std::string("input guards: ") + Tcl_GetStringResult(engine.interp()));
}

} // namespace vexa
