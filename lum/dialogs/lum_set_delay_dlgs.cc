#include "dialogs/lum_set_delay_dlgs.hh"

#include "dialogs/lum_dialog_registry.hh"
#include "platform/atcl_args.hh"
#include "tcl/lum_tcl_args_auto.hh"
#include "tcl/lum_tcl_dialogs.hh"

namespace {

const QStringList RISE_FALL = {"Rise", "Fall", "Both"};
const QStringList MIN_MAX = {"Minimum", "Maximum", "Both"};
const QStringList EARLY_LATE = {"Early", "Late", "Both"};


}  // namespace

// ---- clock latency and uncertainty -------------------------------------------------

LUM_SET_CLOCK_LATENCY_DLG::LUM_SET_CLOCK_LATENCY_DLG(QWidget* parent) : LUM_DIALOG_BASE(parent, "Set Clock Latency") {
  setObjectName("LUM_SET_CLOCK_LATENCY_DLG");
  add_clock_combo("&Clock:", &m_fields.clock, "clock");
  add_check("&Source latency (from the clock's origin to its definition point)", &m_fields.source, "source");
  add_choice("Transition:", RISE_FALL, &m_fields.rise_fall, "rise_fall");
  add_choice("Early / late:", EARLY_LATE, &m_fields.early_late, "early_late");
  add_time_edit("&Latency:", &m_fields.latency, "latency");
  add_name_edit("&Targets:", &m_fields.targets, "targets");
  on_change();
}

LUM_SET_CLOCK_UNCERTAINTY_DLG::LUM_SET_CLOCK_UNCERTAINTY_DLG(QWidget* parent)
    : LUM_DIALOG_BASE(parent, "Set Clock Uncertainty") {
  setObjectName("LUM_SET_CLOCK_UNCERTAINTY_DLG");
  add_clock_combo("&From clock:", &m_fields.from_clock, "from_clock");
  add_clock_combo("&To clock:", &m_fields.to_clock, "to_clock");
  add_check("&Setup", &m_fields.setup, "setup");
  add_check("&Hold", &m_fields.hold, "hold");
  add_time_edit("&Uncertainty:", &m_fields.uncertainty, "uncertainty");
  on_change();
}

// ---- delays --------------------------------------------------------------------------

LUM_SET_IO_DELAY_DLG::LUM_SET_IO_DELAY_DLG(QWidget* parent, bool input)
    : LUM_DIALOG_BASE(parent, input ? "Set Input Delay" : "Set Output Delay") {
  setObjectName("LUM_SET_IO_DELAY_DLG");
  m_fields.input = input;
  add_clock_combo("&Clock:", &m_fields.clock, "clock");
  add_check("Relative to the clock's &falling edge", &m_fields.clock_fall, "clock_fall");
  add_choice("Transition:", RISE_FALL, &m_fields.rise_fall, "rise_fall");
  add_choice(input ? "Input delay options:" : "Output delay options:", MIN_MAX, &m_fields.min_max, "min_max");
  add_time_edit("&Delay:", &m_fields.delay, "delay");
  add_check("&Add to the delays already on the targets", &m_fields.add_delay, "add_delay");
  add_name_edit("&Targets:", &m_fields.targets, "targets");
  on_change();
}

LUM_SET_M_DELAY_DLG::LUM_SET_M_DELAY_DLG(QWidget* parent, bool minimum)
    : LUM_DIALOG_BASE(parent, minimum ? "Set Minimum Delay" : "Set Maximum Delay") {
  setObjectName("LUM_SET_M_DELAY_DLG");
  m_fields.minimum = minimum;
  add_name_edit("&From:", &m_fields.path.from, "from");
  add_name_edit("T&hrough:", &m_fields.path.through, "through");
  add_name_edit("&To:", &m_fields.path.to, "to");
  add_time_edit("&Delay:", &m_fields.delay, "delay");
  on_change();
}

// ---- path exceptions --------------------------------------------------------------------

LUM_SET_FALSE_PATH_DLG::LUM_SET_FALSE_PATH_DLG(QWidget* parent) : LUM_DIALOG_BASE(parent, "Set False Path") {
  setObjectName("LUM_SET_FALSE_PATH_DLG");
  add_name_edit("&From:", &m_fields.path.from, "from");
  add_name_edit("T&hrough:", &m_fields.path.through, "through");
  add_name_edit("&To:", &m_fields.path.to, "to");
  on_change();
}

