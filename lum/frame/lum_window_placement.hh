// The main frame's placement on screen, kept between runs in the per-user
// settings under the key "WINDOWPLACEMENT" as six integers. A placement saved on
// a larger screen or while minimised must never bring the frame back off
// screen or as an icon, so loading sanitises it first.
#pragma once

#include <string>

struct LUM_WINDOW_PLACEMENT {
  // Show commands as stored.
  static constexpr int SHOW_NORMAL = 1;
  static constexpr int SHOW_MINIMIZED = 2;
  static constexpr int SHOW_MAXIMIZED = 3;
  static constexpr int SHOW_RESTORE = 9;

  int flags = 0;
  int show_cmd = SHOW_NORMAL;
  // The normal (restored) rectangle; right and bottom are exclusive edges.
  int left = 0;
  int top = 0;
  int right = 0;
  int bottom = 0;

  bool operator==(const LUM_WINDOW_PLACEMENT&) const = default;
};

// The settings key and the six value names, in the order they are written.
extern const char* const LUM_WINDOW_PLACEMENT_KEY;
extern const char* const LUM_WINDOW_PLACEMENT_NAMES[6];

// Makes a saved placement safe for a screen of the given size: a rectangle
// wholly left of the screen (right < 0) or starting beyond its width gets left
// 0; likewise top for the height. Right and bottom stay as saved, so the
// rectangle may change its size; that is deliberate. A minimised show command
// becomes maximised.
LUM_WINDOW_PLACEMENT lum_sanitise_window_placement(LUM_WINDOW_PLACEMENT placement, int screen_width,
                                                   int screen_height);

// Writes all six values.
void lum_save_window_placement(const LUM_WINDOW_PLACEMENT& placement);
// Starts from current and replaces each field whose stored value reads as an
// integer; unreadable or missing values leave the field as it was. Not sanitised.
LUM_WINDOW_PLACEMENT lum_read_window_placement(const LUM_WINDOW_PLACEMENT& current);
