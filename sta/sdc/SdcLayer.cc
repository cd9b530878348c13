// The engine's Tcl layer over OpenSTA's SDC commands.
//
// Each constraint command is wrapped: the wrapper checks that a netlist
// exists, runs OpenSTA's command, and then hands the command line, with its
// object arguments rewritten as get_* commands, to ::vexa::constraint_applied
// (record for write_sdc, netlist marked stale, clocks registered with the
// front end). OpenSTA's originals are kept under the name
// <namespace>::__vexa_orig_<name> and listed in ::vexa::orig.
//
// Forms that OpenSTA lacks are added here: remove_clock -name, and the
// -phase and -offset options of create_generated_clock (turned into edges
// with an edge shift of the master clock). Report commands typed while the
// netlist is stale update timing first.
namespace vexa {

extern const char *const sdc_layer_script;

const char *const sdc_layer_script = R"TCL(
namespace eval ::vexa {
  variable orig
  array set orig {}
}

# Replaces the command NAME by a procedure that calls WRAPPER NAME SAVED ARGS.
proc ::vexa::wrap {name wrapper} {
  variable orig
  set origin [namespace origin ::$name]
  set qualifiers [namespace qualifiers $origin]
  set saved ${qualifiers}::__vexa_orig_$name
  rename $origin $saved
  catch {rename ::$name {}}
  set orig($name) $saved
  proc ::$name args "[list $wrapper $name $saved] \$args"
}

proc ::vexa::handle_type {value} {
  if {[regexp {^_[0-9a-f]+_p_([A-Za-z]+)$} $value -> type]} {
    return $type
  }
  return ""
}

proc ::vexa::object_name {handle} {
  switch -- [handle_type $handle] {
    "" { return $handle }
    Instance - Pin - Net - Port - Clock { return [get_full_name $handle] }
    default {
      if {[catch {get_name $handle} name]} { return $handle }
      return $name
    }
  }
}

# True when value is a non-empty list of OpenSTA object handles.
proc ::vexa::is_collection {value} {
  if {[string index $value 0] ne "_" || [catch {llength $value} n] || $n == 0} {
    return 0
  }
  foreach element $value {
    if {[handle_type $element] eq ""} { return 0 }
  }
  return 1
}

proc ::vexa::names {collection} {
  set names {}
  foreach handle $collection { lappend names [object_name $handle] }
  return $names
}

# How the console shows a command result: collections as lists of names.
proc ::vexa::display_result {value} {
  if {[is_collection $value]} { return [names $value] }
  return $value
}

proc ::vexa::getter {type} {
  switch -- $type {
    Port { return get_ports }
    Pin { return get_pins }
    Instance { return get_cells }
    Net { return get_nets }
    Clock { return get_clocks }
  }
  return ""
}

# One argument of a recorded command, as a Tcl word that reads back the same.
proc ::vexa::sdc_word {value} {
  if {![is_collection $value]} {
    return [list $value]
  }
  set groups [dict create]
  foreach handle $value {
    dict lappend groups [handle_type $handle] [object_name $handle]
  }
  set parts {}
  dict for {type names} $groups {
    set getter [getter $type]
    if {$getter eq ""} { return [list $value] }
    lappend parts "\[$getter [list $names]\]"
  }
  if {[llength $parts] == 1} { return [lindex $parts 0] }
  return "\[concat [join $parts { }]\]"
}

proc ::vexa::sdc_line {name arglist} {
  set words [list $name]
  foreach value $arglist { lappend words [sdc_word $value] }
  return [join $words " "]
}

# The dialogs write "-thru"; OpenSTA's exception commands call it "-through".
proc ::vexa::normalise_thru {arglist} {
  set out {}
  foreach word $arglist {
    switch -exact -- $word {
      -thru { lappend out -through }
      -rise_thru { lappend out -rise_through }
      -fall_thru { lappend out -fall_through }
      default { lappend out $word }
    }
  }
  return $out
}

# set_clock_uncertainty with neither objects nor -from/-to applies to every
# clock, as the uncertainty dialog's shortest form expects.
proc ::vexa::uncertainty_targets {arglist} {
  set positional 0
  for {set i 0} {$i < [llength $arglist]} {incr i} {
    set word [lindex $arglist $i]
    if {$word in {-from -rise_from -fall_from -to -rise_to -fall_to}} { return $arglist }
    if {[string match -* $word] && ![string is double -strict $word]} { continue }
    incr positional
  }
  if {$positional == 1} { lappend arglist [all_clocks] }
  return $arglist
}

# OpenSTA takes a delay relative to an unknown clock as an unclocked one.
proc ::vexa::require_clock {name arglist} {
  set at [lsearch -exact $arglist -clock]
  if {$at < 0 || $at + 1 >= [llength $arglist]} { return }
  set clock [lindex $arglist [incr at]]
  if {[is_collection $clock]} { return }
  if {[$::vexa::orig(get_clocks) -quiet $clock] eq ""} {
    error "$name: no clock named \"$clock\""
  }
}

proc ::vexa::sdc_apply {name saved arglist} {
  ::vexa::require_netlist $name
  ::vexa::check_numbers $name $arglist
  set effective $arglist
  switch -- $name {
    set_false_path - set_multicycle_path - set_max_delay - set_min_delay {
      set effective [normalise_thru $arglist]
    }
    set_clock_uncertainty { set effective [uncertainty_targets $arglist] }
    set_input_delay - set_output_delay { require_clock $name $arglist }
  }
  set result [$saved {*}$effective]
  if {$name eq "set_clock_groups"} { refresh_clock_groups }
  ::vexa::constraint_applied [sdc_line $name $arglist]
  return $result
}

# OpenSTA works out which clocks exclude each other once, when timing is
# first updated, and forgets that only when a group is removed: adding and
# removing a group of its own makes the next update see the new groups.
proc ::vexa::refresh_clock_groups {} {
  set clocks [all_clocks]
  if {$clocks eq ""} { return }
  $::vexa::orig(set_clock_groups) -asynchronous -name __vexa_refresh -group [lindex $clocks 0]
  $::vexa::orig(unset_clock_groups) -asynchronous -name __vexa_refresh
}

# Every SDC command that OpenSTA applies (its "not supported" and "ignored"
# ones are left out): a command missing here would change timing without the
# front end learning that the netlist is stale, and write_sdc would lose it.
foreach ::vexa::cmd {
  create_clock set_clock_latency set_clock_uncertainty set_input_delay set_output_delay
  set_false_path set_multicycle_path set_max_delay set_min_delay set_clock_groups
  set_propagated_clock set_load set_input_transition set_driving_cell set_case_analysis
  set_disable_timing set_clock_transition delete_clock delete_generated_clock
  unset_clock_latency unset_clock_uncertainty unset_propagated_clock set_max_time_borrow
  set_timing_derate set_drive set_max_transition set_max_fanout set_max_capacitance
  set_min_capacitance group_path set_logic_zero set_logic_one set_logic_dc
  unset_case_analysis set_min_pulse_width set_ideal_network unset_path_exceptions
  unset_clock_groups set_wire_load_mode set_wire_load_model set_operating_conditions
  set_sense set_data_check unset_data_check set_disable_inferred_clock_gating
  unset_disable_inferred_clock_gating set_resistance set_max_area set_port_fanout_number
  set_clock_gating_check unset_input_delay unset_output_delay unset_clock_transition
  unset_disable_timing unset_generated_clock
} {
  if {[llength [info commands ::$::vexa::cmd]]} {
    ::vexa::wrap $::vexa::cmd ::vexa::sdc_apply
  }
}

# create_generated_clock with -phase (degrees of the generated period) and
# -offset (time), and -duty_cycle together with -divide_by, besides OpenSTA's
# own options. Such a clock is handed to OpenSTA as the edges 1, 1+N, 1+2N of
# its master with shifts that put them where they belong.
proc ::vexa::generated_clock {name saved arglist} {
  ::vexa::require_netlist $name
  ::vexa::check_numbers $name $arglist
  set phase ""
  set offset ""
  set duty ""
  set rest {}
  set divide 1
  set master ""
  for {set i 0} {$i < [llength $arglist]} {incr i} {
    set word [lindex $arglist $i]
    switch -- $word {
      -phase { set phase [lindex $arglist [incr i]] }
      -offset { set offset [lindex $arglist [incr i]] }
      -duty_cycle { set duty [lindex $arglist [incr i]] }
      -divide_by { set divide [lindex $arglist [incr i]] }
      -master_clock {
        set master [lindex $arglist [incr i]]
        lappend rest -master_clock $master
      }
      default { lappend rest $word }
    }
  }
  set multiplied [expr {"-multiply_by" in $rest}]
  if {$phase eq "" && $offset eq "" && ($duty eq "" || $multiplied)} {
    set result [$saved {*}$arglist]
  } else {
    foreach option {-multiply_by -edges -edge_shift} {
      if {$option in $rest} {
        error "create_generated_clock: $option cannot be combined with -phase, -offset or\
               -duty_cycle of a divided clock"
      }
    }
    foreach {label value} [list -phase $phase -offset $offset -duty_cycle $duty -divide_by $divide] {
      if {$value ne "" && ![string is double -strict $value]} {
        error "create_generated_clock: $label needs a number, not \"$value\""
      }
    }
    if {![string is integer -strict $divide] || $divide < 1} {
      error "create_generated_clock: -divide_by needs a positive integer"
    }
    if {$phase eq ""} { set phase 0 }
    if {$offset eq ""} { set offset 0 }
    if {$duty eq ""} { set duty 50 }
    if {$duty <= 0 || $duty >= 100} {
      error "create_generated_clock: -duty_cycle must lie between 0 and 100"
    }
    if {[is_collection $master]} {
      set clocks $master
    } elseif {$master ne ""} {
      set clocks [$::vexa::orig(get_clocks) -quiet $master]
    } else {
      set at [lsearch -exact $rest -source]
      set clocks [expr {$at < 0 ? {} : [source_clocks [lindex $rest [incr at]]]}]
    }
    if {[llength $clocks] != 1} {
      error "create_generated_clock: -phase, -offset and -duty_cycle need one master clock on\
             the -source pin (give -master_clock)"
    }
    set clock [lindex $clocks 0]
    set period [sta::time_sta_ui [$clock period]]
    set waveform {}
    foreach edge [$clock waveform] { lappend waveform [sta::time_sta_ui $edge] }
    lassign $waveform rise fall
    # Time of edge k of the master: odd edges rise, even edges fall.
    set times {}
    foreach k [list 1 [expr {1 + $divide}] [expr {1 + 2 * $divide}]] {
      if {$k % 2} {
        lappend times [expr {$rise + ($k - 1) / 2 * $period}]
      } else {
        lappend times [expr {$fall + ($k - 2) / 2 * $period}]
      }
    }
    set generated [expr {$divide * $period}]
    set shift [expr {$offset + $phase / 360.0 * $generated}]
    set wanted [list [expr {$rise + $shift}] [expr {$rise + $duty / 100.0 * $generated + $shift}] \
                  [expr {$rise + $generated + $shift}]]
    set shifts [lmap want $wanted have $times {expr {$want - $have}}]
    set edges [list 1 [expr {1 + $divide}] [expr {1 + 2 * $divide}]]
    set result [$saved -edges $edges -edge_shift $shifts {*}$rest]
  }
  ::vexa::constraint_applied [sdc_line $name $arglist]
  return $result
}
::vexa::wrap create_generated_clock ::vexa::generated_clock

# The clocks defined on the pins or ports of a -source value (names or handles).
proc ::vexa::source_clocks {source} {
  if {[is_collection $source]} {
    set wanted [names $source]
  } else {
    set wanted $source
  }
  set clocks {}
  foreach clock [all_clocks] {
    foreach pin [$clock sources] {
      if {[get_full_name $pin] in $wanted} {
        lappend clocks $clock
        break
      }
    }
  }
  return $clocks
}

# remove_clock -name NAME | -all
proc ::remove_clock args {
  ::vexa::require_netlist remove_clock
  if {$args eq "-all"} {
    set clocks [all_clocks]
  } elseif {[llength $args] == 2 && [lindex $args 0] eq "-name"} {
    set clocks [$::vexa::orig(get_clocks) -quiet [lindex $args 1]]
    if {$clocks eq ""} {
      error "remove_clock: no clock named \"[lindex $args 1]\""
    }
  } else {
    error "wrong # args: should be \"remove_clock -name clock_name\" or \"remove_clock -all\""
  }
  foreach clock $clocks {
    if {[$clock is_generated]} {
      $::vexa::orig(delete_generated_clock) $clock
    } else {
      $::vexa::orig(delete_clock) $clock
    }
  }
  ::vexa::constraint_applied [::vexa::sdc_line remove_clock $args]
  return
}

# OpenSTA's warnings from its Tcl layer become warning posts, so that they
# never mix with the text results of a command.
proc ::sta::sta_warn {msg} {
  ::vexa::post warning STA-0 $msg
}

proc ::vexa::report_first {name saved arglist} {
  ::vexa::require_netlist $name
  ::vexa::ensure_up_to_date
  return [$saved {*}$arglist]
}
foreach ::vexa::cmd {
  report_checks report_check_types report_tns report_wns report_worst_slack
  report_path_end report_slack
} {
  if {[llength [info commands ::$::vexa::cmd]]} {
    ::vexa::wrap $::vexa::cmd ::vexa::report_first
  }
}

# OpenSTA's clock skew report crashes when it has no clock to report.
proc ::vexa::clock_skew {name saved arglist} {
  ::vexa::require_netlist $name
  set i [lsearch -exact $arglist -clock]
  if {$i >= 0} {
    set value [lindex $arglist [expr {$i + 1}]]
    if {[is_collection $value]} {
      set clocks $value
    } else {
      set clocks [$::vexa::orig(get_clocks) -quiet $value]
    }
  } else {
    set clocks [all_clocks]
  }
  if {![llength $clocks]} {
    error "report_clock_skew: no clock to report (the design has none, or -clock names none)"
  }
  ::vexa::ensure_up_to_date
  return [$saved {*}$arglist]
}
::vexa::wrap report_clock_skew ::vexa::clock_skew
unset ::vexa::cmd
)TCL";

} // namespace vexa
