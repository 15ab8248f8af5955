// The singular value decomposition.

#include <algorithm>

#include "linalg/matrix.h"
#include "linalg/vector.h"
#include "linalg_contenders.h"

namespace bench {
namespace {

constexpr double kTolerance = 1e-10;

struct Shape {
  int rows;
  int cols;

  std::size_t Size() const {
    return static_cast<std::size_t>(rows) * static_cast<std::size_t>(cols);
  }
};

constexpr Shape kShapes[] = {{2, 2},   {3, 3},     {5, 5},     {8, 8},     {20, 20},
                             {50, 50}, {100, 100}, {200, 200}, {500, 500}, {400, 100}};

/// Matrices and their singular values, which are the result: vectors may differ in sign.
struct Decompositions {
  Shape shape;
  int count;
  Numbers matrices, values;

  explicit Decompositions(Shape s)
      : shape(s),
        count(PoolSize(s.cols)),
        matrices(RandomNumbers(static_cast<std::int64_t>(s.Size()) * count, 6)),
        values(static_cast<std::size_t>(s.cols * count)) {}

  const double* Matrix(int k) const {
    return matrices.data() + static_cast<std::size_t>(k) * shape.Size();
  }
  double* Values(int k) { return values.data() + static_cast<std::ptrdiff_t>(k) * shape.cols; }
};

class OurSvd {
 public:
  explicit OurSvd(Shape shape) : job_(shape), u_(shape.rows, shape.cols) {}

  void Run() {
    for (int k = 0; k < Count(); ++k) {
      std::copy_n(job_.Matrix(k), job_.shape.Size(), u_[0]);
      u_.SVD(w_, v_);
      std::copy_n(&w_[0], job_.shape.cols, job_.Values(k));
    }
  }
  Numbers Result() const { return job_.values; }
  int Count() const { return job_.count; }

 private:
  Decompositions job_;
  T_Matrix<double> u_, v_;
  T_MatVectorCol<double> w_;
};

class PeerSvd {
 public:
  PeerSvd(SvdJob svd, Shape shape)
      : svd_(svd), job_(shape), u_(shape.Size()), v_(Shape{shape.cols, shape.cols}.Size()) {}

  void Run() {
    for (int k = 0; k < Count(); ++k) {
      svd_(job_.shape.rows, job_.shape.cols, job_.Matrix(k), u_.data(), job_.Values(k), v_.data());
    }
  }
  Numbers Result() const { return job_.values; }
  int Count() const { return job_.count; }

 private:
  SvdJob svd_;
  Decompositions job_;
  Numbers u_, v_;
};

Row RowFor(Shape shape) {
  return {"SVD", std::to_string(shape.rows) + " x " + std::to_string(shape.cols), kTolerance};
}

void RegisterPeer(Shape shape, const char* name, SvdJob svd) {
  RegisterContender(RowFor(shape), name, [=] { return std::make_shared<PeerSvd>(svd, shape); });
}

}  // namespace

void RegisterDecompositions() {
  for (const Shape& shape : kShapes) {
    RegisterContender(RowFor(shape), "tarn", [=] { return std::make_shared<OurSvd>(shape); });
    for (const LinalgPeer* const peer : kLinalgPeers) RegisterPeer(shape, peer->name, peer->svd);
    RegisterPeer(shape, "openblas dgesdd", DecomposeByDivideAndConquer);
    if (shape.cols > 100) continue;
    RegisterPeer(shape, "eigen jacobi", kEigenPlainJacobi);
    RegisterPeer(shape, "eigen native jacobi", kEigenNativeJacobi);
  }
}

}  // namespace bench
