// Project file, revision settings and device-family parsing.
#include "project/DeviceFamilies.hh"
#include "project/KeyValueFile.hh"
#include "project/ProjectFiles.hh"

#include <gtest/gtest.h>
#include <tcl.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

using namespace vexa;

namespace {

class TempDir
{
public:
  TempDir()
  {
    char pattern[] = "/tmp/vexa_projfiles_XXXXXX";
    m_dir = mkdtemp(pattern);
  }
  ~TempDir() { std::filesystem::remove_all(m_dir); }
  std::string write(const std::string &name, const std::string &text) const
  {
    std::string path = m_dir + "/" + name;
    std::ofstream(path) << text;
    return path;
  }
  const std::string &dir() const { return m_dir; }

private:
  std::string m_dir;
};

struct BadFile
{
  const char *text;
  const char *expected;  // part of the error, after the file name
};

} // namespace

TEST(ProjectFile, ReadsRevisionsInOrderWithTheFirstAsDefault)
{
  TempDir dir;
  std::string path = dir.write("p.vpf", "# comment\n\n  project_name = \"my \\\"design\\\" \\\\\"  \n"
                                        "  # indented comment\r\n"
                                        "revision = main\r\nrevision=fast\n");
  ProjectFile project;
  std::string error;
  ASSERT_TRUE(read_project_file(path, project, error)) << error;
  EXPECT_EQ(project.name, "my \"design\" \\");
  EXPECT_EQ(project.revisions, (std::vector<std::string>{"main", "fast"}));
  EXPECT_EQ(project.directory, dir.dir());
  EXPECT_EQ(revision_settings_path(project, "fast"), dir.dir() + "/fast.vsf");
  // Without project_name the project is named after its file.
  ASSERT_TRUE(read_project_file(dir.write("unnamed.vpf", "revision = r\n"), project, error));
  EXPECT_EQ(project.name, "unnamed");
  // A byte order mark before the first key is ignored.
  ASSERT_TRUE(read_project_file(dir.write("bom.vpf", "\xEF\xBB\xBFproject_name = p\nrevision = r\n"),
                                project, error)) << error;
  EXPECT_EQ(project.name, "p");
}

TEST(ProjectFile, MalformedFilesNameTheLineAndReason)
{
  const BadFile cases[] = {
    {"revision = a\nno equals sign\n", ":2: expected \"key = value\""},
    {"revision = a\ncolour = red\n", ":2: unknown key \"colour\""},
    {"Revision = a\n", ":1: invalid key \"Revision\""},
    {"revision = \"open quote\n", ":1: missing closing quotation mark"},
    {"revision = \"a\" b\n", ":1: text after the closing quotation mark"},
    {"revision = a\nrevision = a\n", ":2: revision \"a\" is listed twice"},
    {"project_name = x\n", "names no revision"},
    {"[section]\nrevision = a\n", ":1: sections are not allowed"},
    {"project_name = a\nrevision = a\nproject_name = b\n", ":3: \"project_name\" is given twice"},
    // Revision names are names: each would put a file outside the project.
    {"revision = ../outside/rev\n", ":1: revision name \"../outside/rev\" holds a path separator"},
    {"revision = /tmp/rev\n", "holds a path separator"},
    {"revision = a\\b\n", "holds a path separator"},
    {"revision = ..\n", ":1: revision name \"..\" is not a name"},
    {"revision = \"a\tb\"\n", "control character"},
  };
  TempDir dir;
  for (const BadFile &c : cases) {
    std::string path = dir.write("bad.vpf", c.text);
    ProjectFile project;
    std::string error;
    EXPECT_FALSE(read_project_file(path, project, error)) << c.text;
    EXPECT_EQ(error.rfind(path, 0), 0u) << error;
    EXPECT_NE(error.find(c.expected), std::string::npos) << error;
  }
  ProjectFile project;
  std::string error;
  EXPECT_FALSE(read_project_file(dir.dir() + "/missing.vpf", project, error));
  EXPECT_NE(error.find("does not exist"), std::string::npos);
  std::filesystem::create_directory(dir.dir() + "/folder.vpf");
  EXPECT_FALSE(read_project_file(dir.dir() + "/folder.vpf", project, error));
  EXPECT_NE(error.find("folder.vpf: not a file"), std::string::npos) << error;
}

