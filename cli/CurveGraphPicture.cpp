#include "cli/CurveGraphPicture.h"

#include <stdexcept>
#include <string>

#include "cli/Errors.h"
#include "cli/ImageFile.h"
#include "cli/Pixels.h"
#include "hostsim/CustomUI.h"
#include "hostsim/Host.h"

namespace morvane::cli {
namespace {

constexpr int32_t kCurveGraphId = 21;  // the control's disk ID

void Require(const hostsim::CommandResult& result, const char* step) {
  if (result.err == PF_Err_NONE) return;
  std::string text = std::string(step) + " failed: error " + std::to_string(result.err);
  if (result.ShowsMessage()) text += " (\"" + result.Message() + "\")";
  throw Failure(text);
}

}  // namespace

CurveGraphPicture DrawCurveGraph(hostsim::Host& host, hostsim::EffectInstance& instance) {
  PF_ParamIndex graph = 0;
  try {
    graph = host.PositionOf(instance, kCurveGraphId);
  } catch (const std::out_of_range&) {
    throw Failure(host.Profile().label + " does not show the curve graph");
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
