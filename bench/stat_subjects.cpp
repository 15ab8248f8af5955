#include "stat_subjects.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>

namespace stat_bench {

Sample::Sample(int count, bool positive, std::uint64_t seed) : n(count) {
  std::mt19937_64 generator(seed);
  std::normal_distribution<double> normal(3, 2);
  std::uniform_real_distribution<double> unit(0, 1);
  for (int i = 0; i < count; ++i) {
    const double value = normal(generator);
    x.push_back(positive ? std::fabs(value) + 0.01 : value);
    d.push_back(0.2 + unit(generator));
    w.push_back(0.5 + unit(generator));
  }
}

SharedSubjects MakeSubjects(int n, bool positive) {
  const auto subjects = std::make_shared<Subjects>();
  for (int k = 0; k < std::max(1, 100000 / n); ++k) {
    subjects->push_back(std::make_unique<Subject>(n, positive, static_cast<std::uint64_t>(n + k)));
  }
  return subjects;
}

namespace {

void RequireClose(const std::string& what, const Figures& ours, const Figures& theirs,
                  double tolerance) {
  for (std::size_t i = 0; i < ours.size(); ++i) {
    const double difference = std::fabs(ours[i] - theirs[i]);
    if (difference <= tolerance * std::max(1.0, std::fabs(ours[i]))) continue;
    std::fprintf(stderr, "%s, figure %zu: %.17g and %.17g\n", what.c_str(), i, ours[i], theirs[i]);
    std::exit(1);
  }
}

}  // namespace

void RegisterAll(const std::string& subject, const SharedSubjects& subjects,
                 const std::string& kind, double tolerance,
                 const std::vector<Contender>& contenders) {
  const int n = subjects->front()->n;
  const std::string rest = kind + std::to_string(n);
  for (const Contender& contender : contenders) {
    for (const auto& s : *subjects) {
      if (contender.peer == kPasses) break;
      RequireClose(subject + "/" + contender.peer + "/" + rest, contenders.front().work(*s),
                   contender.work(*s), tolerance);
    }
    benchmark::RegisterBenchmark(
        (subject + "/" + contender.peer + "/" + rest).c_str(),
        [=, work = contender.work](benchmark::State& state) {
          for (auto _ : state) {
            for (const auto& s : *subjects) benchmark::DoNotOptimize(work(*s).data());
          }
          state.SetItemsProcessed(state.iterations() * n *
                                  static_cast<std::int64_t>(subjects->size()));
        });
  }
}

Figures ReadPasses(const Numbers& x, int copies, int times) {
  Numbers copy = x;
  for (int k = 1; k < copies; ++k) benchmark::DoNotOptimize(Numbers(x).data());
  double sum = 0;
  for (int k = 0; k < times; ++k) {
    benchmark::DoNotOptimize(copy.data());
    benchmark::ClobberMemory();
    double pass = 0;
    for (const double value : copy) pass += value;
    sum += pass;
  }
  return {sum};
}

}  // namespace stat_bench
