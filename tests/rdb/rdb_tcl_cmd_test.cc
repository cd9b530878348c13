// Command templates of Tcl tables: a cell with blanks, brackets, braces,
// quotes, "$" or line breaks still reaches Tcl as exactly the one word it
// was, alone or inside a longer word, and the command stays on one line.
#include "rdb_test_util.hh"

#include "rdb/rdb_tcl_cmd.hh"

#include <tcl.h>

namespace {

// The words Tcl's own command parser makes of `command`, substitutions
// included: the command is evaluated as the arguments of "list", so an
// unprotected "$" or "[" would substitute or fail.
std::vector<std::string> tcl_words(const std::string& command) {
  Tcl_Interp* interp = Tcl_CreateInterp();
  std::vector<std::string> result;
  std::string script = "list " + command;
  int count = 0;
  const char** words = nullptr;
  if (Tcl_Eval(interp, script.c_str()) == TCL_OK &&
      Tcl_SplitList(interp, Tcl_GetStringResult(interp), &count, &words) == TCL_OK) {
    result.assign(words, words + count);
    Tcl_Free(reinterpret_cast<char*>(words));
  } else {
    result.push_back(std::string("(Tcl error) ") + Tcl_GetStringResult(interp));
  }
  Tcl_DeleteInterp(interp);
  return result;
}

TEST(RDB_TCL_CMD, OddCellTextsBecomeExactlyOneTclWordOnOneLine) {
  const std::vector<std::string> names = {
      "plain",      "u1/reg[3]",  "a b",          "say \"hi\"", "$clk",     "{unbalanced",
      "closing}",   "{a} {b}",    "back\\slash",  "semi;colon", "#hash",    "",
      "tab\there",  "new\nline",  "trailing\\",   "}{",         "\\{x}",    "[get_pins *]",
      "a} [exec touch x] {b",     "clk{",         "cr\rlf",     "x\\\ny"};
  for (const std::string& name : names) {
    SCOPED_TRACE(name);
    // The summary table's row command: the name alone and inside a longer word.
    std::string command = rdb_fill_command_template(
        "report_timing -to %{0} -from %{Name} -panel_name {Worst Paths (%r{Name})}", {"Name"}, {name});
    EXPECT_EQ(tcl_words(command), (std::vector<std::string>{"report_timing", "-to", name, "-from", name,
                                                            "-panel_name", "Worst Paths (" + name + ")"}))
        << command;
    EXPECT_EQ(command.find_first_of("\n\r"), std::string::npos) << command;
  }
}

TEST(RDB_TCL_CMD, TemplatesAreWordsAndEachFilledWordIsQuotedWhole) {
  struct CASE {
    const char* command_template;
    const char* expected;
  };
  const std::vector<std::string> columns = {"From", "To Node"};
  const std::vector<std::string> cells = {"a b", "x[1]"};
  for (const CASE& c : std::vector<CASE>{
           {"lum_show %r{From}", "lum_show {a b}"},  // a cell never adds a word
           {"report -panel_name \"Path to %r{To Node}\"", "report -panel_name {Path to x[1]}"},
           {"format %5.2f%% %{1}", "format %5.2f%% {x[1]}"},
           {"100% %", "100% %"},
           {"open %{0", "open %\\{0"},
           {"%{0}%{1}", "{a bx[1]}"},
           {"#x %{0}", "{#x} {a b}"},  // a first word is never a comment
           {"report -to %l{0} -from %l{1}", "report -to {{a b}} -from {{x[1]}}"},  // one-element lists
       }) {
    std::string error;
    EXPECT_EQ(rdb_fill_command_template(c.command_template, columns, cells, &error), c.expected);
    EXPECT_EQ(error, "");
  }
  std::string error;
  EXPECT_EQ(rdb_fill_command_template("x %{2} %{Nope}", columns, cells, &error), "x");
  EXPECT_NE(error.find("%{2}"), std::string::npos);
  for (const char* broken : {"report {open", "report \"open", "a\x01" "b"}) {
    error.clear();
    EXPECT_EQ(rdb_fill_command_template(broken, columns, cells, &error), "") << broken;
    EXPECT_NE(error, "") << broken;
  }
}

class RDB_TCL_TABLE_TEST : public RDB_TEST {};

TEST_F(RDB_TCL_TABLE_TEST, BuildCmdFillsEachCommandFromItsRow) {
  {
    RDB_WRITER writer(m_file, RDB_TIMING_REPORT);
    RDB_PANEL_WRITER panel = writer.begin_panel("Paths");
    RDB_TABLE_WRITER table = panel.add_tcl_table(
        "", {"From", "To"},
        {{"Report Timing...", "report_timing -from %{From} -to %{To}"},
         {"Locate", "lum_locate %{1}"}});
    table.add_row({"in[0]", "u1/q reg"});
    table.add_row({"clk", "$out"});
    panel.commit();
  }
  auto report = RDB_REPORT::open(m_file);
  auto* table = dynamic_cast<RDB_TCL_TABLE_OBJECT*>(report->find_object("Paths"));
  ASSERT_NE(table, nullptr);
  EXPECT_EQ(table->get_gui_cmd_name(1), "Locate");
  EXPECT_EQ(table->get_cmd_template(1), "lum_locate %{1}");
  EXPECT_EQ(table->build_cmd(0, 1), "report_timing -from {in[0]} -to {u1/q reg}");
  EXPECT_EQ(table->build_cmd(1, 2), "lum_locate {$out}");
  EXPECT_EQ(table->build_cmd(0, 3), "");
  EXPECT_EQ(table->get_gui_cmd_name(2), "");
}

}  // namespace
