// SDC in the engine: read_sdc and write_sdc, the helper commands the Tcl
// layer (SdcLayer.cc) calls when a constraint has been applied, and the
// registration of that layer.
#include "Engine.hh"
#include "TclCommand.hh"
#include "project/KeyValueFile.hh"
#include "shell/CommandAssembler.hh"
#include "shell/Shell.hh"

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace vexa {

extern const char *const sdc_layer_script;
extern const char *const collection_layer_script;

namespace {

// Evaluates an SDC file one command at a time so that an error names its
// line; the remaining commands are still applied. Returns the error count,
// or -1 when the file cannot be read.
int source_sdc_file(Engine &engine, const std::string &path)
{
  std::ifstream in(path);
  if (!in)
    return -1;
  int errors = 0;
  CommandAssembler input;
  int first_line = 0;
  int line_no = 0;
  std::string line;
  auto run = [&](const std::string &command, int at) {
    if (engine.eval(command) == TCL_OK)
      return;
    ++errors;
    std::string message = engine.error_message();
    std::vector<SubMessage> subs{
      SubMessage{MessageKind::extra_info, "VSTA-1302", engine.error_info(), {}}};
    engine.post(MessageKind::error, "VSTA-1301",
                "SDC error in " + path + " line " + std::to_string(at) + ": " + message, subs);
  };
  while (!engine.interrupt_requested() && std::getline(in, line)) {
    ++line_no;
    if (!input.pending())
      first_line = line_no;
    if (!input.add(line))
      continue;
    if (input.refused()) {
      input.take();
      ++errors;
      engine.post(MessageKind::error, "VSTA-1301", "SDC error in " + path + " line "
                  + std::to_string(line_no) + ": the command holds a NUL byte and was not run");
      continue;
    }
    run(input.take(), first_line);
  }
  if (input.pending() && !engine.interrupt_requested())
    run(input.take(), first_line);
  return errors;
}

int read_sdc(Engine &engine, Tcl_Interp *, int objc, Tcl_Obj *const objv[])
{
  std::vector<std::string> files;
  for (int i = 1; i < objc; ++i) {
    std::string word = Tcl_GetString(objv[i]);
    if (word == "-echo")
      continue;
    files.push_back(word);
  }
  if (files.size() > 1)
    return engine.tcl_error("wrong # args: should be \"read_sdc ?file?\"");
  if (!engine.require_netlist("read_sdc"))
    return TCL_ERROR;
  if (files.empty()) {
    files = engine.project()->settings.sdc_files;
    if (files.empty())
      return engine.tcl_error("read_sdc: revision " + engine.revision()
                              + " names no SDC file (sdc_file in its settings file)");
  }
  // Every file is found before any is read: a missing second file must not
  // leave the first one applied without the front end being told.
  std::vector<std::string> paths;
  for (const std::string &file : files) {
    if (engine.mode() == OutputMode::protocol && reads_standard_input(file))
      return engine.tcl_error("read_sdc: standard input carries the front end's commands and "
                              "cannot be read; no constraint was read");
    std::string path = resolve_path(engine.project_dir(), file);
    if (file.empty() || file[0] != '/') {
      // A relative name given on the command line is taken as the shell sees it.
      std::ifstream here(file);
      if (here)
        path = file;
    }
    std::error_code ec;
    if (std::filesystem::is_directory(path, ec))
      return engine.tcl_error("read_sdc: \"" + path + "\" is a folder, not an SDC file; "
                              "no constraint was read");
    if (!std::ifstream(path))
      return engine.tcl_error("read_sdc: cannot read SDC file \"" + path
                              + "\"; no constraint was read");
    paths.push_back(path);
  }
  int total_errors = 0;
  std::string failed;
  for (const std::string &path : paths) {
    if (engine.interrupt_requested())
      break;
    engine.set_reading_sdc(true);
    int errors = source_sdc_file(engine, path);
    engine.set_reading_sdc(false);
    if (errors < 0)
      errors = 1;  // vanished since it was found: counted as the one fault
    total_errors += errors;
    if (errors > 0)
      failed += (failed.empty() ? "" : ", ") + path;
  }
  // An interruption is taken here, which lifts the stop, so that the clocks
  // made until then can still be listed for the front end.
  bool interrupted = engine.take_interrupt();
  engine.set_sdc_loaded(true);
  engine.mark_stale();
  engine.sync_clocks();
  if (interrupted)
    return engine.tcl_error("read_sdc: interrupted by the user; the constraints read until "
                            "then were applied");
  if (total_errors > 0)
    return engine.tcl_error("read_sdc: " + std::to_string(total_errors)
                            + " error(s) in " + failed + "; the other constraints were applied");
  return TCL_OK;
}

int write_sdc(Engine &engine, Tcl_Interp *, int objc, Tcl_Obj *const objv[])
{
  if (objc != 2)
    return engine.tcl_error("wrong # args: should be \"write_sdc file\"");
  if (!engine.require_netlist("write_sdc"))
    return TCL_ERROR;
  std::string error;
  std::string path = Tcl_GetString(objv[1]);
  if (!engine.constraints().write(path, engine.project()->settings.top_module, error))
    return engine.tcl_error("write_sdc: " + error);
  engine.post(MessageKind::info, "VSTA-1310", "Wrote SDC file " + path);
  return TCL_OK;
}

int require_netlist_cmd(Engine &engine, Tcl_Interp *, int objc, Tcl_Obj *const objv[])
{
  return engine.require_netlist(objc > 1 ? Tcl_GetString(objv[1]) : "command") ? TCL_OK
                                                                                 : TCL_ERROR;
}

int constraint_applied(Engine &engine, Tcl_Interp *, int objc, Tcl_Obj *const objv[])
{
  if (objc != 2)
    return engine.tcl_error("wrong # args: should be \"::vexa::constraint_applied line\"");
  engine.constraint_applied(Tcl_GetString(objv[1]));
  return TCL_OK;
}

int post_cmd(Engine &engine, Tcl_Interp *, int objc, Tcl_Obj *const objv[])
{
  if (objc != 4)
    return engine.tcl_error("wrong # args: should be \"::vexa::post kind id text\"");
  std::string kind = Tcl_GetString(objv[1]);
  MessageKind k = MessageKind::info;
  if (kind == "warning")
    k = MessageKind::warning;
  else if (kind == "critical_warning")
    k = MessageKind::critical_warning;
  else if (kind == "error")
    k = MessageKind::error;
  else if (kind == "extra_info")
    k = MessageKind::extra_info;
  engine.post(k, Tcl_GetString(objv[2]), Tcl_GetString(objv[3]));
  return TCL_OK;
}

// Options whose value is a name, which may read "inf" or "nan" as well.
bool takes_name(const std::string &option)
{
  static const char *const names[] = {
    "-name", "-clock", "-clocks", "-master_clock", "-source", "-comment", "-group",
    "-from", "-to", "-through", "-thru", "-rise_from", "-fall_from", "-rise_to", "-fall_to",
    "-rise_through", "-fall_through", "-rise_thru", "-fall_thru", "-lib_cell", "-library",
    "-pin", "-from_pin", "-to_pin", "-reference_pin", "-corner", "-logically_exclusive",
    "-physically_exclusive", "-asynchronous"};
  for (const char *name : names)
    if (option == name)
      return true;
  return false;
}

// A word that is a number but not a finite one ("inf", "-Inf", "nan",
// "1e999"): OpenSTA would take it and every later report would spin.
bool non_finite_number(const char *text)
{
  char *end = nullptr;
  double value = std::strtod(text, &end);
  return end != text && *end == '\0' && !std::isfinite(value);
}

// ::vexa::check_numbers NAME ARGLIST: refuses a non-finite number among the
// arguments (or the elements of a list argument such as -waveform), and a
// create_clock period that is not positive.
int check_numbers(Engine &engine, Tcl_Interp *interp, int objc, Tcl_Obj *const objv[])
{
  if (objc != 3)
    return engine.tcl_error("wrong # args: should be \"::vexa::check_numbers name arglist\"");
  std::string name = Tcl_GetString(objv[1]);
  int n = 0;
  Tcl_Obj **words = nullptr;
  if (Tcl_ListObjGetElements(interp, objv[2], &n, &words) != TCL_OK)
    return TCL_ERROR;
  for (int i = 0; i < n; ++i) {
    std::string word = Tcl_GetString(words[i]);
    if (takes_name(word)) {
      ++i;
      continue;
    }
    if (name == "create_clock" && word == "-period" && i + 1 < n) {
      double period = 0.0;
      const char *text = Tcl_GetString(words[i + 1]);
      if (Tcl_GetDoubleFromObj(nullptr, words[i + 1], &period) != TCL_OK
          || !std::isfinite(period) || period <= 0.0 || non_finite_number(text))
        return engine.tcl_error("create_clock: -period must be a finite positive number, not \""
                                + std::string(text) + "\"");
      ++i;
      continue;
    }
    int count = 0;
    Tcl_Obj **elements = nullptr;
    if (Tcl_ListObjGetElements(nullptr, words[i], &count, &elements) != TCL_OK)
      continue;
    for (int k = 0; k < count; ++k)
      if (non_finite_number(Tcl_GetString(elements[k])))
        return engine.tcl_error(name + ": \"" + Tcl_GetString(elements[k])
                                + "\" is not a finite number");
  }
  return TCL_OK;
}

int ensure_up_to_date_cmd(Engine &engine, Tcl_Interp *, int, Tcl_Obj *const[])
{
  return engine.ensure_up_to_date();
}

} // namespace

void register_sdc_commands(Engine &engine)
{
  engine.eval("namespace eval ::vexa {}");
  add_command(engine, "::vexa::require_netlist", require_netlist_cmd);
  add_command(engine, "::vexa::constraint_applied", constraint_applied);
  add_command(engine, "::vexa::post", post_cmd);
  add_command(engine, "::vexa::ensure_up_to_date", ensure_up_to_date_cmd);
  add_command(engine, "::vexa::check_numbers", check_numbers);
  if (engine.eval(sdc_layer_script) != TCL_OK)
    engine.internal_error(std::string("SDC layer: ") + Tcl_GetStringResult(engine.interp()));
  // read_sdc and write_sdc replace OpenSTA's own after the layer is in place.
  engine.eval("catch {rename ::read_sdc {}}; catch {rename ::write_sdc {}}");
  add_command(engine, "read_sdc", read_sdc, "[-echo] [filename]");
  add_command(engine, "write_sdc", write_sdc, "filename");
}

void register_collection_commands(Engine &engine)
{
  if (engine.eval(collection_layer_script) != TCL_OK)
    engine.internal_error(std::string("collection layer: ")
                          + Tcl_GetStringResult(engine.interp()));
}

} // namespace vexa
