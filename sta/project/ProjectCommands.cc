// Tcl commands of projects: project_open, project_close, and the settings
// converter reached through "load_package flow" + "execute_module".
#include "Engine.hh"
#include "TclCommand.hh"
#include "project/KeyValueFile.hh"

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

namespace vexa {

namespace {

std::string join(const std::vector<std::string> &items, const char *separator)
{
  std::string out;
  for (const std::string &item : items) {
    if (!out.empty())
      out += separator;
    out += item;
  }
  return out;
}

// True when path can be opened for reading and is not a folder (a folder
// opens as a stream on Linux and then reads as empty).
bool readable_file(const std::string &path)
{
  std::error_code ec;
  return !fs::is_directory(path, ec) && std::ifstream(path).good();
}

// Checks what the settings file names against the device families and the
// file system, so that an unusable revision is refused when it is opened.
bool check_settings(const Engine &engine, const RevisionSettings &settings, std::string &error)
{
  const DeviceFamily *family = engine.families().find(settings.family);
  if (!family) {
    error = located_error(settings.path, settings.family_line,
                          "unknown device family \"" + settings.family + "\"");
    return false;
  }
  if (!family->find_grade(settings.speed_grade)) {
    std::vector<std::string> names;
    for (const SpeedGrade &g : family->grades)
      names.push_back(g.name);
    error = located_error(settings.path, settings.speed_grade_line,
                          "family " + family->name + " has no speed grade \"" + settings.speed_grade
                          + "\" (known: " + join(names, ", ") + ")");
    return false;
  }
  for (size_t i = 0; i < settings.verilog_files.size(); ++i) {
    if (!readable_file(settings.verilog_files[i])) {
      error = located_error(settings.path, settings.verilog_lines[i],
                            "netlist file \"" + settings.verilog_files[i] + "\" cannot be read");
      return false;
    }
  }
  for (const std::string *file : {&settings.spef_file, &settings.sdf_file})
    if (!file->empty() && !readable_file(*file)) {
      error = settings.path + ": file \"" + *file + "\" cannot be read";
      return false;
    }
  for (const std::string &sdc : settings.sdc_files) {
    std::error_code ec;
    if (fs::is_directory(sdc, ec)) {
      error = settings.path + ": SDC file \"" + sdc + "\" is a folder";
      return false;
    }
  }
  return true;
}

// The project file of a settings file: the .vpf of the same base name, or
// else the one project file in its directory that lists the revision.
std::string project_of_settings(const std::string &vsf, const std::string &revision)
{
  fs::path same = fs::path(vsf).replace_extension(".vpf");
  std::error_code ec;
  if (fs::exists(same, ec))
    return same.string();
  fs::path dir = fs::path(vsf).parent_path();
  if (dir.empty())
    dir = ".";
  for (const fs::directory_entry &entry : fs::directory_iterator(dir, ec)) {
    if (entry.path().extension() != ".vpf")
      continue;
    ProjectFile candidate;
    std::string ignored;
    if (read_project_file(entry.path().string(), candidate, ignored)
        && std::find(candidate.revisions.begin(), candidate.revisions.end(), revision)
             != candidate.revisions.end())
      return entry.path().string();
  }
  return same.string();
}

int project_open(Engine &engine, Tcl_Interp *, int objc, Tcl_Obj *const objv[])
{
  static const std::string usage = "should be \"project_open path ?-revision name?\"";
  std::string path;
  std::string revision;
  for (int i = 1; i < objc; ++i) {
    std::string word = Tcl_GetString(objv[i]);
    if (word == "-revision" && i + 1 < objc)
      revision = Tcl_GetString(objv[++i]);
    else if (path.empty() && !word.empty() && (word[0] != '-' || word == "-"))
      path = word;
    else if (word == "-revision")
      return engine.tcl_error("project_open: -revision needs a revision name; " + usage);
    else if (!word.empty() && word[0] == '-')
      return engine.tcl_error("project_open: unknown option \"" + word + "\"; " + usage);
    else
      return engine.tcl_error("project_open: one project file only (\"" + path + "\" and \""
                              + word + "\"); " + usage);
  }
  if (path.empty())
    return engine.tcl_error("wrong # args: " + usage);
  // A settings file stands for its revision of the project file of the
  // same base name.
  if (fs::path(path).extension() == ".vsf") {
    if (revision.empty())
      revision = fs::path(path).stem().string();
    path = project_of_settings(path, revision);
  } else if (fs::path(path).extension().empty()) {
    path += ".vpf";
  }

  ProjectFile project;
  std::string error;
  if (!read_project_file(path, project, error))
    return engine.tcl_error("project_open: " + error);
  if (revision.empty()) {
    revision = project.revisions.front();
  } else if (std::find(project.revisions.begin(), project.revisions.end(), revision)
             == project.revisions.end()) {
    return engine.tcl_error("project_open: unknown revision \"" + revision + "\" of project "
                            + project.path + " (revisions: " + join(project.revisions, ", ")
                            + ")");
  }
  RevisionSettings settings;
  if (!read_revision_settings(revision_settings_path(project, revision), settings, error)
      || !check_settings(engine, settings, error))
    return engine.tcl_error("project_open: " + error);
  for (const std::string &sdc : settings.sdc_files)
    if (!std::ifstream(sdc))
      engine.post(MessageKind::warning, "VSTA-1204",
                  "SDC file \"" + sdc + "\" of revision " + revision + " does not exist yet");

  engine.close_project();
  std::string name = project.name;
  engine.set_project(OpenProject{std::move(project), revision, std::move(settings)});
  engine.post(MessageKind::info, "VSTA-1200",
              "Opened project " + name + " (revision " + revision + ")");
  return TCL_OK;
}

int project_close(Engine &engine, Tcl_Interp *, int objc, Tcl_Obj *const[])
{
  if (objc != 1)
    return engine.tcl_error("wrong # args: should be \"project_close\"");
  if (!engine.require_project("project_close"))
    return TCL_ERROR;
  engine.close_project();
  return TCL_OK;
}

// The packages a script may load. All their commands are always present;
// loading only confirms the name, as scripts of the flow expect.
int load_package(Engine &engine, Tcl_Interp *, int objc, Tcl_Obj *const objv[])
{
  if (objc < 2)
    return engine.tcl_error("wrong # args: should be \"load_package ?-version v? name\"");
  std::string name = Tcl_GetString(objv[objc - 1]);
  for (const char *known : {"flow", "sdc", "sdc_ext", "report", "project", "timing"})
    if (name == known)
      return TCL_OK;
  return engine.tcl_error("load_package: unknown package \"" + name + "\"");
}

// execute_module -tool sta -args "--vsf2sdc ?out.sdc? ?--disable_all_banners?"
int execute_module(Engine &engine, Tcl_Interp *interp, int objc, Tcl_Obj *const objv[])
{
  std::string tool;
  Tcl_Obj *args = nullptr;
  for (int i = 1; i + 1 < objc; i += 2) {
    std::string option = Tcl_GetString(objv[i]);
    if (option == "-tool")
      tool = Tcl_GetString(objv[i + 1]);
    else if (option == "-args")
      args = objv[i + 1];
    else
      return engine.tcl_error("execute_module: unknown option \"" + option + "\"");
  }
  if (objc % 2 == 0)
    return engine.tcl_error("wrong # args: should be \"execute_module -tool sta -args text\"");
  if (tool != "sta")
    return engine.tcl_error("execute_module: unknown tool \"" + tool + "\" (only \"sta\" exists)");
  int n = 0;
  Tcl_Obj **words = nullptr;
  if (args && Tcl_ListObjGetElements(interp, args, &n, &words) != TCL_OK)
    return TCL_ERROR;
  bool convert = false;
  std::string output;
  for (int i = 0; i < n; ++i) {
    std::string w = Tcl_GetString(words[i]);
    if (w == "--vsf2sdc") {
      convert = true;
      if (i + 1 < n && std::string(Tcl_GetString(words[i + 1])).rfind("--", 0) != 0)
        output = Tcl_GetString(words[++i]);
    } else if (w != "--disable_all_banners") {
      return engine.tcl_error("execute_module: unknown argument \"" + w + "\"");
    }
  }
  if (!convert)
    return engine.tcl_error("execute_module: nothing to do (expected --vsf2sdc)");
  if (!engine.require_project("execute_module"))
    return TCL_ERROR;
  const OpenProject &project = *engine.project();
  if (output.empty())
    output = project.revision + "_vsf.sdc";
  output = resolve_path(project.directory(), output);
  std::ofstream out(output, std::ios::trunc);
  out << "# Clock requirements of revision " << project.revision
      << ", converted by vexa_sta from " << project.settings.path << "\n"
      << clock_requirements_sdc(project.settings);
  out.flush();
  if (!out)
    return engine.tcl_error("execute_module: cannot write \"" + output + "\"");
  engine.post(MessageKind::info, "VSTA-1210",
              "Wrote " + std::to_string(project.settings.clock_requirements.size())
              + " clock constraint(s) to " + output);
  // With a netlist at hand, a requirement on a port it lacks would make a
  // clock on nothing: say so now rather than at read_sdc.
  if (engine.state().netlist_is_created) {
    for (const ClockRequirement &req : project.settings.clock_requirements) {
      Tcl_Obj *words[3] = {Tcl_NewStringObj("get_ports", -1), Tcl_NewStringObj("-quiet", -1),
                           Tcl_NewStringObj(req.port.c_str(), -1)};
      Tcl_Obj *command = Tcl_NewListObj(3, words);
      Tcl_IncrRefCount(command);
      bool found = engine.eval(Tcl_GetString(command)) == TCL_OK &&
                   Tcl_GetCharLength(Tcl_GetObjResult(interp)) > 0;
      Tcl_DecrRefCount(command);
      Tcl_ResetResult(interp);
      if (!found)
        engine.post(MessageKind::warning, "VSTA-1211",
                    project.settings.path + ":" + std::to_string(req.line) + ": clock_requirement "
                    + req.name + " names port " + req.port + ", which the netlist does not have");
    }
  }
  Tcl_SetObjResult(interp, Tcl_NewStringObj(output.c_str(), -1));
  return TCL_OK;
}

} // namespace

void register_project_commands(Engine &engine)
{
  add_command(engine, "project_open", project_open, "project_file [-revision name]");
  add_command(engine, "project_close", project_close, "");
  add_command(engine, "load_package", load_package, "[-version version] package");
  add_command(engine, "execute_module", execute_module,
              "-tool sta -args \"--vsf2sdc [out.sdc]\"");
}

} // namespace vexa
