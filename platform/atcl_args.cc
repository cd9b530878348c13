#include "atcl_args.hh"

#include <cstdlib>
#include <cstring>

#include "atcl.hh"

namespace {

bool is_help_name(const std::string& name) { return name == "h" || name == "help" || name == "long_help"; }

const char* kind_text(int kind) {
  switch (kind) {
    case ATCL_ARG_FLAG: return "flag";
    case ATCL_ARG_STRING: return "string";
    case ATCL_ARG_INTEGER: return "integer";
    case ATCL_ARG_LIST: return "list";
  }
  return "value";
}

// Value placeholder in usage texts: "<percent complete>" keeps its blank.
std::string placeholder(const std::string& name) { return "<" + name + ">"; }

}  // namespace

// ---- ATCL_CMD ---------------------------------------------------------------------

ATCL_CMD::ATCL_CMD(const ATCL_CMD_DEFINITION* definition) : m_definition(definition) {
  if (definition == nullptr || definition->arguments == nullptr) return;
  for (const ATCL_ARG_RECORD* r = definition->arguments; r->enum_value != 0; ++r) {
    m_arguments.push_back(r);
    if (r->attributes & ATCL_ARG_POSITIONAL) m_positionals.push_back(r);
  }
}

const ATCL_ARG_RECORD* ATCL_CMD::find_argument(int enum_value) const {
  for (const ATCL_ARG_RECORD* r : m_arguments)
    if (r->enum_value == enum_value) return r;
  return nullptr;
}

std::string ATCL_CMD::argument_name(int enum_value) const {
  const char* name = m_definition->enum_to_string ? m_definition->enum_to_string(enum_value) : nullptr;
  return name ? name : std::to_string(enum_value);
}

std::string ATCL_CMD::argument_display(const ATCL_ARG_RECORD& record) const {
  std::string name = argument_name(record.enum_value);
  return (record.attributes & ATCL_ARG_POSITIONAL) ? placeholder(name) : "-" + name;
}

std::string ATCL_CMD::usage() const {
  std::string text = "Usage: ";
  text += get_name();
  for (const ATCL_ARG_RECORD* r : m_arguments) {
    if (r->attributes & ATCL_ARG_POSITIONAL) continue;
    std::string word = argument_display(*r);
    if (r->kind != ATCL_ARG_FLAG) word += " " + placeholder(argument_name(r->enum_value));
    text += (r->attributes & ATCL_ARG_OPTIONAL) ? " [" + word + "]" : " " + word;
  }
  for (const ATCL_ARG_RECORD* r : m_positionals) {
    std::string word = argument_display(*r);
    text += (r->attributes & ATCL_ARG_OPTIONAL) ? " [" + word + "]" : " " + word;
  }
  return text;
}

std::string ATCL_CMD::long_help() const {
  std::string text = usage();
  text += "\n  -h, -help: show the usage line\n  -long_help: show this description";
  for (const ATCL_ARG_RECORD* r : m_arguments) {
    text += "\n  " + argument_display(*r) + ": " + kind_text(r->kind) +
            ((r->attributes & ATCL_ARG_OPTIONAL) ? ", optional" : ", required");
    if (r->attributes & ATCL_ARG_POSITIONAL) text += " positional";
  }
  auto groups_text = [this](const int* const* groups, const char* title) {
    std::string out;
    if (groups == nullptr) return out;
    for (; *groups != nullptr; ++groups) {
      out += "\n  ";
      out += title;
      for (const int* e = *groups; *e != 0; ++e) out += (e == *groups ? " -" : ", -") + argument_name(*e);
    }
    return out;
  };
  text += groups_text(m_definition->exclusive_groups, "At most one of:");
  if (m_definition->together_groups != nullptr) {
    text += "\n  These groups go together (one of each, or none):";
    text += groups_text(m_definition->together_groups, " ");
  }
  return text;
}

// ---- ATCL_ARGS --------------------------------------------------------------------

ATCL_ARGS::ATCL_ARGS(Tcl_Interp* interp) : m_interp(interp ? interp : atcl_get_interpreter()) {}

