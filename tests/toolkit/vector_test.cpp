// "MVector" in scripts.

#include <cmath>

#include "toolkit/toolkit_fixture.h"

namespace {

TEST_F(ToolkitTest, AddsAndSubtractsVectors) {
  EXPECT_EQ(Numbers("MVector{1, 2, 3} + MVector{10, 20, 30}"), (NumberList{11, 22, 33}));
  EXPECT_EQ(Numbers("MVector{1, 2, 3} - {10, 20, 30}"), (NumberList{-9, -18, -27}));
  EXPECT_EQ(Numbers("{1, 2} + MVector{1, 1}"), (NumberList{2, 3}));
  EXPECT_EQ(Numbers("-MVector{1, -2}"), (NumberList{-1, 2}));
}

TEST_F(ToolkitTest, CombinesVectorsWithNumbers) {
  EXPECT_EQ(Numbers("MVector{1, 2} + 1"), (NumberList{2, 3}));
  EXPECT_EQ(Numbers("1 + MVector{1, 2}"), (NumberList{2, 3}));
  EXPECT_EQ(Numbers("MVector{1, 2} - 1"), (NumberList{0, 1}));
  EXPECT_EQ(Numbers("1 - MVector{1, 2}"), (NumberList{0, -1}));
  EXPECT_EQ(Numbers("MVector{1, 2} * 3"), (NumberList{3, 6}));
  EXPECT_EQ(Numbers("3 * MVector{1, 2}"), (NumberList{3, 6}));
  EXPECT_EQ(Numbers("MVector{1, 2} / 4"), (NumberList{0.25, 0.5}));
}

TEST_F(ToolkitTest, GivesVectorsAsResults) {
  EXPECT_EQ(Text("(MVector{1, 2} + 1):kind()"), "MVector");
  EXPECT_EQ(Text("MVector{1, 2}:Outer{1}:kind()"), "Matrix");
}

TEST_F(ToolkitTest, LeavesTheOperandsAlone) {
  Run("local a, b = MVector{1, 2}, MVector{3, 4} "
      "local c = a + b; c = a - b; c = a * 5; c = a / 5; c = -a "
      "assert(a[1] == 1 and a[2] == 2 and b[1] == 3 and b[2] == 4)");
}

TEST_F(ToolkitTest, MeasuresVectors) {
  EXPECT_EQ(Number("return MVector{3, 4}:Norm()"), 5.0);
  EXPECT_EQ(Number("return MVector(3):Norm()"), 0.0);
  EXPECT_EQ(Number("return MVector{1, 2, 3}:Dot{4, 5, 6}"), 32.0);
  EXPECT_EQ(Number("return MVector{1, 2, 3} * MVector{4, 5, 6}"), 32.0);
  EXPECT_EQ(Number("return MVector{1, 2}:Distance(MVector{4, 6})"), 5.0);
  EXPECT_NEAR(Number("return MVector{1, 0}:Cosine{1, 1}"), 0.70710678118654752, 1e-15);
  EXPECT_EQ(Elements("MVector{1, 2}:Outer{3, 4, 5}"), (NumberList{3, 4, 5, 6, 8, 10}));
}

TEST_F(ToolkitTest, RefusesVectorsOfDifferentDimensions) {
  EXPECT_EQ(Refusal("MVector{1, 2} + MVector{1}"),
            "3 MVector.__add: the vectors have 2 and 1 elements");
  EXPECT_EQ(Refusal("MVector{1, 2} - MVector{1}"),
            "3 MVector.__sub: the vectors have 2 and 1 elements");
  EXPECT_EQ(Refusal("MVector{1, 2} * {1}"), "3 MVector.__mul: the vectors have 2 and 1 elements");
  EXPECT_EQ(Refusal("MVector{1, 2}:Dot{1}"),
            "3 MVector.Dot: the other vector has 1 element, but this one has 2");
}

TEST_F(ToolkitTest, RefusesWhatGoesWithNoVector) {
  EXPECT_EQ(Refusal("MVector{1, 2} + 'x'"), "3 MVector.__add: cannot compute MVector + text");
  EXPECT_EQ(Refusal("MVector{1, 2} / MVector{1, 2}"),
            "3 MVector.__div: cannot compute MVector / MVector");
  EXPECT_EQ(Refusal("1 / MVector{1, 2}"), "3 MVector.__div: cannot compute number / MVector");
  EXPECT_EQ(Refusal("MVector{1, 2} + Matrix{{1, 2}}"),
            "3 MVector.__add: cannot compute MVector + Matrix");
  EXPECT_EQ(Refusal("MVector{1, 2} * TFunc({1}, {1})"),
            "3 MVector.__mul: cannot compute MVector * TFunc");
  EXPECT_EQ(Refusal("MVector{1, 2} / 0"), "10 MVector.__div: division by 0");
  EXPECT_EQ(Refusal("MVector{1, 2}:Dot(5)"),
            "3 MVector.Dot: the other vector must be an array, got 5");
}

TEST_F(ToolkitTest, LengthsAndAnglesBearHugeAndTinyElements) {
  for (const double scale : {1e200, 1e-200}) {
    const std::string factor = scale > 1 ? "1e200*" : "1e-200*";
    Run("v = " + factor + "MVector{3, 4} w = " + factor + "MVector{-4, 3}");
    EXPECT_DOUBLE_EQ(Number("return v:Norm()") / scale, 5.0);
    EXPECT_DOUBLE_EQ(Number("return v:Distance(w)") / scale, std::sqrt(50.0));
    EXPECT_DOUBLE_EQ(Number("return v:Cosine(v + w)"), std::sqrt(0.5));
    EXPECT_DOUBLE_EQ(Number("return (" + factor + "Matrix{{1, 2}, {2, 4}}):Norm()") / scale, 5.0);
  }
}

}  // namespace
