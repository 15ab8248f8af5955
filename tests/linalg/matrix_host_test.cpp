// Matrices and sets of vectors from values of the host.

#include "linalg/array_new_failure.h"
#include "linalg/linalg_support.h"

namespace {

using Rows = std::initializer_list<std::initializer_list<double>>;

Variable HostRows(Rows rows) {
  Variable outer(VARTYPE_ARRAY, static_cast<std::int64_t>(rows.size()));
  std::int64_t i = 0;
  for (const auto& row : rows) {
    outer[i].Init(VARTYPE_ARRAY, static_cast<std::int64_t>(row.size()));
    std::int64_t j = 0;
    for (double value : row) outer[i][j++] = value;
    ++i;
  }
  return outer;
}

template <class T>
class MatrixHost : public SolverTest<T> {};
TYPED_TEST_SUITE(MatrixHost, ElementTypes);

TYPED_TEST(MatrixHost, TakesTheRowsOfAnArray) {
  Variable rows = HostRows({{1, 2, 3}, {4, 5, 6.5}});
  const T_Matrix<TypeParam> m(rows);
  EXPECT_EQ(m.Y(), 2);
  EXPECT_EQ(m.X(), 3);
  EXPECT_EQ(Contents(m), (Doubles{1, 2, 3, 4, 5, 6.5}));
  EXPECT_EQ(this->RaisedError(), 0);
}

TYPED_TEST(MatrixHost, ShorterRowIsAnError) {
  Variable rows = HostRows({{1, 2}, {3}, {4, 5}});
  const T_Matrix<TypeParam> m(rows);
  EXPECT_EQ(this->RaisedError(), 3);
  EXPECT_EQ(Contents(m), (Doubles{1, 2, 0, 0, 0, 0})) << "the copy stops at that row";
}

TYPED_TEST(MatrixHost, LongerRowIsAnError) {
  Variable rows = HostRows({{1, 2}, {3, 4, 5}});
  const T_Matrix<TypeParam> m(rows);
  EXPECT_EQ(this->RaisedError(), 3);
}

TYPED_TEST(MatrixHost, NoRowsAreAnError) {
  Variable rows = HostRows({});
  const T_Matrix<TypeParam> m(rows);
  EXPECT_EQ(this->RaisedError(), 3);
  EXPECT_EQ(m[0], nullptr);
}

TYPED_TEST(MatrixHost, EmptyFirstRowIsAnError) {
  Variable rows = HostRows({{}, {1}});
  const T_Matrix<TypeParam> m(rows);
  EXPECT_EQ(this->RaisedError(), 3);
  EXPECT_EQ(m[0], nullptr);
}

TYPED_TEST(MatrixHost, NumbersAndFlatArraysAreErrors) {
  Variable number;
  number = 3.0;
  const T_Matrix<TypeParam> ofNumber(number);
  EXPECT_EQ(this->RaisedError(), 3);
  Variable flat(VARTYPE_ARRAY, 2);
  flat[0] = 1.0;
  flat[1] = 2.0;
  const T_Matrix<TypeParam> ofFlat(flat);
  EXPECT_EQ(this->RaisedError(), 3);
}

TYPED_TEST(MatrixHost, RefusedStorageLeavesNoElements) {
  Variable rows = HostRows({{1, 2}, {3, 4}});
  {
    const NewFailure failure([](std::int64_t) { return true; });
    const T_Matrix<TypeParam> m(rows);
    EXPECT_EQ(m[0], nullptr);
  }
  this->host.SetHeapFailure([](std::int64_t) { return true; });
  const T_Matrix<TypeParam> m(rows);
  this->host.SetHeapFailure({});
  EXPECT_EQ(m[0], nullptr);
  EXPECT_EQ(this->RaisedError(), 0);
}

// Sets of column vectors --------------------------------------------------------------------------

struct SetFields : MatVectorColSet {
  static constexpr std::size_t ItemsOffset() { return offsetof(SetFields, items); }
  static constexpr std::size_t CountOffset() { return offsetof(SetFields, count); }
  static const T_MatVectorCol<double>* Items(const MatVectorColSet& set) {
    return set.*&SetFields::items;
  }
};

class ColumnSet : public SolverTest<double> {};

TEST_F(ColumnSet, FieldsStandInTheirOrder) {
  static_assert(SetFields::ItemsOffset() == 0);
  static_assert(SetFields::CountOffset() == sizeof(void*));
  static_assert(sizeof(MatVectorColSet) == 2 * sizeof(void*));
}

TEST_F(ColumnSet, OfANumberOfEmptyVectors) {
  MatVectorColSet set(3);
  EXPECT_EQ(set.Len(), 3);
  EXPECT_EQ(set[2].Dim(), 0);
  const MatVectorColSet none(0);
  EXPECT_EQ(none.Len(), 0);
  EXPECT_NE(SetFields::Items(none), nullptr);
}

TEST_F(ColumnSet, TakesTheRowsOfAnArray) {
  Variable rows = HostRows({{1, 2}, {3, 4}, {5, 6}});
  MatVectorColSet set(rows);
  EXPECT_EQ(set.Len(), 3);
  EXPECT_EQ(Contents(set[1]), (Doubles{3, 4}));
}

TEST_F(ColumnSet, ShorterRowLeavesZeros) {
  Variable rows = HostRows({{1, 2, 3}, {4}});
  MatVectorColSet set(rows);
  EXPECT_EQ(set.Len(), 2);
  EXPECT_EQ(Contents(set[0]), (Doubles{1, 2, 3}));
  EXPECT_EQ(Contents(set[1]), (Doubles{4, 0, 0}));
}

TEST_F(ColumnSet, LongerRowIsCut) {
  Variable rows = HostRows({{1, 2}, {3, 4, 5}});
  MatVectorColSet set(rows);
  EXPECT_EQ(Contents(set[1]), (Doubles{3, 4}));
}

TEST_F(ColumnSet, RowWithoutAnArrayLeavesItsVectorZero) {
  Variable rows = HostRows({{1, 2}, {}});
  rows[1] = 7.0;
  MatVectorColSet set(rows);
  EXPECT_EQ(Contents(set[1]), (Doubles{0, 0}));
}

TEST_F(ColumnSet, EmptyValueGivesOneZeroOfDimensionOne) {
  Variable nothing = HostRows({});
  MatVectorColSet set(nothing);
  EXPECT_EQ(set.Len(), 1);
  EXPECT_EQ(Contents(set[0]), (Doubles{0}));
  Variable number;
  number = 3.0;
  MatVectorColSet ofNumber(number);
  EXPECT_EQ(ofNumber.Len(), 1);
  EXPECT_EQ(Contents(ofNumber[0]), (Doubles{0}));
}

TEST_F(ColumnSet, EmptyFirstRowGivesVectorsOfDimensionOne) {
  Variable rows = HostRows({{}, {}});
  MatVectorColSet set(rows);
  EXPECT_EQ(set.Len(), 2);
  EXPECT_EQ(Contents(set[0]), (Doubles{0}));
  EXPECT_EQ(Contents(set[1]), (Doubles{0}));
}

TEST_F(ColumnSet, CopiesAreDeep) {
  Variable rows = HostRows({{1, 2}, {3, 4}});
  MatVectorColSet set(rows);
  MatVectorColSet copy(set);
  set[1][0] = 9;
  EXPECT_EQ(copy.Len(), 2);
  EXPECT_EQ(Contents(copy[1]), (Doubles{3, 4}));
}

TEST_F(ColumnSet, AssignmentOfAnotherLengthReplacesTheArray) {
  Variable rows = HostRows({{1, 2}, {3, 4}});
  MatVectorColSet two(rows);
  MatVectorColSet three(3);
  EXPECT_EQ(&(three = two), &three);
  EXPECT_EQ(three.Len(), 2);
  EXPECT_EQ(Contents(three[1]), (Doubles{3, 4}));
  EXPECT_NE(SetFields::Items(three), SetFields::Items(two));
}

TEST_F(ColumnSet, AssignmentOfEqualLengthKeepsArrayAndFittingVectors) {
  Variable rows = HostRows({{1, 2}, {3, 4}});
  Variable others = HostRows({{5, 6}, {7, 8}});
  MatVectorColSet target(rows);
  MatVectorColSet source(others);
  const auto* const items = SetFields::Items(target);
  const double* const elements = target[1];
  target = source;
  EXPECT_EQ(SetFields::Items(target), items);
  EXPECT_EQ(static_cast<const double*>(target[1]), elements);
  EXPECT_EQ(Contents(target[1]), (Doubles{7, 8}));
  const MatVectorColSet& self = target;
  target = self;
  EXPECT_EQ(Contents(target[1]), (Doubles{7, 8}));
}

TEST_F(ColumnSet, AssignmentReallocatesVectorsOfAnotherDimension) {
  Variable rows = HostRows({{1, 2, 3}});
  MatVectorColSet target(1);
  target = MatVectorColSet(rows);
  EXPECT_EQ(Contents(target[0]), (Doubles{1, 2, 3}));
}

TEST_F(ColumnSet, NegativeNumberIsARefusedAllocation) {
  const MatVectorColSet set(-1);
  EXPECT_EQ(set.Len(), 0);
  EXPECT_EQ(SetFields::Items(set), nullptr);
}

TEST_F(ColumnSet, RefusedArrayLeavesNoItems) {
  Variable rows = HostRows({{1, 2}, {3, 4}});
  MatVectorColSet source(rows);
  MatVectorColSet target(3);
  const NewFailure failure([](std::int64_t) { return true; });
  EXPECT_EQ(MatVectorColSet(2).Len(), 0);
  const MatVectorColSet fromHost(rows);
  EXPECT_EQ(SetFields::Items(fromHost), nullptr);
  EXPECT_EQ(fromHost.Len(), 2);
  const MatVectorColSet copy(source);
  EXPECT_EQ(SetFields::Items(copy), nullptr);
  EXPECT_EQ(copy.Len(), 2);
  target = source;
  EXPECT_EQ(SetFields::Items(target), nullptr);
  EXPECT_EQ(target.Len(), 3);
  const MatVectorColSet copyOfNothing(copy);
  EXPECT_EQ(SetFields::Items(copyOfNothing), nullptr);
}

TEST_F(ColumnSet, SurvivesEveryRefusedRequest) {
  Variable rows = HostRows({{1, 2}, {3, 4}});
  for (std::int64_t refused = 1; refused <= 12; ++refused) {
    const std::int64_t before = LiveNewBlocks();
    {
      const NewFailure failure([=](std::int64_t request) { return request == refused; });
      MatVectorColSet set(rows);
      MatVectorColSet copy(set);
      MatVectorColSet target(1);
      target = set;
    }
    EXPECT_EQ(LiveNewBlocks(), before) << refused;
  }
}

}  // namespace
