// Message posts and their Tcl form, reports and targets, the internal-error
// service, the debug channel and the catalogue.
#include "platform/msg.hh"

#include "platform/atcl.hh"
#include "platform/cfg.hh"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace {

// Flattens a post to "kind:id:text[sub,sub]" so that whole trees compare at once.
std::string describe(const MSG_POST& post) {
  std::string out = std::string(msg_kind_name(post.get_kind())) + ":" + post.get_id() + ":" +
                    post.get_text();
  if (!post.get_sub_messages().empty()) {
    out += "[";
    for (size_t i = 0; i < post.get_sub_messages().size(); ++i)
      out += (i ? "," : "") + describe(post.get_sub_messages()[i]);
    out += "]";
  }
  return out;
}

struct RECORDING_DISPLAY : MSG_DISPLAY {
  void post_display(const MSG_POST* post, int) override { posts.push_back(describe(*post)); }
  void internal_error_display(const char* text) override { internal_errors.push_back(text); }
  std::vector<std::string> posts;
  std::vector<std::string> internal_errors;
};

TEST(MsgPostFromTclList, ParsesNestedSubMessagesAndRejectsMalformedInput) {
  struct CASE {
    const char* list;
    const char* expected;  // null: must fail
  } cases[] = {
      {"error VSTA-1 {Bad thing}", "error:VSTA-1:Bad thing"},
      {"critical_warning STA-2 \"two words\" {}", "critical_warning:STA-2:two words"},
      {"error E1 top {{extra_info X1 {detail one}} {info X2 d2 {{warning W3 deep}}}}",
       "error:E1:top[extra_info:X1:detail one,info:X2:d2[warning:W3:deep]]"},
      {"info I1 \"text with \\$ and [brackets]\"", "info:I1:text with $ and [brackets]"},
      {"info I1 {braces keep \\$}", "info:I1:braces keep \\$"},
      {"info I1", nullptr},
      {"fatal I1 text", nullptr},
      {"info I1 text {{bogus X y}}", nullptr},
      {"info I1 {unbalanced", nullptr},
      {"info I1 text {{info X y} {unbalanced}", nullptr},
  };
  for (const CASE& c : cases) {
    MSG_POST post;
    std::string error;
    bool ok = MSG_POST::from_tcl_list(c.list, &post, &error);
    if (c.expected == nullptr) {
      EXPECT_FALSE(ok) << c.list;
      EXPECT_FALSE(error.empty()) << c.list;
    } else {
      ASSERT_TRUE(ok) << c.list << ": " << error;
      EXPECT_EQ(describe(post), c.expected);
    }
  }
}

TEST(MsgReport, TargetsAreUniqueAndForgottenWhenTheReportGoes) {
  auto first = std::make_unique<MSG_REPORT>();
  MSG_REPORT second;
  EXPECT_GE(first->get_target_id(), 1);
  EXPECT_NE(first->get_target_id(), second.get_target_id());
  EXPECT_EQ(MSG_REPORT::find_by_target_id(second.get_target_id()), &second);
  long gone = first->get_target_id();
  msg_set_default_report(first.get());
  first.reset();
  EXPECT_EQ(MSG_REPORT::find_by_target_id(gone), nullptr);
  EXPECT_EQ(msg_get_default_report(), nullptr);
  MSG_REPORT third;
  EXPECT_NE(third.get_target_id(), gone);  // never reused
}

class MsgTclCommands : public ::testing::Test {
 protected:
  void SetUp() override {
    own.set_display(&own_display);
    fallback.set_display(&fallback_display);
    msg_set_default_report(&fallback);
  }
  void TearDown() override { msg_set_default_report(nullptr); }
  std::string target() const { return std::to_string(own.get_target_id()); }

  RECORDING_DISPLAY own_display;
  RECORDING_DISPLAY fallback_display;
  MSG_REPORT own;
  MSG_REPORT fallback;
};

TEST_F(MsgTclCommands, PostsAndInternalErrorsReachTheNamedTargetOrTheDefaultReport) {
  std::string result;
  ASSERT_EQ(atcl_tcl_eval(("msg_post " + target() +
                           " error VSTA-7 \"Cannot \\$read\" \"{extra_info VSTA-7 {  at line 3}}\"")
                              .c_str(),
                          &result),
            TCL_OK)
      << result;
  ASSERT_EQ(atcl_tcl_eval("msg_post 0 info I-1 zero", &result), TCL_OK);
  ASSERT_EQ(atcl_tcl_eval("msg_post 999999 warning W-1 unknown {}", &result), TCL_OK);
  ASSERT_EQ(atcl_tcl_eval(("msg_internal_error " + target() + " \"engine broke\"").c_str(), &result),
            TCL_OK);
  EXPECT_EQ(own_display.internal_errors, (std::vector<std::string>{"engine broke"}));
  EXPECT_EQ(own_display.posts,
            (std::vector<std::string>{"error:VSTA-7:Cannot $read[extra_info:VSTA-7:  at line 3]"}));
  EXPECT_EQ(fallback_display.posts,
            (std::vector<std::string>{"info:I-1:zero", "warning:W-1:unknown"}));
}

