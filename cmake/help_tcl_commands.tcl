# Run by vexa_sta at build time: writes the help page of the engine's Tcl
# commands from the engine's own table of commands and argument summaries,
# so that the page lists exactly the commands of the engine that was built.
# Usage: vexa_sta -t help_tcl_commands.tcl OUTPUT.html
set out_path [lindex $argv 0]

proc html {text} { string map {& &amp; < &lt; > &gt; \" &quot;} $text }

# The options of a summary: every word that starts with a dash and a letter.
proc options_of {summary} {
  set found {}
  foreach word [regexp -all -inline -- {-[a-z][a-z0-9_]*} $summary] {
    if {[lsearch -exact $found $word] < 0} { lappend found $word }
  }
  return $found
}

set names [lsort [array names ::sta::cmd_args]]
set out [open $out_path w]
puts $out "<html><head><title>Tcl commands of the timing engine</title></head><body>"
puts $out "<h1>Tcl commands of the timing engine</h1>"
puts $out "<p><a href=\"index.html\">Contents</a></p>"
puts $out "<p>Every command the engine <code>vexa_sta</code> knows, with its arguments as the engine's"
puts $out "<code>help</code> command lists them ([llength $names] commands). Type them at the Console's prompt,"
puts $out "put them in a script for <b>Script &gt; Run Tcl Script</b>, or run <code>vexa_sta -t script.tcl</code>."
puts $out "Arguments in brackets are optional; <code>a|b</code> means one of them.</p>"
puts $out "<p>"
set letter ""
foreach name $names {
  set first [string toupper [string index $name 0]]
  if {$first ne $letter} {
    set letter $first
    puts $out "<a href=\"#letter_$letter\">$letter</a> "
  }
}
puts $out "</p>"
set letter ""
foreach name $names {
  set first [string toupper [string index $name 0]]
  if {$first ne $letter} {
    set letter $first
    puts $out "<h2><a name=\"letter_$letter\"></a>$letter</h2>"
  }
  set summary [string trim [regsub -all {\s+} $::sta::cmd_args($name) " "]]
  puts $out "<h3><a name=\"[html $name]\"></a>[html $name]</h3>"
  puts $out "<pre>[html $name] [html $summary]</pre>"
  set options [options_of $summary]
  if {[llength $options] > 0} {
    puts $out "<p>Options: <code>[html [join $options {, }]]</code></p>"
  }
}
puts $out "</body></html>"
close $out
