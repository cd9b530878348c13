// Guards of the engine's interpreter.
//
// format: Tcl allocates the whole field of "format %999999999d 1" and aborts
// the process when that fails; widths and precisions above a limit are
// refused instead.
//
// Object handles: OpenSTA's Tcl commands take design objects as handles
// "_<address>_p_<Type>" and use the address as it stands, so a forged or
// stale handle such as "_0000000000000010_p_Pin" crashes the engine. Every
// command's words are scanned for handles before it runs; a handle of a
// design object type must name an object of the current design, any other
// handle must at least point at mapped memory.
#include "Engine.hh"
#include "TclCommand.hh"
#include "shell/HandleWords.hh"

#include "Machine.hh"
#include "Liberty.hh"
#include "Network.hh"
#include "PatternMatch.hh"
#include "Corner.hh"
#include "Sdc.hh"
#include "Clock.hh"
#include "Sta.hh"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <unordered_map>
#include <unordered_set>

namespace vexa {

namespace {

// --- format ----------------------------------------------------------------------

constexpr long long max_format_field = 1000000;

struct FormatGuard
{
  Engine *engine = nullptr;
  Tcl_ObjCmdProc *original = nullptr;
  ClientData original_data = nullptr;
};
FormatGuard format_guard;

int field_too_wide(Engine &engine, long long value)
{
  return engine.tcl_error("format: a field width or precision of " + std::to_string(value)
                          + " is above the limit of " + std::to_string(max_format_field));
}

int guarded_format(ClientData, Tcl_Interp *interp, int objc, Tcl_Obj *const objv[])
{
  Engine &engine = *format_guard.engine;
  if (objc >= 2) {
    int length = 0;
    const char *f = Tcl_GetStringFromObj(objv[1], &length);
    int next_arg = 2;
    for (int i = 0; i < length; ++i) {
      if (f[i] != '%')
        continue;
      if (++i < length && f[i] == '%')
        continue;
      int digits_start = i;
      while (i < length && f[i] >= '0' && f[i] <= '9')
        ++i;
      if (i < length && f[i] == '$')
        ++i;  // a position "%2$d": what follows are the flags
      else
        i = digits_start;
      while (i < length && std::strchr("-+ #0", f[i]))
        ++i;
      for (int part = 0; part < 2; ++part) {  // width, then precision
        if (part == 1) {
          if (i >= length || f[i] != '.')
            break;
          ++i;
        }
        if (i < length && f[i] == '*') {
          ++i;
          Tcl_WideInt value = 0;
          if (next_arg < objc
              && Tcl_GetWideIntFromObj(nullptr, objv[next_arg], &value) == TCL_OK
              && (value > max_format_field || value < -max_format_field))
            return field_too_wide(engine, value);
          ++next_arg;
          continue;
        }
        long long value = 0;
        while (i < length && f[i] >= '0' && f[i] <= '9') {
          if (value <= max_format_field)
            value = value * 10 + (f[i] - '0');
          ++i;
        }
        if (value > max_format_field)
          return field_too_wide(engine, value);
      }
      ++next_arg;
    }
  }
  return format_guard.original(format_guard.original_data, interp, objc, objv);
}

// --- object handles ----------------------------------------------------------------

class HandleGuard
{
public:
  explicit HandleGuard(Engine &engine) : m_engine(engine) {}

  // "" when the handle may be used, else why not.
  bool valid(const void *address, std::string_view type)
  {
    if (m_generation != m_engine.objects_generation()) {
      m_known.clear();
      m_generation = m_engine.objects_generation();
    }
    if (!enumerable(type))
      return mapped(address);
    // Clocks come and go with constraints: always listed afresh. Other
    // lists are kept until a handle is missing from them (objects made
    // since) or the design changes.
    auto it = m_known.find(std::string(type));
    if (type != "Clock" && it != m_known.end() && it->second.count(address))
      return true;
    std::unordered_set<const void *> &known = m_known[std::string(type)];
    known.clear();
    collect(type, known);
    return known.count(address) != 0;
  }

private:
  static bool enumerable(std::string_view type)
  {
    return type == "Pin" || type == "Net" || type == "Instance" || type == "Port"
           || type == "Clock" || type == "Corner" || type == "LibertyLibrary"
           || type == "LibertyCell" || type == "LibertyPort" || type == "Library";
  }

  static bool mapped(const void *address)
  {
    auto value = reinterpret_cast<std::uintptr_t>(address);
    if (value < 4096 || value % alignof(void *) != 0)
      return false;
    static const std::uintptr_t page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    return msync(reinterpret_cast<void *>(value & ~(page - 1)), page, MS_ASYNC) == 0;
  }

