// Sums down columns and outer products, for every set of kernels, against the literal loops to the
// bit.

#include "linalg/kernel_support.h"

namespace {

template <class T>
using KernelColumns = ElementTest<T>;
TYPED_TEST_SUITE(KernelColumns, ElementTypes);

constexpr int kMargin = 3;  // columns of a row beyond the block
constexpr int kWeightStride = 2;

template <class T>
void ExpectColumnSums(int rows, int cols, Kind kind) {
  const Dense<T> a = MakeMatrix<T>(rows, cols + kMargin, kind, 1);
  const Dense<T> weights = MakeMatrix<T>(rows, kWeightStride, kind, 2);
  std::vector<T> expected(static_cast<std::size_t>(cols));
  for (int i = 0; i < rows; ++i) {
    for (int j = 0; j < cols; ++j) expected[static_cast<std::size_t>(j)] += weights[i][0] * a[i][j];
  }
  expected.push_back(77);
  WithEveryKernelSet([&] {
    std::vector<T> sums(expected.size(), T{77});
    tarn::Kernels<T>().sumColumnProducts(rows, cols, a[0], a.cols, weights[0], kWeightStride,
                                         sums.data());
    EXPECT_TRUE(SameElements(sums.data(), expected.data(), expected.size()))
        << Name(kind) << rows << " x " << cols;
  });
}

TYPED_TEST(KernelColumns, SumsOfProducts) {
  for (Kind kind : kAllKinds) {
    for (int cols : Sizes()) {
      for (int rows : {0, 1, 2, 17}) ExpectColumnSums<TypeParam>(rows, cols, kind);
    }
    ExpectColumnSums<TypeParam>(kLargestSize, kLargestSize, kind);
  }
}

template <class T>
void ExpectOuterProduct(int rows, int cols, Kind kind) {
  const Dense<T> a = MakeMatrix<T>(rows, cols + kMargin, kind, 3);
  const Dense<T> column = MakeMatrix<T>(rows, kWeightStride, kind, 4);
  const std::vector<T> row = MakeVector<T>(cols, kind, 5);
  Dense<T> expected = a;
  for (int i = 0; i < rows; ++i) {
    for (int j = 0; j < cols; ++j)
      expected[i][j] += column[i][0] * row[static_cast<std::size_t>(j)];
  }
  WithEveryKernelSet([&] {
    Dense<T> target = a;
    tarn::Kernels<T>().addOuterProduct(rows, cols, target[0], target.cols, column[0], kWeightStride,
                                       row.data());
    EXPECT_TRUE(
        SameElements(target.elements.data(), expected.elements.data(), expected.elements.size()))
        << Name(kind) << rows << " x " << cols;
  });
}

TYPED_TEST(KernelColumns, OuterProduct) {
  for (Kind kind : kAllKinds) {
    for (int cols : Sizes()) {
      for (int rows : {0, 1, 2, 17}) ExpectOuterProduct<TypeParam>(rows, cols, kind);
    }
    ExpectOuterProduct<TypeParam>(kLargestSize, kLargestSize, kind);
  }
}

}  // namespace
