/// @file
/// Values as numbers, and complex conjugation.

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>

#include "tests/support/host_fixture.h"

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

Variable Real(double number) {
  Variable value;
  value = number;
  return value;
}

Variable MakeText(const char* text) {
  VarRegister value;
  value = text;
  return value.GetVar();
}

TEST(Number, TruncatesTowardsZero) {
  EXPECT_EQ(Real(2.9).GetInt32Numb(), 2);
  EXPECT_EQ(Real(-2.9).GetInt32Numb(), -2);
  EXPECT_EQ(Real(-0.5).GetInt32Numb(), 0);
}

TEST(Number, OutsideOf32BitsIsZero) {
  EXPECT_EQ(Real(2147483647.0).GetInt32Numb(), 2147483647);
  EXPECT_EQ(Real(2147483647.9).GetInt32Numb(), 2147483647);
  EXPECT_EQ(Real(2147483648.0).GetInt32Numb(), 0);
  EXPECT_EQ(Real(-2147483648.9).GetInt32Numb(), std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(Real(-2147483649.0).GetInt32Numb(), 0);
  for (const double number : {kNan, kInfinity, -kInfinity, 1e300}) {
    EXPECT_EQ(Real(number).GetInt32Numb(), 0);
  }
  EXPECT_EQ(Variable(std::int64_t{1} << 40).GetInt32Numb(), 0);
}

TEST(Number, OfATextIsWhatTheWholeTextSpells) {
  EXPECT_EQ(MakeText("2.5e3").GetDoubleNumb(), 2500.0);
  EXPECT_EQ(MakeText("-1").GetDoubleNumb(), -1.0);
  for (const char* text : {"", " 1", "1 ", "1x", "x", "0x10"}) {
    EXPECT_EQ(MakeText(text).GetDoubleNumb(), 0.0) << text;
  }
  EXPECT_EQ(MakeText("1").IsNumber(), 0);
}

TEST(Number, OfWhatNoneCanBeMadeOfIsZero) {
  EXPECT_EQ(Variable().GetDoubleNumb(), 0.0);
  Variable array(VARTYPE_ARRAY, 1);
  array[0] = 5.0;
  EXPECT_EQ(array.GetDoubleNumb(), 0.0);
  EXPECT_EQ(Variable(VARTYPE_BYTES, 3).GetDoubleNumb(), 0.0);
}

TEST(Number, InSinglePrecisionIsRounded) { EXPECT_EQ(Real(0.1).GetFloatNumb(), 0.1F); }

using VectorNumber = HostTest;

TEST_F(VectorNumber, IsTheEuclideanLength) {
  EXPECT_EQ(Value("return MVector{3, 4}").GetDoubleNumb(), 5.0);
  EXPECT_EQ(Value("return Vector{2, 3, 6}").GetDoubleNumb(), 7.0);
  EXPECT_EQ(Value("return MVector{-8}").GetDoubleNumb(), 8.0);
  EXPECT_EQ(Value("return MVector()").GetDoubleNumb(), 0.0);
  EXPECT_EQ(Value("return MVector(5)").GetDoubleNumb(), 0.0);
  EXPECT_EQ(Value("return MVector{3, 4}").IsNumber(), 0);
}

TEST_F(VectorNumber, NeitherOverflowsNorUnderflows) {
  EXPECT_EQ(Value("return MVector{3 * 2.0^1000, 4 * 2.0^1000}").GetDoubleNumb(), 0x5p1000);
  EXPECT_EQ(Value("return MVector{3 * 2.0^-1000, 4 * 2.0^-1000}").GetDoubleNumb(), 0x5p-1000);
  const double least = std::numeric_limits<double>::denorm_min();
  Variable tiny = Value("return MVector(2)");
  tiny[0] = 3.0 * least;
  tiny[1] = 4.0 * least;
  EXPECT_EQ(tiny.GetDoubleNumb(), 5.0 * least);
  EXPECT_EQ(Value("return MVector{1.7e308, 1.7e308}").GetDoubleNumb(), kInfinity);
}

TEST_F(VectorNumber, ScalingCostsNoAccuracy) {
  // Scaled by a power of two, a moderate vector gives the bits of the plain formula.
  const double plain = std::sqrt(0.1 * 0.1 + 0.7 * 0.7 + 1.3 * 1.3);
  const double length = Value("return MVector{0.1, 0.7, 1.3}").GetDoubleNumb();
  EXPECT_EQ(std::bit_cast<std::uint64_t>(length), std::bit_cast<std::uint64_t>(plain));
}

TEST_F(VectorNumber, WithInfiniteAndNanElements) {
  EXPECT_EQ(Value("return MVector{1, -math.huge, 0/0}").GetDoubleNumb(), kInfinity);
  EXPECT_TRUE(std::isnan(Value("return MVector{1, 0/0}").GetDoubleNumb()));
}

TEST_F(VectorNumber, OfAVectorThatHoldsItselfEnds) {
  Variable vector = Value("return MVector{3, 4}");
  vector[1] = &vector;
  EXPECT_TRUE(std::isfinite(vector.GetDoubleNumb()));
}

using Conjugation = HostTest;

TEST_F(Conjugation, OfNumbers) {
  Run("z = complex(1, 2)");
  const Variable conjugate = Value("return z").Conjugate();
  EXPECT_EQ(conjugate.GetDoubleNumb(), 1.0);
  ASSERT_TRUE(host.Load(TARN_MODULE_PATH));
  EXPECT_EQ(Text("Conjugate(z)"), "1-2i");
  EXPECT_EQ(Text("z"), "1+2i");
  EXPECT_EQ(Text("Conjugate(complex(1, -0.0))"), "1+0i");
  EXPECT_EQ(Variable(5).Conjugate().GetInt32Numb(), 5);
  EXPECT_EQ(Real(2.5).Conjugate().GetDoubleNumb(), 2.5);
}

TEST_F(Conjugation, OfArraysAndVectorsElementByElement) {
  ASSERT_TRUE(host.Load(TARN_MODULE_PATH));
  EXPECT_EQ(Text("Conjugate{complex(1, 2), 3, {complex(4, 5)}}"), "{1-2i, 3, {4-5i}}");
  Run("v = MVector(1); v[1] = complex(1, 2)");
  EXPECT_EQ(Text("Conjugate(v)"), "MVector{1-2i}");
  EXPECT_EQ(Text("v"), "MVector{1+2i}");
  Run("a = Array{complex(0, 1)}");
  EXPECT_EQ(Text("Conjugate(a)"), "Array{0-1i}");
}

TEST_F(Conjugation, OfTabulatedFunctionsConjugatesTheOrdinates) {
  ASSERT_TRUE(host.Load(TARN_MODULE_PATH));
  Run("f = TFunc({complex(0, 1)}, {complex(0, 2)})");
  EXPECT_EQ(Text("Conjugate(f)"), "TFunc(X = {0+1i}, Y = {0-2i})");
}

TEST_F(Conjugation, OfAnythingElseIsACopy) {
  EXPECT_STREQ(static_cast<char*>(MakeText("text").Conjugate()), "text");
  EXPECT_EQ(Variable().Conjugate().TypeWord(), VARTYPE_EMPTY);
  int target = 0;
  Variable pointer;
  pointer.SetCppPointer(&target);
  EXPECT_EQ(pointer.Conjugate().GetCppPointer(), &target);
}

}  // namespace
