/// @file
/// Sample statistics beside GSL and plain standard-library code.
///
/// All figures of one of our operations are asked of the peers too: raw moments of GSL come from
/// its central ones about 0 and its scale 1, what it has no function for (intrinsic dispersion,
/// most probable value) is put together from its root finder, minimiser and interpolation. The
/// peers copy the values where we do. Everybody's answers are compared before they are timed. The
/// peer "passes" reads the data as often as the operation is bound to, each time with one sum in
/// index order, and computes nothing; the table has our time over that of reading.

#include "host/embedded_host.h"
#include "ratio_reporter.h"
#include "stat_subjects.h"

int main(int count, char** words) {
  using namespace stat_bench;
  EmbeddedHost host;
  for (const int n : {1000, 1000000}) {
    const SharedSubjects subjects = MakeSubjects(n, false);
    RegisterPlain(subjects);
    RegisterPositive(MakeSubjects(n, true));
    RegisterDispersions(subjects);
    RegisterOrder(subjects);
    RegisterWeighted(subjects);
  }
  RegisterMostProbable(MakeSubjects(1000, false));
  bench::RatioReporter reporter;
  return bench::RunAndPrintRatios(count, words, reporter);
}