  static void add_port(sta::Network *network, const sta::Port *port,
                       std::unordered_set<const void *> &known)
  {
    known.insert(port);
    if (network->isBus(port) || network->isBundle(port)) {
      sta::PortMemberIterator *members = network->memberIterator(port);
      while (members->hasNext())
        add_port(network, members->next(), known);
      delete members;
    }
  }

  static void add_liberty_port(const sta::LibertyPort *port,
                               std::unordered_set<const void *> &known)
  {
    known.insert(port);
    if (port->isBus() || port->isBundle()) {
      sta::LibertyPortMemberIterator members(port);
      while (members.hasNext())
        add_liberty_port(members.next(), known);
    }
  }

  void collect(std::string_view type, std::unordered_set<const void *> &known)
  {
    sta::Sta *sta = m_engine.sta();
    sta::Network *network = sta ? sta->network() : nullptr;
    if (!network)
      return;
    if (type == "Clock") {
      if (sta->sdc())
        for (const sta::Clock *clock : sta->sdc()->clks())
          known.insert(clock);
      return;
    }
    if (type == "Corner") {
      for (const sta::Corner *corner : *sta->corners())
        known.insert(corner);
      return;
    }
    if (type == "Library") {
      sta::LibraryIterator *libraries = network->libraryIterator();
      while (libraries->hasNext())
        known.insert(libraries->next());
      delete libraries;
      return;
    }
    if (type == "LibertyLibrary" || type == "LibertyCell" || type == "LibertyPort") {
      sta::LibertyLibraryIterator *libraries = network->libertyLibraryIterator();
      while (libraries->hasNext()) {
        sta::LibertyLibrary *library = libraries->next();
        if (type == "LibertyLibrary") {
          known.insert(library);
          continue;
        }
        sta::LibertyCellIterator cells(library);
        while (cells.hasNext()) {
          sta::LibertyCell *cell = cells.next();
          if (type == "LibertyCell") {
            known.insert(cell);
            continue;
          }
          sta::LibertyCellPortIterator ports(cell);
          while (ports.hasNext())
            add_liberty_port(ports.next(), known);
        }
      }
      delete libraries;
      return;
    }
    sta::Instance *top = network->topInstance();
    if (!top)
      return;
    std::unordered_set<const sta::Cell *> cells;
    std::vector<const sta::Instance *> pending{top};
    while (!pending.empty()) {
      const sta::Instance *instance = pending.back();
      pending.pop_back();
      if (type == "Instance")
        known.insert(instance);
      if (type == "Port")
        cells.insert(network->cell(instance));
      if (type == "Pin") {
        sta::InstancePinIterator *pins = network->pinIterator(instance);
        while (pins->hasNext())
          known.insert(pins->next());
        delete pins;
      }
      if (type == "Net") {
        sta::InstanceNetIterator *nets = network->netIterator(instance);
        while (nets->hasNext())
          known.insert(nets->next());
        delete nets;
      }
      sta::InstanceChildIterator *children = network->childIterator(instance);
      while (children->hasNext())
        pending.push_back(children->next());
      delete children;
    }
    for (const sta::Cell *cell : cells) {
      sta::CellPortIterator *ports = network->portIterator(cell);
      while (ports->hasNext())
        add_port(network, ports->next(), known);
      delete ports;
    }
  }

  Engine &m_engine;
  unsigned m_generation = ~0u;
  std::unordered_map<std::string, std::unordered_set<const void *>> m_known;
};

HandleGuard *handle_guard = nullptr;

int check_handles(ClientData data, Tcl_Interp *interp, int, const char *, Tcl_Command, int objc,
                  Tcl_Obj *const objv[])
{
  auto *engine = static_cast<Engine *>(data);
  for (int i = 1; i < objc; ++i) {
    int length = 0;
    const char *text = Tcl_GetStringFromObj(objv[i], &length);
    for (const HandleWord &handle : handle_words(std::string_view(text, length))) {
      if (handle_guard->valid(handle.address, handle.type))
        continue;
      Tcl_SetObjResult(interp, Tcl_NewStringObj(
        ("\"" + std::string(handle.text) + "\" is not an object of the current design "
         "(a forged or out-of-date handle)").c_str(), -1));
      (void)engine;
      return TCL_ERROR;
    }
  }
  return TCL_OK;
}

} // namespace

void register_tcl_guards(Engine &engine)
{
  Tcl_Interp *interp = engine.interp();
  Tcl_CmdInfo info;
  if (Tcl_GetCommandInfo(interp, "::format", &info) && info.isNativeObjectProc) {
    format_guard = FormatGuard{&engine, info.objProc, info.objClientData};
    Tcl_CreateObjCommand(interp, "::format", guarded_format, nullptr, nullptr);
  }
  handle_guard = new HandleGuard(engine);
  Tcl_CreateObjTrace(interp, 0, TCL_ALLOW_INLINE_COMPILATION, check_handles, &engine, nullptr);
}

} // namespace vexa
