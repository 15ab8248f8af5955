#include "scalar_subject.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <iostream>
#include <memory>

namespace bench {
namespace {

bool Agree(double ours, double theirs, double tolerance) {
  if (!std::isfinite(ours) || !std::isfinite(theirs)) return false;
  return std::fabs(ours - theirs) <= tolerance * std::fmax(1.0, std::fabs(ours)) ||
         std::fabs(ours - theirs) <= tolerance * std::fabs(ours);
}

bool AllAgree(const Subject& subject, const Row& row) {
  const double ours = subject.peers.front().compute(row);
  for (const Peer& peer : subject.peers) {
    if (!Agree(ours, peer.compute(row), subject.tolerance)) return false;
  }
  return true;
}

void RunOverRows(benchmark::State& state, const std::vector<Row>& rows,
                 double (*compute)(const Row& row)) {
  for (auto _ : state) {
    for (const Row& row : rows) benchmark::DoNotOptimize(compute(row));
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(rows.size()));
}

}  // namespace

void Register(Subject subject) {
  const auto all = subject.rows.size();
  std::erase_if(subject.rows, [&](const Row& row) { return !AllAgree(subject, row); });
  std::cerr << subject.name << ": " << subject.rows.size() << " of " << all << " rows agree to "
            << subject.tolerance << '\n';
  const auto rows = std::make_shared<const std::vector<Row>>(std::move(subject.rows));
  for (const Peer& peer : subject.peers) {
    benchmark::RegisterBenchmark((subject.name + "/" + peer.name).c_str(),
                                 [rows, compute = peer.compute](benchmark::State& state) {
                                   RunOverRows(state, *rows, compute);
                                 });
  }
}

double Arguments::Uniform(double low, double high) {
  return std::uniform_real_distribution<double>(low, high)(engine_);
}

double Arguments::LogUniform(double low, double high) {
  return std::exp(Uniform(std::log(low), std::log(high)));
}

double Arguments::Integer(int low, int high) {
  return std::uniform_int_distribution<int>(low, high)(engine_);
}

std::vector<Row> Arguments::Rows(int count, const std::function<Row()>& draw) {
  std::vector<Row> rows;
  rows.reserve(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) rows.push_back(draw());
  return rows;
}

}  // namespace bench