TEST(RevisionSettings, ReadsEveryKeyWithPathsRelativeToTheProject)
{
  TempDir dir;
  std::string path = dir.write("rev.vsf",
    "top_module = top\nfamily = OSU\nspeed_grade = 035\n"
    "verilog_file = netlist/a.v\nverilog_file = /abs/b.v\n"
    "spef_file = x.spef\nsdf_file = \"with blank.sdf\"\n"
    "sdc_file = a.sdc\nsdc_file = b.sdc\n"
    "clock_requirement = clk clk 10.0\nclock_requirement = fast clk2 2.5 0.5 1.5\n");
  RevisionSettings settings;
  std::string error;
  ASSERT_TRUE(read_revision_settings(path, settings, error)) << error;
  EXPECT_EQ(settings.top_module, "top");
  EXPECT_EQ(settings.family_line, 2);
  EXPECT_EQ(settings.verilog_files,
            (std::vector<std::string>{dir.dir() + "/netlist/a.v", "/abs/b.v"}));
  EXPECT_EQ(settings.spef_file, dir.dir() + "/x.spef");
  EXPECT_EQ(settings.sdf_file, dir.dir() + "/with blank.sdf");
  EXPECT_EQ(settings.sdc_files,
            (std::vector<std::string>{dir.dir() + "/a.sdc", dir.dir() + "/b.sdc"}));
  ASSERT_EQ(settings.clock_requirements.size(), 2u);
  EXPECT_FALSE(settings.clock_requirements[0].rise.has_value());
  EXPECT_EQ(clock_requirements_sdc(settings),
            "create_clock -name clk -period 10 [get_ports {clk}]\n"
            "create_clock -name fast -period 2.5 -waveform {0.5 1.5} [get_ports {clk2}]\n");
}

TEST(RevisionSettings, ConvertedClockNamesAndPortsStayOneTclWordEach)
{
  RevisionSettings settings;
  settings.clock_requirements.push_back(ClockRequirement{1, "clk[0]", "ck{x", 4.0, {}, {}});
  std::string sdc = clock_requirements_sdc(settings);
  // Parsed as Tcl: -name, the name, -period, 4 and the port, nothing substituted.
  Tcl_Interp *interp = Tcl_CreateInterp();
  Tcl_Eval(interp, "proc get_ports {p} {return <$p>}\n"
                   "proc create_clock {args} {set ::got [llength $args]|[lindex $args 1]|"
                   "[lindex $args end]}");
  ASSERT_EQ(Tcl_Eval(interp, sdc.c_str()), TCL_OK) << sdc;
  EXPECT_EQ(std::string(Tcl_GetVar(interp, "got", TCL_GLOBAL_ONLY)), "5|clk[0]|<ck{x>") << sdc;
  Tcl_DeleteInterp(interp);
}

