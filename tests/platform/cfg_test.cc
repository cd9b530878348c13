// Settings: the lookup order of switches and the settings store's keys.
#include "platform/cfg.hh"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <cstdlib>
#include <fstream>

namespace {

class CfgSettings : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(dir.isValid());
    file = dir.filePath("settings.ini").toStdString();
    cfg_set_settings_file(file);
    cfg_clear_overrides();
  }
  void TearDown() override {
    cfg_clear_overrides();
    unsetenv("CHRONEL_cfg_test_switch");
    cfg_set_settings_file("");
  }
  void write_file(const std::string& text) {
    std::ofstream(file) << text;
    cfg_set_settings_file(file);  // re-read
  }

  QTemporaryDir dir;
  std::string file;
};

TEST_F(CfgSettings, OverrideBeatsEnvironmentWhichBeatsTheSettingsFile) {
  EXPECT_EQ(cfg_get_value("cfg_test_switch", "dflt"), "dflt");
  EXPECT_FALSE(cfg_is_on("cfg_test_switch"));
  write_file("[switches]\ncfg_test_switch=from_file\n");
  EXPECT_EQ(cfg_get_value("cfg_test_switch"), "from_file");
  setenv("CHRONEL_cfg_test_switch", "from_env", 1);
  EXPECT_EQ(cfg_get_value("cfg_test_switch"), "from_env");
  cfg_set_override("cfg_test_switch", "from_override");
  EXPECT_EQ(cfg_get_value("cfg_test_switch"), "from_override");
  cfg_clear_overrides();
  EXPECT_EQ(cfg_get_value("cfg_test_switch"), "from_env");
}

TEST_F(CfgSettings, SwitchesAreOnOnlyForTrueWords) {
  const struct {
    const char* value;
    bool on;
  } cases[] = {{"1", true},  {"on", true},  {"TRUE", true}, {"Yes", true}, {" on ", true},
               {"0", false}, {"off", false}, {"", false},    {"2", false},  {"yes please", false}};
  for (const auto& c : cases) {
    cfg_set_override("cfg_test_switch", c.value);
    EXPECT_EQ(cfg_is_on("cfg_test_switch"), c.on) << '"' << c.value << '"';
  }
}

TEST_F(CfgSettings, LauncherAssignmentsAreParsedOrRejected) {
  EXPECT_TRUE(cfg_set_override_from_assignment("lum_dont_startup_sta=1"));
  EXPECT_TRUE(cfg_is_on("lum_dont_startup_sta"));
  EXPECT_TRUE(cfg_set_override_from_assignment("lum_extension_command_file=/a/b=c.tcl"));
  EXPECT_EQ(cfg_get_value("lum_extension_command_file"), "/a/b=c.tcl");
  EXPECT_TRUE(cfg_set_override_from_assignment("empty="));
  EXPECT_EQ(cfg_get_value("empty", "dflt"), "");
  for (const char* bad : {"no_equals", "=value", "bad name=1", "a-b=1"})
    EXPECT_FALSE(cfg_set_override_from_assignment(bad)) << bad;
}

TEST_F(CfgSettings, RegistryKeysRoundTripAndReachTheSwitches) {
  CFG_REGISTRY_KEY placement("lum/WINDOWPLACEMENT");
  EXPECT_FALSE(placement.has_value("x"));
  EXPECT_EQ(placement.get_int("x", -5), -5);
  placement.set_int("x", 120);
  placement.set_string("state", "maximised, left");
  EXPECT_TRUE(placement.has_value("x"));
  EXPECT_EQ(placement.get_int("x"), 120);
  EXPECT_EQ(placement.get_string("state"), "maximised, left");
  EXPECT_EQ(placement.get_int("state", 9), 9);
  placement.remove("x");
  EXPECT_FALSE(placement.has_value("x"));

  // A switch written through a key is seen at once, and lands in the file.
  EXPECT_FALSE(cfg_is_on("cfg_test_switch"));
  CFG_REGISTRY_KEY("switches").set_string("cfg_test_switch", "on");
  EXPECT_TRUE(cfg_is_on("cfg_test_switch"));
  std::ifstream in(file);
  std::string contents((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  EXPECT_NE(contents.find("[switches]"), std::string::npos);
  EXPECT_NE(contents.find("cfg_test_switch=on"), std::string::npos);
}

}  // namespace
