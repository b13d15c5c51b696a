#include "ofx/HostSuites.h"

#include <cstdio>

namespace morvane::ofx {
namespace {

OfxHost* gHost = nullptr;
HostSuites gSuites;
bool gLoaded = false;

template <typename Suite>
const Suite* Fetch(const char* name, int version) {
  if (gHost == nullptr || gHost->fetchSuite == nullptr) return nullptr;
  return static_cast<const Suite*>(gHost->fetchSuite(gHost->host, name, version));
}

}  // namespace

void Check(OfxStatus status, const char* what) {
  if (status != kOfxStatOK) throw OfxFailure(status, std::string(what) + " failed");
}

void SetHost(OfxHost* host) {
  gHost = host;
  gLoaded = false;
}

void LoadSuites() {
  HostSuites suites;
  suites.properties = Fetch<OfxPropertySuiteV1>(kOfxPropertySuite, 1);
  suites.effects = Fetch<OfxImageEffectSuiteV1>(kOfxImageEffectSuite, 1);
  suites.parameters = Fetch<OfxParameterSuiteV1>(kOfxParameterSuite, 1);
  suites.messages = Fetch<OfxMessageSuiteV1>(kOfxMessageSuite, 1);
  suites.threads = Fetch<OfxMultiThreadSuiteV1>(kOfxMultiThreadSuite, 1);
  if (suites.properties == nullptr || suites.effects == nullptr || suites.parameters == nullptr)
    throw OfxFailure(kOfxStatErrMissingHostFeature,
                     "the host lacks the property, image effect or parameter suite");
  gSuites = suites;
  gLoaded = true;
}

const HostSuites& Suites() {
  if (!gLoaded) throw OfxFailure(kOfxStatErrBadHandle, "the host has not loaded the plug-in");
  return gSuites;
}

void ReportError(void* handle, const std::string& text) {
  if (gLoaded && gSuites.messages != nullptr &&
      gSuites.messages->message(handle, kOfxMessageError, nullptr, "Morvane: %s", text.c_str()) ==
          kOfxStatOK) {
    return;
  }
  std::fprintf(stderr, "Morvane: %s\n", text.c_str());
}

void PropertySet::SetString(const char* name, const char* value, int index) const {
  Check(Suites().properties->propSetString(handle_, name, index, value), name);
}

void PropertySet::SetInt(const char* name, int value, int index) const {
  Check(Suites().properties->propSetInt(handle_, name, index, value), name);
}

void PropertySet::SetDouble(const char* name, double value, int index) const {
  Check(Suites().properties->propSetDouble(handle_, name, index, value), name);
}

void PropertySet::SetPointer(const char* name, void* value) const {
  Check(Suites().properties->propSetPointer(handle_, name, 0, value), name);
}

void PropertySet::SetDoubles(const char* name, const double* values, int count) const {
  Check(Suites().properties->propSetDoubleN(handle_, name, count, values), name);
}

std::string PropertySet::String(const char* name, int index) const {
  char* value = nullptr;
  Check(Suites().properties->propGetString(handle_, name, index, &value), name);
  return value != nullptr ? value : "";
}

int PropertySet::Int(const char* name, int index) const {
  int value = 0;
  Check(Suites().properties->propGetInt(handle_, name, index, &value), name);
  return value;
}

double PropertySet::Double(const char* name, int index) const {
  double value = 0.0;
  Check(Suites().properties->propGetDouble(handle_, name, index, &value), name);
  return value;
}

void* PropertySet::Pointer(const char* name) const {
  void* value = nullptr;
  Check(Suites().properties->propGetPointer(handle_, name, 0, &value), name);
  return value;
}

std::string PropertySet::StringOr(const char* name, const char* fallback) const {
  char* value = nullptr;
  if (handle_ == nullptr ||
      Suites().properties->propGetString(handle_, name, 0, &value) != kOfxStatOK ||
      value == nullptr)
    return fallback;
  return value;
}

}  // namespace morvane::ofx
