// The commands the effect answers and the handler of each.
#pragma once

#include "sdk/HostInterface.h"

namespace morvane {

// Everything the host passes with one command.
struct CommandArgs {
  PF_Cmd cmd;
  PF_InData* in_data;
  PF_OutData* out_data;
  PF_ParamDef** params;
  PF_LayerDef* output;
  void* extra;  // PF_EventExtra*, PF_PreRenderExtra* or PF_SmartRenderExtra*, by command
};

// A handler returns the command's result or raises an integer exception
// carrying one.
using CommandHandler = PF_Err (*)(const CommandArgs& args);

// The handler for `cmd`, or null when the effect does nothing for it.
CommandHandler FindCommandHandler(PF_Cmd cmd);

}  // namespace morvane
