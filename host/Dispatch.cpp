#include "host/Dispatch.h"

namespace morvane {

PF_Err DispatchCommand(const CommandArgs& args) noexcept {
  try {
    const CommandHandler handler = FindCommandHandler(args.cmd);
    return handler != nullptr ? handler(args) : PF_Err_NONE;
  } catch (PF_Err err) {
    return err;
  } catch (decltype(PF_Err_NONE) err) {
    // The host's error names are enumerators; thrown as they are, they still
    // carry the host's value.
    return err;
  } catch (decltype(A_Err_NONE) err) {
    return err;
  } catch (long err) {
    return static_cast<PF_Err>(err);
  } catch (long long err) {
    return static_cast<PF_Err>(err);
  } catch (...) {
    return PF_Err_INTERNAL_STRUCT_DAMAGED;
  }
}

}  // namespace morvane
