#include "cli/CurveGraphCommand.h"

#include <CLI/CLI.hpp>

#include <ostream>

#include "cli/Errors.h"
#include "cli/ImageFile.h"
#include "cli/ModuleLocator.h"

namespace morvane::cli {
namespace {

hostsim::HostProfile SimulatedProfile(HostProfile profile) {
  switch (profile) {
    case HostProfile::Ae1323:
      return hostsim::HostProfile::AfterEffects13_23();
    case HostProfile::Ae138:
      return hostsim::HostProfile::OlderHost();
    case HostProfile::Premiere:
      return hostsim::HostProfile::Premiere();
    case HostProfile::Ae:
      break;
  }
  return hostsim::HostProfile::AfterEffects();
}

}  // namespace

CurveGraphCommand::CurveGraphCommand(CLI::App& app)
    : command_(app.add_subcommand(
          "curve-graph",
          "Draw the \"Curve Graph\" control as the Effect Controls panel shows it (50 x 50 "
          "pixels, straight alpha) and write it to an image file")) {
  command_->add_option("output", output_, "The image file to write (PNG, TIFF, ...)")
      ->required()
      ->option_text("OUT");
  command_
      ->add_option("--stretch-curve", settings_.curve,
                   "Linear Ramp Up, Linear Ramp Down, Triangle Wave, Sine Wave, Exp Up or "
                   "Exp Down")
      ->capture_default_str();
  command_->add_option("--curve-phase", settings_.phaseDegrees, "In degrees")
      ->capture_default_str();
  command_->add_option("--curve-smoothness", settings_.smoothness, "0 to 16")
      ->capture_default_str();
  command_->add_option("--zoom", zoom_, "Repeat every pixel this many times for viewing")
      ->check(CLI::Range(1, 64))
      ->capture_default_str();
  module_.AddTo(*command_);
}

int CurveGraphCommand::Run(const CommandStreams& streams) {
  CheckWritableFormat(output_);
  const CurveGraphPicture picture =
      DrawCurveGraph(LocateModule(module_.module), SimulatedProfile(module_.Profile()), settings_);
  WriteCurveGraph(output_, picture, zoom_);
  streams.out << "wrote " << output_ << " (" << picture.width * zoom_ << " x "
              << picture.height * zoom_ << ")\n";
  return kExitSuccess;
}

}  // namespace morvane::cli
