// Vectors: sums, extremes and element-wise operations.

#include "linalg/vector.h"
#include "linalg_contenders.h"

namespace bench {
namespace {

constexpr double kTolerance = 1e-9;

using Vector = T_MatVectorCol<double>;

/// Calls work(a, b, r, out): operands, result vector and result number.
template <class Work>
class VectorJob {
 public:
  VectorJob(Work work, const PlainOperands& operands)
      : work_(work),
        a_(operands.a.data(), operands.order),
        b_(operands.b.data(), operands.order),
        r_(operands.order),
        givesNumber_(operands.resultSize == 1) {}

  void Run() { work_(a_, b_, r_, number_); }
  Numbers Result() {
    if (givesNumber_) return {number_};
    const double* const elements = r_;
    return Numbers(elements, elements + r_.Dim());
  }
  int Count() const { return 1; }

 private:
  Work work_;
  Vector a_, b_, r_;
  double number_ = 0;
  bool givesNumber_;
};

template <class Work>
void RegisterVectorRow(const std::string& subject, int n, std::int64_t resultSize,
                       LinalgJob LinalgPeer::*job, Work work) {
  const Row row = {subject, std::to_string(n), kTolerance};
  const auto operands = [=] {
    return PlainOperands{n, 1, RandomNumbers(n, 1), RandomNumbers(n, 2), resultSize};
  };
  RegisterContender(row, "tarn",
                    [=] { return std::make_shared<VectorJob<Work>>(work, operands()); });
  RegisterPeers(row, job, operands);
}

}  // namespace

void RegisterVectorWork() {
  for (const int n : {10, 1000, 100000, 1000000}) {
    RegisterVectorRow(
        "ScalarMultiply", n, 1, &LinalgPeer::dotProduct,
        [](Vector& a, Vector& b, Vector&, double& out) { out = a.ScalarMultiply(b); });
    RegisterVectorRow("Mean", n, 1, &LinalgPeer::sum,
                      [](Vector& a, Vector&, Vector&, double& out) { out = a.Mean(); });
    RegisterVectorRow("Max", n, 1, &LinalgPeer::largest,
                      [](Vector& a, Vector&, Vector&, double& out) { out = a.Max(); });
    RegisterVectorRow("Add scaled", n, n, &LinalgPeer::addScaled,
                      [](Vector& a, Vector& b, Vector& r, double&) { a.Add(r, b, 0.5); });
  }
}

}  // namespace bench
