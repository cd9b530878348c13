// Puts the report browser into the main frame: the contents tree into the
// Report pane, the report view into the centre, and the frame's report hooks
// (reload after an engine run, status after a netlist change, clearing when
// the project closes) pointed at them. Only the report hooks are replaced;
// the tasks pane's hooks are kept.
#pragma once

class LUM_DETACHED_FRAME;
class LUM_REPORT_BROWSER;

// Returns the browser (owned by the frame), or null without a frame.
LUM_REPORT_BROWSER* lum_install_report_browser(LUM_DETACHED_FRAME* frame);
