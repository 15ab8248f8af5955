#include "linalg/kernels.h"

#include "linalg/kernel_sets.h"

namespace tarn {

// Constant-initialised, so that they serve whatever runs before the selection at load.
constinit const KernelTable<float>* ActiveKernels::forFloat = &kPlainFloat;
constinit const KernelTable<double>* ActiveKernels::forDouble = &kPlainDouble;

namespace {

constinit KernelSet selectedSet = KernelSet::kPlain;

struct KernelTables {
  const KernelTable<float>* forFloat;
  const KernelTable<double>* forDouble;
};

KernelTables TablesOf(KernelSet set) {
#if defined(TARN_HAS_X86_KERNELS)
  if (set == KernelSet::kAvx512) return {&kAvx512Float, &kAvx512Double};
  if (set == KernelSet::kAvx2) return {&kAvx2Float, &kAvx2Double};
#endif
  static_cast<void>(set);
  return {&kPlainFloat, &kPlainDouble};
}

/// At load: the widest set that the machine can run.
[[maybe_unused]] const bool selectedAtLoad = [] {
  for (const KernelSet set : kKernelSets) SelectKernels(set);
  return true;
}();

}  // namespace

const char* KernelSetName(KernelSet set) {
  switch (set) {
    case KernelSet::kAvx2:
      return "avx2";
    case KernelSet::kAvx512:
      return "avx512";
    default:
      return "plain";
  }
}

std::optional<KernelSet> FindKernelSet(std::string_view name) {
  for (const KernelSet set : kKernelSets) {
    if (name == KernelSetName(set)) return set;
  }
  return std::nullopt;
}

bool HasKernels(KernelSet set) {
  if (set == KernelSet::kPlain) return true;
#if defined(TARN_HAS_X86_KERNELS)
  __builtin_cpu_init();
  if (set == KernelSet::kAvx2) return __builtin_cpu_supports("avx2") != 0;
  return __builtin_cpu_supports("avx512f") != 0 && __builtin_cpu_supports("avx512dq") != 0 &&
         __builtin_cpu_supports("avx512vl") != 0 && __builtin_cpu_supports("avx512bw") != 0;
#else
  return false;
#endif
}

bool SelectKernels(KernelSet set) {
  if (!HasKernels(set)) return false;
  const KernelTables tables = TablesOf(set);
  ActiveKernels::forFloat = tables.forFloat;
  ActiveKernels::forDouble = tables.forDouble;
  selectedSet = set;
  return true;
}

KernelSet SelectedKernels() { return selectedSet; }

}  // namespace tarn
