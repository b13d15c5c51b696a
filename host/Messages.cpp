#include "host/Messages.h"

#include <cstdio>

namespace morvane {

namespace {

const PF_ANSICallbacks* Ansi(const PF_InData* in_data) {
  return in_data != nullptr && in_data->utils != nullptr ? &in_data->utils->ansi : nullptr;
}

// A host without string callbacks still gets the text, cut to the record's size.
void CopyBounded(PF_OutData* out_data, const char* text) {
  std::snprintf(out_data->return_msg, sizeof out_data->return_msg, "%s", text);
}

}  // namespace

void ReportToUser(const PF_InData* in_data, PF_OutData* out_data, const char* text) {
  if (out_data == nullptr) return;
  const PF_ANSICallbacks* ansi = Ansi(in_data);
  if (ansi != nullptr && ansi->sprintf != nullptr) {
    ansi->sprintf(out_data->return_msg, text);
  } else {
    CopyBounded(out_data, text);
  }
  out_data->out_flags |= PF_OutFlag_DISPLAY_ERROR_MESSAGE;
}

void ReportToUserCopied(const PF_InData* in_data, PF_OutData* out_data, const char* text) {
  if (out_data == nullptr) return;
  const PF_ANSICallbacks* ansi = Ansi(in_data);
  if (ansi != nullptr && ansi->strcpy != nullptr) {
    ansi->strcpy(out_data->return_msg, text);
  } else {
    CopyBounded(out_data, text);
  }
  out_data->out_flags |= PF_OutFlag_DISPLAY_ERROR_MESSAGE;
}

}  // namespace morvane
