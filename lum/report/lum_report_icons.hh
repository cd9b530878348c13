// The pictures of the report contents tree: one icon per kind of report
// object (drawn, so the library needs no image files), the placeholder icon,
// and the out-of-date marker that is laid over the icon of a stale row.
#pragma once

#include <QIcon>

class RDB_OBJECT;

enum LUM_TOC_ICON {
  LUM_TOC_ICON_DEFAULT,
  LUM_TOC_ICON_PLACEHOLDER,
  LUM_TOC_ICON_FOLDER,
  LUM_TOC_ICON_TEXT,
  LUM_TOC_ICON_HTML,
  LUM_TOC_ICON_TABLE,             // kind 4
  LUM_TOC_ICON_HEADERLESS_TABLE,  // kind 7
  LUM_TOC_ICON_DETAIL_TABLE,      // kinds 8 and 12
  LUM_TOC_ICON_BAR_CHART,         // kind 5, chart type 1
  LUM_TOC_ICON_PIE_CHART,         // kind 5, chart type 2
  LUM_TOC_ICON_EMBEDDED_TEXT,     // kind 6, embedded type 5
  LUM_TOC_ICON_EMBEDDED_OBJECT,   // kind 6, embedded type 9
  LUM_TOC_ICON_HISTOGRAM,         // kind 13
  LUM_TOC_ICON_PATH,              // kind 15
  LUM_TOC_ICON_COUNT
};

// The icon of an object by its kind (and, for charts and embedded objects,
// their sub-type). Reports an internal error when an object of a kind cannot
// be viewed as its class, and gives the default icon then.
LUM_TOC_ICON lum_toc_icon_of(const RDB_OBJECT* object);

// The icon itself, with the out-of-date marker when asked.
QIcon lum_toc_icon(LUM_TOC_ICON icon, bool out_of_date);
