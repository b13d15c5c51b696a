// frei0r.h with C linkage: the header itself declares its functions without it.
#pragma once

extern "C" {
#include <frei0r.h>
}
