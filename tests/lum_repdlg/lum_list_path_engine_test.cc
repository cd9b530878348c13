// list_path in the front end's interpreter against the real engine on the
// datapath example: counts, kinds, the file, and the engine's refusals.
// Skipped (with the reason) while the engine or the example is not built.
#include <QFileInfo>

#include <fstream>
#include <sstream>

#include "../lum_frame/lum_frame_test_support.hh"
#include "engine/lum_console_ctrl.hh"
#include "frame/lum_detached_frame.hh"
#include "frame/lum_entry.hh"
#include "platform/atcl.hh"

namespace {

using lum_test::wait_until;

const std::string kEngine = std::string(CHRONEL_BIN_DIR) + "/vexa_sta";
const std::string kExample = std::string(CHRONEL_EXAMPLES_DIR) + "/datapath/datapath.vpf";

class ListPathWithEngine : public lum_test::FrameFixture {
 protected:
  void SetUp() override {
    if (!QFileInfo(QString::fromStdString(kEngine)).isExecutable()) GTEST_SKIP() << "the engine is not built";
    if (!QFileInfo(QString::fromStdString(kExample)).isFile()) GTEST_SKIP() << "the example project is missing";
    FrameFixture::SetUp();
  }
  void TearDown() override {
    if (LUM_DETACHED_FRAME* frame = LUM_DETACHED_FRAME::get_instance()) delete frame;
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    if (!IsSkipped()) FrameFixture::TearDown();
  }

  // Runs list_path; the result text, or "error: <message>".
  static std::string list_path(const std::string& arguments) {
    std::string result;
    int code = atcl_tcl_eval(("list_path " + arguments).c_str(), &result);
    return code == TCL_OK ? result : "error: " + result;
  }
  static long count(const std::string& arguments) {
    std::string text = list_path(arguments);
    EXPECT_EQ(text.find("error"), std::string::npos) << arguments << ": " << text;
    return std::atol(text.c_str());
  }
};

TEST_F(ListPathWithEngine, CountsThePathsOfEachKindAndWritesTheFile) {
  auto* frame = static_cast<LUM_DETACHED_FRAME*>(lum_dyn_adv_kro_tool());
  ASSERT_NE(frame, nullptr);
  LUM_CONSOLE_CTRL* console = frame->get_console_ctrl();
  EXPECT_NE(list_path("").find("no project is open"), std::string::npos);

  ASSERT_TRUE(lum_open_project_file(kExample.c_str()));
  ASSERT_TRUE(wait_until([&] { return frame->get_state_flag(LUM_STATE_FLAG::PROJECT_IS_OPEN) == '1' && !console->is_busy(); }, 60000));
  console->run_command("create_timing_netlist");
  console->run_command("read_sdc");
  console->run_command("update_timing_netlist");
  ASSERT_TRUE(wait_until([&] { return frame->get_state_flag(LUM_STATE_FLAG::NETLIST_IS_UP_TO_DATE) == '1' && !console->is_busy() && console->pending_count() == 0; }, 120000));

  // -npaths bounds every kind; the example has paths of each clocked kind.
  EXPECT_EQ(list_path("-npaths 3"), "3");
  EXPECT_EQ(list_path("-npaths 2 -clock_hold_io"), "2");
  const long all_setup = count("-npaths 100000 -clock_setup_io");
  const long tsu = count("-npaths 100000 -tsu");
  const long tco = count("-npaths 100000 -tco");
  const long reg = count("-npaths 100000 -clock_setup");
  EXPECT_GT(tsu, 0);
  EXPECT_GT(tco, 0);
  EXPECT_GT(reg, 0);
  // One path per end point: the register-to-register and input paths share
  // the register end points, so tsu and clock_setup together cover no more
  // than the end points of all setup paths; output ends are apart.
  EXPECT_LE(tco, all_setup);
  EXPECT_LE(std::max(tsu, reg), all_setup - tco);
  // Several kinds add up, and the file holds one report per kind.
  const std::string file = path("paths $[1].txt");
  EXPECT_EQ(count("-npaths 100000 -tco -clock_setup -file \"" + atcl_transform_string(file) + "\""), tco + reg);
  std::ifstream in(file);
  std::stringstream text;
  text << in.rdbuf();
  const std::string content = text.str();
  size_t first = content.find("Summary of Paths");
  ASSERT_NE(first, std::string::npos) << content.substr(0, 200);
  EXPECT_NE(content.find("Summary of Paths", first + 1), std::string::npos);
  EXPECT_NE(content.find("Path 1: slack"), std::string::npos);

  // A name the design lacks: the engine's own message.
  EXPECT_NE(list_path("-from no_such_pin -tsu").find("no_such_pin"), std::string::npos);
  EXPECT_NE(list_path("-npaths 0").find("-npaths needs a positive integer"), std::string::npos);
  // The engine is idle again and the console shows none of it as commands.
  EXPECT_FALSE(console->is_busy());
}

}  // namespace
