/// @file
/// Linear algebra beside Eigen, GSL and OpenBLAS with its LAPACK, all on one thread.

#include "host/embedded_host.h"
#include "linalg_contenders.h"
#include "ratio_reporter.h"

int main(int count, char** words) {
  bench::PrepareOpenBlas(words);
  EmbeddedHost host;
  bench::RegisterProducts();
  bench::RegisterVectorWork();
  bench::RegisterSolvers();
  bench::RegisterDecompositions();
  bench::RatioReporter reporter;
  return bench::RunAndPrintRatios(count, words, reporter);
}