int ATCL_ARGS::fail(const ATCL_CMD* cmd, const std::string& message) {
  std::string text = std::string(cmd->get_name()) + ": " + message + "\n" + cmd->usage();
  Tcl_SetObjResult(m_interp, Tcl_NewStringObj(text.c_str(), static_cast<int>(text.size())));
  return TCL_ERROR;
}

int ATCL_ARGS::process_tcl_command_arguments(const ATCL_CMD* cmd, bool* help_shown, int argc,
                                             const char* const* argv) {
  if (help_shown) *help_shown = false;
  m_values.clear();
  m_cmd = cmd;
  if (cmd == nullptr) {
    Tcl_SetObjResult(m_interp, Tcl_NewStringObj("no command definition", -1));
    return TCL_ERROR;
  }
  Tcl_ResetResult(m_interp);
  const ATCL_CMD_DEFINITION* def = cmd->get_definition();
  const std::vector<const ATCL_ARG_RECORD*>& positionals = cmd->get_positionals();
  size_t next_positional = 0;
  bool options_ended = false;

  for (int i = 1; i < argc; ++i) {
    const char* word = argv[i] ? argv[i] : "";
    if (!options_ended && strcmp(word, "--") == 0) {
      options_ended = true;
      continue;
    }
    if (!options_ended && word[0] == '-') {
      int e = def->string_to_enum ? def->string_to_enum(word + 1) : 0;
      std::string name = e != 0 ? cmd->argument_name(e) : std::string();
      if (e != 0 && is_help_name(name)) {
        if (help_shown) *help_shown = true;
        std::string text = name == "long_help" ? cmd->long_help() : cmd->usage();
        Tcl_SetObjResult(m_interp, Tcl_NewStringObj(text.c_str(), static_cast<int>(text.size())));
        return TCL_OK;
      }
      const ATCL_ARG_RECORD* record = e != 0 ? cmd->find_argument(e) : nullptr;
      if (record != nullptr && !(record->attributes & ATCL_ARG_POSITIONAL)) {
        std::string shown = "-" + name;
        if (m_values.count(e)) return fail(cmd, "option \"" + shown + "\" is given more than once");
        if (record->kind == ATCL_ARG_FLAG) {
          m_values[e] = std::string();
          continue;
        }
        if (i + 1 >= argc) return fail(cmd, "option \"" + shown + "\" needs a value");
        const char* value = argv[++i] ? argv[i] : "";
        if (record->kind == ATCL_ARG_INTEGER) {
          int number;
          if (Tcl_GetInt(nullptr, value, &number) != TCL_OK)
            return fail(cmd, "option \"" + shown + "\" expects an integer but got \"" + value + "\"");
        } else if (record->kind == ATCL_ARG_LIST) {
          int count;
          const char** elements;
          if (Tcl_SplitList(nullptr, value, &count, &elements) != TCL_OK)
            return fail(cmd, "option \"" + shown + "\" expects a Tcl list but got \"" + value + "\"");
          Tcl_Free(reinterpret_cast<char*>(elements));
        }
        m_values[e] = value;
        continue;
      }
      // An ambiguous abbreviation is refused even where a positional value
      // could go: it is plainly meant as an option.
      std::string candidates;
      int matches = 0;
      if (word[1] != 0) {
        std::vector<std::string> names = {"help", "long_help"};
        for (const ATCL_ARG_RECORD* r : cmd->get_arguments())
          if (!(r->attributes & ATCL_ARG_POSITIONAL)) names.push_back(cmd->argument_name(r->enum_value));
        for (const std::string& n : names)
          if (n != word + 1 && n.compare(0, strlen(word + 1), word + 1) == 0) candidates += (matches++ ? ", -" : "-") + n;
      }
      if (matches > 1 && record == nullptr)
        return fail(cmd, "option \"" + std::string(word) + "\" is ambiguous: " + candidates);
      // A word with a dash goes to a positional argument only as a negative
      // number (a delay of -0.5); any other is a misspelt or unknown option.
      double number;
      if (next_positional >= positionals.size() || Tcl_GetDouble(nullptr, word, &number) != TCL_OK)
        return fail(cmd, "unknown option \"" + std::string(word) + "\"");
    }
    if (next_positional >= positionals.size())
      return fail(cmd, "too many arguments: \"" + std::string(word) + "\" is not expected");
    const ATCL_ARG_RECORD* record = positionals[next_positional++];
    if (record->kind == ATCL_ARG_INTEGER) {
      int number;
      if (Tcl_GetInt(nullptr, word, &number) != TCL_OK)
        return fail(cmd, "argument " + cmd->argument_display(*record) + " expects an integer but got \"" + word + "\"");
    }
    m_values[record->enum_value] = word;
  }

  for (const ATCL_ARG_RECORD* r : cmd->get_arguments()) {
    if ((r->attributes & ATCL_ARG_OPTIONAL) || m_values.count(r->enum_value)) continue;
    if (r->attributes & ATCL_ARG_POSITIONAL) return fail(cmd, "missing required argument " + cmd->argument_display(*r));
    return fail(cmd, "missing required option \"" + cmd->argument_display(*r) + "\"");
  }

  if (def->exclusive_groups != nullptr) {
    for (const int* const* group = def->exclusive_groups; *group != nullptr; ++group) {
      std::string given;
      int count = 0;
      for (const int* e = *group; *e != 0; ++e) {
        if (m_values.count(*e)) given += (count++ ? " and -" : "-") + cmd->argument_name(*e);
      }
      if (count > 1) return fail(cmd, "options " + given + " cannot be used together");
    }
  }

  if (def->together_groups != nullptr) {
    std::string named;  // first argument given from any of the groups
    for (const int* const* group = def->together_groups; *group != nullptr && named.empty(); ++group)
      for (const int* e = *group; *e != 0; ++e)
        if (m_values.count(*e)) {
          named = "-" + cmd->argument_name(*e);
          break;
        }
    if (!named.empty()) {
      for (const int* const* group = def->together_groups; *group != nullptr; ++group) {
        bool any = false;
        std::string names;
        for (const int* e = *group; *e != 0; ++e) {
          any = any || m_values.count(*e) > 0;
          names += (e == *group ? "-" : ", -") + cmd->argument_name(*e);
        }
        if (!any) return fail(cmd, "option " + named + " also needs one of " + names);
      }
    }
  }
  return TCL_OK;
}

