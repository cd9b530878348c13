// Settings: switches from overrides, the environment and the per-user INI file,
// and keys of that file through QSettings.
#include "platform/cfg.hh"

#include <QString>
#include <QStringList>
#include <QVariant>

#include <cctype>
#include <cstdlib>
#include <map>
#include <mutex>

namespace {

std::mutex g_cfg_mutex;
std::map<std::string, std::string> g_overrides;
std::string g_settings_file;  // empty: the default per-user file
// The settings file's "switches" section, read once and kept, because
// switches such as "debug_msg" are asked for on every debug line. Any write
// through this module or a change of file drops the copy.
std::map<std::string, std::string> g_file_switches;
bool g_file_switches_loaded = false;

const char k_switches_group[] = "switches";

std::unique_ptr<QSettings> cfg_open_settings_unlocked() {
  if (!g_settings_file.empty())
    return std::make_unique<QSettings>(QString::fromStdString(g_settings_file),
                                       QSettings::IniFormat);
  return std::make_unique<QSettings>(QSettings::IniFormat, QSettings::UserScope,
                                     QStringLiteral("Chronel"),
                                     QStringLiteral("Chronel Timing Analyzer"));
}

void cfg_forget_file_switches() {
  std::lock_guard<std::mutex> lock(g_cfg_mutex);
  g_file_switches.clear();
  g_file_switches_loaded = false;
}

// QSettings reads an INI value holding commas as a list; give it back whole.
std::string cfg_variant_to_string(const QVariant& value) {
  if (value.metaType().id() == QMetaType::QStringList)
    return value.toStringList().join(QLatin1Char(',')).toStdString();
  return value.toString().toStdString();
}

std::string cfg_trim(const std::string& text) {
  size_t begin = 0;
  size_t end = text.size();
  while (begin < end && std::isspace(static_cast<unsigned char>(text[begin]))) ++begin;
  while (end > begin && std::isspace(static_cast<unsigned char>(text[end - 1]))) --end;
  return text.substr(begin, end - begin);
}

}  // namespace

std::string cfg_get_value(const char* name, const char* default_value) {
  std::string fallback = default_value != nullptr ? default_value : "";
  if (name == nullptr || *name == '\0') return fallback;
  std::lock_guard<std::mutex> lock(g_cfg_mutex);
  auto override_it = g_overrides.find(name);
  if (override_it != g_overrides.end()) return override_it->second;
  std::string variable = std::string("CHRONEL_") + name;
  if (const char* from_environment = std::getenv(variable.c_str())) return from_environment;
  if (!g_file_switches_loaded) {
    std::unique_ptr<QSettings> settings = cfg_open_settings_unlocked();
    settings->beginGroup(QString::fromLatin1(k_switches_group));
    for (const QString& key : settings->childKeys())
      g_file_switches[key.toStdString()] = cfg_variant_to_string(settings->value(key));
    settings->endGroup();
    g_file_switches_loaded = true;
  }
  auto file_it = g_file_switches.find(name);
  return file_it != g_file_switches.end() ? file_it->second : fallback;
}

bool cfg_is_on(const char* name) {
  std::string value = cfg_trim(cfg_get_value(name, ""));
  for (char& c : value) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return value == "1" || value == "on" || value == "true" || value == "yes";
}

void cfg_set_override(const char* name, const char* value) {
  if (name == nullptr || *name == '\0') return;
  std::lock_guard<std::mutex> lock(g_cfg_mutex);
  g_overrides[name] = value != nullptr ? value : "";
}

void cfg_clear_overrides() {
  std::lock_guard<std::mutex> lock(g_cfg_mutex);
  g_overrides.clear();
}

bool cfg_set_override_from_assignment(const std::string& assignment) {
  size_t equals = assignment.find('=');
  if (equals == std::string::npos) return false;
  std::string name = cfg_trim(assignment.substr(0, equals));
  if (name.empty()) return false;
  for (char c : name)
    if (!std::isalnum(static_cast<unsigned char>(c)) && c != '_') return false;
  cfg_set_override(name.c_str(), assignment.substr(equals + 1).c_str());
  return true;
}

void cfg_set_settings_file(const std::string& path) {
  std::lock_guard<std::mutex> lock(g_cfg_mutex);
  g_settings_file = path;
  g_file_switches.clear();
  g_file_switches_loaded = false;
}

std::unique_ptr<QSettings> cfg_open_settings() {
  std::lock_guard<std::mutex> lock(g_cfg_mutex);
  return cfg_open_settings_unlocked();
}

// ---- CFG_REGISTRY_KEY -----------------------------------------------------------------

namespace {
QString cfg_key(const std::string& key_path, const std::string& name) {
  std::string full = key_path;
  while (!full.empty() && full.back() == '/') full.pop_back();
  if (!full.empty()) full += '/';
  full += name;
  return QString::fromStdString(full);
}
}  // namespace

CFG_REGISTRY_KEY::CFG_REGISTRY_KEY(const std::string& key_path) : m_key_path(key_path) {}

bool CFG_REGISTRY_KEY::has_value(const std::string& name) const {
  return cfg_open_settings()->contains(cfg_key(m_key_path, name));
}

std::string CFG_REGISTRY_KEY::get_string(const std::string& name,
                                         const std::string& default_value) const {
  QVariant value = cfg_open_settings()->value(cfg_key(m_key_path, name));
  return value.isValid() ? cfg_variant_to_string(value) : default_value;
}

int CFG_REGISTRY_KEY::get_int(const std::string& name, int default_value) const {
  QVariant value = cfg_open_settings()->value(cfg_key(m_key_path, name));
  if (!value.isValid()) return default_value;
  bool ok = false;
  int number = value.toString().trimmed().toInt(&ok);
  return ok ? number : default_value;
}

void CFG_REGISTRY_KEY::set_string(const std::string& name, const std::string& value) {
  cfg_open_settings()->setValue(cfg_key(m_key_path, name), QString::fromStdString(value));
  cfg_forget_file_switches();
}

void CFG_REGISTRY_KEY::set_int(const std::string& name, int value) {
  cfg_open_settings()->setValue(cfg_key(m_key_path, name), value);
  cfg_forget_file_switches();
}

void CFG_REGISTRY_KEY::remove(const std::string& name) {
  cfg_open_settings()->remove(cfg_key(m_key_path, name));
  cfg_forget_file_switches();
}
