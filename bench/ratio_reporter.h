#ifndef TARN_BENCH_RATIO_REPORTER_H
#define TARN_BENCH_RATIO_REPORTER_H

/// @file
/// Side by side: how long we take for a job, and how long others take for the same job.
///
/// Benchmarks are named subject/peer or subject/peer/rest, where `peer` is "tarn" for us, a
/// library's name otherwise, and `rest` is anything that tells jobs of one subject apart (type,
/// size). Benchmarks that differ in the peer only form a row of the table:
///
///     | subject       | tarn, ns | gsl  | boost |
///     |---|---|---|---|
///     | LnGamma       | 14.1     | 0.31 | 0.55  |
///
/// The second column is our time per item (per iteration where a benchmark sets no items), the
/// others our time over the peer's: below 1 we are faster. A time is the least of all repetitions.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace bench {

inline constexpr const char* kOurs = "tarn";

/// Collects the runs of a benchmark program and prints the table at the end.
class RatioReporter : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context& context) override;
  void ReportRuns(const std::vector<Run>& runs) override;
  void Finalize() override;

  /// Nanoseconds per item in a row of the table, ours or a peer's, if that benchmark ran.
  std::optional<double> Time(const std::string& row, const std::string& peer) const;

 private:
  /// Names and their places in the order of registration.
  using Order = std::map<std::string, std::int64_t>;

  std::string HeaderLine() const;
  std::string RowLine(const std::string& row) const;

  Order rows_;
  Order peers_;  // without us
  std::map<std::string, std::map<std::string, double>> times_;
};

/// Runs the registered benchmarks with the command line's flags and prints the table. Returns the
/// exit status for `main`.
int RunAndPrintRatios(int count, char** words, RatioReporter& reporter);

}  // namespace bench

#endif
