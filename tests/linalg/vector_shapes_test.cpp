// Products and new results of column and row vectors.

#include "linalg/array_new_failure.h"
#include "linalg/linalg_support.h"

namespace {

template <class T>
using VectorShapes = ElementTest<T>;
TYPED_TEST_SUITE(VectorShapes, ElementTypes);

template <class T>
using Owned = std::unique_ptr<T>;

TYPED_TEST(VectorShapes, ColumnTimesPlusAndMinusANumber) {
  const T_MatVectorCol<TypeParam> v = Col<TypeParam>({1, 2});
  const Owned<T_MatVectorCol<TypeParam>> product(v * 3);
  const Owned<T_MatVectorCol<TypeParam>> sum(v + 3);
  const Owned<T_MatVectorCol<TypeParam>> difference(v - 3);
  EXPECT_EQ(Contents(*product), (Doubles{3, 6}));
  EXPECT_EQ(Contents(*sum), (Doubles{4, 5}));
  EXPECT_EQ(Contents(*difference), (Doubles{-2, -1}));
  EXPECT_EQ(Contents(v), (Doubles{1, 2}));
}

TYPED_TEST(VectorShapes, ColumnPlusAndMinusAColumn) {
  const T_MatVectorCol<TypeParam> a = Col<TypeParam>({1, 2});
  const T_MatVectorCol<TypeParam> b = Col<TypeParam>({10, 30});
  const Owned<T_MatVectorCol<TypeParam>> sum(a + b);
  const Owned<T_MatVectorCol<TypeParam>> difference(a - b);
  EXPECT_EQ(Contents(*sum), (Doubles{11, 32}));
  EXPECT_EQ(Contents(*difference), (Doubles{-9, -28}));
}

TYPED_TEST(VectorShapes, ColumnMinusAColumnOfAnotherDimensionIsACopy) {
  const T_MatVectorCol<TypeParam> a = Col<TypeParam>({1, 2});
  const T_MatVectorCol<TypeParam> b = Col<TypeParam>({1, 2, 3});
  const Owned<T_MatVectorCol<TypeParam>> difference(a - b);
  const Owned<T_MatVectorCol<TypeParam>> sum(a + b);
  ASSERT_NE(difference, nullptr);
  EXPECT_EQ(Contents(*difference), (Doubles{1, 2}));
  EXPECT_EQ(Contents(*sum), (Doubles{1, 2}));
}

TYPED_TEST(VectorShapes, NewResultOfAWrapperOwns) {
  TypeParam numbers[2] = {1, 2};
  const T_MatVectorCol<TypeParam> wrapper(numbers, 2, 1);
  const Owned<T_MatVectorCol<TypeParam>> product(wrapper * 2);
  EXPECT_EQ(VectorFields<TypeParam>::OwnsData(*product), 1);
  EXPECT_EQ(numbers[1], 2);
}

TYPED_TEST(VectorShapes, OuterProduct) {
  const T_MatVectorCol<TypeParam> column = Col<TypeParam>({1, 2, 3});
  const T_MatVectorRow<TypeParam> row = Row<TypeParam>({10, 20});
  const Owned<T_Matrix<TypeParam>> product(column * row);
  EXPECT_EQ(product->Y(), 3);
  EXPECT_EQ(product->X(), 2);
  EXPECT_EQ(Contents(*product), (Doubles{10, 20, 20, 40, 30, 60}));
  T_Matrix<TypeParam> m(1, 1);
  column.RightMultiply(m, row);
  EXPECT_EQ(Contents(m), Contents(*product));
}

TYPED_TEST(VectorShapes, OuterProductWithAnEmptyVectorHasNoElements) {
  const Owned<T_Matrix<TypeParam>> product(Col<TypeParam>({1, 2}) * T_MatVectorRow<TypeParam>());
  EXPECT_EQ(product->Y(), 2);
  EXPECT_EQ(product->X(), 0);
}

TYPED_TEST(VectorShapes, TransposeIsARowOfTheSameElements) {
  const Owned<T_MatVectorRow<TypeParam>> row(Col<TypeParam>({1, 2}).T());
  EXPECT_EQ(Contents(*row), (Doubles{1, 2}));
}

// Row by matrix -----------------------------------------------------------------------------------

TYPED_TEST(VectorShapes, RowTimesSquareMatrixRunsAlongItsRows) {
  const T_MatVectorRow<TypeParam> row = Row<TypeParam>({1, 10});
  const T_Matrix<TypeParam> m = Mat<TypeParam>(2, 2, {1, 2, 3, 4});
  const Owned<T_MatVectorRow<TypeParam>> product(row * m);
  EXPECT_EQ(Contents(*product), (Doubles{21, 43}));
  T_MatVectorRow<TypeParam> out;
  row.RightMultiply(out, m);
  EXPECT_EQ(Contents(out), (Doubles{21, 43}));
}

TYPED_TEST(VectorShapes, RowTimesMatrixOfOtherRowCountIsNull) {
  const T_Matrix<TypeParam> m(3, 2);
  EXPECT_EQ(Row<TypeParam>({1, 10}) * m, nullptr);
  T_MatVectorRow<TypeParam> out = Row<TypeParam>({7});
  Row<TypeParam>({1, 10}).RightMultiply(out, m);
  EXPECT_EQ(Contents(out), (Doubles{7}));
}

TYPED_TEST(VectorShapes, RowTimesTallMatrixReadsIntoTheNextRows) {
  // 3 rows of 2: result i sums the elements 2i, 2i+1, 2i+2 of 1 ... 6.
  const Owned<T_MatVectorRow<TypeParam>> product(Row<TypeParam>({1, 10, 100}) *
                                                 Mat<TypeParam>(3, 2, {1, 2, 3, 4, 5, 6}));
  EXPECT_EQ(Contents(*product), (Doubles{321, 543}));
}

TYPED_TEST(VectorShapes, RowTimesWideMatrixCountsNothingBeyondItsEnd) {
  // 2 rows of 3: results 0 and 1 sum elements 0, 1 and 3, 4; result 2 would begin behind the end.
  const Owned<T_MatVectorRow<TypeParam>> product(Row<TypeParam>({1, 10}) *
                                                 Mat<TypeParam>(2, 3, {1, 2, 3, 4, 5, 6}));
  EXPECT_EQ(Contents(*product), (Doubles{21, 54, 0}));
}

TYPED_TEST(VectorShapes, RowTimesMatrixIsTheIndexFormulaForEveryShape) {
  for (int rows = 1; rows <= 12; ++rows) {
    for (int cols = 1; cols <= 12; ++cols) {
      const Dense<TypeParam> m = MakeMatrix<TypeParam>(rows, cols, Kind::kRandom, 5);
      const std::vector<TypeParam> v = MakeVector<TypeParam>(rows, Kind::kRandom, 6);
      std::vector<TypeParam> expected;
      for (int i = 0; i < cols; ++i) {
        TypeParam sum = 0;
        for (int j = 0; j < rows && i * cols + j < rows * cols; ++j) {
          sum +=
              m.elements[static_cast<std::size_t>(i * cols + j)] * v[static_cast<std::size_t>(j)];
        }
        expected.push_back(sum);
      }
      T_MatVectorRow<TypeParam> out;
      T_MatVectorRow<TypeParam>(v.data(), rows).RightMultiply(out, ToMatrix(m));
      ASSERT_EQ(out.Dim(), cols);
      EXPECT_TRUE(SameElements<TypeParam>(out, expected.data(), expected.size()))
          << rows << " x " << cols;
    }
  }
}

TYPED_TEST(VectorShapes, RowTimesMatrixMayBeTheRow) {
  T_MatVectorRow<TypeParam> row = Row<TypeParam>({1, 10});
  row.RightMultiply(row, Mat<TypeParam>(2, 2, {1, 2, 3, 4}));
  EXPECT_EQ(Contents(row), (Doubles{21, 43}));
}

// Exhausted memory --------------------------------------------------------------------------------

TYPED_TEST(VectorShapes, RefusedObjectsAreNull) {
  const T_MatVectorCol<TypeParam> v = Col<TypeParam>({1, 2});
  const T_MatVectorRow<TypeParam> row = Row<TypeParam>({1, 2});
  const T_Matrix<TypeParam> m(2, 2);
  const NewFailure failure([](std::int64_t) { return true; });
  EXPECT_EQ(v * 2, nullptr);
  EXPECT_EQ(v + 2, nullptr);
  EXPECT_EQ(v - 2, nullptr);
  EXPECT_EQ(v + v, nullptr);
  EXPECT_EQ(v - v, nullptr);
  EXPECT_EQ(v.T(), nullptr);
  EXPECT_EQ(v * row, nullptr);
  EXPECT_EQ(row * m, nullptr);
}

TYPED_TEST(VectorShapes, RefusedElementsLeaveAnEmptyObject) {
  const T_MatVectorCol<TypeParam> v = Col<TypeParam>({1, 2});
  const T_MatVectorRow<TypeParam> row = Row<TypeParam>({1, 2});
  const T_Matrix<TypeParam> m(2, 2);
  const auto second = [](std::int64_t request) { return request == 2; };
  const auto dimension = [&](auto operation) {
    const NewFailure failure(second);
    const auto result = Owned<std::remove_pointer_t<decltype(operation())>>(operation());
    return result->Dim();
  };
  EXPECT_EQ(dimension([&] { return v * 2; }), 0);
  EXPECT_EQ(dimension([&] { return v + v; }), 0);
  EXPECT_EQ(dimension([&] { return v.T(); }), 0);
  EXPECT_EQ(dimension([&] { return row * m; }), 0);
  const NewFailure failure(second);
  const Owned<T_Matrix<TypeParam>> product(v * row);
  EXPECT_EQ((*product)[0], nullptr);
}

TYPED_TEST(VectorShapes, RefusedResultOfAProductIsLeftAlone) {
  T_MatVectorRow<TypeParam> out = Row<TypeParam>({7});
  const T_MatVectorRow<TypeParam> row = Row<TypeParam>({1, 2});
  const T_Matrix<TypeParam> m(2, 2);
  const NewFailure failure([](std::int64_t) { return true; });
  row.RightMultiply(out, m);
  EXPECT_EQ(Contents(out), (Doubles{7}));
}

}  // namespace
