// The line routines of Depth8 built with AVX2 (this file is compiled with -mavx2).
#include "stretch/StretchLines.h"

namespace morvane {

MORVANE_DEFINE_LINE_ROUTINES(Avx2LineRoutines, PixelDepth::Depth8)

}  // namespace morvane
