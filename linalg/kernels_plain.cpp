// The tile: 4 rows of 2 vectors, 8 sums in 16 registers.
#define TARN_KERNEL_BYTES 16
#define TARN_KERNEL_ROWS 4
#define TARN_KERNEL_VECTORS 2
#define TARN_KERNEL_DEPTH 256
#define TARN_KERNEL_GROUPS 4
#define TARN_KERNEL_CHOLESKY_VECTORS 8
#include "linalg/kernel_sets.h"
#include "linalg/kernels_body.h"

namespace tarn {

constinit const KernelTable<float> kPlainFloat = kTableOfThisSet<float>;
constinit const KernelTable<double> kPlainDouble = kTableOfThisSet<double>;

}  // namespace tarn
