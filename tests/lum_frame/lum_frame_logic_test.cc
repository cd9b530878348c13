// The main frame's decisions that need no window: which commands are enabled,
// how command lines carry paths, how a saved window placement is made safe,
// how a picked file becomes a project to open, and the recent-project list.
#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <fstream>
#include <tcl.h>

#include "frame/lum_command_lines.hh"
#include "frame/lum_frame_commands.hh"
#include "frame/lum_main_menu.hh"
#include "frame/lum_project_files.hh"
#include "frame/lum_window_placement.hh"
#include "platform/atcl.hh"
#include "platform/cfg.hh"

namespace {

LUM_ENABLE_STATE state(char open, char netlist, char current, bool busy = false) {
  LUM_ENABLE_STATE s;
  s.project_is_open = open;
  s.netlist_is_created = netlist;
  s.netlist_is_up_to_date = current;
  s.busy = busy;
  s.project_recorded = open == '1';
  return s;
}

struct ENABLE_CASE {
  const char* what;
  unsigned id;
  LUM_ENABLE_STATE state;
  bool enabled;
};

TEST(CommandEnabling, FollowsTheStateFlagsAndTheBusyState) {
  LUM_ENABLE_STATE rise_fall = state('1', '0', '0');
  rise_fall.family_has_rise_fall = true;
  const ENABLE_CASE cases[] = {
      {"create netlist with a project and no netlist", LUM_ID_CREATE_TIMING_NETLIST, state('1', '0', '0'), true},
      {"create netlist once a netlist exists", LUM_ID_CREATE_TIMING_NETLIST, state('1', '1', '1'), false},
      {"create netlist while busy", LUM_ID_CREATE_TIMING_NETLIST, state('1', '0', '0', true), false},
      {"create netlist when the netlist flag was never set", LUM_ID_CREATE_TIMING_NETLIST, state('1', '\0', '\0'), false},
      {"create netlist when the netlist flag is an error", LUM_ID_CREATE_TIMING_NETLIST, state('1', 'e', '\0'), false},
      {"create netlist without a project", LUM_ID_CREATE_TIMING_NETLIST, state('0', '0', '0'), false},
      {"rise/fall netlist for a family without the trait", LUM_ID_CREATE_TIMING_NETLIST_RISEFALL, state('1', '0', '0'), false},
      {"rise/fall netlist for a family with the trait", LUM_ID_CREATE_TIMING_NETLIST_RISEFALL, rise_fall, true},
      {"update netlist when stale", LUM_ID_UPDATE_NETLIST, state('1', '1', '0'), true},
      {"update netlist once current", LUM_ID_UPDATE_NETLIST, state('1', '1', '1'), false},
      {"report while current", LUM_ID_REPORT_SETUP_SUMMARY, state('1', '1', '1'), true},
      {"report while stale", LUM_ID_REPORT_SETUP_SUMMARY, state('1', '1', '0'), false},
      {"report timing while stale", LUM_ID_REPORT_TIMING, state('1', '1', '0'), false},
      {"report while busy", LUM_ID_REPORT_CLOCKS, state('1', '1', '1', true), false},
      {"read SDC with a netlist, stale or not", LUM_ID_LOAD_SDC_FILE, state('1', '1', '0'), true},
      {"read SDC without a netlist", LUM_ID_LOAD_SDC_FILE, state('1', '0', '0'), false},
      {"name finder follows delete netlist", LUM_ID_VIEW_NAME_FINDER, state('1', '1', '0'), true},
      {"open project while idle", LUM_ID_FILE_OPEN_PROJECT, state('0', '0', '0'), true},
      {"open project while busy", LUM_ID_FILE_OPEN_PROJECT, state('0', '0', '0', true), false},
      {"close project with a recorded project", LUM_ID_FILE_CLOSE_PROJECT, state('1', '0', '0'), true},
      {"close project without one", LUM_ID_FILE_CLOSE_PROJECT, state('0', '0', '0'), false},
      {"exit while busy", LUM_ID_FILE_CLOSE, state('1', '1', '1', true), true},
      {"about while busy", LUM_ID_APP_ABOUT, state('0', '0', '0', true), true},
      {"user libraries need the design suite", LUM_ID_USER_LIBRARIES, state('1', '1', '1'), false},
      {"report file needs the design suite", LUM_ID_OPEN_STA_REPORT, state('1', '1', '1'), false},
      {"first recent project while busy", LUM_ID_RECENT_PROJECT_FIRST, state('0', '0', '0', true), false},
      {"fifteenth recent project while busy", LUM_ID_RECENT_PROJECT_BUSY_LAST, state('0', '0', '0', true), false},
      {"sixteenth recent project while busy", LUM_ID_RECENT_PROJECT_LAST, state('0', '0', '0', true), true},
      {"quick command while idle", LUM_ID_QUICK_COMMAND_MIN + 3, state('0', '0', '0'), true},
      {"quick command while busy", LUM_ID_QUICK_COMMAND_MIN + 3, state('0', '0', '0', true), false},
      {"global script while busy", LUM_ID_RUN_GLOBAL_USER_LIBS_TCL_SCRIPT_MAX, state('0', '0', '0', true), false},
      {"unknown identifier", 12345, state('1', '1', '1'), false},
  };
  for (const ENABLE_CASE& c : cases) EXPECT_EQ(lum_command_is_enabled(c.id, c.state), c.enabled) << c.what;
}

TEST(CommandTable, ReportCommandsAskForThePanelTheirLineCreates) {
  int panels = 0;
  for (const LUM_COMMAND_DEF& def : lum_command_table()) {
    if (def.panel_name == nullptr) continue;
    ++panels;
    // Every report line but report_sdc, whose panel the engine names, names its panel itself.
    if (std::string(def.command_line) != "report_sdc") {
      EXPECT_NE(std::string(def.command_line).find(std::string("-panel_name \"") + def.panel_name + "\""),
                std::string::npos)
          << def.command_line;
    }
  }
  EXPECT_EQ(panels, 8);
  // Identifiers and handler names are unique, so menus and site files find one command each.
  for (const LUM_COMMAND_DEF& a : lum_command_table()) {
    for (const LUM_COMMAND_DEF& b : lum_command_table()) {
      if (&a == &b) continue;
      EXPECT_NE(a.id, b.id);
      EXPECT_STRNE(a.handler, b.handler);
    }
  }
}

// The words Tcl itself sees in a command line.
std::vector<std::string> tcl_words(const std::string& command) {
  int count = 0;
  const char** words = nullptr;
  EXPECT_EQ(Tcl_SplitList(atcl_get_interpreter(), command.c_str(), &count, &words), TCL_OK) << command;
  std::vector<std::string> out(words, words + count);
  Tcl_Free(reinterpret_cast<char*>(words));
  return out;
}

TEST(CommandLines, PathsWithSpecialCharactersReachTheEngineIntact) {
  const std::string paths[] = {"/plain/design.sdc",   "/with blanks/my design.sdc", "/br[ack]ets/x.sdc",
                               "/br{aces}/x.sdc",     "/un{balanced/x.sdc",         "/quo\"te/x.sdc",
                               "/dollar$HOME/x.sdc",  "/back\\slash/x.sdc",          "/semi;colon/x.sdc"};
  for (const std::string& path : paths) {
    for (const std::string& command : {lum_read_sdc_command(path), lum_write_sdc_command(path), lum_source_command(path)}) {
      const std::vector<std::string> words = tcl_words(command);
      ASSERT_EQ(words.size(), 2u) << command;
      EXPECT_EQ(words[1], path) << command;
      // Written in double quotation marks, as every file path is.
      EXPECT_EQ(command.substr(command.find(' ') + 1, 1), "\"");
    }
  }
}

TEST(CommandLines, ProjectOpenQuotesThePathButNotAPlainRevision) {
  EXPECT_EQ(lum_project_open_command("/p q/d.vpf", "datapath_fast"), "project_open \"/p q/d.vpf\" -revision datapath_fast");
  EXPECT_EQ(lum_project_open_command("/p/d.vpf", ""), "project_open \"/p/d.vpf\"");
  const std::vector<std::string> words = tcl_words(lum_project_open_command("/a$b/[c].vpf", "rev {1}"));
  ASSERT_EQ(words.size(), 4u);
  EXPECT_EQ(words[1], "/a$b/[c].vpf");
  EXPECT_EQ(words[3], "rev {1}");
}

struct PLACEMENT_CASE {
  const char* what;
  LUM_WINDOW_PLACEMENT saved;
  LUM_WINDOW_PLACEMENT expected;
};

TEST(WindowPlacement, SanitisingKeepsTheFrameReachable) {
  const int w = 1400, h = 900;
  const PLACEMENT_CASE cases[] = {
      {"on screen stays", {0, 1, 100, 50, 900, 650}, {0, 1, 100, 50, 900, 650}},
      {"left of the screen moves to 0, keeping right", {0, 1, -900, 50, -100, 650}, {0, 1, 0, 50, -100, 650}},
      {"beyond the width moves to 0", {0, 1, 1500, 50, 2300, 650}, {0, 1, 0, 50, 2300, 650}},
      {"above the screen moves to 0, keeping bottom", {0, 1, 100, -700, 900, -20}, {0, 1, 100, 0, 900, -20}},
      {"below the screen moves to 0", {0, 1, 100, 950, 900, 1500}, {0, 1, 100, 0, 900, 1500}},
      {"minimised reopens maximised", {0, 2, 100, 50, 900, 650}, {0, 3, 100, 50, 900, 650}},
      {"partly off screen is left alone", {0, 3, -50, -20, 900, 650}, {0, 3, -50, -20, 900, 650}},
  };
  for (const PLACEMENT_CASE& c : cases)
    EXPECT_EQ(lum_sanitise_window_placement(c.saved, w, h), c.expected) << c.what;
}

class SettingsFixture : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(m_dir.isValid());
    cfg_set_settings_file(m_dir.filePath("settings.ini").toStdString());
  }
  void TearDown() override { cfg_set_settings_file(""); }
  std::string path(const std::string& name) const { return m_dir.filePath(QString::fromStdString(name)).toStdString(); }
  QTemporaryDir m_dir;
};

