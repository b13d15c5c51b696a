#include "cli/RenderCommand.h"

#include <CLI/CLI.hpp>

#include <ostream>
#include <thread>

#include "cli/ControlOptions.h"
#include "cli/Errors.h"

namespace morvane::cli {

namespace {

constexpr char kFooter[] = R"(Control values:
  Every control of the effect has one option, named after it in kebab-case, and
  is read from the loaded module. Popup items are given in kebab-case. Angles are
  in degrees (stored as 16.16 fixed point, rounded half away from zero). Values
  outside a control's range are refused. Any control also takes keyframes,
  FRAME:VALUE,FRAME:VALUE,... (frames increasing), which the host interpolates
  (sliders and angles linearly, popups and on/off held).

Files:
  Anything OpenImageIO reads and writes (PNG, TIFF, OpenEXR, JPEG, DPX, ...).
  Values are used exactly as stored: alpha is neither premultiplied nor divided
  out. 1 channel = grey, 2 = grey + alpha, 3 = RGB, 4 or more = RGB + alpha (the
  file's alpha channel, else channel 4). The output has RGBA (RGB where the
  format has no alpha).

Depths:
  The processing depth defaults to the input's: 8-bit -> 8, 16-bit -> 16, any
  other type -> 32f. The output file has the processing depth unless --out-depth
  is given; a format that cannot hold it narrows it: PNG stores 32f as 16-bit,
  JPEG, BMP and TGA store 8-bit, OpenEXR stores 8 and 16 as half float.
  Conversions (rounding half away from zero, products in double):
    16-bit file v -> 16-bit round(v * 32768 / 65535); back round(x * 65535 / 32768)
    16-bit file v -> float v / 65535; float -> 16-bit file round(f * 65535),
      clamped to 0..65535 (every level of the file kept, as OpenFX hosts render)
    8-bit -> float v / 255; float -> 8-bit round(f * 255), clamped to 0..255
    16-bit -> float x / 32768; float -> 16-bit round(f * 32768), clamped 0..32768
    8 <-> 16 bits through float.
  The intensity source file is converted to the processing depth the same way
  and may have any size.

Sequences:
  IN, OUT and the intensity source may hold a frame number: '#' runs (padded to
  their length, '####' -> 0007) or printf fields ('%04d'). --frames A-B renders
  those frames; a farm renders chunks by giving each node its own range.

Output:
  Each file is written under a temporary name and renamed into place, so a
  failure never leaves a partial file. An input is never overwritten unless
  --overwrite is given.

Exit codes: 0 success, 1 failure, 2 usage error.)";

std::optional<Depth> ParseDepth(const std::string& text) {
  if (text == "8") return Depth::Depth8;
  if (text == "16") return Depth::Depth16;
  if (text == "32f") return Depth::Depth32f;
  return std::nullopt;
}

}  // namespace

RenderCommand::RenderCommand(CLI::App& app, std::unique_ptr<RenderBackend> backend,
                             std::string loadError)
    : command_(app.add_subcommand("render", "Render the effect on an image file or a sequence")),
      backend_(std::move(backend)),
      loadError_(std::move(loadError)) {
  CLI::App& c = *command_;
  c.add_option("IN", input_, "Input image (may hold a frame placeholder)")->required();
  c.add_option("OUT", output_, "Output image (may hold a frame placeholder)")->required();
  c.add_option("--depth", depth_, "Processing depth (default: the input file's)")
      ->check(CLI::IsMember({"8", "16", "32f"}))
      ->option_text("8|16|32f");
  c.add_option("--out-depth", outDepth_, "Depth of the output file (default: the processing depth)")
      ->check(CLI::IsMember({"8", "16", "32f"}))
      ->option_text("8|16|32f");
  c.add_option("--region", region_,
               "Render only this rectangle, as a host asking for a region of interest; the output "
               "holds that rectangle (pixels of the image after --downsample)")
      ->option_text("X,Y,W,H");
  c.add_option("--downsample", downsample_,
               "Render at 1/N resolution: the input and intensity source are box-filtered to "
               "ceil(W/N) x ceil(H/N) and the host's downsample factor is 1/N")
      ->check(CLI::Range(1, 8))
      ->option_text("N")
      ->capture_default_str();
  c.add_option("--frames", frames_,
               "Frames to render, A-B or A (default 0): the frame numbers put into file names "
               "with a placeholder and the times at which keyframed controls are read")
      ->option_text("A-B");
  c.add_option("--jobs", jobs_, "Frames rendered in parallel (default: the number of cores)")
      ->check(CLI::Range(1, 1024))
      ->option_text("N");
  c.add_flag("--overwrite", overwrite_, "Allow the output to replace an input file");
  module_.AddTo(c);
  c.footer(kFooter);
  AddControlOptions();
}

void RenderCommand::AddControlOptions() {
  if (!backend_) {
    command_->footer(std::string(kFooter) +
                     "\n\nThe control options are read from the effect module, which could not "
                     "be loaded: " +
                     loadError_);
    return;
  }
  controls_.AddTo(*command_, backend_->Info().controls, true);
}

RenderOptions RenderCommand::BuildOptions() const {
  RenderOptions options;
  options.input = FramePattern(input_);
  options.output = FramePattern(output_);
  options.depth = ParseDepth(depth_);
  options.outDepth = ParseDepth(outDepth_);
  if (!region_.empty()) options.region = ParseRegion(region_);
  options.downsample = downsample_;
  if (!frames_.empty()) options.frames = ParseFrameRange(frames_);
  options.jobs = jobs_ > 0 ? jobs_ : int(std::max(1u, std::thread::hardware_concurrency()));
  options.overwrite = overwrite_;
  if (const auto layer = controls_.LayerText()) options.intensitySource = FramePattern(*layer);
  options.controls = controls_.Settings();
  return options;
}

int RenderCommand::Run(const CommandStreams& streams) {
  if (!backend_) throw Failure(loadError_);
  const RenderOptions options = BuildOptions();
  const FrameRange range = PlanFrames(options, backend_->Profile());
  Progress progress(streams.err, streams.errIsTerminal, range.count());
  RenderFrames(*backend_, options, progress);
  return kExitSuccess;
}

}  // namespace morvane::cli
