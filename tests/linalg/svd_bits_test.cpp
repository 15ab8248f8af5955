// The decomposition against an element-by-element transcription, to the last bit.

#include "linalg/svd_reference.h"

namespace {

class SvdBitsTest : public KernelSetTest {
 protected:
  template <class T>
  void CompareDecompositions(Dense<T> a) {
    T_Matrix<T> u = ToMatrix(a), v;
    T_MatVectorCol<T> w;
    ASSERT_EQ(u.SVD(w, v), 1);
    std::vector<T> expectedValues;
    Dense<T> expectedV(a.cols, a.cols);
    ReferenceSvd<T>(a, expectedValues, expectedV).Run();
    ASSERT_TRUE(SameElements<T>(w, expectedValues.data(), expectedValues.size()));
    ASSERT_TRUE(SameElements(u, a));
    ASSERT_TRUE(SameElements(v, expectedV));
  }

  template <class T>
  void CompareKind(int m, int n, Kind kind) {
    SCOPED_TRACE(std::to_string(m) + " x " + std::to_string(n) + ", " + Name(kind));
    const auto seed = static_cast<unsigned>(m * 1000 + n * 8) + static_cast<unsigned>(kind);
    CompareDecompositions(MakeMatrix<T>(m, n, kind, seed));
  }

  template <class T>
  void CompareShapesAbout(int n) {
    for (Kind kind : kAllKinds) {
      ASSERT_NO_FATAL_FAILURE(CompareKind<T>(n, n, kind));
      ASSERT_NO_FATAL_FAILURE(CompareKind<T>(n + 1 + n % 7, n, kind));
      ASSERT_NO_FATAL_FAILURE(CompareKind<T>(n, n + 1 + n % 5, kind));
    }
  }

  template <class T>
  void CompareSmallOrders() {
    for (int n = 1; n <= 40; ++n) ASSERT_NO_FATAL_FAILURE(CompareShapesAbout<T>(n));
  }

  template <class T>
  void CompareEdgesOfBlocks() {
    for (int n : {63, 64, 65, 99, 100, 101, 127, 128, 129}) {
      ASSERT_NO_FATAL_FAILURE(CompareKind<T>(n, n, Kind::kRandom));
    }
    for (Kind kind : kAllKinds) ASSERT_NO_FATAL_FAILURE(CompareKind<T>(70, 66, kind));
  }
};

TEST_P(SvdBitsTest, SmallOrdersDouble) { CompareSmallOrders<double>(); }
TEST_P(SvdBitsTest, SmallOrdersFloat) { CompareSmallOrders<float>(); }
TEST_P(SvdBitsTest, EdgesOfBlocksDouble) { CompareEdgesOfBlocks<double>(); }
TEST_P(SvdBitsTest, EdgesOfBlocksFloat) { CompareEdgesOfBlocks<float>(); }

TEST_P(SvdBitsTest, LargeOrders) {
  CompareKind<double>(255, 255, Kind::kRandom);
  CompareKind<double>(257, 257, Kind::kRandom);
  CompareKind<double>(300, 120, Kind::kRandom);
  CompareKind<double>(120, 300, Kind::kRandom);
}

TEST_P(SvdBitsTest, LongAndNarrow) {
  for (int n : {1, 2, 3, 8, 9}) {
    CompareKind<double>(2000, n, Kind::kRandom);
    CompareKind<double>(n, 700, Kind::kRandom);
    CompareKind<float>(2000, n, Kind::kTied);
  }
}

// Zero singular values make the iteration clear superdiagonal elements by rotations of U.
TEST_P(SvdBitsTest, RankDeficient) {
  for (int n : {6, 20, 64, 110}) {
    Dense<double> a = MakeMatrix<double>(n + 3, n, Kind::kTied, static_cast<unsigned>(n));
    for (int i = 0; i < a.rows; ++i) {
      for (int j = 0; j < n; j += 3) a[i][j] = j % 2 == 0 ? 0 : a[i][j + 1];
    }
    ASSERT_NO_FATAL_FAILURE(CompareDecompositions(a));
  }
}

// Upper bidiagonal with zeros on the diagonal.
TEST_P(SvdBitsTest, ZerosOnTheDiagonal) {
  for (int n : {5, 12, 40}) {
    Dense<double> a(n, n);
    for (int i = 0; i < n; ++i) {
      a[i][i] = i % 4 == 2 ? 0 : 1 + i;
      if (i + 1 < n) a[i][i + 1] = 0.5;
    }
    ASSERT_NO_FATAL_FAILURE(CompareDecompositions(a));
  }
}

INSTANTIATE_TEST_SUITE_P(Kernels, SvdBitsTest, ::testing::ValuesIn(tarn::kKernelSets), KernelName);

}  // namespace
