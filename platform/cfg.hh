// Settings: named switches and values, off/empty by default. A value is looked
// up, in this order, in the overrides (the launcher's "--set name=value"), the
// environment (variable CHRONEL_<name>, e.g. CHRONEL_debug_msg=1) and the
// per-user settings file (section "switches").
#pragma once

#include <QSettings>

#include <memory>
#include <string>

// True when the value of name is "1", "on", "true" or "yes" (any case).
bool cfg_is_on(const char* name);
// The value of name, or default_value when it is set nowhere.
std::string cfg_get_value(const char* name, const char* default_value = "");
// An override of the highest precedence (launcher command line, tests).
void cfg_set_override(const char* name, const char* value);
void cfg_clear_overrides();
// Parses "name=value" as the launcher's --set gives it. False when malformed.
bool cfg_set_override_from_assignment(const std::string& assignment);

// The per-user settings store (an INI file by QSettings, organisation "Chronel",
// application "Chronel Timing Analyzer"). Tests point it elsewhere with
// QStandardPaths::setTestModeEnabled or cfg_set_settings_file.
void cfg_set_settings_file(const std::string& path);
std::unique_ptr<QSettings> cfg_open_settings();

// A key of the settings store, e.g. CFG_REGISTRY_KEY("lum/WINDOWPLACEMENT").
class CFG_REGISTRY_KEY {
 public:
  explicit CFG_REGISTRY_KEY(const std::string& key_path);
  bool has_value(const std::string& name) const;
  std::string get_string(const std::string& name, const std::string& default_value = "") const;
  int get_int(const std::string& name, int default_value = 0) const;
  void set_string(const std::string& name, const std::string& value);
  void set_int(const std::string& name, int value);
  void remove(const std::string& name);

 private:
  std::string m_key_path;
};
