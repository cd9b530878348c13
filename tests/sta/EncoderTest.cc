// The echo_stdout encoding, checked against a real Tcl interpreter playing
// the front end: in normal mode the line(s) become "lum_echo_stdout ..."
// whose argument must carry the text; in hidden mode the text is the line
// from its fourteenth character on.
#include "protocol/Encoder.hh"

#include <gtest/gtest.h>
#include <tcl.h>

#include <sstream>

using vexa::encode_text_line;

namespace {

enum class Form { plain, braced, escaped };

struct EncodeCase
{
  std::string text;
  Form form;
};

class FrontEnd
{
public:
  FrontEnd() : m_interp(Tcl_CreateInterp())
  {
    Tcl_Eval(m_interp, "proc lum_echo_stdout {text} {set ::got $text}");
  }
  ~FrontEnd() { Tcl_DeleteInterp(m_interp); }

  // Gathers the lines like the front end's reader does and runs them.
  std::string normal(const std::string &encoded)
  {
    std::istringstream in(encoded);
    std::string line;
    std::string buffer;
    int commands = 0;
    std::string got;
    while (std::getline(in, line)) {
      if (buffer.empty()) {
        EXPECT_EQ(line.rfind("echo_stdout ", 0), 0u);
        buffer = "lum_echo_stdout " + line.substr(12);
      } else {
        buffer += "\n" + line;
      }
      if (Tcl_CommandComplete(buffer.c_str())) {
        EXPECT_EQ(Tcl_Eval(m_interp, buffer.c_str()), TCL_OK) << buffer;
        got = Tcl_GetVar(m_interp, "got", TCL_GLOBAL_ONLY);
        buffer.clear();
        ++commands;
      }
    }
    EXPECT_EQ(commands, 1) << encoded;
    EXPECT_TRUE(buffer.empty()) << encoded;
    return got;
  }

private:
  Tcl_Interp *m_interp;
};

std::string hidden(const std::string &encoded)
{
  std::string first = encoded.substr(0, encoded.find('\n'));
  return first.size() > 13 ? first.substr(13) : std::string();
}

} // namespace

TEST(Encoder, EveryTextReachesBothModesExactly)
{
  const EncodeCase cases[] = {
    {"hello", Form::plain},
    {"-leading_dash", Form::plain},
    {"r1/CLK", Form::plain},
    {"two words", Form::braced},
    {"q[0]", Form::braced},
    {"[get_ports {a b}]", Form::braced},
    {"{balanced {nested}}", Form::braced},
    {"cost $5", Form::braced},
    {"say \"hi\"", Form::braced},
    {"a;b", Form::braced},
    {"back\\slash inside", Form::braced},
    {"\\{escaped brace", Form::braced},
    {"  indented", Form::braced},
    {"tab\there", Form::braced},
    {"unbalanced {", Form::escaped},
    {"} closes first {", Form::escaped},
    {"ends in backslash \\", Form::escaped},
    // Escaped texts whose first character would start a Tcl word form.
    {"{ opens first", Form::escaped},
    {"\"quoted {", Form::escaped},
    {"$var {", Form::escaped},
    {"[cmd] {", Form::escaped},
    {"#hash {", Form::escaped},
    {"", Form::escaped},
  };
  FrontEnd front_end;
  for (const EncodeCase &c : cases) {
    std::string encoded = encode_text_line(c.text);
    ASSERT_FALSE(encoded.empty());
    EXPECT_EQ(encoded.back(), '\n');
    std::string got = front_end.normal(encoded);
    switch (c.form) {
    case Form::plain:
      EXPECT_EQ(encoded, "echo_stdout  " + c.text + "\n");
      EXPECT_EQ(got, c.text);
      EXPECT_EQ(hidden(encoded), c.text);
      break;
    case Form::braced:
      EXPECT_EQ(encoded, "echo_stdout {" + c.text + "\n}\n");
      // The console cuts at line feeds, so the trailing one shows nothing.
      EXPECT_EQ(got, c.text + "\n");
      EXPECT_EQ(hidden(encoded), c.text);
      break;
    case Form::escaped:
      // The one documented limitation: hidden results keep the backslashes.
      EXPECT_EQ(got, c.text) << encoded;
      EXPECT_EQ(encoded.rfind("echo_stdout  ", 0), 0u) << encoded;
      EXPECT_EQ(encoded.find('\n'), encoded.size() - 1) << "must stay on one line";
      break;
    }
  }
}

TEST(Encoder, QuotedWordsStayOnOneLineAndKeepTheirValue)
{
  Tcl_Interp *interp = Tcl_CreateInterp();
  const std::string texts[] = {"plain", "a \"quoted\" $var [cmd] \\x", "two\nlines\tand tab",
                               "", "{braces}"};
  for (const std::string &text : texts) {
    std::string word = vexa::quote_word(text);
    EXPECT_EQ(word.find('\n'), std::string::npos);
    ASSERT_EQ(Tcl_Eval(interp, ("set v " + word).c_str()), TCL_OK) << word;
    EXPECT_EQ(std::string(Tcl_GetStringResult(interp)), text);
  }
  Tcl_DeleteInterp(interp);
  EXPECT_EQ(vexa::callback_word("ns"), "ns");
  EXPECT_EQ(vexa::callback_word("Summary (Setup)"), "\"Summary (Setup)\"");
}
