// Construction, ownership, shape and parts of matrices.

#include <climits>

#include "linalg/array_new_failure.h"
#include "linalg/linalg_support.h"

namespace {

template <class T>
using MatrixStorage = ElementTest<T>;
TYPED_TEST_SUITE(MatrixStorage, ElementTypes);

constexpr std::initializer_list<double> kOneToSix = {1, 2, 3, 4, 5, 6};

TYPED_TEST(MatrixStorage, FieldsStandInTheirOrder) {
  using Fields = MatrixFields<TypeParam>;
  static_assert(Fields::XOffset() == 0);
  static_assert(Fields::YOffset() == 4);
  static_assert(Fields::OwnsDataOffset() == 8);
  static_assert(Fields::DataOffset() == 16);
  static_assert(Fields::WorkOffset() == 16 + sizeof(void*));
  static_assert(sizeof(T_Matrix<TypeParam>) == 16 + 2 * sizeof(void*));
  static_assert(!std::is_polymorphic_v<T_Matrix<TypeParam>>);
}

TYPED_TEST(MatrixStorage, SmallestMagnitudeOfTheType) {
  EXPECT_EQ(MatrixFields<TypeParam>::MinTypeValue(),
            (std::is_same_v<TypeParam, float> ? static_cast<TypeParam>(1e-15F)
                                              : static_cast<TypeParam>(1e-80L)));
}

// Construction ------------------------------------------------------------------------------------

TYPED_TEST(MatrixStorage, DefaultIsEmptyAndOwnsNothing) {
  const T_Matrix<TypeParam> m;
  EXPECT_EQ(m.X(), 0);
  EXPECT_EQ(m.Y(), 0);
  EXPECT_EQ(MatrixFields<TypeParam>::Data(m), nullptr);
  EXPECT_EQ(MatrixFields<TypeParam>::Work(m), nullptr);
  EXPECT_EQ(MatrixFields<TypeParam>::OwnsData(m), 0);
}

TYPED_TEST(MatrixStorage, RowsComeBeforeColumns) {
  T_Matrix<TypeParam> m = Mat<TypeParam>(2, 3, kOneToSix);
  EXPECT_EQ(m.X(), 3);
  EXPECT_EQ(m.Y(), 2);
  EXPECT_EQ(&m(1, 2), MatrixFields<TypeParam>::Data(m) + 5);
  EXPECT_EQ(m[1], MatrixFields<TypeParam>::Data(m) + 3);
  EXPECT_EQ(m.Item(5), 6);
  const T_Matrix<TypeParam>& constant = m;
  EXPECT_EQ(constant(1, 0), 4);
  EXPECT_EQ(constant[1][1], 5);
}

TYPED_TEST(MatrixStorage, SquareMatrixOfZeros) {
  const T_Matrix<TypeParam> m(3);
  EXPECT_EQ(m.X(), 3);
  EXPECT_EQ(m.Y(), 3);
  EXPECT_EQ(Contents(m), Doubles(9, 0.0));
  EXPECT_EQ(MatrixFields<TypeParam>::OwnsData(m), 1);
  EXPECT_NE(MatrixFields<TypeParam>::Work(m), nullptr);
}

TYPED_TEST(MatrixStorage, MatrixOfNoElementsHasStorage) {
  const T_Matrix<TypeParam> m(0);
  EXPECT_NE(MatrixFields<TypeParam>::Data(m), nullptr);
  EXPECT_NE(MatrixFields<TypeParam>::Work(m), nullptr);
}

TYPED_TEST(MatrixStorage, AllocatesExactlyItsElements) {
  this->host.SetHeapFailure({});
  const NewFailure watch([](std::int64_t) { return false; });
  const T_Matrix<TypeParam> m(3, 5);
  EXPECT_EQ(watch.Requests(), 1);
  EXPECT_EQ(watch.LastSize(), static_cast<std::int64_t>(15 * sizeof(TypeParam)));
  EXPECT_EQ(this->host.HeapRequestCount(), 1) << "the scratch vector";
}

TYPED_TEST(MatrixStorage, CopiesAnArrayRowByRow) {
  const TypeParam numbers[6] = {1, 2, 3, 4, 5, 6};
  EXPECT_EQ(Contents(T_Matrix<TypeParam>(2, 3, numbers)), (Doubles(kOneToSix)));
}

TYPED_TEST(MatrixStorage, CopyOfAWrapperOwns) {
  TypeParam buffer[6 + 4] = {1, 2, 3, 4, 5, 6};
  T_Matrix<TypeParam> wrapper;
  wrapper.SetDim(2, 3, buffer, false);
  const T_Matrix<TypeParam> copy(wrapper);
  EXPECT_EQ(MatrixFields<TypeParam>::OwnsData(copy), 1);
  EXPECT_NE(MatrixFields<TypeParam>::Data(copy), buffer);
  EXPECT_NE(MatrixFields<TypeParam>::Work(copy), nullptr);
  EXPECT_EQ(Contents(copy), (Doubles(kOneToSix)));
}

TYPED_TEST(MatrixStorage, NegativeDimensionsAreRefusedAllocations) {
  for (const auto& [rows, cols] : {std::pair{-1, 4}, {4, -1}, {-2, -3}, {INT_MIN, INT_MIN}}) {
    const T_Matrix<TypeParam> made(rows, cols);
    EXPECT_EQ(MatrixFields<TypeParam>::Data(made), nullptr);
    EXPECT_EQ(made.X(), 0);
    EXPECT_EQ(made.Y(), 0);
    T_Matrix<TypeParam> changed(2, 3);
    changed.SetDim(rows, cols);
    EXPECT_EQ(MatrixFields<TypeParam>::Data(changed), nullptr);
    EXPECT_EQ(changed.X(), 0);
    EXPECT_EQ(changed.Y(), 0);
  }
  EXPECT_EQ(MatrixFields<TypeParam>::Data(T_Matrix<TypeParam>(-1)), nullptr);
}

TYPED_TEST(MatrixStorage, SizesThatNobodyCanServeAreRefused) {
  T_Matrix<TypeParam> m(INT_MAX, INT_MAX);
  EXPECT_EQ(MatrixFields<TypeParam>::Data(m), nullptr);
  EXPECT_EQ(m.X(), INT_MAX);
  m *= 2;
  m.Set(1);
  m.Transpose();
  m.NormalizeByRow();
  EXPECT_EQ(m.Mean(), 0);
  EXPECT_EQ(m.GetPower(), 0);
}

// Assignment --------------------------------------------------------------------------------------

TYPED_TEST(MatrixStorage, AssignmentIsADeepCopy) {
  T_Matrix<TypeParam> source = Mat<TypeParam>(2, 3, kOneToSix);
  T_Matrix<TypeParam> target(1, 1);
  target = source;
  source(0, 0) = 9;
  EXPECT_EQ(target.Y(), 2);
  EXPECT_EQ(Contents(target), (Doubles(kOneToSix)));
  EXPECT_NE(MatrixFields<TypeParam>::Data(target), MatrixFields<TypeParam>::Data(source));
}

TYPED_TEST(MatrixStorage, AssignmentOfAsManyElementsKeepsTheStorage) {
  TypeParam buffer[6 + 4] = {};
  T_Matrix<TypeParam> wrapper;
  wrapper.SetDim(2, 3, buffer, false);
  wrapper = Mat<TypeParam>(3, 2, kOneToSix);
  EXPECT_EQ(MatrixFields<TypeParam>::Data(wrapper), buffer);
  EXPECT_EQ(MatrixFields<TypeParam>::OwnsData(wrapper), 0);
  EXPECT_EQ(wrapper.X(), 2);
  EXPECT_EQ(buffer[5], 6);
}

TYPED_TEST(MatrixStorage, AssignmentOfAnotherSizeLeavesTheWrappedBuffer) {
  TypeParam buffer[4 + 3] = {9, 9, 9, 9};
  T_Matrix<TypeParam> wrapper;
  wrapper.SetDim(2, 2, buffer, false);
  wrapper = Mat<TypeParam>(2, 3, kOneToSix);
  EXPECT_EQ(buffer[0], 9);
  EXPECT_EQ(MatrixFields<TypeParam>::OwnsData(wrapper), 1);
  EXPECT_EQ(Contents(wrapper), (Doubles(kOneToSix)));
}

TYPED_TEST(MatrixStorage, AssignmentFromAViewOfItself) {
  T_Matrix<TypeParam> m = Mat<TypeParam>(3, 2, kOneToSix);
  T_Matrix<TypeParam> view;
  view.SetDim(1, 2, m[1], false);
  m = view;
  EXPECT_EQ(Contents(m), (Doubles{3, 4}));
}

TYPED_TEST(MatrixStorage, AssignmentOfItselfChangesNothing) {
  T_Matrix<TypeParam> m = Mat<TypeParam>(2, 3, kOneToSix);
  const T_Matrix<TypeParam>& self = m;
  m = self;
  EXPECT_EQ(Contents(m), (Doubles(kOneToSix)));
  m.Reset();
  m = self;
  EXPECT_EQ(MatrixFields<TypeParam>::Data(m), nullptr);
}

TYPED_TEST(MatrixStorage, AssignmentOfAMatrixWithoutStorage) {
  T_Matrix<TypeParam> m = Mat<TypeParam>(2, 3, kOneToSix);
  m = T_Matrix<TypeParam>();
  EXPECT_EQ(MatrixFields<TypeParam>::Data(m), nullptr);
  EXPECT_EQ(m.X(), 0);
}

// Shape -------------------------------------------------------------------------------------------

TYPED_TEST(MatrixStorage, SetDimOfAsManyElementsKeepsThemInPlace) {
  T_Matrix<TypeParam> m = Mat<TypeParam>(2, 3, kOneToSix);
  const TypeParam* const data = MatrixFields<TypeParam>::Data(m);
  const TypeParam* const work = MatrixFields<TypeParam>::Work(m);
  m.SetDim(3, 2);
  EXPECT_EQ(m.Y(), 3);
  EXPECT_EQ(m.X(), 2);
  EXPECT_EQ(Contents(m), (Doubles(kOneToSix)));
  EXPECT_EQ(MatrixFields<TypeParam>::Data(m), data);
  EXPECT_EQ(MatrixFields<TypeParam>::Work(m), work);
}

TYPED_TEST(MatrixStorage, SetDimOfAnotherSizeGivesZeros) {
  T_Matrix<TypeParam> m = Mat<TypeParam>(2, 3, kOneToSix);
  m.SetDim(4, 4);
  EXPECT_EQ(Contents(m), Doubles(16, 0.0));
  EXPECT_EQ(MatrixFields<TypeParam>::OwnsData(m), 1);
}

TYPED_TEST(MatrixStorage, SetDimTakesNewStorageWhenTheScratchIsTooShort) {
  T_Matrix<TypeParam> m = Mat<TypeParam>(2, 3, kOneToSix);
  m.SetDim(1, 6);
  EXPECT_EQ(Contents(m), Doubles(6, 0.0));
}

TYPED_TEST(MatrixStorage, SetDimOfTheSameShapeDoesNothing) {
  T_Matrix<TypeParam> m = Mat<TypeParam>(2, 3, kOneToSix);
  m.SetDim(2, 3);
  EXPECT_EQ(Contents(m), (Doubles(kOneToSix)));
  T_Matrix<TypeParam> empty;
  empty.SetDim(0, 0);
  EXPECT_EQ(MatrixFields<TypeParam>::Data(empty), nullptr);
}

TYPED_TEST(MatrixStorage, SetDimWithABufferWrapsItWithTheScratchBehind) {
  TypeParam buffer[6 + 4] = {1, 2, 3, 4, 5, 6};
  T_Matrix<TypeParam> m(5);
  m.SetDim(2, 3, buffer, false);
  EXPECT_EQ(MatrixFields<TypeParam>::Data(m), buffer);
  EXPECT_EQ(MatrixFields<TypeParam>::Work(m), buffer + 6);
  EXPECT_EQ(MatrixFields<TypeParam>::OwnsData(m), 0);
  EXPECT_EQ(Contents(m), (Doubles(kOneToSix)));
}

TYPED_TEST(MatrixStorage, SetDimWithABufferClearsTheElementsAlone) {
  TypeParam buffer[6 + 4] = {1, 2, 3, 4, 5, 6, 7};
  T_Matrix<TypeParam> m;
  m.SetDim(2, 3, buffer, true);
  EXPECT_EQ(Contents(m), Doubles(6, 0.0));
  EXPECT_EQ(buffer[6], 7);
}

TYPED_TEST(MatrixStorage, SetDimWithItsOwnStorageStaysAnOwner) {
  T_Matrix<TypeParam> m = Mat<TypeParam>(2, 3, kOneToSix);
  m.SetDim(3, 2, m[0], false);
  EXPECT_EQ(MatrixFields<TypeParam>::OwnsData(m), 1);
  EXPECT_EQ(Contents(m), (Doubles(kOneToSix)));
  m.SetDim(1, 2, m[1], false);
  EXPECT_EQ(MatrixFields<TypeParam>::OwnsData(m), 1);
  EXPECT_EQ(Contents(m), (Doubles{0, 0}));
}

TYPED_TEST(MatrixStorage, ResetKeepsTheShapeAndFreesWhatIsOwned) {
  T_Matrix<TypeParam> m(2, 3);
  m.Reset();
  EXPECT_EQ(MatrixFields<TypeParam>::Data(m), nullptr);
  EXPECT_EQ(MatrixFields<TypeParam>::Work(m), nullptr);
  EXPECT_EQ(m.X(), 3);
  EXPECT_EQ(m.Y(), 2);
}

TYPED_TEST(MatrixStorage, ResetLeavesAWrapperUntouched) {
  TypeParam buffer[6 + 4] = {1, 2, 3, 4, 5, 6};
  T_Matrix<TypeParam> m;
  m.SetDim(2, 3, buffer, false);
  m.Reset();
  EXPECT_EQ(Contents(m), (Doubles(kOneToSix)));
}

TYPED_TEST(MatrixStorage, SwapLeavesTheOwnershipFlags) {
  TypeParam buffer[4 + 3] = {1, 2, 3, 4};
  T_Matrix<TypeParam> owner = Mat<TypeParam>(2, 3, kOneToSix);
  T_Matrix<TypeParam> wrapper;
  wrapper.SetDim(2, 2, buffer, false);
  owner.Swap(wrapper);
  EXPECT_EQ(MatrixFields<TypeParam>::OwnsData(owner), 1);
  EXPECT_EQ(MatrixFields<TypeParam>::OwnsData(wrapper), 0);
  EXPECT_EQ(Contents(owner), (Doubles{1, 2, 3, 4}));
  EXPECT_EQ(Contents(wrapper), (Doubles(kOneToSix)));
  EXPECT_EQ(MatrixFields<TypeParam>::Work(owner), buffer + 4);
  owner.Swap(wrapper);  // before the owner would free the buffer
}

// Filling and parts -------------------------------------------------------------------------------

TYPED_TEST(MatrixStorage, SetFillsEveryElement) {
  T_Matrix<TypeParam> m(2, 3);
  m.Set(TypeParam{2.5});
  EXPECT_EQ(Contents(m), Doubles(6, 2.5));
  m.Set(TypeParam{-0.0});
  EXPECT_FALSE(std::signbit(m(1, 1)));
  T_Matrix<TypeParam> none;
  none.Set(1);
}

TYPED_TEST(MatrixStorage, SetDiagonalLeavesOtherElements) {
  T_Matrix<TypeParam> wide = Mat<TypeParam>(2, 3, kOneToSix);
  wide.SetDiagonal(TypeParam{9});
  EXPECT_EQ(Contents(wide), (Doubles{9, 2, 3, 4, 9, 6}));
  T_Matrix<TypeParam> tall = Mat<TypeParam>(3, 2, kOneToSix);
  tall.SetDiagonal(Col<TypeParam>({7, 8}));
  EXPECT_EQ(Contents(tall), (Doubles{7, 2, 3, 8, 5, 6}));
}

TYPED_TEST(MatrixStorage, SetRowAndColumn) {
  T_Matrix<TypeParam> m = Mat<TypeParam>(2, 3, kOneToSix);
  const TypeParam row[3] = {7, 8, 9};
  const TypeParam column[2] = {-1, -2};
  m.SetRow(row, 1);
  m.SetColumn(column, 0);
  EXPECT_EQ(Contents(m), (Doubles{-1, 2, 3, -2, 8, 9}));
}

TYPED_TEST(MatrixStorage, SetRowAndColumnOutsideDoNothing) {
  T_Matrix<TypeParam> m = Mat<TypeParam>(2, 3, kOneToSix);
  const TypeParam numbers[3] = {7, 8, 9};
  m.SetRow(numbers, -1);
  m.SetRow(numbers, 2);
  m.SetColumn(numbers, -1);
  m.SetColumn(numbers, 3);
  EXPECT_EQ(Contents(m), (Doubles(kOneToSix)));
}

TYPED_TEST(MatrixStorage, GetRowAndColumn) {
  const T_Matrix<TypeParam> m = Mat<TypeParam>(2, 3, kOneToSix);
  T_MatVector<TypeParam> v;
  m.GetRow(v, 1);
  EXPECT_EQ(Contents(v), (Doubles{4, 5, 6}));
  m.GetColumn(v, 2);
  EXPECT_EQ(Contents(v), (Doubles{3, 6}));
}

TYPED_TEST(MatrixStorage, GetRowAndColumnOutsideDoNothing) {
  const T_Matrix<TypeParam> m = Mat<TypeParam>(2, 3, kOneToSix);
  T_MatVector<TypeParam> v = Col<TypeParam>({7});
  m.GetRow(v, -1);
  m.GetRow(v, 2);
  m.GetColumn(v, -1);
  m.GetColumn(v, 3);
  T_Matrix<TypeParam>().GetRow(v, 0);
  EXPECT_EQ(Contents(v), (Doubles{7}));
}

T_Array<int> Indices(std::initializer_list<int> values) {
  T_Array<int> array(static_cast<std::int64_t>(values.size()));
  std::int64_t i = 0;
  for (int value : values) array[i++] = value;
  return array;
}

TYPED_TEST(MatrixStorage, GetMinorSortsTheListsAndLeavesThemOut) {
  const T_Matrix<TypeParam> m = Mat<TypeParam>(3, 3, {1, 2, 3, 4, 5, 6, 7, 8, 9});
  T_Array<int> rows = Indices({2, 0});
  T_Array<int> cols = Indices({1});
  const std::unique_ptr<T_Matrix<TypeParam>> minor(m.GetMinor(rows, cols));
  EXPECT_EQ(minor->Y(), 1);
  EXPECT_EQ(minor->X(), 2);
  EXPECT_EQ(Contents(*minor), (Doubles{4, 6}));
  EXPECT_EQ(rows[0], 0);
  EXPECT_EQ(rows[1], 2);
}

TYPED_TEST(MatrixStorage, GetMinorSortsLongLists) {
  T_Matrix<TypeParam> m(12);
  for (int i = 0; i < 12; ++i) m(i, i) = static_cast<TypeParam>(i + 1);
  T_Array<int> rows = Indices({11, 3, 7, 0, 9, 1, 5});
  T_Array<int> cols = Indices({5, 11, 0, 1, 9, 7, 3});
  const std::unique_ptr<T_Matrix<TypeParam>> minor(m.GetMinor(rows, cols));
  ASSERT_EQ(minor->Y(), 5);
  for (int k = 0; k < 5; ++k) EXPECT_EQ((*minor)(k, k), (Doubles{3, 5, 7, 9, 11})[std::size_t(k)]);
}

TYPED_TEST(MatrixStorage, GetMinorOfNothingIsACopy) {
  const T_Matrix<TypeParam> m = Mat<TypeParam>(2, 3, kOneToSix);
  T_Array<int> none(0);
  const std::unique_ptr<T_Matrix<TypeParam>> minor(m.GetMinor(none, none));
  EXPECT_EQ(Contents(*minor), (Doubles(kOneToSix)));
}

TYPED_TEST(MatrixStorage, GetMinorWithRepeatedOrOutsideIndicesStaysInside) {
  const T_Matrix<TypeParam> m = Mat<TypeParam>(3, 3, {1, 2, 3, 4, 5, 6, 7, 8, 9});
  T_Array<int> rows = Indices({1, 1});
  T_Array<int> cols = Indices({7});
  const std::unique_ptr<T_Matrix<TypeParam>> minor(m.GetMinor(rows, cols));
  EXPECT_EQ(minor->Y(), 1);
  EXPECT_EQ(minor->X(), 2);
  T_Array<int> many = Indices({0, 1, 2, 3, 4});
  const std::unique_ptr<T_Matrix<TypeParam>> empty(m.GetMinor(many, cols));
  EXPECT_EQ((*empty)[0], nullptr);
}

TYPED_TEST(MatrixStorage, SwapColumnsExchangesThemInEveryRow) {
  T_Matrix<TypeParam> m = Mat<TypeParam>(2, 3, kOneToSix);
  m.SwapColumns(0, 2);
  EXPECT_EQ(Contents(m), (Doubles{3, 2, 1, 6, 5, 4}));
  m.SwapColumns(1, 1);
  m.SwapColumns(0, 3);
  m.SwapColumns(-1, 0);
  EXPECT_EQ(Contents(m), (Doubles{3, 2, 1, 6, 5, 4}));
}

TYPED_TEST(MatrixStorage, SwapLinesExchangesRows) {
  T_Matrix<TypeParam> m = Mat<TypeParam>(2, 3, kOneToSix);
  MatrixFields<TypeParam>::Exchange(m, m[0], m[1]);
  EXPECT_EQ(Contents(m), (Doubles{4, 5, 6, 1, 2, 3}));
}

// Transpose ---------------------------------------------------------------------------------------

/// Element (i, j) tells its position.
template <class T>
T_Matrix<T> Numbered(int rows, int cols) {
  T_Matrix<T> m(rows, cols);
  for (std::int64_t k = 0; k < static_cast<std::int64_t>(rows) * cols; ++k) {
    m.Item(k) = static_cast<T>(k);
  }
  return m;
}

TYPED_TEST(MatrixStorage, TransposesEveryShape) {
  for (int rows : {1, 2, 3, 4, 5, 8, 15, 16, 17, 31, 32, 33, 40, 64, 65, 100}) {
    for (int cols : {1, 2, 3, 4, 5, 8, 15, 16, 17, 31, 32, 33, 40, 64, 65, 100}) {
      const T_Matrix<TypeParam> m = Numbered<TypeParam>(rows, cols);
      T_Matrix<TypeParam> inPlace(m);
      inPlace.Transpose();
      const std::unique_ptr<T_Matrix<TypeParam>> made(m.T());
      ASSERT_EQ(inPlace.Y(), cols);
      ASSERT_EQ(inPlace.X(), rows);
      ASSERT_EQ(made->Y(), cols);
      ASSERT_EQ(made->X(), rows);
      for (int i = 0; i < rows; ++i) {
        for (int j = 0; j < cols; ++j) {
          ASSERT_EQ(inPlace(j, i), m(i, j)) << rows << " x " << cols;
          ASSERT_EQ((*made)(j, i), m(i, j)) << rows << " x " << cols;
        }
      }
    }
  }
}

TYPED_TEST(MatrixStorage, TransposeOfMatricesWithoutElementsExchangesTheDimensions) {
  T_Matrix<TypeParam> m(0, 3);
  m.Transpose();
  EXPECT_EQ(m.Y(), 3);
  EXPECT_EQ(m.X(), 0);
  T_Matrix<TypeParam> reset(2, 3);
  reset.Reset();
  reset.Transpose();
  EXPECT_EQ(reset.Y(), 3);
}

TYPED_TEST(MatrixStorage, RefusedTransposeReinterpretsTheElements) {
  T_Matrix<TypeParam> m = Mat<TypeParam>(2, 3, kOneToSix);
  this->host.SetHeapFailure([](std::int64_t) { return true; });
  m.Transpose();
  this->host.SetHeapFailure({});
  EXPECT_EQ(m.Y(), 3);
  EXPECT_EQ(m.X(), 2);
  EXPECT_EQ(Contents(m), (Doubles(kOneToSix)));
}

TYPED_TEST(MatrixStorage, SquareTransposeNeedsNoHeap) {
  T_Matrix<TypeParam> m = Mat<TypeParam>(2, 2, {1, 2, 3, 4});
  this->host.SetHeapFailure([](std::int64_t) { return true; });
  m.Transpose();
  this->host.SetHeapFailure({});
  EXPECT_EQ(Contents(m), (Doubles{1, 3, 2, 4}));
}

}  // namespace
