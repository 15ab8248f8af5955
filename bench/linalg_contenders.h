#ifndef TARN_BENCH_LINALG_CONTENDERS_H
#define TARN_BENCH_LINALG_CONTENDERS_H

/// @file
/// The rows of the linear algebra table: jobs, who takes part, and that all agree.
///
/// Nobody is timed before the result has been compared with the first contender's of the row.
/// Small orders are timed over many matrices, so that no branch predictor learns one by heart;
/// times are per matrix or vector.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "linalg_peers.h"

namespace bench {

using Numbers = std::vector<double>;

/// `count` numbers of [-1, 1), the same for the same seed.
Numbers RandomNumbers(std::int64_t count, unsigned seed);
/// `count` positive definite matrices of order n, one after the other.
Numbers PositiveMatrices(int n, int count);

/// How many operands of order n are worked through at a time.
inline int PoolSize(int n) { return n <= 8 ? 64 : 1; }

/// A row of the table, and how far results may lie apart, relative to the largest element.
struct Row {
  std::string subject;
  std::string rest;
  double tolerance;
};

/// Ends the program unless `result` agrees with the first result of the row.
void RequireAgreement(const Row& row, const std::string& peer, const Numbers& result);

/// Registers one contender of a row. `prepare()` gives a shared pointer to an object with
/// `void Run()`, which does the job for all operands, `Numbers Result()`, what it computed, and
/// `int Count()`, how many operands there are.
template <class Prepare>
void RegisterContender(const Row& row, const std::string& peer, Prepare prepare) {
  const std::string name = row.subject + "/" + peer + "/" + row.rest;
  benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
    const auto job = prepare();
    job->Run();
    RequireAgreement(row, peer, job->Result());
    for (auto _ : state) {
      job->Run();
      benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * job->Count());
  });
}

/// Operands of a job in plain arrays, as peers take them.
struct PlainOperands {
  int order;
  int count;
  Numbers a, b;
  std::int64_t resultSize;

  std::int64_t SizeOfA() const { return static_cast<std::int64_t>(a.size()) / count; }
  std::int64_t SizeOfB() const { return static_cast<std::int64_t>(b.size()) / count; }
};

/// A peer at work.
class PeerJob {
 public:
  PeerJob(LinalgJob job, PlainOperands operands)
      : job_(job),
        operands_(std::move(operands)),
        result_(static_cast<std::size_t>(operands_.resultSize * operands_.count)) {}

  void Run() {
    for (int i = 0; i < operands_.count; ++i) {
      job_(operands_.order, operands_.a.data() + i * operands_.SizeOfA(),
           operands_.b.data() + i * operands_.SizeOfB(), result_.data() + i * operands_.resultSize);
    }
  }
  Numbers Result() const { return result_; }
  int Count() const { return operands_.count; }

 private:
  LinalgJob job_;
  PlainOperands operands_;
  Numbers result_;
};

/// Registers every peer that offers a job; `operands()` makes the operands.
template <class MakeOperands>
void RegisterPeers(const Row& row, LinalgJob LinalgPeer::*job, MakeOperands operands) {
  for (const LinalgPeer* const peer : kLinalgPeers) {
    const LinalgJob offered = peer->*job;
    if (offered == nullptr) continue;
    RegisterContender(row, peer->name,
                      [=] { return std::make_shared<PeerJob>(offered, operands()); });
  }
}

// The parts of the area, each in a file of its own.

void RegisterProducts();
void RegisterVectorWork();
void RegisterSolvers();
void RegisterDecompositions();

}  // namespace bench

#endif
