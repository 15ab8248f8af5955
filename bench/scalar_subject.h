#ifndef TARN_BENCH_SCALAR_SUBJECT_H
#define TARN_BENCH_SCALAR_SUBJECT_H

/// @file
/// Benchmarks of functions of a few numbers: the same rows of arguments for us and every peer.

#include <cstdint>
#include <functional>
#include <random>
#include <string>
#include <vector>

namespace bench {

/// Arguments of one call; a function takes as many as it has.
struct Row {
  double a = 0.0;
  double b = 0.0;
  double c = 0.0;
};

/// A way to compute the subject; the first one of a subject is ours.
struct Peer {
  std::string name;
  double (*compute)(const Row& row);
};

struct Subject {
  std::string name;
  /// Rows are dropped where a peer differs from us by more than this (relative, and absolute below
  /// 1).
  double tolerance;
  std::vector<Row> rows;
  std::vector<Peer> peers;
};

/// Compares all peers on all rows, drops the rows on which one differs or has no number, prints how
/// many rows remain, and registers a benchmark for each peer over these.
void Register(Subject subject);

/// Reproducible random numbers for rows.
class Arguments {
 public:
  explicit Arguments(std::uint64_t seed) : engine_(seed) {}
  double Uniform(double low, double high);
  double LogUniform(double low, double high);
  double Integer(int low, int high);

  /// `count` rows, each made by `draw`.
  static std::vector<Row> Rows(int count, const std::function<Row()>& draw);

 private:
  std::mt19937_64 engine_;
};

}  // namespace bench

#endif
