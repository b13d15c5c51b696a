// The module in the simulated host, one command per row: the host, the instance's state before the
// command, a fault the host injects, and what the host sees afterwards (result, message, suites
// taken and given back, calls, handles left and the instance's sequence data).
#include <gtest/gtest.h>

#include <cctype>
#include <cstring>
#include <functional>
#include <map>
#include <ostream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "hostsim/Host.h"

namespace {

using hostsim::HostProfile;
using K = hostsim::FaultKind;

constexpr auto AE = &HostProfile::AfterEffects;
constexpr auto AE23 = &HostProfile::AfterEffects13_23;
constexpr auto Old = &HostProfile::OlderHost;
constexpr auto Pr = &HostProfile::Premiere;

// Suites by the letter after "PF ", as the rows name them.
const std::map<char, std::pair<std::string, int32_t>> kSuites{
    {'H', {kPFHandleSuite, 2}}, {'P', {kPFPixelFormatSuite, 1}}, {'U', {kPFUtilitySuite, 4}}};

enum Before { Loaded, Fresh, Ready, Saved0, Saved10, Saved295, Saved296, Saved1000, Purged };
enum Data { None, Same, New };      // the instance's sequence data afterwards, by handle
constexpr PF_Cmd kRegister = -100;  // PluginDataEntryFunction rather than a command

struct Row {
  std::string label;
  HostProfile (*profile)();
  PF_Cmd cmd;
  Before before;  // the instance: none yet, Fresh (no data), Ready (set up), opened from saved data
  PF_Err err;
  const char* suites;  // acquisitions (+) and releases (-) in order
  Data data;           // and no other handle left
  // The instance's bytes afterwards (and a flat copy's, which has zeros after them up to 296):
  // "5A*10 CD*286" is ten 0x5A bytes, then 286 bytes as fresh from the host.
  const char* bytes = "";
  // "<callback> fails <error>", "<callback> throws <error|std|foreign>", "withhold|null <suite>".
  const char* fault = nullptr;
  // How return_msg starts; "" when it stays empty. The host shows it (but for the about box it
  // does so itself).
  const char* message = "";
  const char* call = nullptr;  // a callback and how often the effect called it; "*": all of them
  int calls = 0;
  friend void PrintTo(const Row& r, std::ostream* os) { *os << r.label; }
};

constexpr char kNoSuite[] = "Not able to acquire AEFX Suite.";
constexpr char kResize[] = "utils.host_resize_handle";
constexpr PF_Err kDamaged = PF_Err_INTERNAL_STRUCT_DAMAGED;
constexpr PF_Err kBadParam = PF_Err_BAD_CALLBACK_PARAM;
constexpr PF_Err kMissing = A_Err_MISSING_SUITE;
constexpr PF_Cmd kGlobal = PF_Cmd_GLOBAL_SETUP;
constexpr PF_Cmd kSetup = PF_Cmd_SEQUENCE_SETUP;
constexpr PF_Cmd kResetup = PF_Cmd_SEQUENCE_RESETUP;
constexpr PF_Cmd kFlatten = PF_Cmd_SEQUENCE_FLATTEN;
constexpr PF_Cmd kSetdown = PF_Cmd_SEQUENCE_SETDOWN;

std::vector<Row> Rows() {
  std::vector<Row> rows{
      {"Register", AE, kRegister, Loaded, 0, "", None},
      {"RegisterRefused", AE, kRegister, Loaded, 7, "", None, "",
       "registration.PF_PluginDataCB fails 7"},
      {"RegisterThrows", AE, kRegister, Loaded, kDamaged, "", None, "",
       "registration.PF_PluginDataCB throws std"},
      {"About", AE, PF_Cmd_ABOUT, Fresh, 0, "", None, "", nullptr, "Morvane, version 1.6.0\r",
       "utils.sprintf", 1},
      // Premiere is told the pixel formats; the utility suite goes back before the format suite.
      {"GlobalSetup", AE, kGlobal, Fresh, 0, "", None},
      {"GlobalSetup13_23", AE23, kGlobal, Fresh, 0, "", None},
      {"GlobalSetupOlder", Old, kGlobal, Fresh, 0, "", None},
      {"GlobalSetupPremiere", Pr, kGlobal, Fresh, 0, "+P +U -U -P", None},
      {"PremiereWithoutFormats", Pr, kGlobal, Fresh, kMissing, "", None, "", "withhold P", kNoSuite,
       "utils.sprintf", 1},
      {"PremiereWithoutUtility", Pr, kGlobal, Fresh, kMissing, "+P -P", None, "", "withhold U",
       kNoSuite},
      // The host hands out memory filled with 0xCD; the effect clears it.
      {"Setup", AE, kSetup, Fresh, 0, "", New, "00*296"},
      {"SetupWithoutMemory", AE, kSetup, Fresh, kDamaged, "", None, "",
       "utils.host_new_handle fails 4", "Internal Error", "utils.strcpy", 1},
      {"SetupOfShortData", AE, kSetup, Saved10, 0, "", Same, "5A*10 CD*286", nullptr, "", kResize,
       1},
      {"SetupOfLongData", AE, kSetup, Saved1000, 0, "", Same, "5A*296", nullptr, "", kResize, 1},
      {"SetupOfExactData", AE, kSetup, Saved296, 0, "", Same, "5A*296", nullptr, "", kResize, 0},
      // Whatever a handler raises becomes the command's result.
      {"RaisedInteger", AE, kSetup, Fresh, 7, "", None, "", "utils.host_new_handle throws 7"},
      {"RaisedStandard", AE, kSetup, Fresh, kDamaged, "", None, "",
       "utils.host_new_handle throws std"},
      {"RaisedForeign", AE, kSetup, Fresh, kDamaged, "", None, "",
       "utils.host_new_handle throws foreign"},
      {"ResetupOfSavedData", AE, kResetup, Saved296, 0, "", Same, "5A*296", nullptr, "", "*", 0},
      {"ResetupWithoutData", AE, kResetup, Fresh, 0, "", New, "00*296"},
      {"FlattenWithoutData", AE, kFlatten, Fresh, kDamaged, "", None},
      {"FlattenOfPurgedData", AE, kFlatten, Purged, 0, "", Same},
      {"Flatten", AE, kFlatten, Ready, 0, "+H -H", New, "00*296"},
      // An older project's shorter data is copied as far as it goes and padded with zeros.
      {"FlattenOfShortData", AE, kFlatten, Saved10, 0, "+H -H", New, "5A*10 00*286"},
      {"FlattenWithoutHandleSuite", AE, kFlatten, Ready, kBadParam, "", Same, "00*296",
       "withhold H"},
      {"FlattenWithNullHandleSuite", AE, kFlatten, Ready, kBadParam, "", Same, "00*296", "null H"},
      {"FlattenWithoutMemory", AE, kFlatten, Ready, kDamaged, "+H -H", Same, "00*296",
       "PF Handle Suite v2.host_new_handle fails 0"},
      {"FlattenWithoutLock", AE, kFlatten, Ready, 0, "+H -H", Same, "00*296",
       "PF Handle Suite v2.host_lock_handle fails 0"},
      {"FlatCopy", AE, PF_Cmd_GET_FLATTENED_SEQUENCE_DATA, Ready, 0, "+H -H", Same, "00*296"},
      // A project may hold data of another size (older or damaged, or none at all): the copy
      // holds as much as there is, never reading past the handle's end.
      {"FlatCopyOfNoData", AE, PF_Cmd_GET_FLATTENED_SEQUENCE_DATA, Saved0, 0, "+H -H", Same},
      {"FlatCopyOfShortData", AE, PF_Cmd_GET_FLATTENED_SEQUENCE_DATA, Saved295, 0, "+H -H", Same,
       "5A*295"},
      {"FlattenOfNoData", AE, kFlatten, Saved0, 0, "+H -H", New, "00*296"},
      {"Setdown", AE, kSetdown, Ready, 0, "", None},
      {"SetdownWithoutData", AE, kSetdown, Fresh, 0, "", None, "", nullptr, "",
       "utils.host_dispose_handle", 0},
  };
  // Commands the effect does not answer: nothing called, both records left as they were.
  for (const PF_Cmd cmd : std::initializer_list<PF_Cmd>{
           PF_Cmd_UNUSED_0, PF_Cmd_GLOBAL_SETDOWN, PF_Cmd_DO_DIALOG, PF_Cmd_FRAME_SETUP,
           PF_Cmd_FRAME_SETDOWN, PF_Cmd_GET_EXTERNAL_DEPENDENCIES, PF_Cmd_QUERY_DYNAMIC_FLAGS,
           PF_Cmd_ARBITRARY_CALLBACK, PF_Cmd_TRANSLATE_PARAMS_TO_PREFS, PF_Cmd_NUM_CMDS, 1000,
           -1}) {
    rows.push_back({"Unanswered" + std::to_string(rows.size()), AE, cmd, Ready, 0, "", Same,
                    "00*296", nullptr, "", "*", 0});
  }
  return rows;
}

std::vector<uint8_t> Bytes(const Row& r) {
  std::vector<uint8_t> bytes;
  std::istringstream in(r.bytes);
  for (std::string run; in >> run;)
    bytes.resize(bytes.size() + std::stoul(run.substr(3)),
                 std::stoul(run.substr(0, 2), nullptr, 16));
  return bytes;
}

// The suite events as "+H -H": acquired or released, and the letter after "PF ".
std::string Events(const hostsim::SuiteRegistry& suites) {
  std::string out;
  for (const hostsim::SuiteEvent& e : suites.Events())
    out += std::string(out.empty() ? "" : " ") + (e.kind == e.Acquired ? '+' : '-') + e.key.name[3];
  return out;
}

void ArmFault(hostsim::FaultPlan& faults, const char* fault) {
  if (fault == nullptr) return;
  const std::string text = fault;
  const size_t at = text.rfind(' ');
  const std::string what = text.substr(0, at), arg = text.substr(at + 1);
  if (what == "withhold") faults.WithholdSuite(kSuites.at(arg[0]).first, kSuites.at(arg[0]).second);
  if (what == "null") faults.NullSuite(kSuites.at(arg[0]).first, kSuites.at(arg[0]).second);
  const size_t verb = what.rfind(' ');
  const std::string function = what.substr(0, verb), kind = what.substr(verb + 1);
  if (kind == "fails") faults.Fail(function, std::stoi(arg));
  if (kind == "throws") {
    faults.Inject(function, {arg == "std"       ? K::ThrowStdException
                             : arg == "foreign" ? K::ThrowForeign
                                                : K::ThrowInteger,
                             arg[0] == '-' || std::isdigit(arg[0]) ? std::stoi(arg) : 7});
  }
}

class HostGlue : public testing::TestWithParam<Row> {};

TEST_P(HostGlue, AnswersTheHostAsTheRowSays) {
  const Row& row = GetParam();
  hostsim::Host host(row.profile());
  host.Load(MORVANE_MODULE_PATH, MORVANE_PIPL_PATH);
  hostsim::EffectInstance* fx = nullptr;
  if (row.before != Loaded) {
    ASSERT_EQ(host.Register(), A_Err_NONE);
    const std::map<Before, size_t> sizes{
        {Saved0, 0}, {Saved10, 10}, {Saved295, 295}, {Saved296, 296}, {Saved1000, 1000}};
    const size_t saved = sizes.contains(row.before) ? sizes.at(row.before) : 0;
    if (row.before == Fresh || row.before == Ready) fx = &host.NewInstance();
    if (row.before == Purged) fx = &host.OpenInstance(host.Handles().NewWithoutData());
    if (fx == nullptr) fx = &host.OpenInstance(std::vector<uint8_t>(saved, 0x5A));
    if (row.before == Ready) {
      ASSERT_EQ(host.SequenceSetup(*fx).err, PF_Err_NONE);
    }
  }
  const PF_Handle before = fx != nullptr ? fx->SequenceData() : nullptr;
  host.Calls().Clear();
  host.Suites().ResetCounts();
  ArmFault(host.Faults(), row.fault);

  using Result = hostsim::CommandResult;
  const std::map<PF_Cmd, std::function<Result()>> commands{
      {kRegister, [&] { return Result{host.Register()}; }},
      {PF_Cmd_ABOUT, [&] { return host.About(); }},
      {kGlobal, [&] { return host.GlobalSetup(); }},
      {kSetup, [&] { return host.SequenceSetup(*fx); }},
      {kResetup, [&] { return host.SequenceResetup(*fx); }},
      {kFlatten, [&] { return host.SequenceFlatten(*fx); }},
      {kSetdown, [&] { return host.SequenceSetdown(*fx); }},
      {PF_Cmd_GET_FLATTENED_SEQUENCE_DATA, [&] {
         const hostsim::FlatCopy copy = host.GetFlattenedSequenceData(*fx);
         EXPECT_NE(copy.handle, fx->SequenceData());
         std::vector<uint8_t> flat = Bytes(row);
         flat.resize(296, 0);
         EXPECT_EQ(copy.bytes, flat);
         return copy.result;
       }}};
  Result r;
  if (commands.contains(row.cmd)) {
    r = commands.at(row.cmd)();
  } else {  // sent as is; both records must come back untouched
    PF_InData in = host.MakeInData(fx);
    PF_OutData out = host.MakeOutData(in);
    std::memset(out.return_msg, 'x', sizeof out.return_msg - 1);
    const PF_InData inBefore = in;
    const PF_OutData outBefore = out;
    r.err = host.Send(row.cmd, in, out);
    EXPECT_EQ(std::memcmp(&in, &inBefore, sizeof in), 0);
    EXPECT_EQ(std::memcmp(&out, &outBefore, sizeof out), 0);
  }

  EXPECT_EQ(r.err, row.err);
  EXPECT_TRUE(*row.message == '\0' ? r.Message().empty() : r.Message().starts_with(row.message))
      << r.Message();
  EXPECT_EQ(r.ShowsMessage(), *row.message != '\0' && row.cmd != PF_Cmd_ABOUT);
  EXPECT_EQ(Events(host.Suites()), row.suites);
  if (row.call != nullptr) {
    const std::string call = row.call;
    EXPECT_EQ(call == "*" ? static_cast<int>(host.Calls().Size()) : host.Calls().Count(call),
              row.calls)
        << call;
  }
  // The host also compares registration and global set-up with the property list here.
  const hostsim::SessionReport report = host.Report();
  EXPECT_TRUE(report.unbalancedSuites.empty() && report.problems.empty()) << report.Describe();
  EXPECT_EQ(host.Handles().LiveCount(), row.data == None ? 0u : 1u);
  for (const hostsim::HandleInfo& h : host.Handles().Live()) {
    EXPECT_EQ(h.lockCount, 0);
  }

  if (fx != nullptr) {
    const PF_Handle after = fx->SequenceData();
    EXPECT_EQ(after != nullptr, row.data != None);
    EXPECT_EQ(after != nullptr && after == before, row.data == Same);
    EXPECT_EQ(host.Handles().Bytes(after), Bytes(row));
    if (row.data == New) {  // the old handle is gone; a new one from set-up is announced
      EXPECT_FALSE(host.Handles().Contains(before));
      EXPECT_EQ(r.out.flat_sdata_size, row.cmd == kFlatten ? 0 : 296);
    }
  }
  if (row.cmd == PF_Cmd_GLOBAL_SETUP && row.err == PF_Err_NONE) {
    const hostsim::PixelFormatLog formats = host.PixelFormats();
    const bool premiere = host.Profile().IsPremiere();
    const std::vector<PrPixelFormat> all{PrPixelFormat_ARGB_4444_8u, PrPixelFormat_ARGB_4444_16u,
                                         PrPixelFormat_ARGB_4444_32f};
    EXPECT_EQ(formats.clears, premiere ? 1 : 0);
    EXPECT_EQ(formats.supported, premiere ? all : std::vector<PrPixelFormat>{});
    EXPECT_EQ(formats.checkedOutFramesMatchRenderFormat, premiere);
  }
}

INSTANTIATE_TEST_SUITE_P(Rows, HostGlue, testing::ValuesIn(Rows()),
                         [](const auto& info) { return std::string(info.param.label); });

}  // namespace
