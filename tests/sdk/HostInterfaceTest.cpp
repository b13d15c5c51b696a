// Values of the host interface that are easy to get wrong when spelled by hand.
#include "sdk/HostInterface.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <ostream>
#include <string>
#include <vector>

namespace {

TEST(HostInterfaceFlags, OutputFlagCombinations) {
  const A_long out_flags =
      PF_OutFlag_CUSTOM_UI | PF_OutFlag_DEEP_COLOR_AWARE | PF_OutFlag_SEND_UPDATE_PARAMS_UI;
  EXPECT_EQ(out_flags, 0x06008000);

  const A_long out_flags2 = PF_OutFlag2_I_AM_THREADSAFE | PF_OutFlag2_SUPPORTS_SMART_RENDER |
                            PF_OutFlag2_FLOAT_COLOR_AWARE |
                            PF_OutFlag2_SUPPORTS_GET_FLATTENED_SEQUENCE_DATA |
                            PF_OutFlag2_SUPPORTS_THREADED_RENDERING;
  EXPECT_EQ(out_flags2, 0x08801410);
}

struct VersionCase {
  A_u_long packed;
  A_u_long expected;
};

void PrintTo(const VersionCase& c, std::ostream* os) {
  *os << std::hex << c.expected;
}

class HostInterfaceVersion : public ::testing::TestWithParam<VersionCase> {};

TEST_P(HostInterfaceVersion, PacksEveryField) {
  EXPECT_EQ(GetParam().packed, GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Words, HostInterfaceVersion,
    ::testing::Values(VersionCase{PF_VERSION(1, 6, 0, PF_Stage_RELEASE, 1), 0x000B0601u},
                      // version 9: low three bits at 19, version / 8 at 26
                      VersionCase{PF_VERSION(9, 0, 0, PF_Stage_DEVELOP, 0),
                                  (1u << 26) | (1u << 19)},
                      VersionCase{PF_VERSION(0, 15, 15, PF_Stage_BETA, 511),
                                  (15u << 15) | (15u << 11) | (2u << 9) | 511u}));

struct PixelFormatCase {
  A_long value;
  const char* fourcc;  // first character ends up in the low byte
  A_u_long literal;
};

void PrintTo(const PixelFormatCase& c, std::ostream* os) {
  *os << c.fourcc;
}

class HostInterfacePixelFormat : public ::testing::TestWithParam<PixelFormatCase> {};

TEST_P(HostInterfacePixelFormat, MatchesCharactersLowByteFirst) {
  const PixelFormatCase& c = GetParam();
  const std::string s = c.fourcc;
  ASSERT_EQ(s.size(), 4u);
  EXPECT_EQ(static_cast<A_u_long>(c.value), MAKE_PIXEL_FORMAT_FOURCC(s[0], s[1], s[2], s[3]));
  EXPECT_EQ(static_cast<A_u_long>(c.value), c.literal);
}

INSTANTIATE_TEST_SUITE_P(
    Formats, HostInterfacePixelFormat,
    ::testing::Values(PixelFormatCase{PF_PixelFormat_ARGB32, "argb", 0x62677261u},
                      PixelFormatCase{PF_PixelFormat_ARGB64, "ae16", 0x36316561u},
                      PixelFormatCase{PF_PixelFormat_ARGB128, "ae32", 0x32336561u},
                      PixelFormatCase{PF_PixelFormat_BGRA32, "bgra", 0x61726762u},
                      PixelFormatCase{PF_PixelFormat_INVALID, "badf", 0x66646162u},
                      PixelFormatCase{PrPixelFormat_ARGB_4444_16u, "Argb", 0x62677241u},
                      PixelFormatCase{PrPixelFormat_ARGB_4444_32f, "ARgb", 0x62675241u}));

TEST(HostInterfacePixelFormat, BothFamiliesAgreeOnSharedFormats) {
  EXPECT_EQ(static_cast<A_long>(PrPixelFormat_ARGB_4444_8u), PF_PixelFormat_ARGB32);
  EXPECT_EQ(static_cast<A_long>(PrPixelFormat_BGRA_4444_8u), PF_PixelFormat_BGRA32);
  EXPECT_EQ(static_cast<A_long>(PrPixelFormat_Invalid), PF_PixelFormat_INVALID);
}

struct FixedCase {
  double in;
  PF_Fixed expected;
};

void PrintTo(const FixedCase& c, std::ostream* os) {
  *os << c.in << " -> " << c.expected;
}

class HostInterfaceFloatToFixed : public ::testing::TestWithParam<FixedCase> {};

TEST_P(HostInterfaceFloatToFixed, RoundsHalfAwayFromZero) {
  EXPECT_EQ(FLOAT2FIX(GetParam().in), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Values, HostInterfaceFloatToFixed,
    ::testing::Values(FixedCase{0.5 / 65536.0, 1}, FixedCase{-0.5 / 65536.0, -1},
                      FixedCase{1.5 / 65536.0, 2}, FixedCase{-1.5 / 65536.0, -2},
                      FixedCase{0.49 / 65536.0, 0}, FixedCase{-0.49 / 65536.0, 0},
                      FixedCase{-2.25, -147456}, FixedCase{360.0, 23592960}));

TEST(HostInterfaceFixed, IntegerConversionsShiftArithmetically) {
  const std::vector<std::pair<PF_Fixed, A_long>> round_cases = {
      {32767, 0}, {32768, 1}, {-32768, 0}, {-32769, -1}, {INT2FIX(-3), -3}, {98304, 2}};
  for (const auto& [fixed, rounded] : round_cases) {
    EXPECT_EQ(FIX2INT_ROUND(fixed), rounded) << fixed;
  }
  EXPECT_EQ(FIX2INT(-1), -1);
  EXPECT_EQ(FIX2INT(-65536), -1);
  EXPECT_EQ(FIX2INT(-65537), -2);
  EXPECT_DOUBLE_EQ(FIX_2_FLOAT(-98304), -1.5);
  const PF_RationalScale half = {1, 2};
  EXPECT_DOUBLE_EQ(RATIO2FLOAT(half), 0.5);
}

TEST(HostInterfaceMacros, ErrStopsAtFirstErrorAndErr2AlwaysRuns) {
  int calls = 0;
  auto fail = [&calls](PF_Err code) {
    ++calls;
    return code;
  };
  PF_Err err = PF_Err_NONE;
  PF_Err err2 = PF_Err_NONE;
  ERR(fail(PF_Err_NONE));
  ERR(fail(PF_Err_BAD_CALLBACK_PARAM));
  ERR(fail(PF_Err_OUT_OF_MEMORY));
  EXPECT_EQ(calls, 2);
  EXPECT_EQ(err, PF_Err_BAD_CALLBACK_PARAM);

  ERR2(fail(PF_Err_OUT_OF_MEMORY));
  EXPECT_EQ(calls, 3);
  EXPECT_EQ(err, PF_Err_BAD_CALLBACK_PARAM);
  EXPECT_EQ(err2, PF_Err_OUT_OF_MEMORY);
}

// A host whose handles are a heap-allocated master pointer to the block.
PF_Handle FakeNewHandle(A_u_longlong size) {
  auto* master = new void*(::operator new(static_cast<std::size_t>(size)));
  return master;
}
void* FakeLockHandle(PF_Handle h) {
  return *h;
}
void FakeDisposeHandle(PF_Handle h) {
  ::operator delete(*h);
  delete h;
}
A_u_longlong g_resized_to = 0;
PF_Err FakeResizeHandle(A_u_longlong new_size, PF_Handle* handle) {
  g_resized_to = new_size;
  void* bigger = ::operator new(static_cast<std::size_t>(new_size));
  ::operator delete(**handle);
  **handle = bigger;
  return PF_Err_NONE;
}

TEST(HostInterfaceMacros, HandleAndStringMacrosReachTheUtilityCallbacks) {
  PF_UtilCallbacks utils{};
  utils.host_new_handle = &FakeNewHandle;
  utils.host_lock_handle = &FakeLockHandle;
  utils.host_dispose_handle = &FakeDisposeHandle;
  utils.host_resize_handle = &FakeResizeHandle;
  utils.ansi.sprintf = &std::sprintf;
  utils.ansi.strcpy = &std::strcpy;
  PF_InData in{};
  in.utils = &utils;
  PF_InData* in_data = &in;

  PF_Handle h = PF_NEW_HANDLE(16);
  ASSERT_NE(h, nullptr);
  EXPECT_EQ(PF_LOCK_HANDLE(h), DH(h));
  EXPECT_EQ(PF_RESIZE_HANDLE(64, &h), PF_Err_NONE);
  EXPECT_EQ(g_resized_to, 64u);

  char* text = static_cast<char*>(PF_LOCK_HANDLE(h));
  PF_SPRINTF(text, "%d-%s", 7, "x");
  EXPECT_STREQ(text, "7-x");
  PF_STRCPY(text, "copied");
  EXPECT_STREQ(text, "copied");
  PF_DISPOSE_HANDLE(h);
}

// Arguments seen by the registration callback.
struct Registration {
  std::string name, match_name, category, entry;
  A_long kind = 0, major = 0, minor = 0, reserved = 0;
};
Registration g_registration;

A_Err RecordRegistration(PF_PluginDataPtr, const A_u_char* name, const A_u_char* match_name,
                         const A_u_char* category, const A_u_char* entry, A_long kind, A_long major,
                         A_long minor, A_long reserved) {
  auto str = [](const A_u_char* s) { return std::string(reinterpret_cast<const char*>(s)); };
  g_registration = {str(name), str(match_name), str(category), str(entry),
                    kind,      major,           minor,         reserved};
  return A_Err_NONE;
}

TEST(HostInterfaceRegistration, RegisterEffectPassesKindVersionAndEntryPoint) {
  A_Err result = A_Err_GENERIC;
  const PF_PluginDataCB cb = &RecordRegistration;
  PF_REGISTER_EFFECT(nullptr, cb, reinterpret_cast<const A_u_char*>("Name"),
                     reinterpret_cast<const A_u_char*>("MatchName"),
                     reinterpret_cast<const A_u_char*>("Category"), AE_RESERVED_INFO);
  EXPECT_EQ(result, A_Err_NONE);
  EXPECT_EQ(g_registration.name, "Name");
  EXPECT_EQ(g_registration.match_name, "MatchName");
  EXPECT_EQ(g_registration.category, "Category");
  EXPECT_EQ(g_registration.entry, "EffectMain");
  const A_long effect_kind = ('e' << 24) | ('F' << 16) | ('K' << 8) | 'T';
  EXPECT_EQ(g_registration.kind, effect_kind);
  EXPECT_EQ(g_registration.major, PF_AE_PLUG_IN_VERSION);
  EXPECT_EQ(g_registration.minor, PF_AE_PLUG_IN_SUBVERS);
  EXPECT_EQ(g_registration.reserved, 8);
}

}  // namespace