using WindowPlacementStore = SettingsFixture;

TEST_F(WindowPlacementStore, SavedValuesComeBackAndUnreadableOnesKeepTheCurrentField) {
  const LUM_WINDOW_PLACEMENT saved{0, 3, 10, 20, 810, 620};
  lum_save_window_placement(saved);
  EXPECT_EQ(lum_read_window_placement(LUM_WINDOW_PLACEMENT{}), saved);

  CFG_REGISTRY_KEY key(LUM_WINDOW_PLACEMENT_KEY);
  key.set_string("rcNormalPosition.top", "twenty");
  key.remove("showCmd");
  const LUM_WINDOW_PLACEMENT current{0, 1, 1, 2, 3, 4};
  const LUM_WINDOW_PLACEMENT read = lum_read_window_placement(current);
  EXPECT_EQ(read.top, 2);       // unreadable: current kept
  EXPECT_EQ(read.show_cmd, 1);  // missing: current kept
  EXPECT_EQ(read.left, 10);
  EXPECT_EQ(read.bottom, 620);
}

class ProjectFiles : public SettingsFixture {
 protected:
  void write(const std::string& name, const std::string& text) {
    std::ofstream out(path(name));
    out << text;
  }
  // A project folder with a netlist and the given revisions' settings files.
  void make_revision(const std::string& revision, const std::string& netlist = "netlist.v") {
    write(revision + ".vsf", "top_module = top\nfamily = OSU\nspeed_grade = 035\nverilog_file = " + netlist + "\n");
  }
  void SetUp() override {
    SettingsFixture::SetUp();
    write("netlist.v", "module top; endmodule\n");
  }
};