TEST(RevisionSettings, MalformedSettingsNameTheLineAndReason)
{
  const std::string head = "top_module = top\nfamily = OSU\nspeed_grade = 035\nverilog_file = a.v\n";
  const BadFile cases[] = {
    {"family = OSU\nspeed_grade = 035\nverilog_file = a.v\n", "required key \"top_module\""},
    {"top_module = top\nfamily = OSU\nspeed_grade = 035\n", "required key \"verilog_file\""},
    {"top_module = a\ntop_module = b\n", ":2: \"top_module\" is given twice"},
    {"top_module =\n", ":1: empty value for \"top_module\""},
    {"clock_requirement = clk clk\n", ":1: clock_requirement needs NAME PORT PERIOD"},
    {"clock_requirement = clk clk 10 1\n", ":1: clock_requirement needs NAME PORT PERIOD"},
    {"clock_requirement = clk clk -3\n", ":1: clock period \"-3\" is not a finite positive number"},
    {"clock_requirement = clk clk 10ns\n", ":1: clock period \"10ns\" is not a finite positive number"},
    {"clock_requirement = clk clk 10 1 x\n", ":1: clock edge times must be finite numbers"},
    {"clock_requirement = clk clk 1e999\n", ":1: clock period \"1e999\" is not a finite"},
    {"clock_requirement = clk clk inf\n", ":1: clock period \"inf\" is not a finite"},
    {"clock_requirement = clk clk nan\n", ":1: clock period \"nan\" is not a finite"},
    {"clock_requirement = clk clk 0\n", ":1: clock period \"0\" is not a finite"},
    {"clock_requirement = clk clk 10 0 inf\n", ":1: clock edge times must be finite numbers"},
    {"clock_requirement = clk clk 10 6 2\n", ":1: clock edges need 0 <= RISE < FALL"},
    {"speed = 6\n", ":1: unknown key \"speed\""},
  };
  TempDir dir;
  for (const BadFile &c : cases) {
    std::string text = std::string(c.text).find("top_module") == std::string::npos
                         && std::string(c.text).find("family") == std::string::npos
                         ? std::string(c.text) + head : std::string(c.text);
    std::string path = dir.write("bad.vsf", text);
    RevisionSettings settings;
    std::string error;
    EXPECT_FALSE(read_revision_settings(path, settings, error)) << text;
    EXPECT_NE(error.find(c.expected), std::string::npos) << error;
  }
}

TEST(DeviceFamilies, ShippedFileNamesExistingLibrariesWithTheNextFasterAsFastModel)
{
  DeviceFamilies families;
  std::string error;
  ASSERT_TRUE(families.load(std::string(CHRONEL_MISC_DIR) + "/device_families.txt", error))
    << error;
  const DeviceFamily *osu = families.find("osu");  // names match in any case
  ASSERT_NE(osu, nullptr);
  for (const SpeedGrade &grade : osu->grades) {
    EXPECT_TRUE(std::filesystem::exists(grade.slow_liberty)) << grade.slow_liberty;
    EXPECT_TRUE(std::filesystem::exists(grade.fast_liberty)) << grade.fast_liberty;
  }
  // The fast model of a grade is the next faster library.
  ASSERT_TRUE(osu->find_grade("050") && osu->find_grade("035") && osu->find_grade("018"));
  EXPECT_EQ(osu->find_grade("050")->fast_liberty, osu->find_grade("035")->slow_liberty);
  EXPECT_EQ(osu->find_grade("018")->fast_liberty, osu->find_grade("018")->slow_liberty);
  EXPECT_EQ(families.find("nosuch"), nullptr);
}

TEST(DeviceFamilies, MalformedFamilyFilesNameTheLineAndReason)
{
  const BadFile cases[] = {
    {"rise_fall = yes\n", ":1: \"rise_fall\" before the first [FAMILY] section"},
    {"[F]\nrise_fall = maybe\n", ":2: rise_fall must be \"yes\" or \"no\""},
    {"[F]\nslow_liberty = a.lib\n", ":2: \"slow_liberty\" before any speed_grade"},
    {"[F]\nspeed_grade = 1\nslow_liberty = a.lib\n", "needs both slow_liberty and fast_liberty"},
    {"[F]\nspeed_grade = 1\nspeed_grade = 1\n", ":3: empty or repeated speed grade"},
    {"[F]\nrise_fall = no\n[G]\nrise_fall = no\n[F]\nrise_fall = yes\n",
     ":6: family \"F\" appears twice"},
    {"[F\n", ":1: malformed section header"},
  };
  TempDir dir;
  for (const BadFile &c : cases) {
    std::string path = dir.write("families.txt", c.text);
    DeviceFamilies families;
    std::string error;
    EXPECT_FALSE(families.load(path, error)) << c.text;
    EXPECT_NE(error.find(c.expected), std::string::npos) << error;
  }
}
