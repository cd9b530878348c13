// The fields of the constraint dialogs and the command lines they compose.
//
// Each dialog's fields are a plain struct with no widget in it. compose() is a
// pure function of the fields that builds the SDC command from scratch, in the
// dialog's fixed option order, every option with its own leading blank (so an
// empty always-present value leaves two blanks in a row, on purpose).
// refusal() is a one-line reason when the composed command is one the engine
// would refuse, else empty; the dialog then keeps OK disabled.
#pragma once

#include <string>

// Three-way choices of the radio groups.
enum LUM_RISE_FALL_CHOICE : int { LUM_CHOICE_RISE = 0, LUM_CHOICE_FALL = 1, LUM_CHOICE_RISE_AND_FALL = 2 };
enum LUM_MIN_MAX_CHOICE : int { LUM_CHOICE_MIN = 0, LUM_CHOICE_MAX = 1, LUM_CHOICE_MIN_AND_MAX = 2 };
enum LUM_EARLY_LATE_CHOICE : int { LUM_CHOICE_EARLY = 0, LUM_CHOICE_LATE = 1, LUM_CHOICE_EARLY_AND_LATE = 2 };

struct LUM_CREATE_CLOCK_FIELDS {
  std::string period = "10.000";
  std::string name;
  std::string rise;
  std::string fall;
  std::string targets;
  bool add = false;

  std::string compose() const;
  std::string refusal() const { return std::string(); }
};

struct LUM_GENERATED_CLOCK_FIELDS {
  enum MODE : int { DIVIDE_MULTIPLY = 0, EDGES = 1 };
  std::string name;
  std::string master_clock;
  std::string source;
  int mode = DIVIDE_MULTIPLY;
  std::string divide_by, multiply_by, duty_cycle, phase, offset;
  std::string edges[3];
  std::string edge_shifts[3];
  bool invert = false;
  bool add = false;
  std::string targets;

  std::string compose() const;
  std::string refusal() const;
};

struct LUM_REMOVE_CLOCK_FIELDS {
  std::string name;

  std::string compose() const;
  std::string refusal() const { return std::string(); }
};

struct LUM_CLOCK_LATENCY_FIELDS {
  std::string clock;
  bool source = true;
  int rise_fall = LUM_CHOICE_RISE_AND_FALL;
  int early_late = LUM_CHOICE_EARLY_AND_LATE;
  std::string latency;
  std::string targets;

  std::string compose() const;
  std::string refusal() const;
};

struct LUM_CLOCK_UNCERTAINTY_FIELDS {
  std::string from_clock;
  std::string to_clock;
  bool setup = true;
  bool hold = false;
  std::string uncertainty;

  std::string compose() const;
  std::string refusal() const { return std::string(); }
};

struct LUM_IO_DELAY_FIELDS {
  bool input = true;  // the dialog's kind: set_input_delay or set_output_delay
  std::string clock;
  bool clock_fall = false;
  int rise_fall = LUM_CHOICE_RISE_AND_FALL;
  int min_max = LUM_CHOICE_MIN_AND_MAX;
  std::string delay;
  bool add_delay = false;
  std::string targets;

  std::string compose() const;
  std::string refusal() const { return std::string(); }
};

// The from, through and to lists that the path exceptions share.
struct LUM_PATH_FIELDS {
  std::string from;
  std::string through;
  std::string to;

  // " -from F -thru T -to X", each only when given.
  std::string compose_options() const;
  bool any_given() const { return !from.empty() || !through.empty() || !to.empty(); }
};

struct LUM_M_DELAY_FIELDS {
  bool minimum = false;  // the dialog's kind: set_min_delay or set_max_delay
  LUM_PATH_FIELDS path;
  std::string delay;

  std::string compose() const;
  std::string refusal() const { return std::string(); }
};

struct LUM_FALSE_PATH_FIELDS {
  LUM_PATH_FIELDS path;

  std::string compose() const;
  std::string refusal() const;
};

struct LUM_MULTICYCLE_PATH_FIELDS {
  LUM_PATH_FIELDS path;
  bool setup = true;
  bool hold = false;
  bool start = false;
  bool end = true;
  std::string multiplier;

  std::string compose() const;
  std::string refusal() const;
};