TEST_F(ProjectFiles, APathWithoutExtensionOpensTheProjectFile) {
  write("design.vpf", "project_name = design\nrevision = design\n");
  make_revision("design");
  LUM_PROJECT_OPEN_PLAN plan = lum_plan_project_open(path("design"));
  ASSERT_EQ(plan.error_entry, nullptr) << plan.error_insert;
  EXPECT_EQ(plan.project_path, path("design.vpf"));
  EXPECT_EQ(plan.revision, "design");
  ASSERT_EQ(plan.debug_lines.size(), 1u);
  EXPECT_EQ(plan.debug_lines[0], "LUMEX trying to open project '" + path("design") +
                                     "' with no extension; assuming project extension is .vpf");
}

TEST_F(ProjectFiles, AProjectWhoseFirstRevisionDiffersOpensThatRevision) {
  write("chip.vpf", "# comment\nproject_name = chip\nrevision = \"fast one\"\nrevision = chip\n");
  make_revision("fast one");
  LUM_PROJECT_OPEN_PLAN plan = lum_plan_project_open(path("chip.vpf"));
  ASSERT_EQ(plan.error_entry, nullptr) << plan.error_insert;
  EXPECT_EQ(plan.revision, "fast one");
  ASSERT_EQ(plan.debug_lines.size(), 1u);
  EXPECT_EQ(plan.debug_lines[0], "LUMEX trying to open project '" + path("chip.vpf") +
                                     "', converting to use revision 'fast one'");
}

