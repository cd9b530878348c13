#include "frame/lum_command_lines.hh"

#include "platform/atcl.hh"

namespace {

bool is_plain_token(const std::string& text) {
  if (text.empty()) return false;
  for (unsigned char c : text) {
    if (c <= ' ' || c == 0x7f) return false;
    switch (c) {
      case '[': case ']': case '{': case '}': case '$': case '\\': case '"': case ';':
        return false;
      default:
        break;
    }
  }
  return true;
}

}  // namespace

std::string lum_quoted_path(const std::string& path) { return "\"" + atcl_transform_string(path) + "\""; }

std::string lum_tcl_word(const std::string& text) {
  return is_plain_token(text) ? text : lum_quoted_path(text);
}

std::string lum_project_open_command(const std::string& project_path, const std::string& revision) {
  std::string command = "project_open " + lum_quoted_path(project_path);
  if (!revision.empty()) command += " -revision " + lum_tcl_word(revision);
  return command;
}

std::string lum_read_sdc_command(const std::string& sdc_path) { return "read_sdc " + lum_quoted_path(sdc_path); }

std::string lum_write_sdc_command(const std::string& sdc_path) { return "write_sdc " + lum_quoted_path(sdc_path); }

std::string lum_source_command(const std::string& script_path) { return "source " + lum_quoted_path(script_path); }
