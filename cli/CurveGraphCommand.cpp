#include "cli/CurveGraphCommand.h"

#include <CLI/CLI.hpp>

#include <ostream>

#include "cli/Errors.h"
#include "cli/ImageFile.h"

namespace morvane::cli {

CurveGraphCommand::CurveGraphCommand(CLI::App& app, std::unique_ptr<RenderBackend> backend,
                                     std::string loadError)
    : command_(app.add_subcommand(
          "curve-graph",
          "Draw the \"Curve Graph\" control as the Effect Controls panel shows it (50 x 50 "
          "pixels, straight alpha) and write it to an image file")),
      backend_(std::move(backend)),
      loadError_(std::move(loadError)) {
  command_->add_option("output", output_, "The image file to write (PNG, TIFF, ...)")
      ->required()
      ->option_text("OUT");
  command_->add_option("--zoom", zoom_, "Repeat every pixel this many times for viewing")
      ->check(CLI::Range(1, 64))
      ->capture_default_str();
  module_.AddTo(*command_);
  if (backend_) controls_.AddTo(*command_, backend_->Info().controls, false);
}

int CurveGraphCommand::Run(const CommandStreams& streams) {
  if (!backend_) throw Failure(loadError_);
  CheckWritableFormat(output_);
  backend_->SetControls(controls_.Settings());
  const CurveGraphPicture picture = backend_->CurveGraph();
  WriteCurveGraph(output_, picture, zoom_);
  streams.out << "wrote " << output_ << " (" << picture.width * zoom_ << " x "
              << picture.height * zoom_ << ")\n";
  return kExitSuccess;
}

}  // namespace morvane::cli
