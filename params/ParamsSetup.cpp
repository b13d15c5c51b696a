#include "params/ParamsSetup.h"

#include <cstring>

#include "params/ControlDeclarations.h"
#include "params/HostGates.h"
#include "params/ParamPositionTable.h"

namespace morvane {
namespace {

// The input layer plus the 23 controls the effect can declare.
constexpr A_long kFullParamCount = 24;

constexpr A_short kHeaderWidth = 320;
constexpr A_short kHeaderHeight = 17;
// Every event class: the banner draws itself and answers clicks everywhere.
constexpr PF_CustomEventFlags kAllEvents = 0xFF;

constexpr const char kCurveGraphName[] = "Curve Graph";
constexpr A_short kCurveGraphSize = 50;

// Only this exact interface version shows the banner as a named control; every
// other host draws it in the title row.
bool IsAboutHost(const PF_InData* in_data) {
  return in_data->version.major == 13 && in_data->version.minor == 23;
}

void CopyName(PF_InData* in_data, PF_ParamDef& def, const char* name) {
  in_data->utils->ansi.strcpy(def.name, name);
}

// Declares the ordinary controls in order; stops at the first refusal.
PF_Err DeclareControls(PF_InData* in_data, std::span<const ControlDeclaration> controls) {
  for (const ControlDeclaration& control : controls) {
    PF_ParamDef def;
    FillDefinition(control, def);
    CopyName(in_data, def, control.name);
    const PF_Err err = in_data->inter.add_param(in_data->effect_ref, -1, &def);
    if (err != PF_Err_NONE) return err;
    RegisterParamPosition(control.id);
  }
  return PF_Err_NONE;
}

}  // namespace

bool AddHeaderControl(PF_InData* in_data, PF_OutData* /*out_data*/, PF_ParamDef* /*params*/[],
                      ParamId id) {
  PF_ParamDef def;
  std::memset(&def, 0, sizeof def);
  def.param_type = PF_Param_NO_DATA;
  def.uu.id = ToInt(id);
  def.ui_width = kHeaderWidth;
  def.ui_height = kHeaderHeight;
  def.flags = PF_ParamFlag_SUPERVISE | PF_ParamFlag_CANNOT_TIME_VARY;
  if (IsAboutHost(in_data)) {
    CopyName(in_data, def, "About");
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
  const bool recent = IsRecentHost(in_data);
  const bool premiere = IsPremiereHost(in_data);
  // A gated control that is not declared, or that the host refuses, takes no
  // position, so the table always matches the host's list.
  A_long skipped = 0;
  ModuleParamPositionTable().Clear();

  if (recent && !premiere && AddHeaderControl(in_data, out_data, params, ParamId::Header)) {
    RegisterParamPosition(ParamId::Header);
  } else {
    ++skipped;
  }

  if (const PF_Err err = DeclareControls(in_data, ControlsBeforeCurveGraph()); err != PF_Err_NONE) {
    return err;
  }

  if ((recent || premiere) &&
      AddCurveGraphControl(in_data, out_data, params, ParamId::CurveGraph, kCurveGraphName,
                           kCurveGraphSize, kCurveGraphSize, PF_ParamFlag_CANNOT_TIME_VARY)) {
    RegisterParamPosition(ParamId::CurveGraph);
  } else {
    ++skipped;
  }

  if (const PF_Err err = DeclareControls(in_data, ControlsAfterCurveGraph()); err != PF_Err_NONE) {
    return err;
  }

  out_data->num_params = kFullParamCount - skipped;
  VerifyParamCount(out_data->num_params);
  return PF_Err_NONE;
}

}  // namespace morvane
