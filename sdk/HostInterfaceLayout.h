// Compile-time checks of the binary layout the host expects (64-bit). Included
// from HostInterface.h so that every translation unit verifies them, whether
// the headers come from sdk/include or from the host's own SDK.
#pragma once

#include <cstddef>
#include <type_traits>

static_assert(sizeof(void*) == 8, "the host interface is 64-bit only");

#define MORVANE_CHECK_SIZE(type, bytes) static_assert(sizeof(type) == (bytes), #type " size")
#define MORVANE_CHECK_OFFSET(type, member, off) \
  static_assert(offsetof(type, member) == (off), #type "::" #member " offset")

// Scalar types.
MORVANE_CHECK_SIZE(A_long, 4);
MORVANE_CHECK_SIZE(A_u_long, 4);
MORVANE_CHECK_SIZE(A_short, 2);
MORVANE_CHECK_SIZE(A_Boolean, 1);
MORVANE_CHECK_SIZE(A_u_longlong, 8);
MORVANE_CHECK_SIZE(A_HandleSize, 8);
MORVANE_CHECK_SIZE(A_intptr_t, 8);
MORVANE_CHECK_SIZE(PF_Fixed, 4);
MORVANE_CHECK_SIZE(PF_Boolean, 1);
MORVANE_CHECK_SIZE(PF_Handle, 8);
MORVANE_CHECK_SIZE(PF_ValueDisplayFlags, 2);
MORVANE_CHECK_SIZE(PF_FSliderFlags, 4);
MORVANE_CHECK_SIZE(PF_ProgPtr, 8);
static_assert(std::is_same_v<PF_Boolean, char>, "PF_Boolean is char");
static_assert(std::is_same_v<A_Boolean, unsigned char>, "A_Boolean is 8-bit unsigned");
static_assert(std::is_same_v<A_FpLong, double> && std::is_same_v<A_FpShort, float>);
static_assert(std::is_same_v<PF_Handle, void**>);

// Small records.
MORVANE_CHECK_SIZE(PF_SpecVersion, 4);
MORVANE_CHECK_SIZE(PF_RationalScale, 8);
MORVANE_CHECK_SIZE(PF_LRect, 16);
MORVANE_CHECK_SIZE(PF_Point, 8);
MORVANE_CHECK_SIZE(PF_Pixel8, 4);
MORVANE_CHECK_SIZE(PF_Pixel16, 8);
MORVANE_CHECK_SIZE(PF_PixelFloat, 16);
MORVANE_CHECK_SIZE(PF_SoundWorld, 32);

// Images.
MORVANE_CHECK_SIZE(PF_LayerDef, 120);
MORVANE_CHECK_OFFSET(PF_LayerDef, world_flags, 16);
MORVANE_CHECK_OFFSET(PF_LayerDef, data, 24);
MORVANE_CHECK_OFFSET(PF_LayerDef, rowbytes, 32);
MORVANE_CHECK_OFFSET(PF_LayerDef, width, 36);
MORVANE_CHECK_OFFSET(PF_LayerDef, height, 40);
MORVANE_CHECK_OFFSET(PF_LayerDef, extent_hint, 44);
MORVANE_CHECK_OFFSET(PF_LayerDef, platform_ref, 64);
MORVANE_CHECK_OFFSET(PF_LayerDef, reserved_long1, 72);
MORVANE_CHECK_OFFSET(PF_LayerDef, reserved_long4, 80);
MORVANE_CHECK_OFFSET(PF_LayerDef, pix_aspect_ratio, 88);
MORVANE_CHECK_OFFSET(PF_LayerDef, reserved_long2, 96);
MORVANE_CHECK_OFFSET(PF_LayerDef, origin_x, 104);
MORVANE_CHECK_OFFSET(PF_LayerDef, origin_y, 108);
MORVANE_CHECK_OFFSET(PF_LayerDef, reserved_long3, 112);
MORVANE_CHECK_OFFSET(PF_LayerDef, dephault, 116);
static_assert(std::is_same_v<PF_EffectWorld, PF_LayerDef>);

// Parameters.
MORVANE_CHECK_SIZE(PF_ParamDef, 176);
MORVANE_CHECK_OFFSET(PF_ParamDef, ui_flags, 4);
MORVANE_CHECK_OFFSET(PF_ParamDef, ui_width, 8);
MORVANE_CHECK_OFFSET(PF_ParamDef, ui_height, 10);
MORVANE_CHECK_OFFSET(PF_ParamDef, param_type, 12);
MORVANE_CHECK_OFFSET(PF_ParamDef, name, 16);
MORVANE_CHECK_OFFSET(PF_ParamDef, flags, 48);
MORVANE_CHECK_OFFSET(PF_ParamDef, unused, 52);
MORVANE_CHECK_OFFSET(PF_ParamDef, u, 56);
MORVANE_CHECK_SIZE(PF_ParamDefUnion, 120);
static_assert(std::is_same_v<PF_ParamList, PF_ParamDef**>);

MORVANE_CHECK_SIZE(PF_PopupDef, 16);
MORVANE_CHECK_OFFSET(PF_PopupDef, num_choices, 4);
MORVANE_CHECK_OFFSET(PF_PopupDef, dephault, 6);
MORVANE_CHECK_OFFSET(PF_PopupDef, u, 8);

MORVANE_CHECK_SIZE(PF_FloatSliderDef, 88);
MORVANE_CHECK_OFFSET(PF_FloatSliderDef, phase, 8);
MORVANE_CHECK_OFFSET(PF_FloatSliderDef, value_desc, 16);
MORVANE_CHECK_OFFSET(PF_FloatSliderDef, valid_min, 48);
MORVANE_CHECK_OFFSET(PF_FloatSliderDef, valid_max, 52);
MORVANE_CHECK_OFFSET(PF_FloatSliderDef, slider_min, 56);
MORVANE_CHECK_OFFSET(PF_FloatSliderDef, slider_max, 60);
MORVANE_CHECK_OFFSET(PF_FloatSliderDef, dephault, 64);
MORVANE_CHECK_OFFSET(PF_FloatSliderDef, precision, 68);
MORVANE_CHECK_OFFSET(PF_FloatSliderDef, display_flags, 70);
MORVANE_CHECK_OFFSET(PF_FloatSliderDef, fs_flags, 72);
MORVANE_CHECK_OFFSET(PF_FloatSliderDef, curve_tolerance, 76);
MORVANE_CHECK_OFFSET(PF_FloatSliderDef, useExponent, 80);
MORVANE_CHECK_OFFSET(PF_FloatSliderDef, exponent, 84);

MORVANE_CHECK_SIZE(PF_AngleDef, 16);
MORVANE_CHECK_OFFSET(PF_AngleDef, dephault, 4);
MORVANE_CHECK_OFFSET(PF_AngleDef, valid_min, 8);
MORVANE_CHECK_OFFSET(PF_AngleDef, valid_max, 12);

MORVANE_CHECK_SIZE(PF_CheckBoxDef, 16);
MORVANE_CHECK_OFFSET(PF_CheckBoxDef, dephault, 4);
MORVANE_CHECK_OFFSET(PF_CheckBoxDef, reserved, 5);
MORVANE_CHECK_OFFSET(PF_CheckBoxDef, reserved1, 6);
MORVANE_CHECK_OFFSET(PF_CheckBoxDef, u, 8);

MORVANE_CHECK_SIZE(PF_ArbitraryDef, 32);
MORVANE_CHECK_OFFSET(PF_ArbitraryDef, pad, 2);
MORVANE_CHECK_OFFSET(PF_ArbitraryDef, dephault, 8);
MORVANE_CHECK_OFFSET(PF_ArbitraryDef, value, 16);
MORVANE_CHECK_OFFSET(PF_ArbitraryDef, refconPV, 24);

// Smart render.
MORVANE_CHECK_SIZE(PF_RenderRequest, 44);
MORVANE_CHECK_OFFSET(PF_RenderRequest, field, 16);
MORVANE_CHECK_OFFSET(PF_RenderRequest, channel_mask, 20);
MORVANE_CHECK_OFFSET(PF_RenderRequest, preserve_rgb_of_zero_alpha, 24);
MORVANE_CHECK_OFFSET(PF_RenderRequest, unused, 25);
MORVANE_CHECK_OFFSET(PF_RenderRequest, reserved, 28);

MORVANE_CHECK_SIZE(PF_PreRenderExtra, 24);
MORVANE_CHECK_OFFSET(PF_PreRenderExtra, output, 8);
MORVANE_CHECK_OFFSET(PF_PreRenderExtra, cb, 16);

MORVANE_CHECK_SIZE(PF_PreRenderInput, 64);
MORVANE_CHECK_OFFSET(PF_PreRenderInput, bitdepth, 44);
MORVANE_CHECK_OFFSET(PF_PreRenderInput, gpu_data, 48);
MORVANE_CHECK_OFFSET(PF_PreRenderInput, what_gpu, 56);
MORVANE_CHECK_OFFSET(PF_PreRenderInput, device_index, 60);

MORVANE_CHECK_SIZE(PF_PreRenderOutput, 56);
MORVANE_CHECK_OFFSET(PF_PreRenderOutput, max_result_rect, 16);
MORVANE_CHECK_OFFSET(PF_PreRenderOutput, solid, 32);
MORVANE_CHECK_OFFSET(PF_PreRenderOutput, reserved, 33);
MORVANE_CHECK_OFFSET(PF_PreRenderOutput, flags, 34);
MORVANE_CHECK_OFFSET(PF_PreRenderOutput, pre_render_data, 40);
MORVANE_CHECK_OFFSET(PF_PreRenderOutput, delete_pre_render_data_func, 48);
static_assert(std::is_same_v<decltype(PF_PreRenderOutput::pre_render_data), void*>);

MORVANE_CHECK_SIZE(PF_PreRenderCallbacks, 16);
MORVANE_CHECK_OFFSET(PF_PreRenderCallbacks, GuidMixInPtr, 8);

MORVANE_CHECK_SIZE(PF_CheckoutResult, 76);
MORVANE_CHECK_OFFSET(PF_CheckoutResult, max_result_rect, 16);
MORVANE_CHECK_OFFSET(PF_CheckoutResult, par, 32);
MORVANE_CHECK_OFFSET(PF_CheckoutResult, solid, 40);
MORVANE_CHECK_OFFSET(PF_CheckoutResult, reservedB, 41);
MORVANE_CHECK_OFFSET(PF_CheckoutResult, ref_width, 44);
MORVANE_CHECK_OFFSET(PF_CheckoutResult, ref_height, 48);
MORVANE_CHECK_OFFSET(PF_CheckoutResult, reserved, 52);

MORVANE_CHECK_SIZE(PF_SmartRenderExtra, 16);
MORVANE_CHECK_OFFSET(PF_SmartRenderExtra, cb, 8);

MORVANE_CHECK_SIZE(PF_SmartRenderInput, 72);
MORVANE_CHECK_OFFSET(PF_SmartRenderInput, bitdepth, 44);
MORVANE_CHECK_OFFSET(PF_SmartRenderInput, pre_render_data, 48);
MORVANE_CHECK_OFFSET(PF_SmartRenderInput, gpu_data, 56);
MORVANE_CHECK_OFFSET(PF_SmartRenderInput, what_gpu, 64);
MORVANE_CHECK_OFFSET(PF_SmartRenderInput, device_index, 68);
static_assert(std::is_same_v<decltype(PF_SmartRenderInput::pre_render_data), void*>);

MORVANE_CHECK_SIZE(PF_SmartRenderCallbacks, 24);
MORVANE_CHECK_OFFSET(PF_SmartRenderCallbacks, checkin_layer_pixels, 8);
MORVANE_CHECK_OFFSET(PF_SmartRenderCallbacks, checkout_output, 16);

// Interaction callbacks.
MORVANE_CHECK_SIZE(PF_InteractCallbacks, 176);
MORVANE_CHECK_OFFSET(PF_InteractCallbacks, checkin_param, 8);
MORVANE_CHECK_OFFSET(PF_InteractCallbacks, add_param, 16);
MORVANE_CHECK_OFFSET(PF_InteractCallbacks, abort, 24);
MORVANE_CHECK_OFFSET(PF_InteractCallbacks, progress, 32);
MORVANE_CHECK_OFFSET(PF_InteractCallbacks, register_ui, 40);
MORVANE_CHECK_OFFSET(PF_InteractCallbacks, checkout_layer_audio, 48);
MORVANE_CHECK_OFFSET(PF_InteractCallbacks, checkin_layer_audio, 56);
MORVANE_CHECK_OFFSET(PF_InteractCallbacks, get_audio_data, 64);
MORVANE_CHECK_OFFSET(PF_InteractCallbacks, reserved_str, 72);
MORVANE_CHECK_OFFSET(PF_InteractCallbacks, reserved, 96);

// Input and output records.
MORVANE_CHECK_SIZE(PF_InData, 408);
MORVANE_CHECK_OFFSET(PF_InData, inter, 0);
MORVANE_CHECK_OFFSET(PF_InData, utils, 176);
MORVANE_CHECK_OFFSET(PF_InData, effect_ref, 184);
MORVANE_CHECK_OFFSET(PF_InData, quality, 192);
MORVANE_CHECK_OFFSET(PF_InData, version, 196);
MORVANE_CHECK_OFFSET(PF_InData, serial_num, 200);
MORVANE_CHECK_OFFSET(PF_InData, appl_id, 204);
MORVANE_CHECK_OFFSET(PF_InData, num_params, 208);
MORVANE_CHECK_OFFSET(PF_InData, reserved, 212);
MORVANE_CHECK_OFFSET(PF_InData, what_cpu, 216);
MORVANE_CHECK_OFFSET(PF_InData, what_fpu, 220);
MORVANE_CHECK_OFFSET(PF_InData, current_time, 224);
MORVANE_CHECK_OFFSET(PF_InData, time_step, 228);
MORVANE_CHECK_OFFSET(PF_InData, total_time, 232);
MORVANE_CHECK_OFFSET(PF_InData, local_time_step, 236);
MORVANE_CHECK_OFFSET(PF_InData, time_scale, 240);
MORVANE_CHECK_OFFSET(PF_InData, field, 244);
MORVANE_CHECK_OFFSET(PF_InData, shutter_angle, 248);
MORVANE_CHECK_OFFSET(PF_InData, width, 252);
MORVANE_CHECK_OFFSET(PF_InData, height, 256);
MORVANE_CHECK_OFFSET(PF_InData, extent_hint, 260);
MORVANE_CHECK_OFFSET(PF_InData, output_origin_x, 276);
MORVANE_CHECK_OFFSET(PF_InData, output_origin_y, 280);
MORVANE_CHECK_OFFSET(PF_InData, downsample_x, 284);
MORVANE_CHECK_OFFSET(PF_InData, downsample_y, 292);
MORVANE_CHECK_OFFSET(PF_InData, pixel_aspect_ratio, 300);
MORVANE_CHECK_OFFSET(PF_InData, in_flags, 308);
MORVANE_CHECK_OFFSET(PF_InData, global_data, 312);
MORVANE_CHECK_OFFSET(PF_InData, sequence_data, 320);
MORVANE_CHECK_OFFSET(PF_InData, frame_data, 328);
MORVANE_CHECK_OFFSET(PF_InData, start_sampL, 336);
MORVANE_CHECK_OFFSET(PF_InData, dur_sampL, 340);
MORVANE_CHECK_OFFSET(PF_InData, total_sampL, 344);
MORVANE_CHECK_OFFSET(PF_InData, src_snd, 352);
MORVANE_CHECK_OFFSET(PF_InData, pica_basicP, 384);
MORVANE_CHECK_OFFSET(PF_InData, pre_effect_source_origin_x, 392);
MORVANE_CHECK_OFFSET(PF_InData, pre_effect_source_origin_y, 396);
MORVANE_CHECK_OFFSET(PF_InData, shutter_phase, 400);

MORVANE_CHECK_SIZE(PF_OutData, 408);
MORVANE_CHECK_OFFSET(PF_OutData, my_version, 0);
MORVANE_CHECK_OFFSET(PF_OutData, name, 4);
MORVANE_CHECK_OFFSET(PF_OutData, global_data, 40);
MORVANE_CHECK_OFFSET(PF_OutData, num_params, 48);
MORVANE_CHECK_OFFSET(PF_OutData, sequence_data, 56);
MORVANE_CHECK_OFFSET(PF_OutData, flat_sdata_size, 64);
MORVANE_CHECK_OFFSET(PF_OutData, frame_data, 72);
MORVANE_CHECK_OFFSET(PF_OutData, width, 80);
MORVANE_CHECK_OFFSET(PF_OutData, height, 84);
MORVANE_CHECK_OFFSET(PF_OutData, origin, 88);
MORVANE_CHECK_OFFSET(PF_OutData, out_flags, 96);
MORVANE_CHECK_OFFSET(PF_OutData, return_msg, 100);
MORVANE_CHECK_OFFSET(PF_OutData, start_sampL, 356);
MORVANE_CHECK_OFFSET(PF_OutData, dur_sampL, 360);
MORVANE_CHECK_OFFSET(PF_OutData, dest_snd, 368);
MORVANE_CHECK_OFFSET(PF_OutData, out_flags2, 400);

// Utility callbacks.
MORVANE_CHECK_SIZE(PF_ANSICallbacks, 160);
MORVANE_CHECK_OFFSET(PF_ANSICallbacks, sprintf, 120);
MORVANE_CHECK_OFFSET(PF_ANSICallbacks, strcpy, 128);
MORVANE_CHECK_OFFSET(PF_ANSICallbacks, asin, 136);
MORVANE_CHECK_OFFSET(PF_ANSICallbacks, acos, 144);
MORVANE_CHECK_OFFSET(PF_ANSICallbacks, ansi_procs, 152);

MORVANE_CHECK_SIZE(PF_UtilCallbacks, 552);
MORVANE_CHECK_OFFSET(PF_UtilCallbacks, host_new_handle, 160);
MORVANE_CHECK_OFFSET(PF_UtilCallbacks, host_lock_handle, 168);
MORVANE_CHECK_OFFSET(PF_UtilCallbacks, host_unlock_handle, 176);
MORVANE_CHECK_OFFSET(PF_UtilCallbacks, host_dispose_handle, 184);
MORVANE_CHECK_OFFSET(PF_UtilCallbacks, get_callback_addr, 192);
MORVANE_CHECK_OFFSET(PF_UtilCallbacks, app, 200);
MORVANE_CHECK_OFFSET(PF_UtilCallbacks, ansi, 208);
MORVANE_CHECK_OFFSET(PF_UtilCallbacks, colorCB, 368);
MORVANE_CHECK_OFFSET(PF_UtilCallbacks, get_platform_data, 432);
MORVANE_CHECK_OFFSET(PF_UtilCallbacks, host_get_handle_size, 440);
MORVANE_CHECK_OFFSET(PF_UtilCallbacks, iterate_origin_non_clip_src, 448);
MORVANE_CHECK_OFFSET(PF_UtilCallbacks, iterate_generic, 456);
MORVANE_CHECK_OFFSET(PF_UtilCallbacks, host_resize_handle, 464);
MORVANE_CHECK_OFFSET(PF_UtilCallbacks, reserved, 544);

// Custom UI and events.
MORVANE_CHECK_SIZE(PF_CustomUIInfo, 44);
MORVANE_CHECK_OFFSET(PF_CustomUIInfo, events, 4);
MORVANE_CHECK_OFFSET(PF_CustomUIInfo, comp_ui_width, 8);
MORVANE_CHECK_OFFSET(PF_CustomUIInfo, comp_ui_height, 12);
MORVANE_CHECK_OFFSET(PF_CustomUIInfo, comp_ui_alignment, 16);
MORVANE_CHECK_OFFSET(PF_CustomUIInfo, layer_ui_width, 20);
MORVANE_CHECK_OFFSET(PF_CustomUIInfo, layer_ui_height, 24);
MORVANE_CHECK_OFFSET(PF_CustomUIInfo, layer_ui_alignment, 28);
MORVANE_CHECK_OFFSET(PF_CustomUIInfo, preview_ui_width, 32);
MORVANE_CHECK_OFFSET(PF_CustomUIInfo, preview_ui_height, 36);
MORVANE_CHECK_OFFSET(PF_CustomUIInfo, preview_ui_alignment, 40);

MORVANE_CHECK_SIZE(PF_EventExtra, 208);
MORVANE_CHECK_OFFSET(PF_EventExtra, e_type, 8);
MORVANE_CHECK_OFFSET(PF_EventExtra, u, 16);
MORVANE_CHECK_OFFSET(PF_EventExtra, effect_win, 80);
MORVANE_CHECK_OFFSET(PF_EventExtra, cbs, 128);
MORVANE_CHECK_OFFSET(PF_EventExtra, evt_in_flags, 200);
MORVANE_CHECK_OFFSET(PF_EventExtra, evt_out_flags, 204);
MORVANE_CHECK_SIZE(PF_EventUnion, 64);
MORVANE_CHECK_SIZE(PF_EventCallbacks, 72);

MORVANE_CHECK_SIZE(PF_DoClickEventInfo, 64);
MORVANE_CHECK_OFFSET(PF_DoClickEventInfo, screen_point, 4);
MORVANE_CHECK_OFFSET(PF_DoClickEventInfo, num_clicks, 12);
MORVANE_CHECK_OFFSET(PF_DoClickEventInfo, modifiers, 16);
MORVANE_CHECK_OFFSET(PF_DoClickEventInfo, continue_refcon, 24);
MORVANE_CHECK_OFFSET(PF_DoClickEventInfo, send_drag, 56);
MORVANE_CHECK_OFFSET(PF_DoClickEventInfo, last_time, 57);

MORVANE_CHECK_SIZE(PF_EffectWindowInfo, 44);
MORVANE_CHECK_OFFSET(PF_EffectWindowInfo, area, 4);
MORVANE_CHECK_OFFSET(PF_EffectWindowInfo, current_frame, 8);
MORVANE_CHECK_OFFSET(PF_EffectWindowInfo, param_title_frame, 24);
MORVANE_CHECK_OFFSET(PF_EffectWindowInfo, horiz_offset, 40);

MORVANE_CHECK_SIZE(PF_Context, 72);
static_assert(std::is_same_v<PF_ContextH, PF_Context**>);

// Suites.
MORVANE_CHECK_SIZE(PF_HandleSuite1, 48);
MORVANE_CHECK_OFFSET(PF_HandleSuite1, host_resize_handle, 40);
MORVANE_CHECK_SIZE(PF_WorldSuite2, 24);
MORVANE_CHECK_OFFSET(PF_WorldSuite2, PF_GetPixelFormat, 16);
MORVANE_CHECK_SIZE(PF_PixelFormatSuite1, 64);
MORVANE_CHECK_OFFSET(PF_PixelFormatSuite1, ClearSupportedPixelFormats, 8);
MORVANE_CHECK_OFFSET(PF_PixelFormatSuite1, GetPixelFormat, 32);
MORVANE_CHECK_SIZE(PF_UtilitySuite4, 104);
MORVANE_CHECK_OFFSET(PF_UtilitySuite4, EffectWantsCheckedOutFramesToMatchRenderPixelFormat, 96);
MORVANE_CHECK_SIZE(PF_ParamUtilsSuite3, 72);
MORVANE_CHECK_SIZE(PF_EffectCustomUISuite1, 8);
MORVANE_CHECK_SIZE(DRAWBOT_DrawbotSuite1, 16);
MORVANE_CHECK_SIZE(DRAWBOT_SupplierSuite1, 104);
MORVANE_CHECK_OFFSET(DRAWBOT_SupplierSuite1, NewImageFromBuffer, 40);
MORVANE_CHECK_OFFSET(DRAWBOT_SupplierSuite1, ReleaseObject, 96);
MORVANE_CHECK_SIZE(DRAWBOT_SurfaceSuite2, 136);
MORVANE_CHECK_OFFSET(DRAWBOT_SurfaceSuite2, DrawImage, 80);
MORVANE_CHECK_SIZE(DRAWBOT_PathSuite1, 48);
MORVANE_CHECK_SIZE(DRAWBOT_Suites, 48);
MORVANE_CHECK_OFFSET(DRAWBOT_Suites, supplier_suiteP, 8);
MORVANE_CHECK_OFFSET(DRAWBOT_Suites, surface_suiteP, 16);
MORVANE_CHECK_OFFSET(DRAWBOT_Suites, path_suiteP, 24);
MORVANE_CHECK_OFFSET(DRAWBOT_Suites, pen_suiteP, 32);
MORVANE_CHECK_OFFSET(DRAWBOT_Suites, image_suiteP, 40);
static_assert(std::is_same_v<DRAWBOT_SurfaceSuite1, DRAWBOT_SurfaceSuite2>);

// Drawing types.
MORVANE_CHECK_SIZE(DRAWBOT_PointF32, 8);
MORVANE_CHECK_SIZE(DRAWBOT_PixelLayout, 4);
MORVANE_CHECK_SIZE(DRAWBOT_Boolean, 1);
static_assert(!std::is_convertible_v<DRAWBOT_ImageRef, DRAWBOT_ObjectRef>,
              "drawing references are distinct types");
static_assert(!std::is_convertible_v<DRAWBOT_SurfaceRef, DRAWBOT_DrawRef>,
              "drawing references are distinct types");

// Pixel formats.
static_assert(std::is_enum_v<PrPixelFormat>, "PrPixelFormat is an enumeration");
MORVANE_CHECK_SIZE(PrPixelFormat, 4);

// Registration.
MORVANE_CHECK_SIZE(PF_PluginDataPtr, 8);
MORVANE_CHECK_SIZE(SPBasicSuite, 56);
static_assert(std::is_same_v<SPErr, int32_t>);
#if !defined(AE_OS_MAC)
static_assert(std::is_same_v<SPBoolean, int32_t>);
#endif

#undef MORVANE_CHECK_SIZE
#undef MORVANE_CHECK_OFFSET