LUM_SET_MULTICYCLE_PATH_DLG::LUM_SET_MULTICYCLE_PATH_DLG(QWidget* parent)
    : LUM_DIALOG_BASE(parent, "Set Multicycle Path") {
  setObjectName("LUM_SET_MULTICYCLE_PATH_DLG");
  add_name_edit("&From:", &m_fields.path.from, "from");
  add_name_edit("T&hrough:", &m_fields.path.through, "through");
  add_name_edit("&To:", &m_fields.path.to, "to");
  add_check("&Setup", &m_fields.setup, "setup");
  add_check("&Hold", &m_fields.hold, "hold");
  add_check("Multiplier counts &start clock cycles", &m_fields.start, "start");
  add_check("Multiplier counts &end clock cycles", &m_fields.end, "end");
  add_edit("&Multiplier:", &m_fields.multiplier, "multiplier");
  on_change();
}

// ---- the dialog-opening commands' arguments -------------------------------------------

namespace {

// A text value, unless it is empty or "N/A" (those leave the default).
void take(const char* value, std::string* field) {
  if (lum_is_value_given(value)) *field = value;
}

// Exclusive flag pairs become the three-way choice; the first flag wins.
int choice(const ATCL_ARGS& args, int first_flag, int first_value, int second_flag, int second_value, int both) {
  if (args.get_no_arg_option(first_flag)) return first_value;
  if (args.get_no_arg_option(second_flag)) return second_value;
  return both;
}

void take_path(const ATCL_ARGS& args, LUM_PATH_FIELDS& path) {
  take(args.get_one_arg_option(LUM_AUTO_ARG_FROM), &path.from);
  take(args.get_one_arg_option(LUM_AUTO_ARG_THRU), &path.through);
  take(args.get_one_arg_option(LUM_AUTO_ARG_TO), &path.to);
}

void fill_latency(LUM_DIALOG_BASE& base, const ATCL_ARGS& args) {
  auto& f = static_cast<LUM_SET_CLOCK_LATENCY_DLG&>(base).fields();
  take(args.get_one_arg_option(LUM_AUTO_ARG_CLOCK), &f.clock);
  f.source = args.get_no_arg_option(LUM_AUTO_ARG_SOURCE);
  f.rise_fall = choice(args, LUM_AUTO_ARG_RISE, LUM_CHOICE_RISE, LUM_AUTO_ARG_FALL, LUM_CHOICE_FALL,
                       LUM_CHOICE_RISE_AND_FALL);
  f.early_late = choice(args, LUM_AUTO_ARG_EARLY, LUM_CHOICE_EARLY, LUM_AUTO_ARG_LATE, LUM_CHOICE_LATE,
                        LUM_CHOICE_EARLY_AND_LATE);
  take(args.get_one_arg_pos_option(LUM_AUTO_ARG_DELAY), &f.latency);
  take(args.get_one_arg_pos_option(LUM_AUTO_ARG_TARGETS), &f.targets);
}

void fill_uncertainty(LUM_DIALOG_BASE& base, const ATCL_ARGS& args) {
  auto& f = static_cast<LUM_SET_CLOCK_UNCERTAINTY_DLG&>(base).fields();
  take(args.get_one_arg_option(LUM_AUTO_ARG_FROM), &f.from_clock);
  take(args.get_one_arg_option(LUM_AUTO_ARG_TO), &f.to_clock);
  f.setup = args.get_no_arg_option(LUM_AUTO_ARG_SETUP);
  f.hold = args.get_no_arg_option(LUM_AUTO_ARG_HOLD);
  take(args.get_one_arg_pos_option(LUM_AUTO_ARG_UNCERTAINTY), &f.uncertainty);
}

void fill_io_delay(LUM_DIALOG_BASE& base, const ATCL_ARGS& args) {
  auto& f = static_cast<LUM_SET_IO_DELAY_DLG&>(base).fields();
  take(args.get_one_arg_option(LUM_AUTO_ARG_CLOCK), &f.clock);
  f.clock_fall = args.get_no_arg_option(LUM_AUTO_ARG_CLOCK_FALL);
  // -max wins over -min, -rise over -fall.
  f.min_max = choice(args, LUM_AUTO_ARG_MAX, LUM_CHOICE_MAX, LUM_AUTO_ARG_MIN, LUM_CHOICE_MIN, LUM_CHOICE_MIN_AND_MAX);
  f.rise_fall = choice(args, LUM_AUTO_ARG_RISE, LUM_CHOICE_RISE, LUM_AUTO_ARG_FALL, LUM_CHOICE_FALL,
                       LUM_CHOICE_RISE_AND_FALL);
  take(args.get_one_arg_pos_option(LUM_AUTO_ARG_DELAY), &f.delay);
  f.add_delay = args.get_no_arg_option(LUM_AUTO_ARG_ADD_DELAY);
  take(args.get_one_arg_pos_option(LUM_AUTO_ARG_TARGETS), &f.targets);
}

void fill_m_delay(LUM_DIALOG_BASE& base, const ATCL_ARGS& args) {
  auto& f = static_cast<LUM_SET_M_DELAY_DLG&>(base).fields();
  take_path(args, f.path);
  take(args.get_one_arg_pos_option(LUM_AUTO_ARG_VALUE), &f.delay);
}

void fill_false_path(LUM_DIALOG_BASE& base, const ATCL_ARGS& args) {
  take_path(args, static_cast<LUM_SET_FALSE_PATH_DLG&>(base).fields().path);
}

void fill_multicycle(LUM_DIALOG_BASE& base, const ATCL_ARGS& args) {
  auto& f = static_cast<LUM_SET_MULTICYCLE_PATH_DLG&>(base).fields();
  take_path(args, f.path);
  f.setup = args.get_no_arg_option(LUM_AUTO_ARG_SETUP);
  f.hold = args.get_no_arg_option(LUM_AUTO_ARG_HOLD);
  f.start = args.get_no_arg_option(LUM_AUTO_ARG_START);
  f.end = args.get_no_arg_option(LUM_AUTO_ARG_END);
  bool given = false;
  const unsigned multiplier = args.get_uint_arg_option(LUM_AUTO_ARG_VALUE, &given);
  if (given) f.multiplier = std::to_string(multiplier);
}

template <typename DIALOG, typename... KIND>
std::function<std::unique_ptr<LUM_DIALOG_BASE>(QWidget*)> maker(KIND... kind) {
  return [=](QWidget* parent) -> std::unique_ptr<LUM_DIALOG_BASE> { return std::make_unique<DIALOG>(parent, kind...); };
}

const LUM_DIALOG_REGISTRATION registrations[] = {
    LUM_DIALOG_REGISTRATION{
        {"on_set_clock_latency", "lum_set_clock_latency", maker<LUM_SET_CLOCK_LATENCY_DLG>(), fill_latency}},
    LUM_DIALOG_REGISTRATION{{"on_set_clock_uncertainty", "lum_set_clock_uncertainty",
                             maker<LUM_SET_CLOCK_UNCERTAINTY_DLG>(), fill_uncertainty}},
    LUM_DIALOG_REGISTRATION{{"on_set_input_delay", "lum_set_input_delay", maker<LUM_SET_IO_DELAY_DLG>(true), fill_io_delay}},
    LUM_DIALOG_REGISTRATION{
        {"on_set_output_delay", "lum_set_output_delay", maker<LUM_SET_IO_DELAY_DLG>(false), fill_io_delay}},
    LUM_DIALOG_REGISTRATION{{"on_set_false_path", "lum_set_false_path", maker<LUM_SET_FALSE_PATH_DLG>(), fill_false_path}},
    LUM_DIALOG_REGISTRATION{
        {"on_set_multicycle_path", "lum_set_multicycle_path", maker<LUM_SET_MULTICYCLE_PATH_DLG>(), fill_multicycle}},
    LUM_DIALOG_REGISTRATION{{"on_set_max_delay", "lum_set_max_delay", maker<LUM_SET_M_DELAY_DLG>(false), fill_m_delay}},
    LUM_DIALOG_REGISTRATION{{"on_set_min_delay", "lum_set_min_delay", maker<LUM_SET_M_DELAY_DLG>(true), fill_m_delay}},
};

}  // namespace
