// The analyzer's own icons, drawn with QPainter at start-up so that they are
// sharp at every size and need no image files. Each function returns the same
// cached icon on every call (GUI thread only).
#pragma once

#include <QIcon>

#include "platform/msg.hh"

enum class LUM_ICON {
  APPLICATION,
  OPEN_PROJECT,
  CLOSE_PROJECT,
  RUN_SCRIPT,
  CREATE_NETLIST,
  UPDATE_NETLIST,
  DELETE_NETLIST,
  READ_SDC,
  WRITE_SDC,
  CLOCK,
  REPORT,
  REPORT_TIMING,
  FIND,
  EXIT,
  ABOUT,
  // Console rows.
  PROMPT,
  CONTINUATION_PROMPT,
  TEXT_LINE,
};

QIcon lum_icon(LUM_ICON which);
// The icon of a console message row of one kind.
QIcon lum_message_icon(MSG_KIND kind);
// The icon for a command identifier of the command table, or a null icon.
QIcon lum_command_icon(unsigned command_id);
