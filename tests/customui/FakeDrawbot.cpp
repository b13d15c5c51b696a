#include "tests/customui/FakeDrawbot.h"

#include <stdexcept>

namespace morvane::testing {
namespace {

thread_local FakeDrawbot* current = nullptr;

// Distinct fake references; images are numbered from 1 by their index + 1.
DRAWBOT_DrawRef const kDrawRef = reinterpret_cast<DRAWBOT_DrawRef>(0xD0);
DRAWBOT_SupplierRef const kSupplierRef = reinterpret_cast<DRAWBOT_SupplierRef>(0x50);
DRAWBOT_SurfaceRef const kSurfaceRef = reinterpret_cast<DRAWBOT_SurfaceRef>(0x5F);

std::size_t ImageIndex(const void* ref) {
  return reinterpret_cast<std::uintptr_t>(ref) - 1;
}

PF_Err GetDrawingReference(const PF_ContextH contextH, DRAWBOT_DrawRef* out) {
  current->referenceRequests.push_back(contextH);
  *out = current->drawingReferenceErr == PF_Err_NONE ? kDrawRef : nullptr;
  return current->drawingReferenceErr;
}

SPErr GetSupplier(DRAWBOT_DrawRef ref, DRAWBOT_SupplierRef* out) {
  *out = ref == kDrawRef ? kSupplierRef : nullptr;
  return ref == kDrawRef ? 0 : 1;
}

SPErr GetSurface(DRAWBOT_DrawRef ref, DRAWBOT_SurfaceRef* out) {
  *out = ref == kDrawRef ? kSurfaceRef : nullptr;
  return ref == kDrawRef ? 0 : 1;
}

SPErr NewImageFromBuffer(DRAWBOT_SupplierRef supplier, int width, int height, int rowBytes,
                         DRAWBOT_PixelLayout layout, const void* data, DRAWBOT_ImageRef* out) {
  *out = nullptr;
  if (supplier != kSupplierRef) return 1;
  if (current->newImageErr != PF_Err_NONE) return current->newImageErr;
  FakeDrawbot::Image image{width, height, rowBytes, layout, {}, false};
  const auto* bytes = static_cast<const uint8_t*>(data);
  image.pixels.assign(bytes, bytes + static_cast<std::ptrdiff_t>(rowBytes) * height);
  current->images.push_back(std::move(image));
  *out = reinterpret_cast<DRAWBOT_ImageRef>(current->images.size());
  return 0;
}

SPErr DrawImage(DRAWBOT_SurfaceRef surface, DRAWBOT_ImageRef image, const DRAWBOT_PointF32* origin,
                float alpha) {
  if (surface != kSurfaceRef) return 1;
  if (current->drawImageErr != PF_Err_NONE) return current->drawImageErr;
  current->draws.push_back({ImageIndex(image), origin->x, origin->y, alpha});
  return 0;
}

SPErr ReleaseObject(DRAWBOT_ObjectRef object) {
  const std::size_t index = ImageIndex(object);
  if (index < current->images.size() && !current->images[index].released) {
    current->images[index].released = true;
  } else {
    ++current->unknownReleases;
  }
  return current->releaseObjectErr;
}

}  // namespace

FakeDrawbot::FakeDrawbot(FakeHost& host) : host_(host) {
  if (current != nullptr) throw std::logic_error("one FakeDrawbot per thread");
  current = this;
  customUI_.PF_GetDrawingReference = GetDrawingReference;
  draw_.GetSupplier = GetSupplier;
  draw_.GetSurface = GetSurface;
  supplier_.NewImageFromBuffer = NewImageFromBuffer;
  supplier_.ReleaseObject = ReleaseObject;
  surface_.DrawImage = DrawImage;
  host.OfferSuite(kPFEffectCustomUISuite, kPFEffectCustomUISuiteVersion1, &customUI_);
  host.OfferSuite(kDRAWBOT_DrawSuite, kDRAWBOT_DrawSuite_Version1, &draw_);
  host.OfferSuite(kDRAWBOT_SupplierSuite, kDRAWBOT_SupplierSuite_Version1, &supplier_);
  host.OfferSuite(kDRAWBOT_SurfaceSuite, kDRAWBOT_SurfaceSuite_Version2, &surface_);
  host.OfferSuite(kDRAWBOT_PathSuite, kDRAWBOT_PathSuite_Version1, &path_);
}

FakeDrawbot::~FakeDrawbot() {
  current = nullptr;
}

void FakeDrawbot::Withdraw(const char* name, int32_t version) {
  host_.extraSuites.erase(std::string(name) + "/" + std::to_string(version));
}

int FakeDrawbot::LiveImages() const {
  int live = 0;
  for (const Image& image : images)
    live += image.released ? 0 : 1;
  return live;
}

bool FakeDrawbot::SuitesBalanced(const FakeHost& host) {
  for (const auto& [name, count] : host.acquired) {
    const auto released = host.released.find(name);
    if (released == host.released.end() || released->second != count) return false;
  }
  for (const auto& [name, count] : host.released) {
    if (!host.acquired.contains(name) || host.acquired.at(name) != count) return false;
  }
  return true;
}

}  // namespace morvane::testing
