#ifndef TARN_TESTS_LINALG_KERNEL_SUPPORT_H
#define TARN_TESTS_LINALG_KERNEL_SUPPORT_H

// Tests that run with every set of kernels that the machine offers.

#include <vector>

#include "linalg/kernels.h"
#include "linalg/linalg_support.h"

/// Calls `check` with each set of kernels selected in turn; the set that was selected before serves
/// again afterwards. Says aloud which sets this machine cannot run.
template <class Check>
void WithEveryKernelSet(Check check) {
  const tarn::KernelSet before = tarn::SelectedKernels();
  for (const tarn::KernelSet set : tarn::kKernelSets) {
    if (!tarn::SelectKernels(set)) {
      std::printf("[          ] no %s on this machine\n", tarn::KernelSetName(set));
      continue;
    }
    SCOPED_TRACE(tarn::KernelSetName(set));
    check();
  }
  tarn::SelectKernels(before);
}

/// All sizes up to 40 and those about the edges of blocks, without the largest.
inline std::vector<int> Sizes() { return ManyOrders(); }

/// The largest size of all; literal cubic loops take it for few inputs only.
inline constexpr int kLargestSize = 500;

#endif
