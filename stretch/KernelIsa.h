// The line routines are built twice on x86-64: once for the baseline instruction set and once,
// in files of their own, with AVX2, where the four channels of a pixel fit one register. Code
// whose machine code differs between the two builds lives in an inline namespace named after
// its build, so that the builds never share a symbol or a type; callers name it without the
// inner namespace.
#pragma once

#if defined(__AVX2__)
#define MORVANE_ISA isa_avx2
#else
#define MORVANE_ISA isa_baseline
#endif
