#include "params/ParamsSetup.h"

#include <cstring>

#include "params/ControlTable.h"
#include "params/HostGates.h"
#include "params/ParamPositionTable.h"

namespace morvane {
namespace {

constexpr A_short kHeaderWidth = 320;
constexpr A_short kHeaderHeight = 17;
// Every event class: the banner draws itself and answers clicks everywhere.
constexpr PF_CustomEventFlags kAllEvents = 0xFF;

constexpr A_short kCurveGraphSize = 50;

// Only this exact interface version shows the banner as a named control; every
// other host draws it in the title row.
bool IsAboutHost(const PF_InData* in_data) {
  return in_data->version.major == 13 && in_data->version.minor == 23;
}

void CopyName(PF_InData* in_data, PF_ParamDef& def, const char* name) {
  in_data->utils->ansi.strcpy(def.name, name);
}

// The host's answer to one declaration: whether the control took a place in its list (a gated
// control that is not declared, or that the host refuses, takes none), and the error of an
// ordinary control the host refused, which ends the set-up.
struct Declared {
  bool placed;
  PF_Err err;
};

Declared Declare(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                 const Control& control) {
  const bool recent = IsRecentHost(in_data);
  const bool premiere = IsPremiereHost(in_data);
  switch (control.kind) {
    case ControlKind::Header:
      return {recent && !premiere && AddHeaderControl(in_data, out_data, params, control),
              PF_Err_NONE};
    case ControlKind::CurveGraph:
      return {(recent || premiere) &&
                  AddCurveGraphControl(in_data, out_data, params, control.id, control.name,
                                       kCurveGraphSize, kCurveGraphSize, control.flags),
              PF_Err_NONE};
    default:
      break;
  }
  PF_ParamDef def;
  FillDefinition(control, def);
  CopyName(in_data, def, control.name);
  const PF_Err err = in_data->inter.add_param(in_data->effect_ref, -1, &def);
  return {err == PF_Err_NONE, err};
}

}  // namespace

bool AddHeaderControl(PF_InData* in_data, PF_OutData* /*out_data*/, PF_ParamDef* /*params*/[],
                      const Control& header) {
  PF_ParamDef def;
  std::memset(&def, 0, sizeof def);
  def.param_type = PF_Param_NO_DATA;
  def.uu.id = ToInt(header.id);
  def.ui_width = kHeaderWidth;
  def.ui_height = kHeaderHeight;
  def.flags = PF_ParamFlag_SUPERVISE | PF_ParamFlag_CANNOT_TIME_VARY;
  if (IsAboutHost(in_data)) {
    CopyName(in_data, def, header.name);
    def.ui_flags = PF_PUI_CONTROL;
  } else {
    CopyName(in_data, def, "");
    def.ui_flags = PF_PUI_TOPIC;
  }
  if (in_data->inter.add_param(in_data->effect_ref, -1, &def) != PF_Err_NONE) return false;

  PF_CustomUIInfo ui;
  std::memset(&ui, 0, sizeof ui);
  ui.events = kAllEvents;
  in_data->inter.register_ui(in_data->effect_ref, &ui);
  return true;
}

bool AddCurveGraphControl(PF_InData* in_data, PF_OutData* /*out_data*/, PF_ParamDef* /*params*/[],
                          ParamId id, const char* name, A_short width, A_short height,
                          PF_ParamFlags flags) {
  PF_ParamDef def;
  std::memset(&def, 0, sizeof def);
  def.uu.id = ToInt(id);
  CopyName(in_data, def, name);
  def.ui_flags = PF_PUI_CONTROL;
  def.ui_width = width;
  def.ui_height = height;
  def.flags = flags;
  if (IsPremiereHost(in_data)) {
    // The default and value handles and the reference stay null.
    def.param_type = PF_Param_ARBITRARY_DATA;
    def.u.arb_d.id = static_cast<A_short>(ToInt(id));
  } else {
    def.param_type = PF_Param_NO_DATA;
  }
  if (in_data->inter.add_param(in_data->effect_ref, -1, &def) != PF_Err_NONE) return false;

  PF_CustomUIInfo ui;
  std::memset(&ui, 0, sizeof ui);
  ui.events = PF_CustomEFlag_EFFECT | PF_CustomEFlag_PREVIEW;
  ui.comp_ui_width = width;
  ui.comp_ui_height = height;
  ui.comp_ui_alignment = PF_UIAlignment_TOP;
  ui.layer_ui_width = width;
  ui.layer_ui_height = height;
  ui.layer_ui_alignment = PF_UIAlignment_TOP;
  ui.preview_ui_width = width;
  ui.preview_ui_height = height;
  ui.preview_ui_alignment = PF_UIAlignment_NONE;
  in_data->inter.register_ui(in_data->effect_ref, &ui);
  return true;
}

PF_Err ParamsSetup(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[]) {
  ModuleParamPositionTable().Clear();
  // Position 0 is the host's input layer.
  A_long count = 1;
  for (const Control& control : Controls()) {
    const Declared declared = Declare(in_data, out_data, params, control);
    if (declared.err != PF_Err_NONE) return declared.err;
    if (!declared.placed) continue;
    RegisterParamPosition(control.id);
    ++count;
  }
  out_data->num_params = count;
  VerifyParamCount(out_data->num_params);
  return PF_Err_NONE;
}

}  // namespace morvane
