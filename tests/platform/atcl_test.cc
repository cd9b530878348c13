// The interpreter, its post queue (with and without a Qt application), string
// escaping and package set-up.
#include "platform/atcl.hh"

#include "platform/cfg.hh"
#include "platform/msg.hh"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>

#include <chrono>
#include <map>
#include <thread>
#include <vector>

namespace {

// "record THREAD SEQ": notes each run with the thread it ran on.
struct RECORD {
  int thread;
  int seq;
  std::thread::id ran_on;
};
std::vector<RECORD> g_records;

int record_cmd(ClientData, Tcl_Interp* interp, int objc, Tcl_Obj* const objv[]) {
  int thread = 0;
  int seq = 0;
  if (objc != 3 || Tcl_GetIntFromObj(interp, objv[1], &thread) != TCL_OK ||
      Tcl_GetIntFromObj(interp, objv[2], &seq) != TCL_OK)
    return TCL_ERROR;
  g_records.push_back({thread, seq, std::this_thread::get_id()});
  return TCL_OK;
}

class AtclQueue : public ::testing::Test {
 protected:
  void SetUp() override {
    g_records.clear();
    Tcl_CreateObjCommand(atcl_get_interpreter(), "record", record_cmd, nullptr, nullptr);
  }

  // Posts count commands from each of threads threads, all at once.
  static void post_from_threads(int threads, int count) {
    std::vector<std::thread> posters;
    for (int t = 0; t < threads; ++t)
      posters.emplace_back([t, count] {
        for (int i = 0; i < count; ++i)
          atcl_post(("record " + std::to_string(t) + " " + std::to_string(i)).c_str(), 0, nullptr);
      });
    for (auto& poster : posters) poster.join();
  }