TEST_F(MsgTclCommands, BadArgumentsGiveClearErrorsAndPostNothing) {
  struct CASE {
    std::string script;
    const char* expected_in_error;
  } cases[] = {
      {"msg_post 1 info", "wrong # args"},
      {"msg_post one info ID text", "target must be an integer"},
      {"msg_post 0 fatal ID text", "unknown message kind \"fatal\""},
      {"msg_post 0 info ID text {{info X}}", "sub-message 1"},
      {"msg_post 0 info ID text {{info X y} {nope X y}}", "sub-message 2"},
      {"msg_post 0 info ID text \"{unbalanced\"", "not a Tcl list"},
      {"msg_internal_error x text", "target must be an integer"},
  };
  for (const CASE& c : cases) {
    std::string result;
    EXPECT_EQ(atcl_tcl_eval(c.script.c_str(), &result), TCL_ERROR) << c.script;
    EXPECT_NE(result.find(c.expected_in_error), std::string::npos) << c.script << " -> " << result;
  }
  EXPECT_TRUE(own_display.posts.empty());
  EXPECT_TRUE(fallback_display.posts.empty());
  EXPECT_TRUE(fallback_display.internal_errors.empty());
}

TEST(MsgInternalError, HandlerGetsConditionModuleAndLineAndTheCallerGoesOn) {
  std::vector<std::string> seen;
  msg_set_internal_error_handler([&](const std::string& condition, const std::string& module,
                                     int line) {
    seen.push_back(condition + "|" + module + "|" + std::to_string(line));
  });
  void* frame = nullptr;
  bool ok = MSG_ASSERT(frame != nullptr, "lum_console_ctrl");
  int assert_line = __LINE__ - 1;
  EXPECT_FALSE(ok);
  EXPECT_TRUE(MSG_ASSERT(1 + 1 == 2, "lum_console_ctrl"));
  msg_set_internal_error_handler(nullptr);
  EXPECT_EQ(seen, (std::vector<std::string>{"frame != nullptr|lum_console_ctrl|" +
                                            std::to_string(assert_line)}));

  testing::internal::CaptureStderr();
  msg_internal_error("args != 0", "lum_tcl_args_auto", 12);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "Internal Error: args != 0 (lum_tcl_args_auto, line 12)\n");
}

TEST(MsgDebug, LinesReachTheSinkOnlyWhenDebugMsgIsOn) {
  std::vector<std::string> lines;
  msg_set_debug_sink([&](const std::string& line) { lines.push_back(line); });
  cfg_set_override("debug_msg", "0");
  msg_debug("hidden %d", 1);
  EXPECT_FALSE(msg_debug_is_on());
  cfg_set_override("debug_msg", "1");
  EXPECT_TRUE(msg_debug_is_on());
  msg_debug("Sending command to STA: %s", "report_checks");
  cfg_clear_overrides();
  msg_set_debug_sink(nullptr);
  EXPECT_EQ(lines, (std::vector<std::string>{"Sending command to STA: report_checks"}));
}

TEST(MsgCatalogue, KindAndIdentifierComeFromTheLastSlashAndInsertionsFillEveryMark) {
  struct CASE {
    const char* entry;
    const char* text;
    MSG_BOX_KIND box;
    const char* id;
  } cases[] = {
      // Which letters give which box is checked with real boxes in msg_box_test.
      {"Cannot open /tmp/x.sdc./ELUM_OPEN", "Cannot open /tmp/x.sdc.", MSG_BOX_KIND::ERROR,
       "LUM_OPEN"},
      {"Path /usr/lib only", "Path /usr/lib only", MSG_BOX_KIND::OK, ""},
      // Kind letters followed by no identifier: a path, part of the text.
      {"See /tmp/Example.txt", "See /tmp/Example.txt", MSG_BOX_KIND::OK, ""},
      {"Copied to /work/Our design", "Copied to /work/Our design", MSG_BOX_KIND::OK, ""},
  };
  for (const CASE& c : cases) {
    MSG_CATALOGUE_ENTRY entry = MSG_CATALOGUE_ENTRY::parse(c.entry);
    EXPECT_EQ(entry.text, c.text) << c.entry;
    EXPECT_EQ(entry.box, c.box) << c.entry;
    EXPECT_EQ(entry.id, c.id) << c.entry;
  }
  MSG_CATALOGUE_ENTRY entry = MSG_CATALOGUE_ENTRY::parse("File %1!s! (%1!s!) is missing./OX");
  EXPECT_EQ(entry.format("a.sdc"), "File a.sdc (a.sdc) is missing.");
  EXPECT_EQ(entry.format(nullptr), "File  () is missing.");
}

TEST(MsgCatalogue, HandlerAnswersInsteadOfABoxAndWithoutOneNothingBlocks) {
  std::vector<std::string> asked;
  msg_set_box_handler([&](const MSG_CATALOGUE_ENTRY& entry, const std::string& text) {
    asked.push_back(entry.id + ":" + text);
    return MSG_ANSWER_YES;
  });
  EXPECT_EQ(msg_show_catalogue_message("Restart %1!s!?/YNLUM_RESTART", "vexa_sta"),
            MSG_ANSWER_YES);
  msg_set_box_handler(nullptr);
  EXPECT_EQ(asked, (std::vector<std::string>{"LUM_RESTART:Restart vexa_sta?"}));

  // No application: the text goes to standard error and the harmless answer comes back.
  testing::internal::CaptureStderr();
  EXPECT_EQ(msg_show_catalogue_message("Busy./OLUM_BUSY"), MSG_ANSWER_OK);
  EXPECT_EQ(msg_show_catalogue_message("Write?/YNLUM_W"), MSG_ANSWER_NO);
  EXPECT_EQ(msg_show_catalogue_message("Overwrite?/COLUM_O"), MSG_ANSWER_CANCEL);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Busy.\nWrite?\nOverwrite?\n");
}

}  // namespace
