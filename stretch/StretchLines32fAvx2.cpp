// The line routines of Depth32f built with AVX2 (this file is compiled with -mavx2).
#include "stretch/StretchLines.h"

namespace morvane {

MORVANE_DEFINE_LINE_ROUTINES(Avx2LineRoutines, PixelDepth::Depth32f)

}  // namespace morvane
