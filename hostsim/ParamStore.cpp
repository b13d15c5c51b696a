#include "hostsim/ParamStore.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <set>
#include <sstream>
#include <stdexcept>

#include "sdk/FixedDegrees.h"

namespace hostsim {
namespace {

std::vector<std::string> PopupItems(const PF_PopupDef& popup) {
  std::vector<std::string> items;
  if (popup.u.namesptr == nullptr) return items;
  std::string item;
  std::istringstream in(popup.u.namesptr);
  while (std::getline(in, item, '|'))
    items.push_back(item);
  return items;
}

std::string Label(const PF_ParamDef& def, size_t position) {
  return "parameter " + std::to_string(position) + " (\"" + def.name + "\")";
}

bool HasValue(PF_ParamType type) {
  return type == PF_Param_POPUP || type == PF_Param_FLOAT_SLIDER || type == PF_Param_ANGLE ||
         type == PF_Param_CHECKBOX;
}

bool Interpolates(PF_ParamType type) {
  return type == PF_Param_FLOAT_SLIDER || type == PF_Param_ANGLE;
}

double DefaultOf(const PF_ParamDef& def) {
  switch (def.param_type) {
    case PF_Param_POPUP:
      return def.u.pd.dephault;
    case PF_Param_FLOAT_SLIDER:
      return def.u.fs_d.dephault;
    case PF_Param_ANGLE:
      return morvane::DegreesFromFixed(def.u.ad.dephault);
    case PF_Param_CHECKBOX:
      return def.u.bd.dephault;
    default:
      return 0.0;
  }
}

}  // namespace

std::vector<std::string> ValidateParamList(const std::vector<PF_ParamDef>& params) {
  std::vector<std::string> problems;
  std::set<A_long> ids;
  for (size_t i = 1; i < params.size(); ++i) {
    const PF_ParamDef& def = params[i];
    const std::string label = Label(def, i);
    if (std::memchr(def.name, '\0', sizeof def.name) == nullptr) {
      problems.push_back(label + ": name not terminated");
    }
    if (def.uu.id <= 0) problems.push_back(label + ": no disk ID");
    if (!ids.insert(def.uu.id).second) {
      problems.push_back(label + ": disk ID " + std::to_string(def.uu.id) + " used twice");
    }
    switch (def.param_type) {
      case PF_Param_POPUP: {
        const PF_PopupDef& p = def.u.pd;
        const auto items = static_cast<A_long>(PopupItems(p).size());
        if (p.num_choices < 1 || p.num_choices != items) {
          problems.push_back(label + ": " + std::to_string(p.num_choices) + " choices but " +
                             std::to_string(items) + " items");
        }
        if (p.dephault < 1 || p.dephault > p.num_choices) {
          problems.push_back(label + ": default item out of range");
        }
        break;
      }
      case PF_Param_FLOAT_SLIDER: {
        const PF_FloatSliderDef& s = def.u.fs_d;
        if (!(s.valid_min <= s.slider_min && s.slider_min <= s.slider_max &&
              s.slider_max <= s.valid_max)) {
          problems.push_back(label + ": slider range outside the valid range");
        }
        if (s.dephault < s.valid_min || s.dephault > s.valid_max) {
          problems.push_back(label + ": default outside the valid range");
        }
        if (s.precision < 0 || s.precision > 6) problems.push_back(label + ": bad precision");
        break;
      }
      case PF_Param_CHECKBOX:
        if (def.u.bd.dephault != 0 && def.u.bd.dephault != 1) {
          problems.push_back(label + ": checkbox default not 0 or 1");
        }
        break;
      case PF_Param_ANGLE:
      case PF_Param_NO_DATA:
      case PF_Param_ARBITRARY_DATA:
        break;
      case PF_Param_LAYER:
        if (def.u.ld.dephault != PF_LayerDefault_NONE &&
            def.u.ld.dephault != PF_LayerDefault_MYSELF) {
          problems.push_back(label + ": unknown layer default");
        }
        break;
      default:
        problems.push_back(label + ": unsupported type " + std::to_string(def.param_type));
    }
  }
  return problems;
}

ParamTrack::ParamTrack(std::vector<Keyframe> keys) : keys_(std::move(keys)) {
  if (keys_.empty()) throw std::invalid_argument("hostsim: a track needs at least one key");
  std::stable_sort(keys_.begin(), keys_.end(),
                   [](const Keyframe& a, const Keyframe& b) { return a.frame < b.frame; });
}

double ParamTrack::At(double frame, bool interpolate) const {
  if (frame <= keys_.front().frame) return keys_.front().value;
  if (frame >= keys_.back().frame) return keys_.back().value;
  const auto next = std::upper_bound(keys_.begin(), keys_.end(), frame,
                                     [](double f, const Keyframe& k) { return f < k.frame; });
  const Keyframe& after = *next;
  const Keyframe& before = *(next - 1);
  if (!interpolate) return before.value;
  const double t = (frame - before.frame) / (after.frame - before.frame);
  return before.value + (after.value - before.value) * t;
}

void InstanceParams::Reset(const std::vector<PF_ParamDef>& declared) {
  declared_ = declared;
  controls_.assign(declared.size(), Control{});
  for (size_t i = 0; i < declared.size(); ++i) {
    controls_[i].track = ParamTrack(DefaultOf(declared[i]));
    controls_[i].uiFlags = declared[i].ui_flags;
  }
}

void InstanceParams::CheckIndex(PF_ParamIndex index) const {
  if (index < 0 || static_cast<size_t>(index) >= declared_.size()) {
    throw std::out_of_range("hostsim: no parameter at position " + std::to_string(index));
  }
}

PF_ParamIndex InstanceParams::FindById(int32_t diskId) const {
  for (size_t i = 1; i < declared_.size(); ++i) {
    if (declared_[i].uu.id == diskId) return static_cast<PF_ParamIndex>(i);
  }
  throw std::out_of_range("hostsim: no control with disk ID " + std::to_string(diskId));
}

PF_ParamIndex InstanceParams::FindByName(const std::string& name) const {
  for (size_t i = 1; i < declared_.size(); ++i) {
    if (name == declared_[i].name) return static_cast<PF_ParamIndex>(i);
  }
  throw std::out_of_range("hostsim: no control named \"" + name + "\"");
}

double InstanceParams::PopupItem(PF_ParamIndex index, const std::string& item) const {
  CheckIndex(index);
  const PF_ParamDef& def = declared_[static_cast<size_t>(index)];
  if (def.param_type != PF_Param_POPUP) {
    throw std::invalid_argument(std::string("hostsim: \"") + def.name + "\" is not a popup");
  }
  const std::vector<std::string> items = PopupItems(def.u.pd);
  const auto found = std::find(items.begin(), items.end(), item);
  if (found == items.end()) {
    throw std::out_of_range("hostsim: \"" + std::string(def.name) + "\" has no item \"" + item +
                            "\"");
  }
  return static_cast<double>(found - items.begin() + 1);
}

void InstanceParams::Set(PF_ParamIndex index, ParamTrack track) {
  CheckIndex(index);
  const PF_ParamDef& def = declared_[static_cast<size_t>(index)];
  if (!HasValue(def.param_type)) {
    throw std::invalid_argument(std::string("hostsim: \"") + def.name + "\" takes no value");
  }
  for (const Keyframe& key : track.Keys()) {
    bool accepted = true;
    switch (def.param_type) {
      case PF_Param_POPUP:
        accepted = key.value == std::floor(key.value) && key.value >= 1 &&
                   key.value <= def.u.pd.num_choices;
        break;
      case PF_Param_FLOAT_SLIDER:
        accepted = key.value >= def.u.fs_d.valid_min && key.value <= def.u.fs_d.valid_max;
        break;
      case PF_Param_CHECKBOX:
        accepted = key.value == 0.0 || key.value == 1.0;
        break;
      default:
        break;
    }
    if (!accepted) {
      throw std::invalid_argument("hostsim: \"" + std::string(def.name) + "\" does not accept " +
                                  std::to_string(key.value));
    }
  }
  controls_[static_cast<size_t>(index)].track = std::move(track);
}

void InstanceParams::SetLayer(PF_ParamIndex index, const PF_EffectWorld* world) {
  CheckIndex(index);
  if (declared_[static_cast<size_t>(index)].param_type != PF_Param_LAYER) {
    throw std::invalid_argument("hostsim: parameter " + std::to_string(index) + " is not a layer");
  }
  controls_[static_cast<size_t>(index)].layer = world;
}

const PF_EffectWorld* InstanceParams::Layer(PF_ParamIndex index) const {
  CheckIndex(index);
  return controls_[static_cast<size_t>(index)].layer;
}

PF_ParamUIFlags InstanceParams::UIFlags(PF_ParamIndex index) const {
  CheckIndex(index);
  return controls_[static_cast<size_t>(index)].uiFlags;
}

void InstanceParams::SetUIFlags(PF_ParamIndex index, PF_ParamUIFlags flags) {
  CheckIndex(index);
  controls_[static_cast<size_t>(index)].uiFlags = flags;
}

const PF_ParamDef& InstanceParams::Declared(PF_ParamIndex index) const {
  CheckIndex(index);
  return declared_[static_cast<size_t>(index)];
}

PF_ParamDef InstanceParams::DefinitionAt(PF_ParamIndex index, double frame) const {
  CheckIndex(index);
  PF_ParamDef def = declared_[static_cast<size_t>(index)];
  const Control& control = controls_[static_cast<size_t>(index)];
  def.ui_flags = control.uiFlags;
  const double value = control.track.At(frame, Interpolates(def.param_type));
  switch (def.param_type) {
    case PF_Param_POPUP:
      def.u.pd.value = static_cast<A_long>(value);
      break;
    case PF_Param_FLOAT_SLIDER:
      def.u.fs_d.value = value;
      break;
    case PF_Param_ANGLE:
      def.u.ad.value = morvane::SaturatedFixedFromDegrees(value);
      break;
    case PF_Param_CHECKBOX:
      def.u.bd.value = static_cast<A_long>(value);
      break;
    case PF_Param_LAYER: {
      // A layer set to none is handed out without pixels.
      const A_long dephault = def.u.ld.dephault;
      std::memset(&def.u.ld, 0, sizeof def.u.ld);
      if (control.layer != nullptr) def.u.ld = *control.layer;
      def.u.ld.dephault = dephault;
      break;
    }
    default:
      break;
  }
  return def;
}

}  // namespace hostsim
