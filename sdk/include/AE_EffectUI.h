// Custom user interface: registration record, drawing context and events.
#ifndef AE_EFFECTUI_H
#define AE_EFFECTUI_H

#include <AE_Effect.h>

#pragma pack(push, 8)

#ifdef __cplusplus
extern "C" {
#endif

#define PF_CONTEXT_MAGIC 0x05EA771E

enum {
  PF_CustomEFlag_NONE = 0,
  PF_CustomEFlag_COMP = 1 << 0,
  PF_CustomEFlag_LAYER = 1 << 1,
  PF_CustomEFlag_EFFECT = 1 << 2,
  PF_CustomEFlag_PREVIEW = 1 << 3
};

// Only PF_UIAlignment_NONE is honoured by the host.
enum {
  PF_UIAlignment_NONE = 0,
  PF_UIAlignment_TOP = 1 << 0,
  PF_UIAlignment_LEFT = 1 << 1,
  PF_UIAlignment_BOTTOM = 1 << 2,
  PF_UIAlignment_RIGHT = 1 << 3
};

enum {
  PF_Window_NONE = -1,
  PF_Window_COMP = 0,
  PF_Window_LAYER = 1,
  PF_Window_EFFECT = 2,
  PF_Window_PREVIEW = 3
};

enum {
  PF_Event_NONE = -1,
  PF_Event_NEW_CONTEXT = 0,
  PF_Event_ACTIVATE = 1,
  PF_Event_DO_CLICK = 2,
  PF_Event_DRAG = 3,
  PF_Event_DRAW = 4,
  PF_Event_DEACTIVATE = 5,
  PF_Event_CLOSE_CONTEXT = 6,
  PF_Event_IDLE = 7,
  PF_Event_ADJUST_CURSOR = 9,
  PF_Event_KEYDOWN = 10,
  PF_Event_MOUSE_EXITED = 11
};

enum { PF_EA_NONE = 0, PF_EA_PARAM_TITLE = 1, PF_EA_CONTROL = 2 };

enum { PF_EI_DONT_DRAW = 1 };

enum {
  PF_EO_NONE = 0,
  PF_EO_HANDLED_EVENT = 1 << 0,
  PF_EO_ALWAYS_UPDATE = 1 << 1,
  PF_EO_NEVER_UPDATE = 1 << 2,
  PF_EO_UPDATE_NOW = 1 << 3
};

typedef struct PF_CustomUIInfo {
  A_long reserved;
  PF_CustomEventFlags events;
  A_long comp_ui_width;
  A_long comp_ui_height;
  PF_UIAlignment comp_ui_alignment;
  A_long layer_ui_width;
  A_long layer_ui_height;
  PF_UIAlignment layer_ui_alignment;
  A_long preview_ui_width;
  A_long preview_ui_height;
  PF_UIAlignment preview_ui_alignment;
} PF_CustomUIInfo;

// The drawing context of one custom-UI window.
typedef struct PF_Context {
  A_u_long magic;  // PF_CONTEXT_MAGIC
  PF_WindowType w_type;
  A_long reserved_flt;
  A_intptr_t plugin_state[4];
  void* reserved_drawref;
  void* reserved_paneP;
  void* reserved_job_manageP;
} PF_Context;

typedef PF_Context** PF_ContextH;

// Clicks and drags.
typedef struct PF_DoClickEventInfo {
  A_u_long when;
  PF_Point screen_point;
  A_long num_clicks;
  PF_Modifiers modifiers;
  A_intptr_t continue_refcon[4];
  PF_Boolean send_drag;
  PF_Boolean last_time;
} PF_DoClickEventInfo;

typedef struct PF_DrawEventInfo {
  PF_UnionableRect update_rect;
  A_long depth;
} PF_DrawEventInfo;

// Event kinds whose contents this interface does not describe.
typedef struct PF_KeyDownEvent {
  A_long reserved[8];
} PF_KeyDownEvent;

typedef struct PF_AdjustCursorEventInfo {
  A_long reserved[8];
} PF_AdjustCursorEventInfo;

typedef union PF_EventUnion {
  PF_DoClickEventInfo do_click;
  PF_DrawEventInfo draw;
  PF_KeyDownEvent key_down;
  PF_AdjustCursorEventInfo adjust_cursor;
} PF_EventUnion;

typedef struct PF_EffectWindowInfo {
  PF_ParamIndex index;
  PF_EffectArea area;
  PF_UnionableRect current_frame;
  PF_UnionableRect param_title_frame;
  A_long horiz_offset;
} PF_EffectWindowInfo;

// Coordinate-conversion callbacks; not used by this effect (nine pointer slots).
typedef struct PF_EventCallbacks {
  void* reserved[9];
} PF_EventCallbacks;

typedef struct PF_EventExtra {
  PF_ContextH contextH;
  PF_EventType e_type;
  PF_EventUnion u;
  PF_EffectWindowInfo effect_win;
  PF_EventCallbacks cbs;
  PF_EventInFlags evt_in_flags;
  PF_EventOutFlags evt_out_flags;
} PF_EventExtra;

#ifdef __cplusplus
}
#endif

#pragma pack(pop)

#endif
