// A module with the faults the inspection must find: a third export and the
// compiler's run-time taken from its DLLs (built without -static).
#include <stdexcept>
#include <string>

extern "C" __declspec(dllexport) int PluginDataEntryFunction() {
  return 0;
}

extern "C" __declspec(dllexport) int EffectMain(int cmd) {
  if (cmd < 0) throw std::runtime_error("negative command " + std::to_string(cmd));
  return 0;
}

extern "C" __declspec(dllexport) int ExtraExport() {
  return 1;
}
