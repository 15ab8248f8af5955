// "Matrix" in scripts: making, elements, arithmetic.

#include "toolkit/toolkit_fixture.h"

namespace {

TEST_F(ToolkitTest, MakesMatricesOfRows) {
  EXPECT_EQ(Elements("Matrix{{1, 2, 3}, {4, 5, 6}}"), (NumberList{1, 2, 3, 4, 5, 6}));
  EXPECT_EQ(Elements("Matrix{MVector{1, 2}, array{3, 4}}"), (NumberList{1, 2, 3, 4}));
  EXPECT_EQ(Elements("Matrix(array{array{1, 2}})"), (NumberList{1, 2}));
}

TEST_F(ToolkitTest, MakesMatricesOfOptions) {
  EXPECT_EQ(Elements("Matrix{rows = 2, columns = 3, values = {1, 2, 3, 4, 5, 6}}"),
            (NumberList{1, 2, 3, 4, 5, 6}));
  EXPECT_EQ(Elements("Matrix{rows = 1, columns = 2}"), (NumberList{0, 0}));
  EXPECT_EQ(Elements("Matrix{diagonal = {1, 2}}"), (NumberList{1, 0, 0, 2}));
}

TEST_F(ToolkitTest, RefusesShapesThatDoNotFit) {
  EXPECT_EQ(Refusal("Matrix{{1, 2}, {3}}"), "3 Matrix: row[2] has 1 element, but row[1] has 2");
  EXPECT_EQ(Refusal("Matrix{{}}"), "3 Matrix: row[1] must have at least 1 element, has 0");
  EXPECT_EQ(Refusal("Matrix{rows = 2, columns = 2, values = {1}}"),
            "3 Matrix: values has 1 element, but a 2x2 matrix has 4");
  EXPECT_EQ(Refusal("Matrix{rows = 1, diagonal = {1}}"),
            "3 Matrix: diagonal excludes rows, columns and values");
  EXPECT_EQ(Refusal("Matrix{rows = 1000000, columns = 1000000}"),
            "3 Matrix: 1000000 rows of 1000000 columns are too many elements");
}

TEST_F(ToolkitTest, GivesElementsRowsAndColumns) {
  Run("m = Matrix{{1, 2, 3}, {4, 5, 6}}");
  EXPECT_EQ(Number("return m:Rows()"), 2.0);
  EXPECT_EQ(Number("return m:Columns()"), 3.0);
  EXPECT_EQ(Number("return m(2, 3)"), 6.0);
  EXPECT_EQ(Number("return m:At(2, 1)"), 4.0);
  EXPECT_EQ(Numbers("m:Row(2)"), (NumberList{4, 5, 6}));
  EXPECT_EQ(Numbers("m:Column(3)"), (NumberList{3, 6}));
  EXPECT_EQ(Numbers("m:Diagonal()"), (NumberList{1, 5}));
}

TEST_F(ToolkitTest, RefusesPlacesOutside) {
  Run("m = Matrix{{1, 2, 3}, {4, 5, 6}}");
  EXPECT_EQ(Refusal("m(3, 1)"), "3 Matrix.__call: row must be a whole number 1 to 2, got 3");
  EXPECT_EQ(Refusal("m(1, 0)"), "3 Matrix.__call: column must be a whole number 1 to 3, got 0");
  EXPECT_EQ(Refusal("m:At(1, 4)"), "3 Matrix.At: column must be a whole number 1 to 3, got 4");
  EXPECT_EQ(Refusal("m:Row('x')"), "3 Matrix.Row: row must be a number, got text");
  EXPECT_EQ(Refusal("m:Column(-1)"),
            "3 Matrix.Column: column must be a whole number 1 to 3, got -1");
}

TEST_F(ToolkitTest, ShowsAlignedColumns) {
  EXPECT_EQ(Text("Matrix{{1, -2.5}, {100, 0}}"), "[    1  -2.5  ]\n[  100     0  ]");
  EXPECT_EQ(Text("-Matrix{{0}}"), "[  0  ]");
  const std::string large = Text("Matrix{rows = 11, columns = 12}");
  EXPECT_TRUE(large.starts_with("[  0  0  0  0  0  0  0  0  0  0  ...  ]\n"));
  EXPECT_TRUE(large.ends_with("\n(11x12 matrix)"));
}

TEST_F(ToolkitTest, AddsAndSubtractsMatrices) {
  Run("a, b = Matrix{{1, 2}, {3, 4}}, Matrix{{10, 20}, {30, 40}}");
  EXPECT_EQ(Elements("a + b"), (NumberList{11, 22, 33, 44}));
  EXPECT_EQ(Elements("b - a"), (NumberList{9, 18, 27, 36}));
  EXPECT_EQ(Elements("a + 1"), (NumberList{2, 3, 4, 5}));
  EXPECT_EQ(Elements("1 + a"), (NumberList{2, 3, 4, 5}));
  EXPECT_EQ(Elements("a - 1"), (NumberList{0, 1, 2, 3}));
  EXPECT_EQ(Elements("1 - a"), (NumberList{0, -1, -2, -3}));
  EXPECT_EQ(Elements("-a"), (NumberList{-1, -2, -3, -4}));
}

TEST_F(ToolkitTest, MultipliesMatrices) {
  // A product that is not symmetric in any of its factors, worked out by hand.
  Run("a, b = Matrix{{1, 2, 3}, {4, 5, 6}}, Matrix{{1, 0}, {2, -1}, {0, 3}}");
  EXPECT_EQ(Elements("a * b"), (NumberList{5, 7, 14, 13}));
  EXPECT_EQ(Elements("b * a"), (NumberList{1, 2, 3, -2, -1, 0, 12, 15, 18}));
  EXPECT_EQ(Numbers("a * MVector{1, 0, -1}"), (NumberList{-2, -2}));
  EXPECT_EQ(Numbers("a * {1, 0, -1}"), (NumberList{-2, -2}));
  EXPECT_EQ(Numbers("MVector{1, -1} * a"), (NumberList{-3, -3, -3}));
  EXPECT_EQ(Elements("2 * a"), (NumberList{2, 4, 6, 8, 10, 12}));
  EXPECT_EQ(Elements("a * 2"), (NumberList{2, 4, 6, 8, 10, 12}));
  EXPECT_EQ(Elements("a / 3"), (NumberList{1.0 / 3, 2.0 / 3, 1, 4.0 / 3, 5.0 / 3, 2}));
}

TEST_F(ToolkitTest, RefusesMatricesThatDoNotGoTogether) {
  Run("a = Matrix{{1, 2, 3}, {4, 5, 6}}");
  EXPECT_EQ(Refusal("a * a"),
            "3 Matrix.__mul: cannot multiply a 2x3 matrix by a 2x3 matrix: 3 columns against 2 "
            "rows");
  EXPECT_EQ(Refusal("a * MVector{1}"),
            "3 Matrix.__mul: cannot multiply a 2x3 matrix by a vector of 1: 3 columns against 1 "
            "row");
  EXPECT_EQ(Refusal("MVector{1} * a"),
            "3 MVector.__mul: cannot multiply a vector of 1 by a 2x3 matrix: 1 column against 2 "
            "rows");
  EXPECT_EQ(Refusal("a + a:Transpose()"), "3 Matrix.__add: the matrices are 2x3 and 3x2");
  EXPECT_EQ(Refusal("a - a:Transpose()"), "3 Matrix.__sub: the matrices are 2x3 and 3x2");
  EXPECT_EQ(Refusal("a + 'x'"), "3 Matrix.__add: cannot compute Matrix + text");
  EXPECT_EQ(Refusal("a - MVector{1, 2}"), "3 Matrix.__sub: cannot compute Matrix - MVector");
  EXPECT_EQ(Refusal("1 / a"), "3 Matrix.__div: cannot compute number / Matrix");
  EXPECT_EQ(Refusal("a / a"), "3 Matrix.__div: cannot compute Matrix / Matrix");
  EXPECT_EQ(Refusal("a / 0"), "10 Matrix.__div: division by 0");
}

TEST_F(ToolkitTest, TransposesAndReduces) {
  EXPECT_EQ(Elements("Matrix{{1, 2, 3}, {4, 5, 6}}:Transpose()"), (NumberList{1, 4, 2, 5, 3, 6}));
  EXPECT_EQ(Number("return Matrix{{1, 2}, {3, 4}}:Trace()"), 5.0);
  EXPECT_EQ(Number("return Matrix{{1, 2}, {2, 4}}:Norm()"), 5.0);
}

TEST_F(ToolkitTest, CopiesOfAMatrixAreIndependentOfIt) {
  Run("a = Matrix{{1, 2}, {3, 4}}; b = a:copy(); a = nil; collectgarbage()");
  EXPECT_EQ(Number("return b(2, 2)"), 4.0);
}

TEST_F(ToolkitTest, ScriptsDoNotReachTheDataOfAMatrix) {
  Run("a = Matrix{{1, 2}, {3, 4}}; for name in pairs(a) do error(name) end");
  EXPECT_EQ(Failure("a.native = nil").number, 3);
  EXPECT_EQ(Number("return a(2, 2)"), 4.0);
}

// A program can take away what a script cannot.
TEST_F(ToolkitTest, EndsCleanlyWhenAProgramTakesTheDataAway) {
  Run("function take(object) a = object end");
  Variable matrix = Value("return Matrix{{1, 2}, {3, 4}}");
  Variable sample = Value("return Stat{1, 2}");
  sample("native") = matrix("native");
  matrix("native") = 7;
  Variable take = Value("return take");
  VarRegister argument;
  VarRegister result;
  argument.PointTo(&matrix);
  ASSERT_NE(host.GetProcessor().RunFunctionAsIs(result, take, &argument, 1), 0);
  EXPECT_EQ(Refusal("a:Rows()"),
            "3 Matrix.Rows: the object has lost its data, its member \"native\"");
  argument.PointTo(&sample);
  ASSERT_NE(host.GetProcessor().RunFunctionAsIs(result, take, &argument, 1), 0);
  EXPECT_EQ(Refusal("a:MedianSD()"),
            "3 Stat.MedianSD: the object has lost its data, its member \"native\"");
}

TEST_F(ToolkitTest, ShowsElementsThatAreNoNumbers) {
  EXPECT_EQ(Text("Matrix{{0/0, -(0/0)}, {1/0, -1/0}}"), "[  nan   nan  ]\n[  inf  -inf  ]");
}

}  // namespace
