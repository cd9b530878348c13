#include "lum_frame_iface.hh"

namespace {
// Set and read on the GUI thread only.
LUM_FRAME_IFACE* g_frame = nullptr;
}  // namespace

LUM_FRAME_IFACE* lum_get_frame() { return g_frame; }

void lum_set_frame(LUM_FRAME_IFACE* frame) { g_frame = frame; }
