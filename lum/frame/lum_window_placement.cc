#include "frame/lum_window_placement.hh"

#include "platform/cfg.hh"

#include <cerrno>
#include <climits>
#include <cstdlib>

const char* const LUM_WINDOW_PLACEMENT_KEY = "WINDOWPLACEMENT";
const char* const LUM_WINDOW_PLACEMENT_NAMES[6] = {
    "flags", "showCmd", "rcNormalPosition.left", "rcNormalPosition.top", "rcNormalPosition.right",
    "rcNormalPosition.bottom"};

namespace {

int* field(LUM_WINDOW_PLACEMENT& p, int index) {
  int* fields[6] = {&p.flags, &p.show_cmd, &p.left, &p.top, &p.right, &p.bottom};
  return fields[index];
}

bool parse_int(const std::string& text, int* value) {
  if (text.empty()) return false;
  errno = 0;
  char* end = nullptr;
  long v = std::strtol(text.c_str(), &end, 10);
  if (errno != 0 || end == text.c_str() || *end != '\0' || v < INT_MIN || v > INT_MAX) return false;
  *value = static_cast<int>(v);
  return true;
}

}  // namespace

LUM_WINDOW_PLACEMENT lum_sanitise_window_placement(LUM_WINDOW_PLACEMENT p, int screen_width, int screen_height) {
  if (p.right < 0 || p.left > screen_width) p.left = 0;
  if (p.bottom < 0 || p.top > screen_height) p.top = 0;
  if (p.show_cmd == LUM_WINDOW_PLACEMENT::SHOW_MINIMIZED) p.show_cmd = LUM_WINDOW_PLACEMENT::SHOW_MAXIMIZED;
  return p;
}

void lum_save_window_placement(const LUM_WINDOW_PLACEMENT& placement) {
  LUM_WINDOW_PLACEMENT p = placement;
  CFG_REGISTRY_KEY key(LUM_WINDOW_PLACEMENT_KEY);
  for (int i = 0; i < 6; ++i) key.set_int(LUM_WINDOW_PLACEMENT_NAMES[i], *field(p, i));
}

LUM_WINDOW_PLACEMENT lum_read_window_placement(const LUM_WINDOW_PLACEMENT& current) {
  LUM_WINDOW_PLACEMENT p = current;
  CFG_REGISTRY_KEY key(LUM_WINDOW_PLACEMENT_KEY);
  for (int i = 0; i < 6; ++i) {
    if (!key.has_value(LUM_WINDOW_PLACEMENT_NAMES[i])) continue;
    int value = 0;
    if (parse_int(key.get_string(LUM_WINDOW_PLACEMENT_NAMES[i]), &value)) *field(p, i) = value;
  }
  return p;
}
