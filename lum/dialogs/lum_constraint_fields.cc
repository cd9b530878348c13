#include "dialogs/lum_constraint_fields.hh"

#include "dialogs/lum_tcl_word.hh"

namespace {

const char* rise_fall_option(int choice) {
  switch (choice) {
    case LUM_CHOICE_RISE: return " -rise";
    case LUM_CHOICE_FALL: return " -fall";
    default: return "";
  }
}

const char* min_max_option(int choice) {
  switch (choice) {
    case LUM_CHOICE_MIN: return " -min";
    case LUM_CHOICE_MAX: return " -max";
    default: return "";
  }
}

const char* early_late_option(int choice) {
  switch (choice) {
    case LUM_CHOICE_EARLY: return " -early";
    case LUM_CHOICE_LATE: return " -late";
    default: return "";
  }
}

// " -option value" when the value is given; names are quoted as one word.
void append_name(std::string& command, const char* option, const std::string& name) {
  if (name.empty()) return;
  command += option;
  command += lum_tcl_name_word(name);
}

void append_value(std::string& command, const char* option, const std::string& value) {
  if (value.empty()) return;
  command += option;
  command += value;
}

}  // namespace

std::string LUM_CREATE_CLOCK_FIELDS::compose() const {
  std::string command = "create_clock";
  append_value(command, " -period ", period);
  append_name(command, " -name ", name);
  if (!rise.empty() && !fall.empty()) command += " -waveform {" + rise + " " + fall + "}";
  if (add) command += " -add";
  if (!targets.empty()) {
    // Several names typed with blanks between them become one braced list; a
    // collection command in brackets, or text whose first blank is its first
    // character, stays as it stands.
    const size_t first_blank = targets.find(' ');
    const bool several_names = first_blank != std::string::npos && first_blank > 0 && targets.front() != '[';
    command += several_names ? " {" + targets + "}" : " " + targets;
  }
  return command;
}

std::string LUM_GENERATED_CLOCK_FIELDS::compose() const {
  std::string command = "create_generated_clock";
  append_name(command, " -name ", name);
  append_name(command, " -master_clock ", master_clock);
  command += " -source " + source;
  if (mode == EDGES) {
    if (!edges[0].empty()) command += " -edges {" + edges[0] + " " + edges[1] + " " + edges[2] + "}";
    if (!edge_shifts[0].empty())
      command += " -edge_shift {" + edge_shifts[0] + " " + edge_shifts[1] + " " + edge_shifts[2] + "}";
  } else {
    append_value(command, " -divide_by ", divide_by);
    append_value(command, " -multiply_by ", multiply_by);
    append_value(command, " -duty_cycle ", duty_cycle);
    append_value(command, " -phase ", phase);
    append_value(command, " -offset ", offset);
  }
  if (invert) command += " -invert";
  if (add) command += " -add";
  command += " " + targets;
  return command;
}

std::string LUM_GENERATED_CLOCK_FIELDS::refusal() const {
  if (source.empty()) return "A generated clock needs a source: the pin or port its master clock arrives at.";
  return std::string();
}

std::string LUM_REMOVE_CLOCK_FIELDS::compose() const {
  std::string command = "remove_clock";
  append_name(command, " -name ", name);
  return command;
}

std::string LUM_CLOCK_LATENCY_FIELDS::compose() const {
  std::string command = "set_clock_latency";
  append_name(command, " -clock ", clock);
  if (source) command += " -source";
  command += early_late_option(early_late);
  command += rise_fall_option(rise_fall);
  command += " " + latency;
  command += " " + targets;
  return command;
}

std::string LUM_CLOCK_LATENCY_FIELDS::refusal() const {
  if (!source && early_late != LUM_CHOICE_EARLY_AND_LATE)
    return "Early and late apply to source latency only: tick Source, or choose both.";
  return std::string();
}

std::string LUM_CLOCK_UNCERTAINTY_FIELDS::compose() const {
  std::string command = "set_clock_uncertainty";
  append_name(command, " -from ", from_clock);
  append_name(command, " -to ", to_clock);
  if (setup) command += " -setup";
  if (hold) command += " -hold";
  command += " " + uncertainty;
  return command;
}

std::string LUM_IO_DELAY_FIELDS::compose() const {
  std::string command = input ? "set_input_delay" : "set_output_delay";
  append_name(command, " -clock ", clock);
  if (clock_fall) command += " -clock_fall";
  command += rise_fall_option(rise_fall);
  command += min_max_option(min_max);
  if (add_delay) command += " -add_delay";
  command += " " + delay;
  command += " " + targets;
  return command;
}

std::string LUM_PATH_FIELDS::compose_options() const {
  std::string options;
  append_value(options, " -from ", from);
  append_value(options, " -thru ", through);
  append_value(options, " -to ", to);
  return options;
}

std::string LUM_M_DELAY_FIELDS::compose() const {
  return std::string(minimum ? "set_min_delay" : "set_max_delay") + path.compose_options() + " " + delay;
}

std::string LUM_FALSE_PATH_FIELDS::compose() const { return "set_false_path" + path.compose_options(); }

std::string LUM_FALSE_PATH_FIELDS::refusal() const {
  if (!path.any_given()) return "Give at least one of from, through and to.";
  return std::string();
}

std::string LUM_MULTICYCLE_PATH_FIELDS::compose() const {
  std::string command = "set_multicycle_path" + path.compose_options();
  if (setup) command += " -setup";
  if (hold) command += " -hold";
  if (start) command += " -start";
  if (end) command += " -end";
  command += " " + multiplier;
  return command;
}

std::string LUM_MULTICYCLE_PATH_FIELDS::refusal() const {
  if (start && end) return "Start and end exclude each other: tick one of them.";
  return std::string();
}
