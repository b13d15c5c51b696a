#include <gtest/gtest.h>

#include <stdexcept>

#include "render/DispatchStretch.h"
#include "tests/stretch/TestImages.h"

namespace morvane {
namespace {

using namespace testing_support;

template <PixelDepth Depth>
PF_EffectWorld World(Image<Depth>& image) {
  PF_EffectWorld w{};
  w.data = reinterpret_cast<PF_PixelPtr>(image.pixels());
  w.rowbytes = image.stride * int32_t(sizeof(ChannelType<Depth>));
  w.width = image.width;
  w.height = image.height;
  return w;
}

// Dispatches `record` on `input` into a copy of `initial`, whose origin is (originX, originY).
template <PixelDepth Depth>
Image<Depth> Dispatch(const StretchRenderRecord& record, Image<Depth> input, Image<Depth> initial,
                      int32_t originX = 0, int32_t originY = 0) {
  PF_EffectWorld in = World(input);
  PF_EffectWorld out = World(initial);
  out.origin_x = originX;
  out.origin_y = originY;
  DispatchStretch<Depth>(in, out, record, 1.0f);
  return initial;
}

TEST(Dispatch, CopiesOnlyTheOverlapOfDifferentSizes) {
  const auto in = RandomImage<PixelDepth::Depth16>(6, 3, 1);
  const auto before = RandomImage<PixelDepth::Depth16>(4, 5, 2);
  StretchRenderRecord r = DefaultRecord();
  r.intensity = 0;
  const auto out = Dispatch(r, in, before);
  for (int32_t y = 0; y < 5; ++y)
    for (int32_t x = 0; x < 4; ++x)
      for (int c = 0; c < 4; ++c)
        ASSERT_EQ(out.at(x, y, c), y < 3 ? in.at(x, y, c) : before.at(x, y, c));
}

TEST(Dispatch, ForDepthRoutesAndRejectsUnknownDepths) {
  auto in = RandomImage<PixelDepth::Depth16>(5, 4, 1);
  auto out = in;
  const StretchRenderRecord r = RandomRecord(3);
  PF_EffectWorld inWorld = World(in);
  PF_EffectWorld outWorld = World(out);
  DispatchStretchForDepth(PixelDepth::Depth16, inWorld, outWorld, r, 1.0f);
  EXPECT_TRUE(SamePixels(out, RunKernel<PixelDepth::Depth16>(ChannelVariant::Luma, r, in)));
  EXPECT_THROW(DispatchStretchForDepth(PixelDepth(3), inWorld, outWorld, r, 1.0f),
               std::logic_error);
}

}  // namespace
}  // namespace morvane
