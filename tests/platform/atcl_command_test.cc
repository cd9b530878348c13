// Commands built word by word: whatever a name holds, Tcl's own parser reads
// back exactly the words that went in, on one line, with nothing substituted.
#include "platform/atcl_command.hh"

#include <gtest/gtest.h>
#include <tcl.h>

#include <string>
#include <vector>

namespace {

// The arguments Tcl's parser passes when it runs `command`, whose first word
// is "capture", a procedure returning its arguments. "exec" is removed, so a
// substitution shows as an error or a wrong word.
std::vector<std::string> captured_words(const std::string& command) {
  Tcl_Interp* interp = Tcl_CreateInterp();
  Tcl_Eval(interp, "rename exec {}; proc capture args { return $args }");
  std::vector<std::string> words;
  if (Tcl_EvalEx(interp, command.data(), static_cast<int>(command.size()), 0) == TCL_OK) {
    int count = 0;
    Tcl_Obj** items = nullptr;
    Tcl_ListObjGetElements(interp, Tcl_GetObjResult(interp), &count, &items);
    for (int i = 0; i < count; ++i) {
      int length = 0;
      const char* bytes = Tcl_GetStringFromObj(items[i], &length);
      words.emplace_back(bytes, static_cast<size_t>(length));
    }
  } else {
    words.push_back(std::string("(Tcl error) ") + Tcl_GetStringResult(interp));
  }
  Tcl_DeleteInterp(interp);
  return words;
}

const std::vector<std::string> HOSTILE_NAMES = {
    "plain", "a} [exec touch x] {b", "clk{", "}", "{", "a b", "$env(HOME)", "[exec x]", "x;exec y",
    "quote\"d", "back\\slash", "trailing\\", "\\", "two\nlines", "cr\rlf", "tab\t", "#hash", "",
    "{*}{x y}", "\\\nnext", std::string("nul\0byte", 8), "u1/reg[3]", "ünïcode"};

TEST(AtclCommand, EveryNameArrivesAsOneLiteralWordOnOneLine) {
  for (const std::string& name : HOSTILE_NAMES) {
    SCOPED_TRACE(name);
    ATCL_COMMAND command("capture");
    command.option("-to_clock", name).flag("-setup").option("-npaths", 10).word(name);
    const std::string line = command.str();
    EXPECT_EQ(line.find_first_of(std::string("\n\r\0", 3)), std::string::npos) << line;
    // Tcl hands a NUL back in its own two-byte form; compare through it.
    std::string expected = name;
    if (size_t nul = expected.find('\0'); nul != std::string::npos) expected.replace(nul, 1, "\xC0\x80");
    EXPECT_EQ(captured_words(line), (std::vector<std::string>{"-to_clock", expected, "-setup", "-npaths", "10", expected}))
        << line;
  }
}

TEST(AtclCommand, ListWordsAndShortFormsReadBackTheSame) {
  const std::string line = atcl_command({"capture", "-from", atcl_list({"a b", "clk{", "#c"}), "-to", "x"});
  std::vector<std::string> words = captured_words(line);
  ASSERT_EQ(words.size(), 4u) << line;
  int count = 0;
  const char** elements = nullptr;
  ASSERT_EQ(Tcl_SplitList(nullptr, words[1].c_str(), &count, &elements), TCL_OK);
  EXPECT_EQ(std::vector<std::string>(elements, elements + count), (std::vector<std::string>{"a b", "clk{", "#c"}));
  Tcl_Free(reinterpret_cast<char*>(elements));
  // Plain words stay as they are; a first word starting "#" is not a comment.
  EXPECT_EQ(atcl_command({"report_clocks", "-panel_name", "Clocks"}), "report_clocks -panel_name Clocks");
  EXPECT_NE(atcl_word("#x", true), "#x");
  EXPECT_EQ(atcl_word("#x"), "#x");
}

}  // namespace
