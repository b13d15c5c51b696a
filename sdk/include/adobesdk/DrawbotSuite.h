// The host's 2D drawing suites, used to draw custom parameter UI.
#ifndef DRAWBOTSUITE_H
#define DRAWBOTSUITE_H

#include <SPBasic.h>
#include <adobesdk/drawbotsuite/DrawbotSuiteTypes.h>

#pragma pack(push, 8)

#ifdef __cplusplus
extern "C" {
#endif

#define kDRAWBOT_DrawSuite "DRAWBOT Draw Suite"
#define kDRAWBOT_DrawSuite_Version1 1

#define kDRAWBOT_SupplierSuite "DRAWBOT Supplier Suite"
#define kDRAWBOT_SupplierSuite_Version1 1

#define kDRAWBOT_SurfaceSuite "DRAWBOT Surface Suite"
#define kDRAWBOT_SurfaceSuite_Version2 2

#define kDRAWBOT_PathSuite "DRAWBOT Path Suite"
#define kDRAWBOT_PathSuite_Version1 1

typedef struct DRAWBOT_DrawbotSuite1 {
  SPAPI SPErr (*GetSupplier)(DRAWBOT_DrawRef in_drawbot_ref, DRAWBOT_SupplierRef* out_supplierP);
  SPAPI SPErr (*GetSurface)(DRAWBOT_DrawRef in_drawbot_ref, DRAWBOT_SurfaceRef* out_surfaceP);
} DRAWBOT_DrawbotSuite1;

typedef struct DRAWBOT_SupplierSuite1 {
  void* NewPen;
  void* NewBrush;
  void* SupportsText;
  void* GetDefaultFontSize;
  void* NewDefaultFont;
  SPAPI SPErr (*NewImageFromBuffer)(DRAWBOT_SupplierRef in_supplier_ref, int in_width,
                                    int in_height, int in_row_bytes, DRAWBOT_PixelLayout in_pl,
                                    const void* in_dataP, DRAWBOT_ImageRef* out_imageP);
  void* NewPath;
  void* SupportsPixelLayoutBGRA;
  void* PrefersPixelLayoutBGRA;
  void* SupportsPixelLayoutARGB;
  void* PrefersPixelLayoutARGB;
  void* RetainObject;
  // Releases any reference: cast image, path, pen ... refs to DRAWBOT_ObjectRef.
  SPAPI SPErr (*ReleaseObject)(DRAWBOT_ObjectRef in_obj_ref);
} DRAWBOT_SupplierSuite1;

typedef struct DRAWBOT_SurfaceSuite2 {
  void* PushStateStack;
  void* PopStateStack;
  void* PaintRect;
  void* FillPath;
  void* StrokePath;
  void* Clip;
  void* GetClipBounds;
  void* IsWithinClipBounds;
  void* Transform;
  void* DrawString;
  // in_alpha is 0..1.
  SPAPI SPErr (*DrawImage)(DRAWBOT_SurfaceRef in_surface_ref, DRAWBOT_ImageRef in_image_ref,
                           const DRAWBOT_PointF32* in_originP, float in_alpha);
  void* SetInterpolationPolicy;
  void* GetInterpolationPolicy;
  void* SetAntiAliasPolicy;
  void* GetAntiAliasPolicy;
  void* Flush;
  void* GetTransformToScreenScale;
} DRAWBOT_SurfaceSuite2;

typedef DRAWBOT_SurfaceSuite2 DRAWBOT_SurfaceSuite1;

typedef struct DRAWBOT_PathSuite1 {
  void* MoveTo;
  void* LineTo;
  void* BezierTo;
  void* AddRect;
  void* AddArc;
  void* Close;
} DRAWBOT_PathSuite1;

// Suites this interface does not describe; only pointers to them are used.
typedef struct DRAWBOT_PenSuite1 DRAWBOT_PenSuite1;
typedef struct DRAWBOT_ImageSuite1 DRAWBOT_ImageSuite1;

typedef struct DRAWBOT_Suites {
  DRAWBOT_DrawbotSuite1* drawbot_suiteP;
  DRAWBOT_SupplierSuite1* supplier_suiteP;
  DRAWBOT_SurfaceSuite2* surface_suiteP;
  DRAWBOT_PathSuite1* path_suiteP;
  DRAWBOT_PenSuite1* pen_suiteP;
  DRAWBOT_ImageSuite1* image_suiteP;
} DRAWBOT_Suites;

#ifdef __cplusplus
}
#endif

#pragma pack(pop)

#endif