TEST_F(ProjectFiles, ALoneSettingsFileGetsAProjectFileOfItsOwn) {
  make_revision("rev2");
  LUM_PROJECT_OPEN_PLAN plan = lum_plan_project_open(path("rev2.vsf"));
  ASSERT_EQ(plan.error_entry, nullptr) << plan.error_insert;
  EXPECT_TRUE(plan.create_project_file);
  EXPECT_EQ(plan.project_path, path("rev2.vpf"));
  EXPECT_EQ(plan.revision, "rev2");
  EXPECT_EQ(plan.debug_lines.at(0), "LUMEX needs to create a vpf '" + path("rev2.vpf") + "' for the revision 'rev2'.");

  ASSERT_TRUE(lum_create_project_file_for_revision(plan.project_path, plan.revision));
  LUM_PROJECT_FILE project;
  ASSERT_TRUE(lum_read_project_file(plan.project_path, &project));
  EXPECT_EQ(project.revisions, std::vector<std::string>{"rev2"});
  // Now it exists, choosing the settings file again creates nothing.
  EXPECT_FALSE(lum_plan_project_open(path("rev2.vsf")).create_project_file);
}

TEST_F(ProjectFiles, AMadeProjectFileReadsBackEveryRevisionNameExactly) {
  for (const std::string revision : {"rev2", "my rev", " lead", "q\"uote", "back\\slash", "\"both\\\""}) {
    ASSERT_TRUE(lum_create_project_file_for_revision(path("made.vpf"), revision));
    LUM_PROJECT_FILE project;
    ASSERT_TRUE(lum_read_project_file(path("made.vpf"), &project));
    EXPECT_EQ(project.project_name, revision);
    EXPECT_EQ(project.revisions, std::vector<std::string>{revision});
  }
  // Written by hand: the escapes inside quotes are undone, a backslash before
  // any other character stays.
  write("hand.vpf", "project_name = \"a \\\"b\\\\\\n\"\n");
  LUM_PROJECT_FILE project;
  ASSERT_TRUE(lum_read_project_file(path("hand.vpf"), &project));
  EXPECT_EQ(project.project_name, "a \"b\\\\n");
}

