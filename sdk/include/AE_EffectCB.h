// Host utility callbacks (in_data->utils): handles, ANSI helpers, iteration.
#ifndef AE_EFFECTCB_H
#define AE_EFFECTCB_H

#include <AE_Effect.h>

#pragma pack(push, 8)

#ifdef __cplusplus
extern "C" {
#endif

enum { PF_Iterations_ONCE_PER_PROCESSOR = -1 };

// Math and string helpers supplied by the host.
typedef struct PF_ANSICallbacks {
  A_FpLong (*atan)(A_FpLong);
  A_FpLong (*atan2)(A_FpLong y, A_FpLong x);
  A_FpLong (*ceil)(A_FpLong);
  A_FpLong (*cos)(A_FpLong);
  A_FpLong (*exp)(A_FpLong);
  A_FpLong (*fabs)(A_FpLong);
  A_FpLong (*floor)(A_FpLong);
  A_FpLong (*fmod)(A_FpLong x, A_FpLong y);
  A_FpLong (*hypot)(A_FpLong x, A_FpLong y);
  A_FpLong (*log)(A_FpLong);
  A_FpLong (*log10)(A_FpLong);
  A_FpLong (*pow)(A_FpLong x, A_FpLong y);
  A_FpLong (*sin)(A_FpLong);
  A_FpLong (*sqrt)(A_FpLong);
  A_FpLong (*tan)(A_FpLong);
  int (*sprintf)(A_char* dst, const A_char* format, ...);
  A_char* (*strcpy)(A_char* dst, const A_char* src);
  A_FpLong (*asin)(A_FpLong);
  A_FpLong (*acos)(A_FpLong);
  A_long ansi_procs[1];
} PF_ANSICallbacks;

// Colour-space helpers; not used by this effect (eight pointer slots).
typedef struct PF_ColorCallbacks {
  void* reserved[8];
} PF_ColorCallbacks;

typedef struct _PF_UtilCallbacks {
  // Image-processing callbacks this effect does not call: pointer-size slots.
  void* begin_sampling;
  void* subpixel_sample;
  void* area_sample;
  void* reserved_deprecated;
  void* end_sampling;
  void* composite_rect;
  void* blend;
  void* convolve;
  void* copy;
  void* fill;
  void* gaussian_kernel;
  void* iterate;
  void* premultiply;
  void* premultiply_color;
  void* new_world;
  void* dispose_world;
  void* iterate_origin;
  void* iterate_lut;
  void* transfer_rect;
  void* transform_world;

  PF_Handle (*host_new_handle)(A_u_longlong size);
  void* (*host_lock_handle)(PF_Handle pf_handle);
  void (*host_unlock_handle)(PF_Handle pf_handle);
  void (*host_dispose_handle)(PF_Handle pf_handle);

  void* get_callback_addr;
  PF_Err (*app)(PF_ProgPtr effect_ref, A_long selector, ...);

  PF_ANSICallbacks ansi;
  PF_ColorCallbacks colorCB;

  void* get_platform_data;
  A_u_longlong (*host_get_handle_size)(PF_Handle pf_handle);
  void* iterate_origin_non_clip_src;
  // Calls fn_func for every i in [0, iterationsL) on host worker threads and
  // returns when all calls have returned. iterationsL may be
  // PF_Iterations_ONCE_PER_PROCESSOR; fn_func always receives the resolved
  // count. Only the call with thread_indexL 0 may use abort or progress.
  PF_Err (*iterate_generic)(A_long iterationsL, void* refconPV,
                            PF_Err (*fn_func)(void* refconPV, A_long thread_indexL, A_long i,
                                              A_long iterationsL));
  // The handle may move: it is passed by pointer.
  PF_Err (*host_resize_handle)(A_u_longlong new_size, PF_Handle* handleP);

  // 16-bit and pixel-data callbacks this effect does not call.
  void* reserved_pixel_data_cbs[9];

  A_long reserved[1];
} PF_UtilCallbacks;

// These name a local `in_data` themselves.
#define PF_NEW_HANDLE(size) (*in_data->utils->host_new_handle)(size)
#define PF_DISPOSE_HANDLE(h) (*in_data->utils->host_dispose_handle)(h)
#define PF_LOCK_HANDLE(h) (*in_data->utils->host_lock_handle)(h)
#define PF_UNLOCK_HANDLE(h) (*in_data->utils->host_unlock_handle)(h)
#define PF_GET_HANDLE_SIZE(h) (*in_data->utils->host_get_handle_size)(h)
#define PF_RESIZE_HANDLE(new_size, handle_ptr) \
  (*in_data->utils->host_resize_handle)((new_size), (handle_ptr))
#define PF_SPRINTF (*in_data->utils->ansi.sprintf)
#define PF_STRCPY(dst, src) (*in_data->utils->ansi.strcpy)((dst), (src))

#ifdef __cplusplus
}
#endif

#pragma pack(pop)

#endif
