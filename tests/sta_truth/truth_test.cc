// Debian's own sta is the reference for vexa_sta's timing.
//
// Every example revision is analysed twice.  /usr/bin/sta reads the Liberty
// file of the revision's speed grade (its slow model; in some cases the fast
// model, which is the next faster grade's file) and the netlists and SDC files
// named in the revision settings.  vexa_sta, in batch mode, goes through the
// project commands: project_open, create_timing_netlist, read_sdc (no file:
// the revision's own) and update_timing_netlist.  Both then print the same
// OpenSTA endpoint reports, and the worst setup and hold slack of every path
// group (one per clock, plus the asynchronous group of recovery and removal
// checks) must agree to the picosecond.  The projects are copied to a scratch
// folder first, so nothing the engine writes lands in the source tree.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include <unistd.h>

#include "program_run.hh"
#include "slack_table.hh"

namespace fs = std::filesystem;
using namespace chronel::truth;

namespace {

constexpr double kOnePicosecond = 0.001;  // ns, the libraries' time unit
const char* const kReferenceSta = "/usr/bin/sta";

struct ExampleRevision {
  const char* project_dir;  // under the examples folder
  const char* project_file;
  const char* revision;
  bool fast_model;  // create_timing_netlist -fast_model
};

const ExampleRevision kRevisions[] = {
    {"datapath", "datapath.vpf", "datapath", false},
    {"datapath", "datapath.vpf", "datapath", true},
    {"datapath", "datapath.vpf", "datapath_fast", false},
    {"twoclocks", "twoclocks.vpf", "twoclocks", false},
    {"twoclocks", "twoclocks.vpf", "twoclocks", true},
    {"resets", "resets.vpf", "resets", false},
};

// gtest prints parameters in failure lines; name the revision, not its bytes.
void PrintTo(const ExampleRevision& r, std::ostream* os) {
  *os << r.project_dir << "/" << r.project_file << " revision " << r.revision
      << (r.fast_model ? ", fast model" : ", slow model");
}

// The parts of a revision settings file the reference run needs.
struct RevisionSettings {
  std::string top_module;
  std::string speed_grade;
  std::vector<std::string> verilog_files;
  std::vector<std::string> sdc_files;
  std::vector<std::string> clocks;  // names from the clock_requirement lines
};

std::string trim(const std::string& s) {
  size_t b = s.find_first_not_of(" \t\r");
  size_t e = s.find_last_not_of(" \t\r");
  return b == std::string::npos ? std::string() : s.substr(b, e - b + 1);
}

bool read_settings(const fs::path& vsf, RevisionSettings& out, std::string& error) {
  std::ifstream in(vsf);
  if (!in) {
    error = "cannot read " + vsf.string();
    return false;
  }
  std::string line;
  while (std::getline(in, line)) {
    line = trim(line);
    if (line.empty() || line[0] == '#') continue;
    size_t eq = line.find('=');
    if (eq == std::string::npos) continue;
    std::string key = trim(line.substr(0, eq));
    std::string value = trim(line.substr(eq + 1));
    if (value.size() >= 2 && value.front() == '"' && value.back() == '"')
      value = value.substr(1, value.size() - 2);
    const fs::path dir = vsf.parent_path();
    auto resolve = [&](const std::string& p) { return (dir / p).lexically_normal().string(); };
    if (key == "top_module") out.top_module = value;
    else if (key == "speed_grade") out.speed_grade = value;
    else if (key == "verilog_file") out.verilog_files.push_back(resolve(value));
    else if (key == "sdc_file") out.sdc_files.push_back(resolve(value));
    else if (key == "clock_requirement") out.clocks.push_back(value.substr(0, value.find(' ')));
  }
  if (out.top_module.empty() || out.verilog_files.empty()) {
    error = vsf.string() + " names no top_module or no verilog_file";
    return false;
  }
  return true;
}

// The OSU family's slow model of a speed grade is that grade's own library;
// its fast model is the next faster grade's library (018 has none faster).
std::string osu_liberty(const std::string& grade, bool fast_model) {
  static const std::map<std::string, std::string> files = {
      {"050", "/usr/share/qflow/tech/osu050/osu05_stdcells.lib"},
      {"035", "/usr/share/qflow/tech/osu035/osu035_stdcells.lib"},
      {"018", "/usr/share/qflow/tech/osu018/osu018_stdcells.lib"},
  };
  static const std::map<std::string, std::string> next_faster = {
      {"050", "035"}, {"035", "018"}, {"018", "018"}};
  auto faster = next_faster.find(grade);
  if (faster == next_faster.end()) return {};
  return files.at(fast_model ? faster->second : grade);
}

const char* const kReports =
    "report_checks -path_delay max -format end -digits 4\n"
    "report_checks -path_delay min -format end -digits 4\n";

std::string tcl_quoted(const std::string& s) {
  std::string q = "\"";
  for (char c : s) {
    if (c == '"' || c == '\\' || c == '$' || c == '[' || c == ']') q += '\\';
    q += c;
  }
  return q + "\"";
}

std::string engine_directory() {
  if (const char* env = std::getenv("CHRONEL_BIN_DIR"); env && *env) return env;
  return CHRONEL_BIN_DIR;
}

// A scratch folder removed with everything in it when the test ends.
class ScratchDir {
 public:
  ScratchDir() {
    std::string pattern = (fs::temp_directory_path() / "chronel_truth_XXXXXX").string();
    if (mkdtemp(pattern.data())) path_ = pattern;
  }
  ~ScratchDir() {
    std::error_code ignored;
    if (!path_.empty()) fs::remove_all(path_, ignored);
  }
  const fs::path& path() const { return path_; }

