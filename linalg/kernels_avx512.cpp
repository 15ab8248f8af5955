// The tile: 8 rows of 3 vectors, 24 sums in 32 registers. A packed panel (24 KiB) and the rows that
// meet it share the first-level cache.
#define TARN_KERNEL_BYTES 64
#define TARN_KERNEL_ROWS 8
#define TARN_KERNEL_VECTORS 3
#define TARN_KERNEL_DEPTH 128
#define TARN_KERNEL_GROUPS 2
#define TARN_KERNEL_CHOLESKY_VECTORS 4
#include "linalg/kernel_sets.h"

#if defined(TARN_HAS_X86_KERNELS)
#include "linalg/kernels_body.h"

namespace tarn {

constinit const KernelTable<float> kAvx512Float = kTableOfThisSet<float>;
constinit const KernelTable<double> kAvx512Double = kTableOfThisSet<double>;

}  // namespace tarn
#endif