  // Every command ran once, on this thread, in its poster's order.
  static void expect_per_thread_order(int threads, int count) {
    ASSERT_EQ(g_records.size(), static_cast<size_t>(threads * count));
    std::map<int, int> next;
    for (const RECORD& r : g_records) {
      ASSERT_EQ(r.ran_on, std::this_thread::get_id());
      ASSERT_EQ(r.seq, next[r.thread]++) << "thread " << r.thread;
    }
  }
};

TEST_F(AtclQueue, PostsFromSeveralThreadsRunInOrderOnTheFlushingThread) {
  post_from_threads(4, 5000);
  EXPECT_EQ(atcl_queue_size(), 20000u);
  EXPECT_EQ(atcl_flush_queue(1, 0), 20000);
  EXPECT_EQ(atcl_queue_size(), 0u);
  expect_per_thread_order(4, 5000);
}

TEST_F(AtclQueue, WithAnApplicationTheEventLoopDrainsTheQueue) {
  int argc = 1;
  char name[] = "atcl_test";
  char* argv[] = {name, nullptr};
  QCoreApplication app(argc, argv);
  std::thread posters([] { post_from_threads(3, 4000); });
  QElapsedTimer timer;
  timer.start();
  while (g_records.size() < 12000u && timer.elapsed() < 10000)
    QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
  posters.join();
  QCoreApplication::processEvents();
  expect_per_thread_order(3, 4000);
  EXPECT_EQ(atcl_queue_size(), 0u);
}

TEST_F(AtclQueue, FlushRunsOneOrAllAndWaitsForLateArrivals) {
  atcl_post("record 0 0", 0, nullptr);
  atcl_post("record 0 1", 0, nullptr);
  EXPECT_EQ(atcl_flush_queue(0, 0), 1);
  EXPECT_EQ(g_records.size(), 1u);
  EXPECT_EQ(atcl_flush_queue(1, 0), 1);
  EXPECT_EQ(atcl_flush_queue(1, 0), 0);

  std::thread late([] {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    atcl_post("record 0 2", 0, nullptr);
  });
  EXPECT_EQ(atcl_flush_queue(1, 5000), 1);
  late.join();
  expect_per_thread_order(1, 3);
}

TEST_F(AtclQueue, CommandThatFlushesTheQueueItselfKeepsTheOrder) {
  Tcl_CreateObjCommand(
      atcl_get_interpreter(), "nested_flush",
      [](ClientData, Tcl_Interp*, int, Tcl_Obj* const*) -> int {
        atcl_flush_queue(0, 0);
        return TCL_OK;
      },
      nullptr, nullptr);
  atcl_post("record 0 0", 0, nullptr);
  atcl_post("nested_flush", 0, nullptr);
  atcl_post("record 0 1", 0, nullptr);
  atcl_post("record 0 2", 0, nullptr);
  atcl_flush_queue(1, 0);
  expect_per_thread_order(1, 3);
}

TEST_F(AtclQueue, ErrorsReachTheDoneCallbackAndTheDebugChannel) {
  cfg_set_override("debug_msg", "1");
  std::vector<std::string> debug_lines;
  msg_set_debug_sink([&](const std::string& line) { debug_lines.push_back(line); });
  struct OUTCOME {
    int code = -1;
    std::string result;
  } failed, fine;
  auto done = [](int code, const char* result, void* data) {
    auto* outcome = static_cast<OUTCOME*>(data);
    outcome->code = code;
    outcome->result = result;
  };
  atcl_post("error {broken on purpose}", 0, done, &failed);
  atcl_post("set ::posted_value 7", 0, done, &fine);
  atcl_flush_queue(1, 0);
  msg_set_debug_sink(nullptr);
  cfg_clear_overrides();
  EXPECT_EQ(failed.code, TCL_ERROR);
  EXPECT_EQ(failed.result, "broken on purpose");
  EXPECT_EQ(fine.code, TCL_OK);
  EXPECT_EQ(fine.result, "7");
  ASSERT_EQ(debug_lines.size(), 1u);
  EXPECT_NE(debug_lines[0].find("broken on purpose"), std::string::npos);
}

TEST(AtclTransformString, NastyTextsSurviveADoubleQuotedWord) {
  const std::string texts[] = {
      "",
      "$var [cmd] \"quoted\" \\back\\",
      "line one\nline two\r\nthird\ttab",
      "{unbalanced braces { ends with backslash\\",
      "\\n is not a newline; # hash",
      "control \x1f\x7f bytes",
      "\x01" "7 octal must not swallow the digit",
      "unicode: \xc2\xb5s \xe2\x86\x92 done",
  };
  for (const std::string& text : texts) {
    std::string transformed = atcl_transform_string(text);
    EXPECT_EQ(transformed.find('\n'), std::string::npos) << "must stay on one line";
    std::string result;
    ASSERT_EQ(atcl_tcl_eval(("set x \"" + transformed + "\"").c_str(), &result), TCL_OK)
        << transformed;
    EXPECT_EQ(result, text) << transformed;
  }
  EXPECT_EQ(atcl_transform_string("a$b\n"), "a\\$b\\n");
}

int echo_name_cmd(ClientData data, Tcl_Interp* interp, int, const char**) {
  Tcl_SetResult(interp, static_cast<char*>(data), TCL_VOLATILE);
  return TCL_OK;
}

TEST(AtclPackageSetup, CommandsAreCreatedInTheNamespaceAndGlobally) {
  static char first[] = "first";
  static char second[] = "second";
  const ATCL_CALLBACK table[] = {{echo_name_cmd, "pkg_first", first},
                                 {echo_name_cmd, "pkg_second", second},
                                 {nullptr, nullptr, nullptr}};
  EXPECT_EQ(atcl_register_callbacks(table), TCL_ERROR);  // outside set-up
  ASSERT_EQ(atcl_begin_package_setup("::test::pkg", "1.0"), TCL_OK);
  ASSERT_EQ(atcl_register_callbacks(table), TCL_OK);
  ASSERT_EQ(atcl_end_package_setup(), TCL_OK);

  std::string result;
  EXPECT_EQ(atcl_tcl_eval("::test::pkg::pkg_first", &result), TCL_OK);
  EXPECT_EQ(result, "first");
  EXPECT_EQ(atcl_tcl_eval("pkg_second", &result), TCL_OK);
  EXPECT_EQ(result, "second");
  // From inside another namespace the plain name still resolves globally.
  EXPECT_EQ(atcl_tcl_eval("namespace eval ::elsewhere { pkg_first }", &result), TCL_OK);
  EXPECT_EQ(result, "first");
}

}  // namespace
