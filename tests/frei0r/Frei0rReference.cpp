// Test driver for the host tests of the frei0r modules.
//
//   morvane_frei0r_reference render W H PARAMS IN.rgba OUT.rgba [LAYER.rgba]
//     Renders every frame of IN (raw RGBA, W x H) as the module should for the frei0r parameter
//     string PARAMS, written as for ffmpeg's filter_params (values separated by '|', in parameter
//     order, bools as y or n), with LAYER's frames as the "Intensity Source".
//   morvane_frei0r_reference cli-options PARAMS
//     Prints the `morvane render` options that set the same control values.
//   morvane_frei0r_reference melt-properties PARAMS
//     Prints the same values as MLT properties named by parameter index (bools as 1 or 0).
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

#include "frei0r/FreiControls.h"
#include "frei0r/FreiMapping.h"
#include "frei0r/FreiSettings.h"
#include "tests/frei0r/ReferenceRender.h"

namespace {

using morvane::frei0r::FreiControls;
using morvane::frei0r::FreiKind;
using morvane::frei0r::FreiParam;
using morvane::frei0r::FreiSettings;

std::vector<std::string> SplitParams(const std::string& params) {
  std::vector<std::string> values;
  if (params.empty()) return values;
  std::size_t start = 0;
  while (true) {
    const std::size_t bar = params.find('|', start);
    values.push_back(params.substr(start, bar - start));
    if (bar == std::string::npos) break;
    start = bar + 1;
  }
  if (values.size() > FreiControls().size()) throw std::runtime_error("too many parameters");
  return values;
}

double ParseNumber(const std::string& text) {
  char* end = nullptr;
  const double value = std::strtod(text.c_str(), &end);
  if (text.empty() || *end != '\0') throw std::runtime_error("not a number: " + text);
  return value;
}

FreiSettings ParseSettings(const std::string& params) {
  FreiSettings settings;
  const auto values = SplitParams(params);
  for (std::size_t i = 0; i < values.size(); ++i) {
    const auto param = static_cast<FreiParam>(i);
    const auto& control = FreiControls()[i];
    const std::string& text = values[i];
    if (control.kind == FreiKind::Popup) {
      if (!settings.SetItem(param, text)) throw std::runtime_error("unknown item: " + text);
    } else if (control.kind == FreiKind::Checkbox) {
      if (text != "y" && text != "n") throw std::runtime_error("not y or n: " + text);
      settings.SetNumber(param, text == "y" ? 1.0 : 0.0);
    } else {
      settings.SetNumber(param, ParseNumber(text));
    }
  }
  return settings;
}

std::vector<uint8_t> ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw std::runtime_error("cannot read " + path);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

std::string Number(double value) {
  char text[64];
  std::snprintf(text, sizeof text, "%.17g", value);
  return text;
}

// The control values of the record in the command-line renderer's units: kebab-case items,
// degrees, on/off and slider values as the host holds them.
void PrintCliOptions(const FreiSettings& settings) {
  const morvane::StretchRenderRecord record = settings.Record();
  const auto item = [&](FreiParam param, int32_t index) {
    return std::string(morvane::frei0r::ControlOf(param).items[std::size_t(index)]);
  };
  const auto degrees = [](int32_t fixed) { return Number(fixed / 65536.0); };
  const std::vector<std::pair<FreiParam, std::string>> values = {
      {FreiParam::Direction, item(FreiParam::Direction, record.direction)},
      {FreiParam::Channels, item(FreiParam::Channels, record.channelMode)},
      {FreiParam::MorvaneIntensity, Number(record.intensity)},
      {FreiParam::Morvane, Number(record.stretchAmount)},
      {FreiParam::PixelSize, Number(record.pixelSize)},
      {FreiParam::StretchCurve, item(FreiParam::StretchCurve, record.curveShape)},
      {FreiParam::CurvePhase, degrees(record.curvePhase)},
      {FreiParam::CurveSmoothness, Number(record.curveSmoothness)},
      {FreiParam::StretchStartOffset, Number(record.startOffset)},
      {FreiParam::DistributionMode, item(FreiParam::DistributionMode, record.distributionMode)},
      {FreiParam::DistributionRange, Number(record.distributionRange)},
      {FreiParam::ImageShiftPhase, degrees(record.imageShiftPhase)},
      {FreiParam::ImageShiftPhaseSync, record.imageShiftPhaseSync ? "on" : "off"},
      {FreiParam::Shading, item(FreiParam::Shading, record.shadingMode)},
      {FreiParam::ShadingIntervalSize, Number(record.shadingIntervalSize)},
      {FreiParam::ShadingIntervalPhase, degrees(record.shadingIntervalPhase)},
      {FreiParam::ShadingChannels, item(FreiParam::ShadingChannels, record.shadingChannels)},
      {FreiParam::ShadingOpacity, Number(record.shadingOpacity)},
      {FreiParam::EdgeMode, item(FreiParam::EdgeMode, record.edgeMode)},
      {FreiParam::TransparencyFeather, Number(record.transparencyFeather)},
  };
  for (const auto& [param, value] : values)
    std::cout << "--" << morvane::frei0r::KebabCase(morvane::frei0r::ControlOf(param).name) << '\n'
              << value << '\n';
}

void PrintMeltProperties(const std::string& params) {
  const auto values = SplitParams(params);
  for (std::size_t i = 0; i < values.size(); ++i) {
    std::cout << i << '=';
    if (FreiControls()[i].kind == FreiKind::Checkbox)
      std::cout << (values[i] == "y" ? '1' : '0');
    else
      std::cout << values[i];
    std::cout << '\n';
  }
}

int Render(int argc, char** argv) {
  if (argc < 7 || argc > 8) throw std::runtime_error("render needs W H PARAMS IN OUT [LAYER]");
  const int width = std::stoi(argv[2]);
  const int height = std::stoi(argv[3]);
  const FreiSettings settings = ParseSettings(argv[4]);
  const std::vector<uint8_t> input = ReadFile(argv[5]);
  const std::vector<uint8_t> layer = argc == 8 ? ReadFile(argv[7]) : std::vector<uint8_t>{};
  const std::size_t frameBytes = std::size_t(width) * std::size_t(height) * 4;
  if (width <= 0 || height <= 0 || input.empty() || input.size() % frameBytes != 0 ||
      layer.size() % frameBytes != 0 || (argc == 8 && layer.size() < input.size()))
    throw std::runtime_error("input and layer must hold whole frames of W x H");

  std::ofstream out(argv[6], std::ios::binary);
  for (std::size_t offset = 0; offset < input.size(); offset += frameBytes) {
    const std::vector<uint8_t> frame(input.begin() + std::ptrdiff_t(offset),
                                     input.begin() + std::ptrdiff_t(offset + frameBytes));
    std::vector<uint8_t> layerFrame;
    if (!layer.empty())
      layerFrame.assign(layer.begin() + std::ptrdiff_t(offset),
                        layer.begin() + std::ptrdiff_t(offset + frameBytes));
    const auto result = morvane::frei0r::testing::ReferenceRender(
        width, height, settings.Record(), frame, layer.empty() ? nullptr : &layerFrame);
    out.write(reinterpret_cast<const char*>(result.data()), std::streamsize(result.size()));
  }
  if (!out) throw std::runtime_error(std::string("cannot write ") + argv[6]);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    const std::string command = argc > 1 ? argv[1] : "";
    if (command == "render") return Render(argc, argv);
    if (command == "cli-options" && argc == 3) {
      PrintCliOptions(ParseSettings(argv[2]));
      return 0;
    }
    if (command == "melt-properties" && argc == 3) {
      PrintMeltProperties(argv[2]);
      return 0;
    }
    std::cerr << "usage: morvane_frei0r_reference render|cli-options|melt-properties ...\n";
    return 2;
  } catch (const std::exception& error) {
    std::cerr << "morvane_frei0r_reference: " << error.what() << '\n';
    return 1;
  }
}
