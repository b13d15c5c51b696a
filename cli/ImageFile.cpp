#include "cli/ImageFile.h"

#include <OpenImageIO/imageio.h>
#include <unistd.h>

#include <functional>
#include <memory>
#include <string>
#include <system_error>
#include <thread>

#include "cli/Errors.h"

namespace morvane::cli {

namespace fs = std::filesystem;

namespace {

std::string Quoted(const fs::path& path) {
  return "'" + path.string() + "'";
}

template <typename Channel>
constexpr Channel FileWhite() {
  if constexpr (std::is_same_v<Channel, uint8_t>)
    return 255;
  else if constexpr (std::is_same_v<Channel, uint16_t>)
    return 65535;
  else
    return 1.0f;
}

template <typename Channel>
FileImage ReadChannels(OIIO::ImageInput& in, const OIIO::ImageSpec& header, OIIO::TypeDesc type,
                       const fs::path& path) {
  const int n = header.nchannels;
  std::vector<Channel> raw(std::size_t(header.width) * header.height * n);
  if (!in.read_image(0, 0, 0, n, type, raw.data())) {
    throw Failure("cannot read " + Quoted(path) + ": " + in.geterror());
  }
  // Which file channels become red, green, blue and alpha; -1 is white.
  int map[4] = {0, 1, 2, -1};
  if (n <= 2) map[1] = map[2] = 0;
  if (n == 2) map[3] = 1;
  if (n >= 4) map[3] = header.alpha_channel >= 0 ? header.alpha_channel : 3;

  Pixels<Channel> pixels(header.width, header.height);
  const std::size_t count = std::size_t(header.width) * header.height;
  for (std::size_t p = 0; p < count; ++p) {
    for (int c = 0; c < 4; ++c) {
      pixels.values[4 * p + c] = map[c] < 0 ? FileWhite<Channel>() : raw[n * p + map[c]];
    }
  }
  return FileImage{std::move(pixels)};
}

fs::path TemporaryPathFor(const fs::path& path) {
  const std::size_t thread = std::hash<std::thread::id>{}(std::this_thread::get_id());
  // Appended piece by piece: GCC 12 at -O3 takes a chain of string sums for an overlapping copy
  // (-Wrestrict) and the optimised presets build with warnings as errors.
  std::string name = ".";
  name += path.filename().string();
  name += ".tmp-";
  name += std::to_string(::getpid());
  name += '-';
  name += std::to_string(thread);
  return path.parent_path() / name;
}

OIIO::TypeDesc TypeOf(Depth depth) {
  switch (depth) {
    case Depth::Depth8:
      return OIIO::TypeDesc::UINT8;
    case Depth::Depth16:
      return OIIO::TypeDesc::UINT16;
    case Depth::Depth32f:
      break;
  }
  return OIIO::TypeDesc::FLOAT;
}

Depth DepthOfType(OIIO::TypeDesc type) {
  if (type == OIIO::TypeDesc::UINT8) return Depth::Depth8;
  if (type == OIIO::TypeDesc::UINT16) return Depth::Depth16;
  return Depth::Depth32f;
}

std::unique_ptr<OIIO::ImageOutput> CreateWriter(const fs::path& path) {
  auto out = OIIO::ImageOutput::create(path.string());
  if (!out) {
    throw Failure("cannot write " + Quoted(path) + ": no writer for this file format (" +
                  OIIO::geterror() + ")");
  }
  return out;
}

// Removes the temporary file unless the write was committed.
class TemporaryFile {
 public:
  explicit TemporaryFile(fs::path path) : path_(std::move(path)) {}
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() {
    if (!committed_) {
      std::error_code ignored;
      fs::remove(path_, ignored);
    }
  }
  const fs::path& path() const { return path_; }
  void CommitAs(const fs::path& target) {
    std::error_code ec;
    fs::rename(path_, target, ec);
    if (ec) throw Failure("cannot write " + Quoted(target) + ": " + ec.message());
    committed_ = true;
  }

 private:
  fs::path path_;
  bool committed_ = false;
};

}  // namespace

FileImage ReadImageFile(const fs::path& path) {
  OIIO::ImageSpec config;
  config.attribute("oiio:UnassociatedAlpha", 1);
  auto in = OIIO::ImageInput::open(path.string(), &config);
  if (!in) {
    std::error_code ec;
    const std::string reason = !fs::exists(path, ec) ? "no such file" : OIIO::geterror();
    throw Failure("cannot read " + Quoted(path) + ": " + reason);
  }
  // The first subimage's size, channel count and pixel type.
  const OIIO::ImageSpec header = in->spec_dimensions(0);
  if (header.width <= 0 || header.height <= 0 || header.nchannels <= 0) {
    throw Failure("cannot read " + Quoted(path) + ": the image is empty");
  }
  if (header.format == OIIO::TypeDesc::UINT8) {
    return ReadChannels<uint8_t>(*in, header, OIIO::TypeDesc::UINT8, path);
  }
  if (header.format == OIIO::TypeDesc::UINT16) {
    return ReadChannels<uint16_t>(*in, header, OIIO::TypeDesc::UINT16, path);
  }
  return ReadChannels<float>(*in, header, OIIO::TypeDesc::FLOAT, path);
}

Depth NaturalDepth(const FileImage& file) {
  return static_cast<Depth>(file.pixels.index());
}

void CheckWritableFormat(const fs::path& path) {
  CreateWriter(path);
}

Depth WriteImageFile(const fs::path& path, const ArgbImage& image, Depth fileDepth) {
  auto out = CreateWriter(path);
  OIIO::TypeDesc requested = TypeOf(fileDepth);
  // PNG would narrow float to 8 bits; 16 bits keep far more of it.
  if (fileDepth == Depth::Depth32f && std::string(out->format_name()) == "png") {
    requested = OIIO::TypeDesc::UINT16;
  }
  const int channels = out->supports("alpha") ? 4 : 3;
  OIIO::ImageSpec header(image.width(), image.height(), channels, requested);
  if (channels == 4) header.alpha_channel = 3;
  header.attribute("oiio:UnassociatedAlpha", 1);
  header.attribute("Software", "morvane");

  TemporaryFile temporary(TemporaryPathFor(path));
  if (!out->open(temporary.path().string(), header)) {
    throw Failure("cannot write " + Quoted(path) + ": " + out->geterror());
  }
  const Depth stored = DepthOfType(out->spec().format);
  const FileImage file = EffectToFile(image, stored);
  const bool written = std::visit(
      [&](const auto& pixels) {
        using Channel = typename std::decay_t<decltype(pixels.values)>::value_type;
        const OIIO::TypeDesc type = TypeOf(DepthOf<Channel>());
        return out->write_image(type, pixels.values.data(), 4 * sizeof(Channel));
      },
      file.pixels);
  const bool closed = out->close();
  if (!written || !closed) {
    throw Failure("cannot write " + Quoted(path) + ": " + out->geterror());
  }
  temporary.CommitAs(path);
  return stored;
}

}  // namespace morvane::cli
