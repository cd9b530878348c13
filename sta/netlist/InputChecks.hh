// Checks of design files before OpenSTA's readers see them.
//
// OpenSTA's readers trust their input: a Verilog bus of a hundred million
// bits is expanded bit by bit until memory runs out, a module that
// instantiates itself is linked until the stack overflows, and a SPEF
// resistance near 1e20 ends in a crash when timing is updated. These scans
// are cheap (one pass over the text, no tree) and refuse such files with the
// file and line, so the readers only get input they can handle.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace vexa {

// Widest bus (in bits) a Verilog range may declare or select.
constexpr std::uint64_t max_bus_bits = 1u << 20;

// Largest resistance or capacitance value a SPEF file may give, in its own
// units (a kilo-ohm unit still leaves this far above any real wire).
constexpr double max_spef_value = 1e12;

// The modules of some Verilog text: module name -> the names of the module
// types its instances are of (library cells included).
using ModuleGraph = std::map<std::string, std::vector<std::string>>;

// Scans Verilog text: refuses ranges wider than max_bus_bits. Adds each
// module's instance types to modules (a module defined again replaces its
// old entry). Returns "" or "LINE: reason".
std::string scan_verilog(std::string_view text, ModuleGraph &modules);

// A chain of instances that leads from a module back to itself, written
// "a -> b -> a"; "" when there is none.
std::string module_cycle(const ModuleGraph &modules);

// Scans SPEF text for what OpenSTA's reader lets through: a file that does
// not begin with *SPEF, one that ends inside a net, and resistance or
// capacitance values that are negative, not finite or above max_spef_value.
// Returns "" or "LINE: reason".
std::string scan_spef(std::string_view text);

} // namespace vexa
