// The frei0r entry points. Each instance owns its settings; the module keeps no other state, so
// any number of instances may render on any threads at once.
#include <cstdio>
#include <cstring>
#include <exception>
#include <mutex>
#include <string>
#include <type_traits>

#include "frei0r/FrameRenderer.h"
#include "frei0r/FreiApi.h"
#include "frei0r/FreiControls.h"
#include "frei0r/FreiSettings.h"
#include "frei0r/ModuleDescription.h"

namespace morvane::frei0r {
namespace {

// MLT's sliced rendering sets parameters and renders through one instance on several threads at
// once (frei0r promises one thread per instance, MLT does not keep it), so the settings are
// guarded; the rendering itself runs outside the lock on the caller's own images.
class Instance {
 public:
  Instance(unsigned width, unsigned height) : renderer_(width, height) {}

  template <typename Change>
  auto Update(Change change) {
    const std::lock_guard lock(mutex_);
    return change(settings_);
  }
  FreiSettings Settings() const {
    const std::lock_guard lock(mutex_);
    return settings_;
  }
  const FrameRenderer& Renderer() const { return renderer_; }

 private:
  mutable std::mutex mutex_;
  FreiSettings settings_;
  const FrameRenderer renderer_;
};

bool ValidIndex(int index) {
  return index >= 0 && static_cast<std::size_t>(index) < FreiControls().size();
}

const FreiControl& At(int index) {
  return FreiControls()[static_cast<std::size_t>(index)];
}

int FreiType(ControlKind kind) {
  switch (kind) {
    case ControlKind::Popup:
      return F0R_PARAM_STRING;
    case ControlKind::Checkbox:
      return F0R_PARAM_BOOL;
    default:
      return F0R_PARAM_DOUBLE;
  }
}

void Render(f0r_instance_t handle, const uint32_t* input, const uint32_t* layer, uint32_t* output) {
  if (handle == nullptr || input == nullptr || output == nullptr) return;
  const auto& instance = *static_cast<const Instance*>(handle);
  const FrameRenderer& renderer = instance.Renderer();
  const auto* in = reinterpret_cast<const uint8_t*>(input);
  auto* out = reinterpret_cast<uint8_t*>(output);
  try {
    renderer.Render(instance.Settings().Record(), in, reinterpret_cast<const uint8_t*>(layer), out);
  } catch (...) {
    // A frame that cannot be rendered is handed through unchanged rather than left unwritten.
    std::memmove(out, in, std::size_t{renderer.Width()} * renderer.Height() * 4);
    throw;
  }
}

// Runs the work of an entry point. The hosts are C programs: an exception that crossed into one
// would end the user's editor, so whatever is thrown is told on stderr and the host gets the
// entry point's "nothing" (0, a null instance, or no change).
template <typename Work>
auto Guarded(const char* entry, Work work) noexcept -> decltype(work()) {
  try {
    return work();
  } catch (const std::exception& error) {
    std::fprintf(stderr, "morvane: %s: %s\n", entry, error.what());
  } catch (...) {
    std::fprintf(stderr, "morvane: %s: an unknown error\n", entry);
  }
  if constexpr (!std::is_void_v<decltype(work())>) return {};
}

void ReportUnknownItem(const FreiControl& control, const char* text, const char* kept) {
  std::string valid;
  for (const std::string& item : control.items)
    valid += (valid.empty() ? "" : ", ") + item;
  std::fprintf(stderr, "morvane: \"%s\" is not an item of %s (%s); keeping %s\n", text,
               control.control->name, valid.c_str(), kept);
}

}  // namespace
}  // namespace morvane::frei0r

using morvane::frei0r::FreiSettings;
using morvane::frei0r::Guarded;
using morvane::frei0r::Instance;

extern "C" {

int f0r_init(void) {
  return Guarded("f0r_init", [] { return 1; });
}

void f0r_deinit(void) {
  Guarded("f0r_deinit", [] {});
}

void f0r_get_plugin_info(f0r_plugin_info_t* info) {
  Guarded("f0r_get_plugin_info", [&] {
    const auto& module = morvane::frei0r::ThisModule();
    info->name = module.name;
    info->author = "Orbrenn";
    info->plugin_type = module.pluginType;
    info->color_model = F0R_COLOR_MODEL_RGBA8888;
    info->frei0r_version = FREI0R_MAJOR_VERSION;
    info->major_version = MORVANE_VERSION_MAJOR;
    info->minor_version = MORVANE_VERSION_MINOR;
    info->num_params = static_cast<int>(morvane::frei0r::FreiControls().size());
    info->explanation = module.explanation;
  });
}

void f0r_get_param_info(f0r_param_info_t* info, int index) {
  Guarded("f0r_get_param_info", [&] {
    if (!morvane::frei0r::ValidIndex(index)) return;
    const auto& control = morvane::frei0r::At(index);
    info->name = control.control->name;
    info->type = morvane::frei0r::FreiType(control.control->kind);
    info->explanation = control.explanation.c_str();
  });
}

f0r_instance_t f0r_construct(unsigned int width, unsigned int height) {
  return Guarded("f0r_construct", [&]() -> f0r_instance_t {
    if (width == 0 || height == 0) return nullptr;
    return new Instance(width, height);
  });
}

void f0r_destruct(f0r_instance_t instance) {
  Guarded("f0r_destruct", [&] { delete static_cast<Instance*>(instance); });
}

void f0r_set_param_value(f0r_instance_t handle, f0r_param_t param, int index) {
  Guarded("f0r_set_param_value", [&] {
    if (handle == nullptr || param == nullptr || !morvane::frei0r::ValidIndex(index)) return;
    auto& instance = *static_cast<Instance*>(handle);
    const auto& control = morvane::frei0r::At(index);
    if (control.items.empty()) {
      const double value = *static_cast<const double*>(param);
      instance.Update([&](FreiSettings& settings) { settings.SetNumber(index, value); });
      return;
    }
    const char* text = *static_cast<const f0r_param_string*>(param);
    if (text == nullptr) return;
    if (!instance.Update([&](FreiSettings& settings) { return settings.SetItem(index, text); }))
      morvane::frei0r::ReportUnknownItem(control, text, instance.Settings().Item(index));
  });
}

void f0r_get_param_value(f0r_instance_t handle, f0r_param_t param, int index) {
  Guarded("f0r_get_param_value", [&] {
    if (handle == nullptr || param == nullptr || !morvane::frei0r::ValidIndex(index)) return;
    const FreiSettings settings = static_cast<const Instance*>(handle)->Settings();
    if (const char* item = settings.Item(index)) {
      // The string is the module's own; hosts copy it and never free it.
      *static_cast<f0r_param_string*>(param) = const_cast<char*>(item);
    } else {
      *static_cast<double*>(param) = settings.Number(index);
    }
  });
}

void f0r_update(f0r_instance_t instance, double /*time*/, const uint32_t* inframe,
                uint32_t* outframe) {
  Guarded("f0r_update", [&] { morvane::frei0r::Render(instance, inframe, nullptr, outframe); });
}

// The second input, when given, is the "Intensity Source".
void f0r_update2(f0r_instance_t instance, double /*time*/, const uint32_t* inframe1,
                 const uint32_t* inframe2, const uint32_t* /*inframe3*/, uint32_t* outframe) {
  Guarded("f0r_update2", [&] { morvane::frei0r::Render(instance, inframe1, inframe2, outframe); });
}

}  // extern "C"
