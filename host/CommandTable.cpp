#include "host/CommandTable.h"

#include "host/About.h"
#include "host/GlobalSetup.h"
#include "host/SequenceData.h"
#include "params/CustomUIEvent.h"
#include "params/ParamsSetup.h"
#include "params/UpdateParamsUI.h"
#include "render/LegacyRender.h"
#include "render/SmartRender.h"

namespace morvane {

namespace {

struct CommandEntry {
  PF_Cmd cmd;
  CommandHandler handler;  // null: answered with PF_Err_NONE
};

// A null handler marks a command whose handler has not been built yet; it is
// answered with PF_Err_NONE until then.
constexpr CommandEntry kCommands[] = {
    {PF_Cmd_ABOUT, [](const CommandArgs& a) { return ShowAbout(a.in_data, a.out_data); }},
    {PF_Cmd_GLOBAL_SETUP, [](const CommandArgs& a) { return GlobalSetup(a.in_data, a.out_data); }},
    {PF_Cmd_PARAMS_SETUP,
     [](const CommandArgs& a) { return ParamsSetup(a.in_data, a.out_data, a.params); }},
    {PF_Cmd_SEQUENCE_SETUP,
     [](const CommandArgs& a) { return SequenceSetup(a.in_data, a.out_data); }},
    {PF_Cmd_SEQUENCE_RESETUP,
     [](const CommandArgs& a) { return SequenceResetup(a.in_data, a.out_data); }},
    {PF_Cmd_SEQUENCE_FLATTEN,
     [](const CommandArgs& a) { return SequenceFlatten(a.in_data, a.out_data); }},
    {PF_Cmd_SEQUENCE_SETDOWN,
     [](const CommandArgs& a) { return SequenceSetdown(a.in_data, a.out_data); }},
    {PF_Cmd_RENDER,
     [](const CommandArgs& a) { return LegacyRender(a.in_data, a.out_data, a.params, a.output); }},
    // The extra record of a changed parameter is not needed: the whole UI state is derived.
    {PF_Cmd_USER_CHANGED_PARAM,
     [](const CommandArgs& a) { return UpdateParamsUI(a.in_data, a.out_data, a.params); }},
    {PF_Cmd_UPDATE_PARAMS_UI,
     [](const CommandArgs& a) { return UpdateParamsUI(a.in_data, a.out_data, a.params); }},
    {PF_Cmd_EVENT,
     [](const CommandArgs& a) {
       return HandleCustomUIEvent(a.in_data, a.out_data, a.params,
                                  static_cast<PF_EventExtra*>(a.extra), ShowAbout);
     }},
    {PF_Cmd_SMART_PRE_RENDER,
     [](const CommandArgs& a) {
       return SmartPreRender(a.in_data, a.out_data, static_cast<PF_PreRenderExtra*>(a.extra));
     }},
    {PF_Cmd_SMART_RENDER,
     [](const CommandArgs& a) {
       return SmartRender(a.in_data, a.out_data, a.params,
                          static_cast<PF_SmartRenderExtra*>(a.extra));
     }},
    {PF_Cmd_GET_FLATTENED_SEQUENCE_DATA,
     [](const CommandArgs& a) { return GetFlattenedSequenceData(a.in_data, a.out_data); }},
};

}  // namespace

CommandHandler FindCommandHandler(PF_Cmd cmd) {
  for (const CommandEntry& entry : kCommands) {
    if (entry.cmd == cmd) return entry.handler;
  }
  return nullptr;
}

}  // namespace morvane