const char* ATCL_ARGS::get_one_arg_option(int enum_value) const {
  auto it = m_values.find(enum_value);
  return it == m_values.end() ? nullptr : it->second.c_str();
}

const char* ATCL_ARGS::get_one_arg_pos_option(int enum_value) const {
  if (enum_value == 0) {
    if (m_cmd == nullptr || m_cmd->get_positionals().empty()) return nullptr;
    enum_value = m_cmd->get_positionals().front()->enum_value;
  }
  return get_one_arg_option(enum_value);
}

bool ATCL_ARGS::get_no_arg_option(int enum_value) const { return m_values.count(enum_value) > 0; }

bool ATCL_ARGS::is_given(int enum_value) const { return m_values.count(enum_value) > 0; }

int ATCL_ARGS::get_int_arg_option(int enum_value, bool* given) const {
  auto it = m_values.find(enum_value);
  if (given) *given = it != m_values.end();
  if (it == m_values.end()) return 0;
  int number = 0;
  Tcl_GetInt(nullptr, it->second.c_str(), &number);
  return number;
}

unsigned ATCL_ARGS::get_uint_arg_option(int enum_value, bool* given) const {
  return static_cast<unsigned>(get_int_arg_option(enum_value, given));
}

bool ATCL_ARGS::get_list_arg_option(int enum_value, std::vector<std::string>* elements) const {
  auto it = m_values.find(enum_value);
  if (it == m_values.end()) return false;
  if (elements) {
    elements->clear();
    int count;
    const char** items;
    if (Tcl_SplitList(nullptr, it->second.c_str(), &count, &items) == TCL_OK) {
      for (int k = 0; k < count; ++k) elements->push_back(items[k]);
      Tcl_Free(reinterpret_cast<char*>(items));
    }
  }
  return true;
}
