#include "cli/App.h"

#include <CLI/CLI.hpp>

#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "cli/CurveGraphCommand.h"
#include "cli/Errors.h"
#include "cli/InfoCommand.h"
#include "cli/ModuleLocator.h"
#include "cli/RenderCommand.h"

namespace morvane::cli {

namespace {

// What must be known before the parser is built: the render options come from
// the module, so the module (and the host it is loaded into) is read first.
struct EarlyArguments {
  std::string subcommand;  // the first bare word
  std::optional<std::string> module;
  std::string host = "ae";
  bool help = false;
};

EarlyArguments ScanEarly(int argc, const char* const* argv) {
  EarlyArguments early;
  auto valueOf = [&](int& i, std::string_view arg,
                     std::string_view name) -> std::optional<std::string> {
    if (arg == name && i + 1 < argc) return std::string(argv[++i]);
    if (arg.size() > name.size() && arg.substr(0, name.size()) == name && arg[name.size()] == '=') {
      return std::string(arg.substr(name.size() + 1));
    }
    return std::nullopt;
  };
  for (int i = 1; i < argc; ++i) {
    const std::string_view arg = argv[i];
    if (auto v = valueOf(i, arg, "--module")) {
      early.module = *v;
    } else if (auto h = valueOf(i, arg, "--host")) {
      early.host = *h;
    } else if (arg == "--help" || arg == "-h") {
      early.help = true;
    } else if (early.subcommand.empty() && !arg.empty() && arg[0] != '-') {
      early.subcommand = arg;
    }
  }
  return early;
}

// The module loaded for the subcommands whose options are its controls; null with the reason
// when it cannot be loaded (or another subcommand was given).
struct LoadedModule {
  std::unique_ptr<RenderBackend> backend;
  std::string error;
};

LoadedModule LoadModuleFor(const EarlyArguments& early, std::string_view subcommand) {
  LoadedModule loaded;
  if (early.subcommand != subcommand) return loaded;
  try {
    loaded.backend = OpenRenderBackend(LocateModule(early.module),
                                       ParseHostProfile(early.host).value_or(HostProfile::Ae));
  } catch (const Failure& e) {
    loaded.error = e.what();
  }
  return loaded;
}

}  // namespace

int RunMorvane(int argc, const char* const* argv, std::ostream& out, std::ostream& err,
               bool errIsTerminal) {
  const EarlyArguments early = ScanEarly(argc, argv);
  CLI::App app("Renders the Morvane effect on image files and image sequences.", "morvane");
  app.require_subcommand(1);
  app.set_version_flag("--version", "morvane 1.6.0");

  LoadedModule forRender = LoadModuleFor(early, "render");
  LoadedModule forGraph = LoadModuleFor(early, "curve-graph");
  // Without the module the control options are unknown; report the module rather than
  // complain about options the parser cannot know.
  for (const LoadedModule* loaded : {&forRender, &forGraph}) {
    if (!loaded->error.empty() && !early.help) {
      err << "morvane: " << loaded->error << "\n";
      return kExitFailure;
    }
  }
  std::vector<std::unique_ptr<Command>> commands;
  commands.push_back(std::make_unique<RenderCommand>(app, std::move(forRender.backend),
                                                     std::move(forRender.error)));
  commands.push_back(std::make_unique<InfoCommand>(app));
  commands.push_back(std::make_unique<CurveGraphCommand>(app, std::move(forGraph.backend),
                                                         std::move(forGraph.error)));

  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& e) {
    const int code = app.exit(e, out, err);
    return code == 0 ? kExitSuccess : kExitUsage;
  }
  const CommandStreams streams{out, err, errIsTerminal};
  for (const auto& command : commands) {
    if (!command->Subcommand().parsed()) continue;
    try {
      return command->Run(streams);
    } catch (const UsageError& e) {
      err << "morvane: " << e.what() << "\n";
      return kExitUsage;
    } catch (const Failure& e) {
      err << "morvane: " << e.what() << "\n";
      return kExitFailure;
    } catch (const std::exception& e) {
      err << "morvane: " << e.what() << "\n";
      return kExitFailure;
    }
  }
  return kExitUsage;
}

}  // namespace morvane::cli
