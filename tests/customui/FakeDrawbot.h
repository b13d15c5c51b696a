// In-test stand-ins for the Drawbot suites and the custom-UI suite, offered through a FakeHost.
// They record every image made, drawn and released. The suites' C functions carry no context
// pointer, so they find the FakeDrawbot of the current thread.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "sdk/HostInterface.h"
#include "tests/params/FakeHost.h"

namespace morvane::testing {

class FakeDrawbot {
 public:
  // Offers the four Drawbot suites and "PF Effect Custom UI Suite" 1 through `host`.
  explicit FakeDrawbot(FakeHost& host);
  ~FakeDrawbot();
  FakeDrawbot(const FakeDrawbot&) = delete;
  FakeDrawbot& operator=(const FakeDrawbot&) = delete;

  // Stops offering one suite, by name and version.
  void Withdraw(const char* name, int32_t version);

  struct Image {
    int width, height, rowBytes;
    DRAWBOT_PixelLayout layout;
    std::vector<uint8_t> pixels;
    bool released = false;
  };
  struct Draw {
    std::size_t image;  // index into `images`
    float x, y, alpha;
  };
  std::vector<PF_ContextH> referenceRequests;
  std::vector<Image> images;
  std::vector<Draw> draws;
  int unknownReleases = 0;

  // Errors answered by the host's calls.
  PF_Err drawingReferenceErr = PF_Err_NONE;
  PF_Err newImageErr = PF_Err_NONE;
  PF_Err drawImageErr = PF_Err_NONE;
  PF_Err releaseObjectErr = PF_Err_NONE;

  int LiveImages() const;
  // Every suite acquired through `host` as often as released.
  static bool SuitesBalanced(const FakeHost& host);

 private:
  FakeHost& host_;
  PF_EffectCustomUISuite1 customUI_{};
  DRAWBOT_DrawbotSuite1 draw_{};
  DRAWBOT_SupplierSuite1 supplier_{};
  DRAWBOT_SurfaceSuite2 surface_{};
  DRAWBOT_PathSuite1 path_{};
};

}  // namespace morvane::testing
