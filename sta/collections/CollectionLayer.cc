// Collections for the name finder and for SDC.
//
// OpenSTA's get_* commands return Tcl lists of object handles; that is the
// engine's collection. The commands here accept the options the dialogs
// compose (-no_case, -hierarchical, -compatibility_mode, the last accepted
// and without effect since netlists carry one naming), add get_keepers
// (ports and register pins), get_registers (register cells) and get_nodes
// (ports and every pin), and give foreach_in_collection, get_object_info and
// query_collection. A pattern that matches nothing gives a warning post, not
// text, so hidden searches of the front end see only names.
namespace vexa {

extern const char *const collection_layer_script;

const char *const collection_layer_script = R"TCL(
# Splits the dialogs' options from the rest: {nocase hierarchical rest}.
proc ::vexa::collection_options {arglist} {
  set nocase 0
  set hierarchical 0
  set rest {}
  foreach word $arglist {
    switch -exact -- $word {
      -no_case - -nocase { set nocase 1 }
      -hierarchical { set hierarchical 1 }
      -compatibility_mode {}
      default { lappend rest $word }
    }
  }
  return [list $nocase $hierarchical $rest]
}

# Splits OpenSTA options (with their values) from the pattern arguments.
proc ::vexa::split_patterns {rest valued} {
  set options {}
  set patterns {}
  for {set i 0} {$i < [llength $rest]} {incr i} {
    set word [lindex $rest $i]
    if {$word in $valued} {
      lappend options $word [lindex $rest [incr i]]
    } elseif {[string match -* $word] && [llength $word] == 1 && $word ne "-"} {
      lappend options $word
    } else {
      lappend patterns $word
    }
  }
  return [list $options $patterns]
}

# A name pattern as OpenSTA's get_* read it, for string match: only * and ?
# are wildcards; brackets are part of names (bus bits like a_reg[0]), and a
# backslash keeps the character after it as it is.
proc ::vexa::match_pattern {pattern} {
  set out ""
  set n [string length $pattern]
  for {set i 0} {$i < $n} {incr i} {
    set c [string index $pattern $i]
    if {$c eq "\\" && $i + 1 < $n} {
      append out "\\" [string index $pattern [incr i]]
    } elseif {$c eq "\[" || $c eq "\]"} {
      append out "\\" $c
    } else {
      append out $c
    }
  }
  return $out
}

# Matching is the same with and without -no_case but for the letter case.
# With `levels`, a name must have as many hierarchy dividers as its pattern,
# so that a wildcard stays within one level as in OpenSTA's own search.
proc ::vexa::filter_names {objects patterns nocase {levels 0}} {
  set matches {}
  set compiled {}
  foreach pattern $patterns {
    lappend compiled [match_pattern $pattern] [regexp -all / $pattern]
  }
  foreach object $objects {
    set name [object_name $object]
    foreach {pattern dividers} $compiled {
      if {$levels && [regexp -all / $name] != $dividers} { continue }
      if {($nocase && [string match -nocase $pattern $name])
          || (!$nocase && [string match $pattern $name])} {
        lappend matches $object
        break
      }
    }
  }
  return $matches
}

proc ::vexa::no_match_warning {name patterns} {
  ::vexa::post warning VSTA-1401 "$name: nothing matches \"[join $patterns { }]\""
}

proc ::vexa::get_objects {name saved arglist} {
  ::vexa::require_netlist $name
  lassign [collection_options $arglist] nocase hierarchical rest
  lassign [split_patterns $rest {-of_objects -filter -hsc}] options patterns
  if {[llength $patterns] > 1} {
    error "$name: too many arguments (put several patterns in one list: {a b})"
  }
  set patterns [lindex $patterns 0]
  if {$hierarchical && $name in {get_cells get_pins get_nets}} {
    lappend options -hierarchical
  }
  # OpenSTA resolves names through these commands itself; only the user's
  # own calls without -quiet warn about an empty result.
  set warn [expr {"-quiet" ni $options && [uplevel 2 {namespace current}] ne "::sta"}]
  if {"-quiet" ni $options} { lappend options -quiet }
  if {$nocase && $patterns ne ""} {
    # OpenSTA matches letter case exactly: take every object the patterns
    # could reach and match here. A pattern with dividers reaches below the
    # top level as OpenSTA's own would; its wildcards stay within one level.
    set levels [expr {$name in {get_cells get_pins get_nets} && "-hierarchical" ni $options
                      && [string first / $patterns] >= 0}]
    set all [$saved {*}$options {*}[expr {$levels ? "-hierarchical" : ""}] *]
    set result [filter_names $all $patterns 1 $levels]
  } elseif {$patterns eq "" && $name eq "get_clocks"} {
    set result [all_clocks]
  } elseif {$patterns eq ""} {
    set result [$saved {*}$options]
  } else {
    set result [$saved {*}$options $patterns]
  }
  if {$warn && $result eq "" && $patterns ne "" && "-of_objects" ni $options} {
    no_match_warning $name $patterns
  }
  return $result
}

foreach ::vexa::cmd {get_cells get_pins get_nets get_ports get_clocks} {
  ::vexa::wrap $::vexa::cmd ::vexa::get_objects
}
unset ::vexa::cmd

proc ::vexa::register_pins {} {
  set pins {}
  foreach kind {-clock_pins -data_pins -async_pins -output_pins} {
    foreach pin [all_registers $kind] {
      if {![info exists seen($pin)]} {
        set seen($pin) 1
        lappend pins $pin
      }
    }
  }
  return $pins
}

proc ::vexa::find_among {name arglist candidates} {
  lassign [collection_options $arglist] nocase hierarchical rest
  if {[llength $rest] > 1} {
    error "$name: too many arguments (put several patterns in one list: {a b})"
  }
  set patterns [lindex $rest 0]
  if {$patterns eq ""} { set patterns * }
  set result [filter_names $candidates $patterns $nocase]
  if {$result eq ""} { no_match_warning $name $patterns }
  return $result
}

proc ::get_keepers args {
  ::vexa::require_netlist get_keepers
  set candidates [concat [$::vexa::orig(get_ports) -quiet *] [::vexa::register_pins]]
  return [::vexa::find_among get_keepers $args $candidates]
}

proc ::get_registers args {
  ::vexa::require_netlist get_registers
  return [::vexa::find_among get_registers $args [all_registers -cells]]
}

proc ::get_nodes args {
  ::vexa::require_netlist get_nodes
  set candidates [$::vexa::orig(get_ports) -quiet *]
  # Liberty's internal state pins of flip-flops are no nodes of the design.
  foreach pin [$::vexa::orig(get_pins) -quiet -hierarchical *] {
    if {[::sta::pin_direction $pin] ne "internal"} { lappend candidates $pin }
  }
  return [::vexa::find_among get_nodes $args $candidates]
}

proc ::foreach_in_collection {variable collection body} {
  upvar 1 $variable element
  foreach item $collection {
    set element $item
    set code [catch {uplevel 1 $body} result options]
    switch -- $code {
      0 {}
      3 { break }
      4 { continue }
      2 { return -code return $result }
      default { return -options $options $result }
    }
  }
  return
}

proc ::get_object_info args {
  set object ""
  set what ""
  foreach word $args {
    switch -- $word {
      -name { set what name }
      -type { set what type }
      default {
        if {$object ne ""} { error "wrong # args: should be \"get_object_info object -name|-type\"" }
        set object $word
      }
    }
  }
  if {$object eq "" || $what eq ""} {
    error "wrong # args: should be \"get_object_info object -name|-type\""
  }
  if {[llength $object] != 1} {
    error "get_object_info: expected one object, got [llength $object]"
  }
  set type [::vexa::handle_type $object]
  if {$type eq ""} { error "get_object_info: \"$object\" is not a design object" }
  if {$what eq "type"} {
    switch -- $type {
      Instance { return cell }
      default { return [string tolower $type] }
    }
  }
  return [::vexa::object_name $object]
}

# query_collection collection ?-all? ?-limit N?: the names, as a list.
proc ::query_collection {collection args} {
  set limit 100
  for {set i 0} {$i < [llength $args]} {incr i} {
    switch -- [lindex $args $i] {
      -all { set limit -1 }
      -limit { set limit [lindex $args [incr i]] }
      -report_format {}
      default { error "query_collection: unknown option \"[lindex $args $i]\"" }
    }
  }
  set names [::vexa::names $collection]
  if {$limit >= 0 && [llength $names] > $limit} {
    set names [lrange $names 0 [expr {$limit - 1}]]
  }
  return $names
}
)TCL";

} // namespace vexa
