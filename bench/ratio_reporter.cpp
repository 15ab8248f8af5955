#include "ratio_reporter.h"

#include <algorithm>
#include <iomanip>
#include <iostream>
#include <sstream>

namespace bench {
namespace {

constexpr double kNanosecondsPerSecond = 1e9;

/// A benchmark's name without its peer, and the peer.
struct Place {
  std::string row;
  std::string peer;
};

Place PlaceOf(const std::string& name) {
  const auto first = name.find('/');
  if (first == std::string::npos) return {name, kOurs};
  const auto second = name.find('/', first + 1);
  const std::string rest = second == std::string::npos ? "" : name.substr(second);
  return {name.substr(0, first) + rest, name.substr(first + 1, second - first - 1)};
}

double TimePerItem(const benchmark::BenchmarkReporter::Run& run) {
  const auto items = run.counters.find("items_per_second");
  if (items != run.counters.end()) return kNanosecondsPerSecond / items->second;
  return run.cpu_accumulated_time / static_cast<double>(run.iterations) * kNanosecondsPerSecond;
}

/// Keeps the lowest place of a name; repetitions run in random order.
void KeepLowest(std::map<std::string, std::int64_t>& order, const std::string& name,
                std::int64_t place) {
  const auto [known, added] = order.try_emplace(name, place);
  if (!added) known->second = std::min(known->second, place);
}

std::vector<std::string> InOrder(const std::map<std::string, std::int64_t>& order) {
  std::vector<std::string> names;
  names.reserve(order.size());
  for (const auto& [name, place] : order) names.push_back(name);
  std::sort(names.begin(), names.end(), [&](const std::string& left, const std::string& right) {
    return order.at(left) < order.at(right);
  });
  return names;
}

}  // namespace

bool RatioReporter::ReportContext(const Context& context) {
  PrintBasicContext(&std::cerr, context);
  return true;
}

void RatioReporter::ReportRuns(const std::vector<Run>& runs) {
  for (const Run& run : runs) {
    if (run.error_occurred || run.run_type != Run::RT_Iteration) continue;
    const auto [row, peer] = PlaceOf(run.run_name.function_name);
    KeepLowest(rows_, row, run.family_index);
    if (peer != kOurs) KeepLowest(peers_, peer, run.family_index);
    const double time = TimePerItem(run);
    const auto [known, added] = times_[row].try_emplace(peer, time);
    if (!added) known->second = std::min(known->second, time);
  }
  std::cerr << '.' << std::flush;
}

std::optional<double> RatioReporter::Time(const std::string& row, const std::string& peer) const {
  const auto times = times_.find(row);
  if (times == times_.end()) return std::nullopt;
  const auto time = times->second.find(peer);
  if (time == times->second.end()) return std::nullopt;
  return time->second;
}

std::string RatioReporter::HeaderLine() const {
  std::ostringstream line;
  line << "| subject | " << kOurs << ", ns |";
  for (const std::string& peer : InOrder(peers_)) line << ' ' << peer << " |";
  line << "\n|---|---|";
  for (std::size_t i = 0; i < peers_.size(); ++i) line << "---|";
  return line.str();
}

std::string RatioReporter::RowLine(const std::string& row) const {
  const auto ours = Time(row, kOurs);
  std::ostringstream line;
  line << "| " << row << " |" << std::fixed << std::setprecision(1);
  if (ours) line << ' ' << *ours;
  line << " |" << std::setprecision(2);
  for (const std::string& peer : InOrder(peers_)) {
    const auto theirs = Time(row, peer);
    if (ours && theirs) line << ' ' << *ours / *theirs;
    line << " |";
  }
  return line.str();
}

void RatioReporter::Finalize() {
  std::cerr << '\n';
  std::cout
      << "Our time per item, and our time over that of each peer (below 1: we are faster).\n\n"
      << HeaderLine() << '\n';
  for (const std::string& row : InOrder(rows_)) std::cout << RowLine(row) << '\n';
  std::cout << std::flush;
}

int RunAndPrintRatios(int count, char** words, RatioReporter& reporter) {
  benchmark::Initialize(&count, words);
  if (benchmark::ReportUnrecognizedArguments(count, words)) return 2;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  return 0;
}

}  // namespace bench
