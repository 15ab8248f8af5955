#ifndef TARN_BENCH_LINALG_MATRIX_JOB_H
#define TARN_BENCH_LINALG_MATRIX_JOB_H

/// @file
/// Our side of the jobs on square matrices.

#include <cstdlib>
#include <utility>

#include "linalg/matrix.h"
#include "linalg_contenders.h"

namespace bench {

/// What our side of a job works on: matrices a and b, a vector behind b, and a result `out`, which
/// is `matrix`'s storage where the result is a matrix.
struct OurOperand {
  T_Matrix<double>& a;
  T_Matrix<double>& b;
  T_Matrix<double>& matrix;
  const double* vector;
  double* out;
};

/// Calls work(OurOperand) for every operand.
template <class Work>
class MatrixJob {
 public:
  MatrixJob(Work work, PlainOperands operands)
      : work_(work),
        plain_(std::move(operands)),
        out_(ResultSize() * static_cast<std::size_t>(plain_.count)) {
    const int n = plain_.order;
    const bool isMatrix = plain_.SizeOfB() == plain_.SizeOfA();
    for (int k = 0; k < Count(); ++k) {
      a_.emplace_back(n, n, plain_.a.data() + k * plain_.SizeOfA());
      if (isMatrix) b_.emplace_back(n, n, plain_.b.data() + k * plain_.SizeOfB());
      if (!isMatrix) b_.emplace_back(n);
      matrix_.emplace_back(n);
    }
  }

  void Run() {
    for (std::size_t k = 0; k < a_.size(); ++k) {
      work_(OurOperand{a_[k], b_[k], matrix_[k],
                       plain_.b.data() + k * static_cast<std::size_t>(plain_.SizeOfB()),
                       out_.data() + k * ResultSize()});
    }
  }
  Numbers Result() {
    if (plain_.resultSize != plain_.SizeOfA()) return out_;
    Numbers elements;
    for (T_Matrix<double>& m : matrix_) {
      elements.insert(elements.end(), &m.Item(0), &m.Item(plain_.resultSize));
    }
    return elements;
  }
  int Count() const { return plain_.count; }

 private:
  std::size_t ResultSize() const { return static_cast<std::size_t>(plain_.resultSize); }

  Work work_;
  PlainOperands plain_;
  std::vector<T_Matrix<double>> a_, b_, matrix_;
  Numbers out_;
};

/// Registers us and the peers.
template <class Work, class MakeOperands>
void RegisterMatrixRow(const Row& row, LinalgJob LinalgPeer::*job, MakeOperands operands,
                       Work work) {
  RegisterContender(row, "tarn",
                    [=] { return std::make_shared<MatrixJob<Work>>(work, operands()); });
  RegisterPeers(row, job, operands);
}

}  // namespace bench

#endif