 private:
  fs::path path_;
};

void write_file(const fs::path& p, const std::string& text) { std::ofstream(p) << text; }

std::string tail(const std::string& output, size_t lines) {
  size_t pos = output.size();
  for (size_t n = 0; n <= lines && pos != std::string::npos && pos > 0; ++n)
    pos = output.rfind('\n', pos - 1);
  return pos == std::string::npos || pos == 0 ? output : output.substr(pos + 1);
}

class WorstSlackTruth : public ::testing::TestWithParam<ExampleRevision> {};

TEST_P(WorstSlackTruth, EngineAgreesWithReferenceStaPerClockToThePicosecond) {
  const ExampleRevision& example = GetParam();

  const fs::path engine = fs::path(engine_directory()) / "vexa_sta";
  if (access(engine.c_str(), X_OK) != 0)
    FAIL() << "vexa_sta not found at " << engine
           << ": build the engine (component sta) first, or point CHRONEL_BIN_DIR at its folder.";
  if (access(kReferenceSta, X_OK) != 0)
    FAIL() << "Debian's reference " << kReferenceSta << " is missing: install the opensta package.";

  ScratchDir scratch;
  ASSERT_FALSE(scratch.path().empty()) << "cannot create a scratch folder";
  const fs::path source = fs::path(CHRONEL_EXAMPLES_DIR) / example.project_dir;
  const fs::path project = scratch.path() / example.project_dir;
  std::error_code ec;
  fs::create_directories(project, ec);
  for (const auto& entry : fs::directory_iterator(source)) {
    if (entry.path().filename() == "vexa_db") continue;
    fs::copy(entry.path(), project / entry.path().filename(), fs::copy_options::recursive, ec);
    ASSERT_FALSE(ec) << "copying " << entry.path() << ": " << ec.message();
  }

  RevisionSettings settings;
  std::string error;
  ASSERT_TRUE(read_settings(project / (std::string(example.revision) + ".vsf"), settings, error))
      << error;
  const std::string liberty = osu_liberty(settings.speed_grade, example.fast_model);
  ASSERT_FALSE(liberty.empty()) << "unknown OSU speed grade '" << settings.speed_grade << "'";

  // Reference: the revision's inputs read directly.
  std::string reference_script = "read_liberty " + tcl_quoted(liberty) + "\n";
  for (const auto& v : settings.verilog_files) reference_script += "read_verilog " + tcl_quoted(v) + "\n";
  reference_script += "link_design " + settings.top_module + "\n";
  for (const auto& s : settings.sdc_files) reference_script += "read_sdc " + tcl_quoted(s) + "\n";
  reference_script += kReports;
  const fs::path reference_tcl = scratch.path() / "reference.tcl";
  write_file(reference_tcl, reference_script);

  // Engine: the same revision through the project commands.
  std::string engine_script =
      "project_open " + tcl_quoted((project / example.project_file).string()) + " -revision " +
      example.revision + "\ncreate_timing_netlist" + (example.fast_model ? " -fast_model" : "") +
      "\nread_sdc\nupdate_timing_netlist\n" + kReports +
      "exit\n";
  const fs::path engine_tcl = scratch.path() / "engine.tcl";
  write_file(engine_tcl, engine_script);

  ProgramResult ref = run_program(kReferenceSta, {"-no_init", "-no_splash", "-exit", reference_tcl});
  ASSERT_TRUE(ref.succeeded()) << "sta " << ref.describe() << " on " << reference_tcl << ":\n"
                               << tail(ref.output, 40);
  ProgramResult got = run_program(engine, {"-t", engine_tcl}, project);
  ASSERT_TRUE(got.succeeded()) << "vexa_sta " << got.describe() << " on this script:\n"
                               << engine_script << "It printed:\n" << tail(got.output, 40);

  std::vector<std::string> problems;
  const SlackTable reference = parse_endpoint_reports(ref.output, problems);
  ASSERT_TRUE(problems.empty()) << "sta's report: " << problems.front();
  const SlackTable tested = parse_endpoint_reports(got.output, problems);
  ASSERT_TRUE(problems.empty()) << "vexa_sta's report: " << problems.front() << "\n"
                                << tail(got.output, 40);

  // Guard against a vacuous pass: the reference must have timed every clock
  // the revision asks for, in both analyses.
  for (const std::string& clock : settings.clocks)
    for (Analysis a : {Analysis::setup, Analysis::hold})
      ASSERT_TRUE(reference.count({a, clock}))
          << "sta reported no " << analysis_name(a) << " paths for clock " << clock << ":\n"
          << tail(ref.output, 40);

  const std::vector<std::string> differences = compare_slack_tables(reference, tested, kOnePicosecond);
  std::ostringstream text;
  for (const auto& d : differences) text << "  " << d << "\n";
  EXPECT_TRUE(differences.empty()) << example.revision << ": vexa_sta disagrees with sta:\n"
                                   << text.str() << "vexa_sta printed:\n" << tail(got.output, 40);
}

INSTANTIATE_TEST_SUITE_P(Examples, WorstSlackTruth, ::testing::ValuesIn(kRevisions),
                         [](const ::testing::TestParamInfo<ExampleRevision>& info) {
                           return std::string(info.param.revision) +
                                  (info.param.fast_model ? "_with_fast_model" : "");
                         });

}  // namespace
