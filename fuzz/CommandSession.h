// One simulated-host session driven by fuzzer bytes: commands in any order (unknown ones too),
// instances with and without sequence data, control values, intensity layers, smart and
// single-call renders, custom-control events, withheld suites and failing callbacks.
#pragma once

#include <fuzzer/FuzzedDataProvider.h>

#include <string>
#include <vector>

#include "hostsim/Host.h"

namespace morvane::fuzz {

class CommandSession {
 public:
  // Every image of the session has one depth, as every layer of a composition has.
  CommandSession(hostsim::Host& host, FuzzedDataProvider& data, hostsim::PixelDepth depth)
      : host_(host), data_(data), depth_(depth) {}
  ~CommandSession();
  CommandSession(const CommandSession&) = delete;
  CommandSession& operator=(const CommandSession&) = delete;

  // Runs one operation chosen by the next bytes.
  void Step();
  // Lifts every fault, sets every instance down and gives back the images, then returns what
  // went wrong in the whole session: error codes that are no host error, and the host's report
  // of unbalanced suites, leaked handles, checkouts not checked in and other misuse.
  std::vector<std::string> Finish();
  // The operations run so far, one line each: how a failing input is read back.
  const std::vector<std::string>& Log() const { return log_; }

 private:
  void ArmFault();
  void WithholdSuite(bool null);
  void Lifecycle();
  void SequenceCommand();
  void SetControl();
  void SetIntensityLayer();
  void RenderSmart();
  void RenderLegacy();
  void CustomControlEvent();
  void UnknownCommand();

  hostsim::EffectInstance& PickInstance();
  // A painted image owned by the host's world store, given back in Finish.
  PF_EffectWorld* NewWorld(int32_t maxSize);
  // Notes a command result that is neither success nor an error code a host knows.
  void Check(const char* command, PF_Err err);
  void Note(std::string operation) { log_.push_back(std::move(operation)); }

  hostsim::Host& host_;
  FuzzedDataProvider& data_;
  hostsim::PixelDepth depth_;
  std::vector<hostsim::EffectInstance*> instances_;
  std::vector<PF_EffectWorld*> worlds_;
  std::vector<std::string> problems_;
  std::vector<std::string> log_;
};

}  // namespace morvane::fuzz
