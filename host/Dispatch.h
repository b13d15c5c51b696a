// Runs one host command: finds its handler and turns whatever the handler
// raises into the host's error code.
#pragma once

#include "host/CommandTable.h"

namespace morvane {

// An integer exception is returned as the value it carries; any other exception
// becomes PF_Err_INTERNAL_STRUCT_DAMAGED. Nothing leaves this function.
PF_Err DispatchCommand(const CommandArgs& args) noexcept;

}  // namespace morvane
