// Tcl commands of the timing netlist: create_timing_netlist,
// update_timing_netlist, delete_timing_netlist.
//
// A timing netlist is OpenSTA's linked design: the Liberty library of the
// revision's family and speed grade (slow or fast model), the revision's
// gate-level Verilog linked under its top module, and its SPEF and SDF when
// given. The reading is done by OpenSTA's own Tcl commands so that their
// messages reach the user unchanged.
#include "Engine.hh"
#include "TclCommand.hh"

#include "Machine.hh"
#include "Liberty.hh"
#include "Network.hh"
#include "Sta.hh"
#include "Units.hh"

#include <cmath>

namespace vexa {

namespace {

std::string braced(const std::string &text)
{
  Tcl_Obj *obj = Tcl_NewStringObj(text.c_str(), -1);
  Tcl_Obj *list = Tcl_NewListObj(1, &obj);
  Tcl_IncrRefCount(list);
  std::string out = Tcl_GetString(list);
  Tcl_DecrRefCount(list);
  return out;
}

std::string time_unit_text(Engine &engine)
{
  sta::LibertyLibrary *library = engine.network()->defaultLibertyLibrary();
  if (!library)
    return "ns";
  const sta::Unit *unit = library->units()->timeUnit();
  double scale = unit->scale();
  struct { double scale; const char *name; } known[] = {
    {1e-15, "fs"}, {1e-12, "ps"}, {1e-9, "ns"}, {1e-6, "us"}, {1e-3, "ms"}, {1.0, "s"}};
  for (const auto &k : known)
    if (std::fabs(scale / k.scale - 1.0) < 1e-6)
      return k.name;
  return "ns";
}

// Runs one OpenSTA reading step; on failure the error names the step.
bool step(Engine &engine, const std::string &script, const std::string &what, std::string &error)
{
  int errors_before = engine.error_count();
  int code = engine.eval(script);
  // read_verilog answers 0 for a netlist it could not parse.
  bool refused = code == TCL_OK && std::string(Tcl_GetStringResult(engine.interp())) == "0"
                 && script.rfind("read_verilog ", 0) == 0;
  if (code == TCL_OK && engine.error_count() == errors_before && !refused)
    return true;
  if (code == TCL_OK) {
    error = what + " (see the errors above)";
    return false;
  }
  error = what + ": " + engine.error_message();
  return false;
}

void discard_design(Engine &engine)
{
  engine.discard_objects();
}

int create_timing_netlist(Engine &engine, Tcl_Interp *interp, int objc, Tcl_Obj *const objv[])
{
  static const std::string usage =
    "should be \"create_timing_netlist ?-post_map? ?-speed grade? ?-fast_model? ?-risefall?\"";
  std::string grade;
  bool fast = false;
  bool risefall = false;
  for (int i = 1; i < objc; ++i) {
    std::string option = Tcl_GetString(objv[i]);
    if (option == "-post_map") {
      // Netlists are gate-level already, so the mapped netlist is the one read.
    } else if (option == "-fast_model") {
      fast = true;
    } else if (option == "-risefall") {
      risefall = true;
    } else if (option == "-speed" && i + 1 < objc) {
      grade = Tcl_GetString(objv[++i]);
      while (!grade.empty() && grade.back() == ' ')
        grade.pop_back();
    } else if (option == "-speed") {
      return engine.tcl_error("create_timing_netlist: -speed needs a speed grade; " + usage);
    } else {
      return engine.tcl_error("create_timing_netlist: unknown "
                              + std::string(option.rfind('-', 0) == 0 ? "option" : "argument")
                              + " \"" + option + "\"; " + usage);
    }
  }
  if (!engine.require_project("create_timing_netlist"))
    return TCL_ERROR;
  if (engine.state().netlist_is_created)
    return engine.tcl_error("create_timing_netlist: a timing netlist exists already "
                            "(use delete_timing_netlist first)");
  const RevisionSettings &settings = engine.project()->settings;
  const DeviceFamily *family = engine.families().find(settings.family);
  if (!family)
    return engine.tcl_error("create_timing_netlist: unknown device family \"" + settings.family
                            + "\"");
  if (risefall && !family->rise_fall)
    return engine.tcl_error("create_timing_netlist: family " + family->name
                            + " does not support rise/fall netlists");
  if (grade.empty())
    grade = settings.speed_grade;
  const SpeedGrade *speed = family->find_grade(grade);
  if (!speed)
    return engine.tcl_error("create_timing_netlist: family " + family->name
                            + " has no speed grade \"" + grade + "\"");
  const std::string &liberty = fast ? speed->fast_liberty : speed->slow_liberty;

  std::string error;
  engine.progress(0);
  engine.renew_sta();
  bool ok = step(engine, "read_liberty " + braced(liberty), "cannot read Liberty file " + liberty,
                 error);
  engine.progress(25);
  for (size_t i = 0; ok && i < settings.verilog_files.size(); ++i)
    ok = step(engine, "read_verilog " + braced(settings.verilog_files[i]),
              "cannot read netlist " + settings.verilog_files[i], error);
  engine.progress(50);
  if (ok) {
    ok = step(engine, "link_design " + braced(settings.top_module),
              "cannot link design " + settings.top_module, error);
    if (ok && !engine.network()->topInstance()) {
      ok = false;
      error = "cannot link design " + settings.top_module;
    }
  }
  engine.progress(75);
  if (ok && !settings.spef_file.empty())
    ok = step(engine, "read_spef " + braced(settings.spef_file),
              "cannot read SPEF file " + settings.spef_file, error);
  if (ok && !settings.sdf_file.empty())
    ok = step(engine, "read_sdf " + braced(settings.sdf_file),
              "cannot read SDF file " + settings.sdf_file, error);
  if (!ok) {
    discard_design(engine);
    engine.progress(100);
    return engine.tcl_error("create_timing_netlist: " + error);
  }
  engine.constraints().clear();
  engine.set_netlist_created(true);
  engine.set_time_unit(time_unit_text(engine));
  engine.mark_stale();
  engine.sync_clocks();
  engine.progress(100);
  Tcl_ResetResult(interp);
  engine.post(MessageKind::info, "VSTA-1220",
              "Created timing netlist of " + settings.top_module + " (family " + family->name
              + ", speed grade " + grade + ", " + (fast ? "fast" : "slow") + " model)");
  return TCL_OK;
}

int update_timing_netlist(Engine &engine, Tcl_Interp *, int objc, Tcl_Obj *const[])
{
  if (objc != 1)
    return engine.tcl_error("wrong # args: should be \"update_timing_netlist\"");
  if (!engine.require_netlist("update_timing_netlist"))
    return TCL_ERROR;
  engine.progress(0);
  // OpenSTA's incremental update misses some constraint changes made after
  // the first one (clock groups): after any change since the last update
  // (which leaves the reports out of date) everything is recomputed.
  engine.sta()->updateTiming(engine.reports_may_be_stale());
  engine.progress(100);
  engine.set_up_to_date(true);
  return TCL_OK;
}

int delete_timing_netlist(Engine &engine, Tcl_Interp *, int objc, Tcl_Obj *const[])
{
  if (objc != 1)
    return engine.tcl_error("wrong # args: should be \"delete_timing_netlist\"");
  if (!engine.require_netlist("delete_timing_netlist"))
    return TCL_ERROR;
  discard_design(engine);
  engine.constraints().clear();
  engine.forget_clocks();
  engine.set_netlist_created(false);
  engine.set_sdc_loaded(false);
  engine.set_up_to_date(false);
  return TCL_OK;
}

} // namespace

void register_netlist_commands(Engine &engine)
{
  add_command(engine, "create_timing_netlist", create_timing_netlist,
              "[-post_map] [-speed grade] [-fast_model] [-risefall]");
  add_command(engine, "update_timing_netlist", update_timing_netlist, "");
  add_command(engine, "delete_timing_netlist", delete_timing_netlist, "");
}

} // namespace vexa
