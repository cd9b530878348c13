#include "frame/lum_dock_layout.hh"

#include <algorithm>
#include <cstdlib>
#include <sstream>
#include <vector>

namespace {

std::vector<std::string> split(const std::string& text, char separator) {
  std::vector<std::string> parts;
  std::string part;
  std::istringstream in(text);
  while (std::getline(in, part, separator)) parts.push_back(part);
  return parts;
}

bool edge_from_name(const std::string& name, LUM_DOCK_EDGE* edge) {
  for (LUM_DOCK_EDGE e : {LUM_DOCK_EDGE::LEFT, LUM_DOCK_EDGE::RIGHT, LUM_DOCK_EDGE::TOP, LUM_DOCK_EDGE::BOTTOM}) {
    if (name == lum_dock_edge_name(e)) {
      *edge = e;
      return true;
    }
  }
  return false;
}

bool positive_int(const std::string& text, int* value) {
  if (text.empty() || text.size() > 6 || text.find_first_not_of("0123456789") != std::string::npos) return false;
  *value = std::atoi(text.c_str());
  return *value > 0;
}

}  // namespace

const char* lum_dock_edge_name(LUM_DOCK_EDGE edge) {
  switch (edge) {
    case LUM_DOCK_EDGE::LEFT: return "left";
    case LUM_DOCK_EDGE::RIGHT: return "right";
    case LUM_DOCK_EDGE::TOP: return "top";
    case LUM_DOCK_EDGE::BOTTOM: return "bottom";
  }
  return "left";
}

bool lum_dock_edge_is_vertical(LUM_DOCK_EDGE edge) { return edge == LUM_DOCK_EDGE::LEFT || edge == LUM_DOCK_EDGE::RIGHT; }

std::string lum_dock_pin_states_to_text(const LUM_DOCK_PIN_STATES& states) {
  std::string text;
  for (const auto& [name, state] : states) {
    if (!text.empty()) text += ';';
    text += name + '=';
    if (state.pinned) {
      text += "pinned";
    } else {
      text += std::string("unpinned,") + lum_dock_edge_name(state.edge) + ',' + std::to_string(state.slide_size);
    }
  }
  return text;
}

LUM_DOCK_PIN_STATES lum_dock_pin_states_from_text(const std::string& text) {
  LUM_DOCK_PIN_STATES states;
  for (const std::string& entry : split(text, ';')) {
    const size_t equals = entry.find('=');
    if (equals == std::string::npos || equals == 0) continue;
    const std::string name = entry.substr(0, equals);
    const std::vector<std::string> fields = split(entry.substr(equals + 1), ',');
    LUM_DOCK_PIN_STATE state;
    if (fields.size() == 1 && fields[0] == "pinned") {
      states[name] = state;
    } else if (fields.size() == 3 && fields[0] == "unpinned" && edge_from_name(fields[1], &state.edge) &&
               positive_int(fields[2], &state.slide_size)) {
      state.pinned = false;
      states[name] = state;
    }
  }
  return states;
}

LUM_SLIDE lum_next_slide(LUM_SLIDE now, LUM_SLIDE_EVENT event) {
  switch (event) {
    case LUM_SLIDE_EVENT::TAB_HOVERED:
      return now == LUM_SLIDE::HIDDEN ? LUM_SLIDE::PEEK : now;
    case LUM_SLIDE_EVENT::TAB_CLICKED:
      // A click on the tab of an open panel puts it away again.
      return now == LUM_SLIDE::OPEN ? LUM_SLIDE::HIDDEN : LUM_SLIDE::OPEN;
    case LUM_SLIDE_EVENT::FOCUS_INSIDE:
      return now == LUM_SLIDE::HIDDEN ? LUM_SLIDE::HIDDEN : LUM_SLIDE::OPEN;
    case LUM_SLIDE_EVENT::POINTER_LEFT:
      // An open panel holds the focus: the user works in it, the pointer may wander.
      return now == LUM_SLIDE::OPEN ? LUM_SLIDE::OPEN : LUM_SLIDE::HIDDEN;
    case LUM_SLIDE_EVENT::FOCUS_OUTSIDE:
    case LUM_SLIDE_EVENT::OTHER_OPENED:
      return LUM_SLIDE::HIDDEN;
  }
  return now;
}

int lum_clamp_slide_size(LUM_DOCK_EDGE edge, int size, const LUM_RECT& area) {
  const int extent = lum_dock_edge_is_vertical(edge) ? area.width : area.height;
  const int largest = std::max(1, extent * 4 / 5);
  if (size <= 0) size = extent / 3;
  return std::clamp(size, std::min(120, largest), largest);
}

LUM_RECT lum_slide_rect(LUM_DOCK_EDGE edge, int size, const LUM_RECT& area, double fraction) {
  const int shown = static_cast<int>(size * std::clamp(fraction, 0.0, 1.0) + 0.5);
  switch (edge) {
    case LUM_DOCK_EDGE::LEFT: return {area.x, area.y, shown, area.height};
    case LUM_DOCK_EDGE::RIGHT: return {area.x + area.width - shown, area.y, shown, area.height};
    case LUM_DOCK_EDGE::TOP: return {area.x, area.y, area.width, shown};
    case LUM_DOCK_EDGE::BOTTOM: return {area.x, area.y + area.height - shown, area.width, shown};
  }
  return area;
}
