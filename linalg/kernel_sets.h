#ifndef TARN_LINALG_KERNEL_SETS_H
#define TARN_LINALG_KERNEL_SETS_H

/// @file
/// The tables of kernels, one pair per instruction set. The sets beyond the plain one exist on
/// x86-64 only, and not where the compiler cannot be trusted with them.

#include "linalg/kernel_table.h"

// On Windows g++ does not align the stack for wide registers that it saves there
// (https://gcc.gnu.org/PR54412).
#if defined(__x86_64__) && !(defined(_WIN32) && !defined(__clang__))
#define TARN_HAS_X86_KERNELS 1
#endif

namespace tarn {

/// 16-byte vectors, which every x86-64 machine has and compilers make of scalars elsewhere.
extern const KernelTable<float> kPlainFloat;
extern const KernelTable<double> kPlainDouble;
#if defined(TARN_HAS_X86_KERNELS)
extern const KernelTable<float> kAvx2Float;
extern const KernelTable<double> kAvx2Double;
/// AVX-512 F, DQ, VL and BW.
extern const KernelTable<float> kAvx512Float;
extern const KernelTable<double> kAvx512Double;
#endif

}  // namespace tarn

#endif