TEST_F(ProjectFiles, BadProjectsAreRefusedWithTheirOwnMessage) {
  write("empty.vpf", "project_name = empty\n");
  write("lost.vpf", "project_name = lost\nrevision = lost\n");
  make_revision("lost", "missing/netlist.v");
  write("norev.vpf", "project_name = norev\nrevision = norev\n");
  struct CASE {
    std::string picked;
    const char* entry;
    std::string insert;
  } cases[] = {
      {path("absent.vpf"), LUM_MSG_PROJECT_NOT_FOUND, path("absent.vpf")},
      {path("absent.vsf"), LUM_MSG_REVISION_NOT_FOUND, path("absent.vsf")},
      {path("empty.vpf"), LUM_MSG_PROJECT_HAS_NO_REVISION, path("empty.vpf")},
      {path("lost.vpf"), LUM_MSG_NETLIST_NOT_FOUND, path("missing/netlist.v")},
      {path("norev.vpf"), LUM_MSG_REVISION_NOT_FOUND, path("norev.vsf")},
  };
  for (const CASE& c : cases) {
    LUM_PROJECT_OPEN_PLAN plan = lum_plan_project_open(c.picked);
    EXPECT_EQ(plan.error_entry, c.entry) << c.picked;
    EXPECT_EQ(plan.error_insert, c.insert) << c.picked;
  }
}

TEST_F(ProjectFiles, TraitsAndSpeedGradesComeFromTheFamilySection) {
  write("families.txt", "[SLOW]\nspeed_grade = 1\n\n[FAST]\nrise_fall = yes\nspeed_grade = 7\nspeed_grade = 6\n");
  EXPECT_TRUE(lum_family_has_rise_fall(path("families.txt"), "FAST"));
  EXPECT_FALSE(lum_family_has_rise_fall(path("families.txt"), "SLOW"));
  EXPECT_FALSE(lum_family_has_rise_fall(path("families.txt"), "NONE"));
  EXPECT_EQ(lum_family_speed_grades(path("families.txt"), "fast"), (std::vector<std::string>{"7", "6"}));
  EXPECT_TRUE(lum_family_speed_grades(path("families.txt"), "NONE").empty());
  const std::string shipped = std::string(CHRONEL_MISC_DIR) + "/device_families.txt";
  EXPECT_TRUE(lum_family_has_rise_fall(shipped, "OSU"));
  EXPECT_EQ(lum_family_speed_grades(shipped, "OSU"), (std::vector<std::string>{"050", "035", "018"}));
}

using RecentProjects = SettingsFixture;

TEST_F(RecentProjects, NewestFirstWithoutRepeatsAndAtMostSixteen) {
  LUM_RECENT_PROJECTS recent;
  for (int i = 0; i < 20; ++i) recent.add("/p/" + std::to_string(i) + ".vpf");
  recent.add("/p/10.vpf");
  recent.save();

  LUM_RECENT_PROJECTS again;
  again.load();
  ASSERT_EQ(again.entries().size(), 16u);
  EXPECT_EQ(again.at(0), "/p/10.vpf");
  EXPECT_EQ(again.at(1), "/p/19.vpf");
  EXPECT_EQ(std::count(again.entries().begin(), again.entries().end(), "/p/10.vpf"), 1);
  EXPECT_EQ(again.at(16), "");
  EXPECT_EQ(again.at(-1), "");
}

TEST(QuickCommands, PlaceholdersAreReplacedByTheFieldTexts) {
  EXPECT_EQ(lum_compose_quick_command("report_clocks", "x", "y", true), "report_clocks");
  EXPECT_EQ(lum_compose_quick_command("report_path -from $1 -to $2 -npaths $1", "a", "b", true),
            "report_path -from a -to b -npaths a");
  EXPECT_EQ(lum_compose_quick_command("echo $2 $1", "a", "", false), "echo $2 a");
}

}  // namespace
