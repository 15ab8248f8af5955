// The decomposition against an element-by-element transcription, to the last bit, with every set of
// kernels.

#include "linalg/kernel_support.h"
#include "linalg/svd_reference.h"

namespace {

template <class T>
class SvdBitsTest : public SolverTest<T> {
 protected:
  static void CompareDecompositions(const Dense<T>& a) {
    Dense<T> expectedU = a;
    std::vector<T> expectedValues;
    Dense<T> expectedV(a.cols, a.cols);
    ReferenceSvd<T>(expectedU, expectedValues, expectedV).Run();
    WithEveryKernelSet([&] {
      T_Matrix<T> u = ToMatrix(a), v;
      T_MatVectorCol<T> w;
      ASSERT_EQ(u.SVD(w, v), 1);
      ASSERT_TRUE(SameElements<T>(w, expectedValues.data(), expectedValues.size()));
      ASSERT_TRUE(SameElements(u, expectedU));
      ASSERT_TRUE(SameElements(v, expectedV));
    });
  }

  static void CompareKind(int m, int n, Kind kind) {
    SCOPED_TRACE(std::to_string(m) + " x " + std::to_string(n) + ", " + Name(kind));
    const auto seed = static_cast<unsigned>(m * 1000 + n * 8) + static_cast<unsigned>(kind);
    CompareDecompositions(MakeMatrix<T>(m, n, kind, seed));
  }
};
TYPED_TEST_SUITE(SvdBitsTest, ElementTypes);

TYPED_TEST(SvdBitsTest, SmallOrders) {
  for (int n = 1; n <= 40; ++n) {
    for (Kind kind : kAllKinds) {
      ASSERT_NO_FATAL_FAILURE(this->CompareKind(n, n, kind));
      ASSERT_NO_FATAL_FAILURE(this->CompareKind(n + 1 + n % 7, n, kind));
      ASSERT_NO_FATAL_FAILURE(this->CompareKind(n, n + 1 + n % 5, kind));
    }
  }
}

TYPED_TEST(SvdBitsTest, EdgesOfBlocks) {
  for (int n : {63, 64, 65, 99, 100, 101, 127, 128, 129}) {
    for (Kind kind : kAllKinds) ASSERT_NO_FATAL_FAILURE(this->CompareKind(n, n, kind));
  }
  for (Kind kind : kAllKinds) {
    ASSERT_NO_FATAL_FAILURE(this->CompareKind(140, 66, kind));
    ASSERT_NO_FATAL_FAILURE(this->CompareKind(66, 140, kind));
  }
}

TYPED_TEST(SvdBitsTest, LargeOrders) {
  for (const auto& [m, n] : {std::pair{255, 255}, {257, 257}, {300, 120}, {120, 300}}) {
    ASSERT_NO_FATAL_FAILURE(this->CompareKind(m, n, Kind::kRandom));
  }
  for (Kind kind : kAllKinds) ASSERT_NO_FATAL_FAILURE(this->CompareKind(200, 200, kind));
}

TYPED_TEST(SvdBitsTest, LargestOrder) {
  this->CompareKind(kLargestSize, kLargestSize, Kind::kRandom);
}

TYPED_TEST(SvdBitsTest, LongAndNarrow) {
  for (int n : {1, 2, 3, 8, 9}) {
    for (Kind kind : kAllKinds) {
      ASSERT_NO_FATAL_FAILURE(this->CompareKind(2000, n, kind));
      ASSERT_NO_FATAL_FAILURE(this->CompareKind(n, 300, kind));
    }
  }
}

// Zero singular values make the iteration clear superdiagonal elements by rotations of U.
TYPED_TEST(SvdBitsTest, RankDeficient) {
  using T = TypeParam;
  for (int n : {6, 20, 64, 110}) {
    Dense<T> a = MakeMatrix<T>(n + 3, n, Kind::kTied, static_cast<unsigned>(n));
    for (int i = 0; i < a.rows; ++i) {
      for (int j = 0; j < n; j += 3) a[i][j] = j % 2 == 0 ? 0 : a[i][j + 1];
    }
    ASSERT_NO_FATAL_FAILURE(this->CompareDecompositions(a));
  }
}

// Upper bidiagonal with zeros on the diagonal.
TYPED_TEST(SvdBitsTest, ZerosOnTheDiagonal) {
  using T = TypeParam;
  for (int n : {5, 12, 40}) {
    Dense<T> a(n, n);
    for (int i = 0; i < n; ++i) {
      a[i][i] = i % 4 == 2 ? 0 : static_cast<T>(1 + i);
      if (i + 1 < n) a[i][i + 1] = T{1} / 2;
    }
    ASSERT_NO_FATAL_FAILURE(this->CompareDecompositions(a));
  }
}

}  // namespace
