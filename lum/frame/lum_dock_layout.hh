// The rules of the frame's docking bars with push-pins, apart from the widgets.
//
// A bar (Tasks, Report, Console) is pinned (docked in the frame's layout, the
// toolkit keeps its place and size) or unpinned: then it shows only as a tab on
// the window edge it was docked at, and slides out over the other panes when the
// tab is hovered or clicked. Which edge, how wide the slid-out panel is, and
// whether each bar is pinned are kept between runs as one line of text.
#pragma once

#include <map>
#include <string>

enum class LUM_DOCK_EDGE { LEFT, RIGHT, TOP, BOTTOM };

const char* lum_dock_edge_name(LUM_DOCK_EDGE edge);
// True for LEFT and RIGHT: the panel's size is its width and its tab stands upright.
bool lum_dock_edge_is_vertical(LUM_DOCK_EDGE edge);

struct LUM_DOCK_PIN_STATE {
  bool pinned = true;
  LUM_DOCK_EDGE edge = LUM_DOCK_EDGE::LEFT;
  int slide_size = 0;  // width (left/right) or height (top/bottom) of the slid-out panel

  bool operator==(const LUM_DOCK_PIN_STATE&) const = default;
};

// Bar name -> state. Written as "Tasks=unpinned,left,340;Console=pinned".
using LUM_DOCK_PIN_STATES = std::map<std::string, LUM_DOCK_PIN_STATE>;
std::string lum_dock_pin_states_to_text(const LUM_DOCK_PIN_STATES& states);
// Reads what lum_dock_pin_states_to_text wrote. Entries that do not read (an
// unknown edge, a size that is not a positive number, no name) are left out;
// the bars they name stay pinned.
LUM_DOCK_PIN_STATES lum_dock_pin_states_from_text(const std::string& text);

// The slide-out of one unpinned bar. PEEK: out because the pointer rests on its
// tab, the focus is elsewhere, it goes back when the pointer leaves. OPEN: out
// with the keyboard focus inside (the tab was clicked or the user clicked into
// the panel); it goes back when the focus moves to another part of the frame.
enum class LUM_SLIDE { HIDDEN, PEEK, OPEN };
enum class LUM_SLIDE_EVENT {
  TAB_HOVERED,    // the pointer rested on the tab
  TAB_CLICKED,    // the tab was clicked
  FOCUS_INSIDE,   // a widget of the panel got the focus
  FOCUS_OUTSIDE,  // a widget of the frame outside the panel and its tab got the focus
  POINTER_LEFT,   // the pointer left the panel and its tab (and stayed away a moment)
  OTHER_OPENED,   // another bar slid out
};
LUM_SLIDE lum_next_slide(LUM_SLIDE now, LUM_SLIDE_EVENT event);

// Rectangles as x, y, width, height.
struct LUM_RECT {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
  bool operator==(const LUM_RECT&) const = default;
};

// The slide size kept inside sensible bounds for the area the panels slide
// over: at least 120 pixels, at most four fifths of that area's extent in the
// panel's direction; 0 (never set) becomes a third of it.
int lum_clamp_slide_size(LUM_DOCK_EDGE edge, int size, const LUM_RECT& area);
// Where the slid-out panel of an edge lies over the area (the frame's docking
// region, tab strips excluded). With fraction below 1 the panel is that part of
// the way out (the slide animation); it always touches its edge.
LUM_RECT lum_slide_rect(LUM_DOCK_EDGE edge, int size, const LUM_RECT& area, double fraction = 1.0);
