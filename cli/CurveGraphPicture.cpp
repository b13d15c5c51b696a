#include "cli/CurveGraphPicture.h"

#include <exception>
#include <optional>

#include "cli/Errors.h"
#include "cli/ImageFile.h"
#include "cli/Pixels.h"
#include "hostsim/CustomUI.h"
#include "hostsim/Host.h"

namespace morvane::cli {
namespace {

// Disk IDs of the controls involved.
constexpr int32_t kStretchCurveId = 4;
constexpr int32_t kCurvePhaseId = 5;
constexpr int32_t kCurveSmoothnessId = 20;
constexpr int32_t kCurveGraphId = 21;

std::string ErrText(PF_Err err) {
  return "error " + std::to_string(err);
}

void Require(const hostsim::CommandResult& result, const char* step) {
  if (result.err == PF_Err_NONE) return;
  std::string text = std::string(step) + " failed: " + ErrText(result.err);
  if (result.ShowsMessage()) text += " (\"" + result.Message() + "\")";
  throw Failure(text);
}

}  // namespace

CurveGraphPicture DrawCurveGraph(const std::filesystem::path& modulePath,
                                 const hostsim::HostProfile& profile,
                                 const CurveGraphSettings& settings) {
  hostsim::Host host(profile);
  try {
    host.Load(modulePath);
  } catch (const std::exception& e) {
    throw Failure("cannot load the effect module " + modulePath.string() + ": " + e.what());
  }
  if (const A_Err err = host.Register(); err != A_Err_NONE) {
    throw Failure("registration failed: " + ErrText(err));
  }
  Require(host.GlobalSetup(), "global set-up");
  Require(host.ParamsSetup(), "parameter set-up");
  hostsim::EffectInstance& instance = host.NewInstance();
  Require(host.SequenceSetup(instance), "sequence set-up");

  PF_ParamIndex graph = 0;
  try {
    graph = host.PositionOf(instance, kCurveGraphId);
  } catch (const std::out_of_range&) {
    throw Failure(profile.label + " does not show the curve graph");
  }
  try {
    host.SetPopup(instance, kStretchCurveId, settings.curve);
  } catch (const std::exception&) {
    throw UsageError("no stretch curve named \"" + settings.curve + "\"");
  }
  try {
    host.SetValue(instance, kCurvePhaseId, settings.phaseDegrees);
    host.SetValue(instance, kCurveSmoothnessId, settings.smoothness);
  } catch (const std::invalid_argument& e) {
    throw UsageError(std::string("value refused by the host: ") + e.what());
  }

  const PF_ParamDef def = host.Params().params.at(static_cast<std::size_t>(graph));
  const hostsim::EffectWindow window =
      hostsim::PanelWindow(graph, PF_EA_CONTROL, def.ui_width, def.ui_height);
  const hostsim::EventAnswer answer = hostsim::SendDrawEvent(host, instance, window);
  Require(answer.result, "drawing the curve graph");
  const hostsim::DrawbotRecord record = hostsim::Drawbot(host);
  const hostsim::DrawnImage* image = record.LastDrawn();
  if (image == nullptr || image->layout != kDRAWBOT_PixelLayout_32BGRA_Straight) {
    throw Failure("the effect drew no straight BGRA picture for the curve graph");
  }
  host.SequenceSetdown(instance);

  CurveGraphPicture picture;
  picture.width = image->width;
  picture.height = image->height;
  for (int32_t y = 0; y < image->height; ++y) {
    const auto row = image->pixels.begin() + static_cast<std::ptrdiff_t>(y) * image->rowBytes;
    picture.bgra.insert(picture.bgra.end(), row, row + image->width * 4);
  }
  return picture;
}

void WriteCurveGraph(const std::filesystem::path& path, const CurveGraphPicture& picture,
                     int zoom) {
  if (zoom < 1) throw UsageError("the zoom must be a whole number of at least 1");
  Pixels<uint8_t> argb(picture.width * zoom, picture.height * zoom);
  for (int32_t y = 0; y < argb.height; ++y) {
    uint8_t* out = argb.Row(y);
    const uint8_t* in =
        picture.bgra.data() + static_cast<std::size_t>(y / zoom) * picture.width * 4;
    for (int32_t x = 0; x < argb.width; ++x) {
      const uint8_t* bgra = in + static_cast<std::size_t>(x / zoom) * 4;
      out[4 * x + 0] = bgra[3];
      out[4 * x + 1] = bgra[2];
      out[4 * x + 2] = bgra[1];
      out[4 * x + 3] = bgra[0];
    }
  }
  WriteImageFile(path, ArgbImage{std::move(argb)}, Depth::Depth8);
}

}  // namespace morvane::cli
