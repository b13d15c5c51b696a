// Core effect interface: commands, errors, flags, parameters, images, the
// smart-render records and the per-call input/output records.
#ifndef AE_EFFECT_H
#define AE_EFFECT_H

#include <A.h>

#pragma pack(push, 8)

#ifdef __cplusplus
extern "C" {
#endif

// ---------------------------------------------------------------------------
// Effect interface versions. PF_AE_PLUG_IN_VERSION / _SUBVERS follow this header release.

#define PF_AE135_PLUG_IN_VERSION 13
#define PF_AE135_PLUG_IN_SUBVERS 9
#define PF_AE177_PLUG_IN_VERSION 13
#define PF_AE177_PLUG_IN_SUBVERS 23
#define PF_AE220_PLUG_IN_VERSION 13
#define PF_AE220_PLUG_IN_SUBVERS 27
#define PF_AE234_PLUG_IN_VERSION 13
#define PF_AE234_PLUG_IN_SUBVERS 28

#define PF_AE_PLUG_IN_VERSION PF_AE234_PLUG_IN_VERSION
#define PF_AE_PLUG_IN_SUBVERS PF_AE234_PLUG_IN_SUBVERS

// Effect version word: build bits 0-8, stage 9-10, bug fix 11-14,
// sub-version 15-18, version low 3 bits 19-21, version / 8 in 26-29.
#define PF_VERSION(vers, subvers, bugvers, stage, build)                                 \
  ((A_u_long)(((((A_u_long)(vers) >> 3) & 0xF) << 26) | (((A_u_long)(vers)&0x7) << 19) | \
              (((A_u_long)(subvers)&0xF) << 15) | (((A_u_long)(bugvers)&0xF) << 11) |    \
              (((A_u_long)(stage)&0x3) << 9) | ((A_u_long)(build)&0x1FF)))

// ---------------------------------------------------------------------------
// Scalar types.

typedef A_long PF_Fixed;
typedef A_u_long PF_UFixed;
typedef A_char PF_Boolean;
typedef void** PF_Handle;
typedef A_FpLong PF_FpLong;
typedef A_FpShort PF_FpShort;

typedef A_long PF_Err;
typedef A_long PF_Cmd;
typedef A_long PF_ParamIndex;
typedef A_long PF_ParamValue;
typedef A_long PF_ParamType;
typedef A_long PF_ParamFlags;
typedef A_long PF_ParamUIFlags;
typedef A_long PF_ChangeFlags;
typedef A_long PF_OutFlags;
typedef A_long PF_OutFlags2;
typedef A_long PF_InFlags;
typedef A_long PF_Quality;
typedef A_long PF_Field;
typedef A_long PF_WorldFlags;
typedef A_long PF_PixelFormat;
typedef A_long PF_CustomEventFlags;
typedef A_long PF_WindowType;
typedef A_long PF_EventType;
typedef A_long PF_EffectArea;
typedef A_long PF_EventInFlags;
typedef A_long PF_EventOutFlags;
typedef A_long PF_UIAlignment;
typedef A_long PF_Modifiers;
typedef A_long PF_Stage;
typedef A_long PF_ChannelMask;
typedef A_short PF_ValueDisplayFlags;
typedef A_u_long PF_FSliderFlags;
typedef A_short PF_RenderOutputFlags;
typedef PF_Handle PF_ArbitraryH;

// Opaque per-instance reference handed back to every host callback.
typedef struct PF_ProgressInfo* PF_ProgPtr;

#define PF_Fixed_MINVAL ((PF_Fixed)0x80000000)
#define PF_Fixed_MAXVAL ((PF_Fixed)0x7FFFFFFF)

#define PF_MAX_CHAN8 255
#define PF_HALF_CHAN8 128
#define PF_MAX_CHAN16 32768
#define PF_HALF_CHAN16 16384

#define PF_MAX_EFFECT_NAME_LEN 31
#define PF_MAX_EFFECT_PARAM_NAME_LEN 31
#define PF_MAX_EFFECT_MSG_LEN 255
#define PF_MAX_PARAM_DESCRIPTION_LEN 31
#define PF_MAX_PARAM_VALUE_LEN 31

enum { PF_Stage_DEVELOP = 0, PF_Stage_ALPHA = 1, PF_Stage_BETA = 2, PF_Stage_RELEASE = 3 };

// ---------------------------------------------------------------------------
// Commands.

enum {
  PF_Cmd_ABOUT = 0,
  PF_Cmd_GLOBAL_SETUP = 1,
  PF_Cmd_UNUSED_0 = 2,
  PF_Cmd_GLOBAL_SETDOWN = 3,
  PF_Cmd_PARAMS_SETUP = 4,
  PF_Cmd_SEQUENCE_SETUP = 5,
  PF_Cmd_SEQUENCE_RESETUP = 6,
  PF_Cmd_SEQUENCE_FLATTEN = 7,
  PF_Cmd_SEQUENCE_SETDOWN = 8,
  PF_Cmd_DO_DIALOG = 9,
  PF_Cmd_FRAME_SETUP = 10,
  PF_Cmd_RENDER = 11,
  PF_Cmd_FRAME_SETDOWN = 12,
  PF_Cmd_USER_CHANGED_PARAM = 13,
  PF_Cmd_UPDATE_PARAMS_UI = 14,
  PF_Cmd_EVENT = 15,
  PF_Cmd_GET_EXTERNAL_DEPENDENCIES = 16,
  PF_Cmd_COMPLETELY_GENERAL = 17,
  PF_Cmd_QUERY_DYNAMIC_FLAGS = 18,
  PF_Cmd_AUDIO_RENDER = 19,
  PF_Cmd_AUDIO_SETUP = 20,
  PF_Cmd_AUDIO_SETDOWN = 21,
  PF_Cmd_ARBITRARY_CALLBACK = 22,
  PF_Cmd_SMART_PRE_RENDER = 23,
  PF_Cmd_SMART_RENDER = 24,
  PF_Cmd_RESERVED1 = 25,
  PF_Cmd_RESERVED2 = 26,
  PF_Cmd_RESERVED3 = 27,
  PF_Cmd_GET_FLATTENED_SEQUENCE_DATA = 28,
  PF_Cmd_TRANSLATE_PARAMS_TO_PREFS = 29,
  PF_Cmd_RESERVED4 = 30,
  PF_Cmd_SMART_RENDER_GPU = 31,
  PF_Cmd_GPU_DEVICE_SETUP = 32,
  PF_Cmd_GPU_DEVICE_SETDOWN = 33,
  PF_Cmd_NUM_CMDS = 34
};

// ---------------------------------------------------------------------------
// Errors.

#define PF_FIRST_ERR 512

enum {
  PF_Err_NONE = 0,
  PF_Err_OUT_OF_MEMORY = 4,
  PF_Err_INTERNAL_STRUCT_DAMAGED = PF_FIRST_ERR,
  PF_Err_INVALID_INDEX = 513,
  PF_Err_UNRECOGNIZED_PARAM_TYPE = 514,
  PF_Err_INVALID_CALLBACK = 515,
  PF_Err_BAD_CALLBACK_PARAM = 516,
  PF_Interrupt_CANCEL = 517,
  PF_Err_CANNOT_PARSE_KEYFRAME_TEXT = 518
};

// ---------------------------------------------------------------------------
// Output and input flags.

enum {
  PF_OutFlag_SEQUENCE_DATA_NEEDS_FLATTENING = 1 << 4,
  PF_OutFlag_I_DO_DIALOG = 1 << 5,
  PF_OutFlag_DISPLAY_ERROR_MESSAGE = 1 << 8,
  PF_OutFlag_PIX_INDEPENDENT = 1 << 10,
  PF_OutFlag_CUSTOM_UI = 1 << 15,
  PF_OutFlag_REFRESH_UI = 1 << 17,
  PF_OutFlag_FORCE_RERENDER = 1 << 22,
  PF_OutFlag_DEEP_COLOR_AWARE = 1 << 25,
  PF_OutFlag_SEND_UPDATE_PARAMS_UI = 1 << 26
};

enum {
  PF_OutFlag2_PARAM_GROUP_START_COLLAPSED_FLAG = 1 << 3,
  PF_OutFlag2_I_AM_THREADSAFE = 1 << 4,
  PF_OutFlag2_SUPPORTS_SMART_RENDER = 1 << 10,
  PF_OutFlag2_FLOAT_COLOR_AWARE = 1 << 12,
  PF_OutFlag2_SUPPORTS_GET_FLATTENED_SEQUENCE_DATA = 1 << 23,
  PF_OutFlag2_CUSTOM_UI_ASYNC_MANAGER = 1 << 24,
  PF_OutFlag2_SUPPORTS_THREADED_RENDERING = 1 << 27,
  PF_OutFlag2_MUTABLE_RENDER_SEQUENCE_DATA_SLOWER = 1 << 28
};

enum { PF_InFlag_PROJECT_IS_RENDER_ONLY = 1 };

// ---------------------------------------------------------------------------
// Parameter types and flags.

enum {
  PF_Param_LAYER = 0,
  PF_Param_SLIDER = 1,
  PF_Param_FIX_SLIDER = 2,
  PF_Param_ANGLE = 3,
  PF_Param_CHECKBOX = 4,
  PF_Param_COLOR = 5,
  PF_Param_POINT = 6,
  PF_Param_POPUP = 7,
  PF_Param_CUSTOM = 8,
  PF_Param_NO_DATA = 9,
  PF_Param_FLOAT_SLIDER = 10,
  PF_Param_ARBITRARY_DATA = 11,
  PF_Param_PATH = 12,
  PF_Param_GROUP_START = 13,
  PF_Param_GROUP_END = 14,
  PF_Param_BUTTON = 15,
  PF_Param_POINT_3D = 18
};

enum {
  PF_PUI_NONE = 0,
  PF_PUI_TOPIC = 1 << 0,
  PF_PUI_CONTROL = 1 << 1,
  PF_PUI_STD_CONTROL_ONLY = 1 << 2,
  PF_PUI_NO_ECW_UI = 1 << 3,
  PF_PUI_ECW_SEPARATOR = 1 << 4,
  PF_PUI_DISABLED = 1 << 5,
  PF_PUI_DONT_ERASE_TOPIC = 1 << 6,
  PF_PUI_DONT_ERASE_CONTROL = 1 << 7,
  PF_PUI_RADIO_BUTTON = 1 << 8,
  PF_PUI_INVISIBLE = 1 << 9
};

enum {
  PF_ParamFlag_CANNOT_TIME_VARY = 1 << 1,
  PF_ParamFlag_CANNOT_INTERP = 1 << 2,
  PF_ParamFlag_COLLAPSE_TWIRLY = 1 << 5,
  PF_ParamFlag_START_COLLAPSED = PF_ParamFlag_COLLAPSE_TWIRLY,
  PF_ParamFlag_SUPERVISE = 1 << 6,
  PF_ParamFlag_USE_VALUE_FOR_OLD_PROJECTS = 1 << 7
};

enum {
  PF_ValueDisplayFlag_NONE = 0,
  PF_ValueDisplayFlag_PERCENT = 1,
  PF_ValueDisplayFlag_PIXEL = 2,
  PF_ValueDisplayFlag_REVERSE = 8
};

enum { PF_FSliderFlag_NONE = 0, PF_FSliderFlag_WANT_PHASE = 1 };

enum { PF_LayerDefault_MYSELF = -1, PF_LayerDefault_NONE = 0 };

#define PF_ParamDef_IS_PUI_FLAG_SET(defP, flag) (((defP)->ui_flags & (flag)) != 0)
#define PF_ParamDef_IS_PARAM_FLAG_SET(defP, flag) (((defP)->flags & (flag)) != 0)

// ---------------------------------------------------------------------------
// Small records.

typedef struct PF_SpecVersion {
  A_short major;
  A_short minor;
} PF_SpecVersion;

typedef struct PF_RationalScale {
  A_long num;
  A_u_long den;
} PF_RationalScale;

typedef struct PF_LRect {
  A_long left;
  A_long top;
  A_long right;
  A_long bottom;
} PF_LRect;

typedef PF_LRect PF_Rect;
typedef PF_LRect PF_UnionableRect;

typedef struct PF_Point {
  A_long h;
  A_long v;
} PF_Point;

// ---------------------------------------------------------------------------
// Pixels. Channel order in memory is alpha, red, green, blue.

typedef struct PF_Pixel {
  A_u_char alpha;
  A_u_char red;
  A_u_char green;
  A_u_char blue;
} PF_Pixel;

typedef PF_Pixel PF_Pixel8;

typedef struct PF_Pixel16 {
  A_u_short alpha;
  A_u_short red;
  A_u_short green;
  A_u_short blue;
} PF_Pixel16;

typedef struct PF_PixelFloat {
  PF_FpShort alpha;
  PF_FpShort red;
  PF_FpShort green;
  PF_FpShort blue;
} PF_PixelFloat;

typedef PF_PixelFloat PF_Pixel32;

// With PF_DEEP_COLOR_AWARE the pixel pointer is opaque: cast `data` to a byte
// pointer before any arithmetic and the code works in both configurations.
#ifdef PF_DEEP_COLOR_AWARE
typedef struct PF_PixelOpaque* PF_PixelPtr;
#else
typedef PF_Pixel* PF_PixelPtr;
#endif

// ---------------------------------------------------------------------------
// Images.

typedef struct PF_LayerDef {
  void* reserved0;
  void* reserved1;
  PF_WorldFlags world_flags;
  PF_PixelPtr data;
  A_long rowbytes;  // bytes per row, may include padding
  A_long width;
  A_long height;
  PF_LRect extent_hint;
  void* platform_ref;
  A_long reserved_long1;
  void* reserved_long4;
  PF_RationalScale pix_aspect_ratio;
  void* reserved_long2;
  A_long origin_x;  // buffer origin within the layer (smart checkouts only)
  A_long origin_y;
  A_long reserved_long3;
  A_long dephault;  // a PF_LayerDefault_* value
} PF_LayerDef;

typedef PF_LayerDef PF_EffectWorld;

// Audio buffer; its contents are not used by video effects.
typedef struct PF_SoundWorld {
  void* reserved[4];
} PF_SoundWorld;

// ---------------------------------------------------------------------------
// Parameter definitions.

// Parameter kinds whose contents this interface does not describe; they keep
// a placeholder so that the union keeps its size.
typedef struct PF_SliderDef {
  A_long reserved[8];
} PF_SliderDef;

typedef struct PF_FixedSliderDef {
  A_long reserved[8];
} PF_FixedSliderDef;

typedef struct PF_ColorDef {
  A_long reserved[4];
} PF_ColorDef;

typedef struct PF_PointDef {
  A_long reserved[8];
} PF_PointDef;

typedef struct PF_PathDef {
  A_long reserved[8];
} PF_PathDef;

typedef struct PF_ButtonDef {
  A_long reserved[4];
  void* reserved_ptr;
} PF_ButtonDef;

typedef struct PF_Point3DDef {
  A_FpLong reserved[8];
} PF_Point3DDef;

typedef struct PF_AngleDef {
  PF_Fixed value;  // degrees, 16.16
  PF_Fixed dephault;
  PF_Fixed valid_min;
  PF_Fixed valid_max;
} PF_AngleDef;

typedef struct PF_CheckBoxDef {
  A_long value;
  PF_Boolean dephault;
  char reserved;
  A_short reserved1;
  union {
    const A_char* nameptr;
  } u;
} PF_CheckBoxDef;

typedef struct PF_PopupDef {
  A_long value;  // 1-based
  A_short num_choices;
  A_short dephault;
  union {
    const A_char* namesptr;  // items separated by '|'
  } u;
} PF_PopupDef;

typedef struct PF_FloatSliderDef {
  PF_FpLong value;
  PF_FpLong phase;
  A_char value_desc[PF_MAX_PARAM_DESCRIPTION_LEN + 1];
  PF_FpShort valid_min;
  PF_FpShort valid_max;
  PF_FpShort slider_min;
  PF_FpShort slider_max;
  PF_FpShort dephault;
  A_short precision;
  PF_ValueDisplayFlags display_flags;
  PF_FSliderFlags fs_flags;
  PF_FpShort curve_tolerance;
  PF_Boolean useExponent;
  PF_FpShort exponent;
} PF_FloatSliderDef;

typedef struct PF_ArbitraryDef {
  A_short id;
  A_short pad;
  PF_ArbitraryH dephault;
  PF_ArbitraryH value;
  void* refconPV;
} PF_ArbitraryDef;

typedef union PF_ParamDefUnion {
  PF_LayerDef ld;
  PF_SliderDef sd;
  PF_FixedSliderDef fd;
  PF_AngleDef ad;
  PF_CheckBoxDef bd;
  PF_ColorDef cd;
  PF_PointDef td;
  PF_PopupDef pd;
  PF_FloatSliderDef fs_d;
  PF_ArbitraryDef arb_d;
  PF_PathDef path_d;
  PF_ButtonDef button_d;
  PF_Point3DDef point3d_d;
} PF_ParamDefUnion;

typedef struct PF_ParamDef {
  union {
    A_long id;  // disk ID, set when the parameter is added
    PF_ChangeFlags change_flags;
  } uu;
  PF_ParamUIFlags ui_flags;
  A_short ui_width;
  A_short ui_height;
  PF_ParamType param_type;
  A_char name[PF_MAX_EFFECT_PARAM_NAME_LEN + 1];
  PF_ParamFlags flags;
  A_long unused;
  PF_ParamDefUnion u;
} PF_ParamDef;

typedef PF_ParamDef* PF_ParamDefPtr;
typedef PF_ParamDef** PF_ParamList;

// ---------------------------------------------------------------------------
// Smart render.

enum {
  PF_ChannelMask_ALPHA = 1,
  PF_ChannelMask_RED = 2,
  PF_ChannelMask_GREEN = 4,
  PF_ChannelMask_BLUE = 8,
  PF_ChannelMask_ARGB = 15
};

enum { PF_Field_FRAME = 0, PF_Field_UPPER = 1, PF_Field_LOWER = 2 };

enum { PF_RenderOutputFlag_RETURNS_EXTRA_PIXELS = 1, PF_RenderOutputFlag_GPU_RENDER_POSSIBLE = 2 };

typedef struct PF_RenderRequest {
  PF_LRect rect;
  PF_Field field;
  PF_ChannelMask channel_mask;
  PF_Boolean preserve_rgb_of_zero_alpha;
  char unused[3];
  A_long reserved[4];
} PF_RenderRequest;

typedef struct PF_CheckoutResult {
  PF_LRect result_rect;
  PF_LRect max_result_rect;
  PF_RationalScale par;
  PF_Boolean solid;
  PF_Boolean reservedB[3];
  A_long ref_width;
  A_long ref_height;
  A_long reserved[6];
} PF_CheckoutResult;

typedef struct PF_PreRenderInput {
  PF_RenderRequest output_request;
  short bitdepth;
  const void* gpu_data;
  A_long what_gpu;
  A_u_long device_index;
} PF_PreRenderInput;

typedef void (*PF_DeletePreRenderDataFunc)(void* pre_render_data);

typedef struct PF_PreRenderOutput {
  PF_LRect result_rect;
  PF_LRect max_result_rect;
  PF_Boolean solid;
  PF_Boolean reserved;
  PF_RenderOutputFlags flags;
  void* pre_render_data;
  PF_DeletePreRenderDataFunc delete_pre_render_data_func;
} PF_PreRenderOutput;

typedef struct PF_PreRenderCallbacks {
  PF_Err (*checkout_layer)(PF_ProgPtr effect_ref, PF_ParamIndex index, A_long checkout_idL,
                           const PF_RenderRequest* req, A_long what_time, A_long time_step,
                           A_u_long time_scale, PF_CheckoutResult* checkout_result);
  PF_Err (*GuidMixInPtr)(PF_ProgPtr effect_ref, A_u_long buf_sizeLu, const void* buf);
} PF_PreRenderCallbacks;

typedef struct PF_PreRenderExtra {
  PF_PreRenderInput* input;
  PF_PreRenderOutput* output;
  PF_PreRenderCallbacks* cb;
} PF_PreRenderExtra;

typedef struct PF_SmartRenderInput {
  PF_RenderRequest output_request;
  short bitdepth;
  void* pre_render_data;
  const void* gpu_data;
  A_long what_gpu;
  A_u_long device_index;
} PF_SmartRenderInput;

typedef struct PF_SmartRenderCallbacks {
  PF_Err (*checkout_layer_pixels)(PF_ProgPtr effect_ref, A_long checkout_idL,
                                  PF_EffectWorld** pixels);
  PF_Err (*checkin_layer_pixels)(PF_ProgPtr effect_ref, A_long checkout_idL);
  PF_Err (*checkout_output)(PF_ProgPtr effect_ref, PF_EffectWorld** output);
} PF_SmartRenderCallbacks;

typedef struct PF_SmartRenderExtra {
  PF_SmartRenderInput* input;
  PF_SmartRenderCallbacks* cb;
} PF_SmartRenderExtra;

// ---------------------------------------------------------------------------
// Interaction callbacks (in_data->inter).

struct PF_CustomUIInfo;

typedef struct PF_InteractCallbacks {
  // index 0 is the input layer; `param` must not point into the params array.
  PF_Err (*checkout_param)(PF_ProgPtr effect_ref, PF_ParamIndex index, A_long what_time,
                           A_long time_step, A_u_long time_scale, PF_ParamDef* param);
  PF_Err (*checkin_param)(PF_ProgPtr effect_ref, PF_ParamDef* param);
  // index -1 appends.
  PF_Err (*add_param)(PF_ProgPtr effect_ref, PF_ParamIndex index, PF_ParamDefPtr def);
  PF_Err (*abort)(PF_ProgPtr effect_ref);
  PF_Err (*progress)(PF_ProgPtr effect_ref, A_long current, A_long total);
  PF_Err (*register_ui)(PF_ProgPtr effect_ref, struct PF_CustomUIInfo* cust_info);
  void* checkout_layer_audio;
  void* checkin_layer_audio;
  void* get_audio_data;
  void* reserved_str[3];
  void* reserved[10];
} PF_InteractCallbacks;

#define PF_CHECKOUT_PARAM(in, index, time, step, scale, param) \
  (*(in)->inter.checkout_param)((in)->effect_ref, (index), (time), (step), (scale), (param))
#define PF_CHECKIN_PARAM(in, param) (*(in)->inter.checkin_param)((in)->effect_ref, (param))
#define PF_ADD_PARAM(in, index, def) (*(in)->inter.add_param)((in)->effect_ref, (index), (def))
#define PF_REGISTER_UI(in, info) (*(in)->inter.register_ui)((in)->effect_ref, (info))

// ---------------------------------------------------------------------------
// Per-call input and output records.

struct _PF_UtilCallbacks;
struct SPBasicSuite;

typedef struct PF_InData {
  PF_InteractCallbacks inter;
  struct _PF_UtilCallbacks* utils;
  PF_ProgPtr effect_ref;
  PF_Quality quality;
  PF_SpecVersion version;
  A_long serial_num;
  A_long appl_id;
  A_long num_params;
  A_long reserved;
  A_long what_cpu;
  A_long what_fpu;
  A_long current_time;
  A_long time_step;
  A_long total_time;
  A_long local_time_step;
  A_u_long time_scale;
  PF_Field field;
  PF_Fixed shutter_angle;
  A_long width;
  A_long height;
  PF_Rect extent_hint;
  A_long output_origin_x;
  A_long output_origin_y;
  PF_RationalScale downsample_x;
  PF_RationalScale downsample_y;
  PF_RationalScale pixel_aspect_ratio;
  PF_InFlags in_flags;
  PF_Handle global_data;
  PF_Handle sequence_data;
  PF_Handle frame_data;
  A_long start_sampL;
  A_long dur_sampL;
  A_long total_sampL;
  PF_SoundWorld src_snd;
  struct SPBasicSuite* pica_basicP;
  A_long pre_effect_source_origin_x;
  A_long pre_effect_source_origin_y;
  PF_Fixed shutter_phase;
} PF_InData;

typedef struct PF_OutData {
  A_u_long my_version;
  A_char name[PF_MAX_EFFECT_NAME_LEN + 1];
  PF_Handle global_data;
  A_long num_params;
  PF_Handle sequence_data;
  A_long flat_sdata_size;  // obsolete
  PF_Handle frame_data;
  A_long width;
  A_long height;
  PF_Point origin;
  PF_OutFlags out_flags;
  A_char return_msg[PF_MAX_EFFECT_MSG_LEN + 1];
  A_long start_sampL;
  A_long dur_sampL;
  PF_SoundWorld dest_snd;
  PF_OutFlags2 out_flags2;
} PF_OutData;

// The render entry point's shape.
typedef PF_Err (*PF_FilterProc)(PF_Cmd cmd, PF_InData* in_data, PF_OutData* out_data,
                                PF_ParamList params, PF_LayerDef* output, void* extra);

#ifdef __cplusplus
}
#endif

#pragma pack(pop)

#endif
