#include "TclCommand.hh"

#include "Engine.hh"

#include <exception>
#include <string>

namespace vexa {

namespace {

struct CommandBinding
{
  Engine *engine;
  CommandFunction function;
};

int trampoline(ClientData data, Tcl_Interp *interp, int objc, Tcl_Obj *const objv[])
{
  auto *binding = static_cast<CommandBinding *>(data);
  try {
    return binding->function(*binding->engine, interp, objc, objv);
  } catch (const std::exception &e) {
    return binding->engine->tcl_error(e.what());
  } catch (...) {
    binding->engine->internal_error(std::string("unknown exception in command ")
                                    + Tcl_GetString(objv[0]));
    return binding->engine->tcl_error("internal error");
  }
}

void delete_binding(ClientData data)
{
  delete static_cast<CommandBinding *>(data);
}

} // namespace

void add_command(Engine &engine, const char *name, CommandFunction function,
                 const char *help_args)
{
  Tcl_CreateObjCommand(engine.interp(), name, trampoline,
                       new CommandBinding{&engine, function}, delete_binding);
  // OpenSTA's "help" lists the entries of this array.
  if (help_args)
    Tcl_SetVar2(engine.interp(), "::sta::cmd_args", name, help_args, TCL_GLOBAL_ONLY);
}

} // namespace vexa
