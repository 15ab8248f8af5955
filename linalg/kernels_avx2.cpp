// The tile: 6 rows of 2 vectors, 12 sums in 16 registers; two vectors of b, one factor and one
// product take the rest.
#define TARN_KERNEL_BYTES 32
#define TARN_KERNEL_ROWS 6
#define TARN_KERNEL_VECTORS 2
#define TARN_KERNEL_DEPTH 256
#define TARN_KERNEL_GROUPS 4
#define TARN_KERNEL_CHOLESKY_VECTORS 8
#include "linalg/kernel_sets.h"

#if defined(TARN_HAS_X86_KERNELS)
#include "linalg/kernels_body.h"

namespace tarn {

constinit const KernelTable<float> kAvx2Float = kTableOfThisSet<float>;
constinit const KernelTable<double> kAvx2Double = kTableOfThisSet<double>;

}  // namespace tarn
#endif
