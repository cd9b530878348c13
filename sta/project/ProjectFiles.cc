#include "project/ProjectFiles.hh"

#include "project/KeyValueFile.hh"
#include "protocol/Encoder.hh"

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <sstream>

namespace fs = std::filesystem;

namespace vexa {

namespace {

std::string absolute_of(const std::string &path)
{
  std::error_code ec;
  fs::path p = fs::absolute(path, ec);
  return (ec ? fs::path(path) : p).lexically_normal().string();
}

// A finite number written in full ("1e999", "inf" and "nan" are refused:
// a clock of infinite period would make every later report spin).
bool parse_number(const std::string &text, double &value)
{
  if (text.empty())
    return false;
  char *end = nullptr;
  value = std::strtod(text.c_str(), &end);
  return end && *end == '\0' && std::isfinite(value);
}

// Why name cannot be a revision ("" when it can). A revision's name becomes
// the base name of its settings file and of the files the engine writes
// beside the project, so it must stay a plain name inside the folder.
std::string revision_name_fault(const std::string &name)
{
  if (name.empty())
    return "empty revision name";
  if (name == "." || name == "..")
    return "revision name \"" + name + "\" is not a name";
  for (unsigned char c : name)
    if (c == '/' || c == '\\' || c < 0x20 || c == 0x7f)
      return "revision name \"" + name + "\" holds a path separator or control character "
             "(revisions are names, not paths)";
  return std::string();
}

std::vector<std::string> split_blanks(const std::string &text)
{
  std::istringstream in(text);
  std::vector<std::string> words;
  std::string w;
  while (in >> w)
    words.push_back(w);
  return words;
}

// A clock name or port as one Tcl word of the written SDC: as it stands when
// plain (the usual case), else double-quoted, so that a name such as
// "clk[0]" is not taken for a command.
std::string sdc_word(const std::string &text)
{
  return is_plain_token(text) ? text : quote_word(text);
}

std::string format_time(double t)
{
  std::ostringstream out;
  out << t;
  return out.str();
}

} // namespace

bool read_project_file(const std::string &path, ProjectFile &out, std::string &error)
{
  std::string abs = absolute_of(path);
  KeyValueFile file;
  if (!read_key_value_file(abs, false, file, error))
    return false;
  out = ProjectFile();
  out.path = abs;
  out.directory = fs::path(abs).parent_path().string();
  bool named = false;
  for (const KeyValueEntry &e : file.entries) {
    if (e.key == "project_name") {
      if (named) {
        error = located_error(abs, e.line, "\"project_name\" is given twice");
        return false;
      }
      named = true;
      out.name = e.value;
    } else if (e.key == "revision") {
      std::string fault = revision_name_fault(e.value);
      if (!fault.empty()) {
        error = located_error(abs, e.line, fault);
        return false;
      }
      for (const std::string &r : out.revisions)
        if (r == e.value) {
          error = located_error(abs, e.line, "revision \"" + e.value + "\" is listed twice");
          return false;
        }
      out.revisions.push_back(e.value);
    } else {
      error = located_error(abs, e.line, "unknown key \"" + e.key + "\"");
      return false;
    }
  }
  if (out.revisions.empty()) {
    error = abs + ": the project file names no revision (expected \"revision = NAME\")";
    return false;
  }
  if (out.name.empty())
    out.name = fs::path(abs).stem().string();
  return true;
}

bool read_revision_settings(const std::string &path, RevisionSettings &out, std::string &error)
{
  std::string abs = absolute_of(path);
  KeyValueFile file;
  if (!read_key_value_file(abs, false, file, error))
    return false;
  out = RevisionSettings();
  out.path = abs;
  std::string dir = fs::path(abs).parent_path().string();
  auto single = [&](const KeyValueEntry &e, std::string &slot) {
    if (!slot.empty()) {
      error = located_error(abs, e.line, "\"" + e.key + "\" is given twice");
      return false;
    }
    if (e.value.empty()) {
      error = located_error(abs, e.line, "empty value for \"" + e.key + "\"");
      return false;
    }
    slot = e.value;
    return true;
  };
  for (const KeyValueEntry &e : file.entries) {
    if (e.key == "top_module") {
      if (!single(e, out.top_module))
        return false;
    } else if (e.key == "family") {
      if (!single(e, out.family))
        return false;
      out.family_line = e.line;
    } else if (e.key == "speed_grade") {
      if (!single(e, out.speed_grade))
        return false;
      out.speed_grade_line = e.line;
    } else if (e.key == "verilog_file" || e.key == "sdc_file") {
      if (e.value.empty()) {
        error = located_error(abs, e.line, "empty value for \"" + e.key + "\"");
        return false;
      }
      if (e.key == "verilog_file") {
        out.verilog_files.push_back(resolve_path(dir, e.value));
        out.verilog_lines.push_back(e.line);
      } else {
        out.sdc_files.push_back(resolve_path(dir, e.value));
      }
    } else if (e.key == "spef_file" || e.key == "sdf_file") {
      if (!single(e, e.key == "spef_file" ? out.spef_file : out.sdf_file))
        return false;
      std::string &slot = e.key == "spef_file" ? out.spef_file : out.sdf_file;
      slot = resolve_path(dir, slot);
    } else if (e.key == "clock_requirement") {
      std::vector<std::string> words = split_blanks(e.value);
      ClockRequirement req;
      req.line = e.line;
      if (words.size() != 3 && words.size() != 5) {
        error = located_error(abs, e.line,
                              "clock_requirement needs NAME PORT PERIOD [RISE FALL]");
        return false;
      }
      req.name = words[0];
      req.port = words[1];
      if (!parse_number(words[2], req.period) || req.period <= 0.0) {
        error = located_error(abs, e.line, "clock period \"" + words[2]
                              + "\" is not a finite positive number");
        return false;
      }
      if (words.size() == 5) {
        double rise = 0.0, fall = 0.0;
        if (!parse_number(words[3], rise) || !parse_number(words[4], fall)) {
          error = located_error(abs, e.line, "clock edge times must be finite numbers");
          return false;
        }
        if (rise < 0.0 || fall <= rise) {
          error = located_error(abs, e.line, "clock edges need 0 <= RISE < FALL");
          return false;
        }
        req.rise = rise;
        req.fall = fall;
      }
      out.clock_requirements.push_back(req);
    } else {
      error = located_error(abs, e.line, "unknown key \"" + e.key + "\"");
      return false;
    }
  }
  const char *missing = nullptr;
  if (out.top_module.empty())
    missing = "top_module";
  else if (out.family.empty())
    missing = "family";
  else if (out.speed_grade.empty())
    missing = "speed_grade";
  else if (out.verilog_files.empty())
    missing = "verilog_file";
  if (missing) {
    error = abs + ": required key \"" + missing + "\" is missing";
    return false;
  }
  return true;
}

std::string revision_settings_path(const ProjectFile &project, const std::string &revision)
{
  return (fs::path(project.directory) / (revision + ".vsf")).string();
}

std::string clock_requirements_sdc(const RevisionSettings &settings)
{
  std::string out;
  for (const ClockRequirement &req : settings.clock_requirements) {
    out += "create_clock -name " + sdc_word(req.name) + " -period " + format_time(req.period);
    if (req.rise)
      out += " -waveform {" + format_time(*req.rise) + " " + format_time(*req.fall) + "}";
    out += " [get_ports " + (is_plain_token(req.port) ? "{" + req.port + "}" : quote_word(req.port))
         + "]\n";
  }
  return out;
}

} // namespace vexa
