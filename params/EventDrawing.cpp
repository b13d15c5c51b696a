#include "params/EventDrawing.h"

#include "host/SuiteAccess.h"
#include "params/DrawbotSuites.h"

namespace morvane {
namespace {

// A host image, released through the supplier that made it.
class ScopedImage {
 public:
  explicit ScopedImage(const DRAWBOT_SupplierSuite1& supplier) : supplier_(supplier) {}
  ~ScopedImage() { Release(); }
  ScopedImage(const ScopedImage&) = delete;
  ScopedImage& operator=(const ScopedImage&) = delete;

  DRAWBOT_ImageRef* Out() { return &image_; }
  DRAWBOT_ImageRef Get() const { return image_; }
  // Releases the image now; the answer of the host, or PF_Err_NONE without an image.
  PF_Err Release() {
    if (image_ == nullptr) return PF_Err_NONE;
    const PF_Err err = supplier_.ReleaseObject(reinterpret_cast<DRAWBOT_ObjectRef>(image_));
    image_ = nullptr;
    return err;
  }

 private:
  const DRAWBOT_SupplierSuite1& supplier_;
  DRAWBOT_ImageRef image_ = nullptr;
};

// Bytes per pixel of the straight BGRA layout the pictures use.
constexpr int32_t kBytesPerPixel = 4;

}  // namespace

EventDrawing::EventDrawing(PF_InData* in_data, PF_OutData* out_data, PF_ContextH contextH)
    : in_data_(in_data), out_data_(out_data) {
  err_ = AEFX_AcquireDrawbotSuites(in_data, out_data, &suites_);
  if (err_ != PF_Err_NONE) return;
  haveSuites_ = true;

  DRAWBOT_DrawRef drawRef = nullptr;
  const void* customUI = nullptr;
  err_ = AcquireSuiteOrReport(in_data, out_data, kPFEffectCustomUISuite,
                              kPFEffectCustomUISuiteVersion1, nullptr, &customUI);
  if (err_ != PF_Err_NONE) return;
  err_ = static_cast<const PF_EffectCustomUISuite1*>(customUI)->PF_GetDrawingReference(contextH,
                                                                                       &drawRef);
  const PF_Err releaseErr = ReleaseSuiteOrReport(in_data, out_data, kPFEffectCustomUISuite,
                                                 kPFEffectCustomUISuiteVersion1, nullptr);
  if (err_ == PF_Err_NONE) err_ = releaseErr;
  if (err_ != PF_Err_NONE) return;

  err_ = suites_.drawbot_suiteP->GetSupplier(drawRef, &supplier_);
  if (err_ != PF_Err_NONE) return;
  err_ = suites_.drawbot_suiteP->GetSurface(drawRef, &surface_);
}

EventDrawing::~EventDrawing() {
  if (haveSuites_) AEFX_ReleaseDrawbotSuites(in_data_, out_data_);
}

PF_Err EventDrawing::DrawPicture(const BgraPicture& picture, const PF_LRect& frame) {
  ScopedImage image(*suites_.supplier_suiteP);
  PF_Err err = suites_.supplier_suiteP->NewImageFromBuffer(
      supplier_, picture.width, picture.height, picture.width * kBytesPerPixel,
      kDRAWBOT_PixelLayout_32BGRA_Straight, picture.pixels, image.Out());
  if (err == PF_Err_NONE) {
    const DRAWBOT_PointF32 origin{static_cast<float>(frame.left), static_cast<float>(frame.top)};
    err = suites_.surface_suiteP->DrawImage(surface_, image.Get(), &origin, 1.0f);
  }
  const PF_Err releaseErr = image.Release();
  return err != PF_Err_NONE ? err : releaseErr;
}

}  // namespace morvane
