#ifndef TARN_LINALG_KERNELS_H
#define TARN_LINALG_KERNELS_H

/// @file
/// The choice of kernels. The best set that the machine offers is selected when the module is
/// loaded; results do not depend on it, so only tests and benchmarks select another.

#include <optional>
#include <string_view>

#include "linalg/kernel_table.h"

namespace tarn {

enum class KernelSet { kPlain, kAvx2, kAvx512 };

/// All sets, from the plainest to the widest.
inline constexpr KernelSet kKernelSets[] = {KernelSet::kPlain, KernelSet::kAvx2,
                                            KernelSet::kAvx512};

/// "plain", "avx2" or "avx512".
const char* KernelSetName(KernelSet set);
/// The set of that name.
std::optional<KernelSet> FindKernelSet(std::string_view name);
/// Whether this machine can run a set.
bool HasKernels(KernelSet set);
/// Makes the module use a set from now on; false, without effect, when the machine cannot run it.
/// Not to be called while another thread computes.
bool SelectKernels(KernelSet set);
/// The set in use.
KernelSet SelectedKernels();

/// The tables in use; see `Kernels`.
struct ActiveKernels {
  static const KernelTable<float>* forFloat;
  static const KernelTable<double>* forDouble;
};

/// The kernels of an element type.
template <class Element>
const KernelTable<Element>& Kernels();
template <>
inline const KernelTable<float>& Kernels<float>() {
  return *ActiveKernels::forFloat;
}
template <>
inline const KernelTable<double>& Kernels<double>() {
  return *ActiveKernels::forDouble;
}

}  // namespace tarn

#endif
