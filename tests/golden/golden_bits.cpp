// Prints "name hash words" for every function and the number of all words.
//
// The environment variable TARN_KERNELS (plain, avx2, avx512) selects the kernels; where the
// machine cannot run them, the program says so and ends with status 77.

#include "golden_bits.h"

#include <cstdlib>
#include <optional>

#include "host/embedded_host.h"
#include "linalg/kernels.h"

namespace tarn_golden {
namespace {

constexpr int kNotOffered = 77;

bool SelectKernelsByEnvironment() {
  const char* const name = std::getenv("TARN_KERNELS");
  if (name == nullptr) return true;
  const std::optional<tarn::KernelSet> set = tarn::FindKernelSet(name);
  return set && tarn::SelectKernels(*set);
}

void RunAllAreas(Report& report) {
#define TARN_GOLDEN_AREA(area) RunGolden##area(report);
#include "golden_areas.h"
#undef TARN_GOLDEN_AREA
}

int Main() {
  if (!SelectKernelsByEnvironment()) {
    std::puts("this machine does not offer these kernels");
    return kNotOffered;
  }
  EmbeddedHost host;
  host.Seed(20240607);
  Report report;
  RunAllAreas(report);
  std::printf("words %lld\n", static_cast<long long>(report.Words()));
  return 0;
}

}  // namespace
}  // namespace tarn_golden

int main() { return tarn_golden::Main(); }
