// The host's suites the plug-in uses, fetched once when the host loads it, and typed access to
// property sets. Every failure of a host call is thrown as OfxFailure with the host's status.
#pragma once

#include <array>
#include <stdexcept>
#include <string>

#include <ofxCore.h>
#include <ofxImageEffect.h>
#include <ofxMessage.h>
#include <ofxMultiThread.h>
#include <ofxParam.h>
#include <ofxProperty.h>

namespace morvane::ofx {

// A host call that failed, or an action that cannot go on; `status` is what the action returns.
class OfxFailure : public std::runtime_error {
 public:
  OfxFailure(OfxStatus status, const std::string& what)
      : std::runtime_error(what), status_(status) {}
  OfxStatus Status() const { return status_; }

 private:
  OfxStatus status_;
};

// Throws OfxFailure(status, what + " failed") for a status other than kOfxStatOK.
void Check(OfxStatus status, const char* what);

struct HostSuites {
  const OfxPropertySuiteV1* properties = nullptr;
  const OfxImageEffectSuiteV1* effects = nullptr;
  const OfxParameterSuiteV1* parameters = nullptr;
  const OfxMessageSuiteV1* messages = nullptr;     // may be missing: errors then go to stderr
  const OfxMultiThreadSuiteV1* threads = nullptr;  // may be missing: renders on the caller's thread
};

// Remembers the host the plug-in was handed (null forgets it).
void SetHost(OfxHost* host);

// Fetches the suites from the host set by SetHost; throws kOfxStatErrMissingHostFeature for a
// host without one of the required suites.
void LoadSuites();

// The suites LoadSuites fetched; throws kOfxStatErrBadHandle before the host loaded the plug-in.
const HostSuites& Suites();

// Tells the user about an error through the host's message suite, else on stderr.
void ReportError(void* handle, const std::string& text);

// One property set of the host, read and written through the property suite.
class PropertySet {
 public:
  explicit PropertySet(OfxPropertySetHandle handle) : handle_(handle) {}

  OfxPropertySetHandle Handle() const { return handle_; }

  void SetString(const char* name, const char* value, int index = 0) const;
  void SetInt(const char* name, int value, int index = 0) const;
  void SetDouble(const char* name, double value, int index = 0) const;
  void SetPointer(const char* name, void* value) const;
  void SetDoubles(const char* name, const double* values, int count) const;

  std::string String(const char* name, int index = 0) const;
  int Int(const char* name, int index = 0) const;
  double Double(const char* name, int index = 0) const;
  void* Pointer(const char* name) const;
  // A property whose absence is not an error: `fallback` when the host does not have it.
  std::string StringOr(const char* name, const char* fallback) const;
  template <int N>
  std::array<double, N> Doubles(const char* name) const {
    std::array<double, N> values{};
    Check(Suites().properties->propGetDoubleN(handle_, name, N, values.data()), name);
    return values;
  }
  template <int N>
  std::array<int, N> Ints(const char* name) const {
    std::array<int, N> values{};
    Check(Suites().properties->propGetIntN(handle_, name, N, values.data()), name);
    return values;
  }

 private:
  OfxPropertySetHandle handle_;
};

}  // namespace morvane::ofx
