#include "special/bessel_first_second.h"

#include <gtest/gtest.h>

#include <cmath>

#include "special/bessel_order.h"
#include "special/bessel_real_order.h"
#include "special/host_errors.h"
#include "special/platform_bessel.h"
#include "special/same_bits.h"

namespace {

using host_errors::HostTest;
using host_errors::kInfinity;
using host_errors::kNaN;
using same_bits::Arguments;
using tarn::BesselJ;
using tarn::BesselJDerivative;
using tarn::BesselY;
using tarn::BesselYDerivative;

class Bessel : public HostTest {};

TEST_F(Bessel, PlatformFunctionsAreTheCLibrarys) {
  for (double x = -30.0; x < 30.0; x += 0.217) {
    EXPECT_SAME_BITS(tarn::PlatformJ0(x), ::j0(x));
    EXPECT_SAME_BITS(tarn::PlatformJ1(x), ::j1(x));
    EXPECT_SAME_BITS(tarn::PlatformJn(4, x), ::jn(4, x));
    EXPECT_SAME_BITS(tarn::PlatformY0(x), ::y0(x));
    EXPECT_SAME_BITS(tarn::PlatformY1(x), ::y1(x));
    EXPECT_SAME_BITS(tarn::PlatformYn(4, x), ::yn(4, x));
  }
}

TEST_F(Bessel, IntegralOrdersAreThePlatforms) {
  Arguments draw(1);
  for (int i = 0; i < 5000; ++i) {
    const int n = draw.Integer(-60, 60);
    const double x = draw.LogUniform(1e-3, 1e3) * draw.Sign();
    EXPECT_SAME_BITS(BesselJ(x, n), ::jn(n, x));
    EXPECT_SAME_BITS(BesselY(x, n), ::yn(n, x));
  }
  EXPECT_SAME_BITS(BesselJ(3.0, -0.0), ::j0(3.0));
}

TEST_F(Bessel, OrdersNextToAnIntegerTakeTheRealOrderRoutine) {
  for (double x = 0.5; x < 30.0; x += 0.7) {
    tarn::BesselJYValues values = {};
    ASSERT_TRUE(tarn::BesselJY(x, 2.0000001, values));
    EXPECT_SAME_BITS(BesselJ(x, 2.0000001), values.j);
    EXPECT_SAME_BITS(BesselY(x, 2.0000001), values.y);
    EXPECT_FALSE(same_bits::Same(BesselJ(x, 2.0), BesselJ(x, 2.0000001)));
  }
}

TEST_F(Bessel, DerivativesAlwaysComeFromTheRealOrderRoutine) {
  for (const double order : {0.0, 1.0, 2.0, 2.5, 7.0}) {
    for (double x = 0.3; x < 100.0; x *= 1.3) {
      tarn::BesselJYValues values = {};
      ASSERT_TRUE(tarn::BesselJY(x, order, values));
      EXPECT_SAME_BITS(BesselJDerivative(x, order), values.jDerivative);
      EXPECT_SAME_BITS(BesselYDerivative(x, order), values.yDerivative);
    }
  }
}

TEST_F(Bessel, DerivativesOfOrderZeroAreMinusOrderOne) {
  for (double x = 0.1; x < 300.0; x *= 1.1) {
    EXPECT_NEAR(BesselJDerivative(x, 0.0), -::j1(x), 1e-13);
    EXPECT_NEAR(BesselYDerivative(x, 0.0), -::y1(x), 1e-13);
  }
}

TEST_F(Bessel, RealOrderOfNonPositiveXRaisesError3) {
  for (const auto function : {BesselJ, BesselY, BesselJDerivative, BesselYDerivative}) {
    for (const double x : {0.0, -0.0, -1.0, -kInfinity}) {
      EXPECT_SAME_BITS(function(x, 2.5), 0.0);
      ExpectBareError();
    }
  }
  EXPECT_SAME_BITS(BesselJDerivative(0.0, 2.0), 0.0);
  ExpectBareError();
  EXPECT_SAME_BITS(BesselYDerivative(1.0, -2.0), 0.0);
  ExpectBareError();
}

TEST_F(Bessel, IntegralOrdersTakeEveryX) {
  EXPECT_SAME_BITS(BesselJ(0.0, 0.0), 1.0);
  EXPECT_SAME_BITS(BesselJ(0.0, 3.0), 0.0);
  EXPECT_EQ(BesselY(0.0, 3.0), -kInfinity);
  EXPECT_TRUE(std::isnan(BesselY(-1.0, 3.0)));
  EXPECT_TRUE(std::isnan(BesselJ(kNaN, 3.0)));
  EXPECT_SAME_BITS(BesselJ(kInfinity, 3.0), 0.0);
}

TEST_F(Bessel, OrdersThatAreNoneRaiseError3) {
  for (const auto function : {BesselJ, BesselY, BesselJDerivative, BesselYDerivative}) {
    for (const double order : {kNaN, kInfinity, -kInfinity, 1e10, -1e10, 1e300, -0.5}) {
      EXPECT_SAME_BITS(function(5.0, order), 0.0);
      ExpectBareError();
    }
  }
}

TEST_F(Bessel, IntegralOrdersBeyondTenMillionRaiseError3) {
  for (const auto function : {BesselJ, BesselY}) {
    for (const double order : {10000001.0, -10000001.0, 2147483647.0, -2147483648.0}) {
      EXPECT_SAME_BITS(function(5.0, order), 0.0);
      ExpectBareError();
    }
  }
  EXPECT_SAME_BITS(BesselJ(5.0, 1e7), 0.0);
  EXPECT_EQ(BesselY(5.0, 1e7), -kInfinity);
}

TEST_F(Bessel, HugeXOfRealOrderFailsInTheFirstFraction) {
  for (const auto function : {BesselJ, BesselY, BesselJDerivative, BesselYDerivative}) {
    EXPECT_SAME_BITS(function(1e4, 2.5), 0.0);
    ExpectError("x too large; try asymptotic expansion");
  }
}

TEST_F(Bessel, OrdersAreIntegralWhereTruncationTo32BitsChangesNothing) {
  EXPECT_EQ(tarn::IntegralOrder(0.0), 0);
  EXPECT_EQ(tarn::IntegralOrder(-7.0), -7);
  EXPECT_EQ(tarn::IntegralOrder(2147483647.0), 2147483647);
  EXPECT_EQ(tarn::IntegralOrder(-2147483648.0), -2147483647 - 1);
  for (const double order : {0.5, -0.5, 2.0000001, 2147483648.0, -2147483649.0, 1e300, kInfinity,
                             -kInfinity, kNaN, 5e-324}) {
    EXPECT_FALSE(tarn::IntegralOrder(order).has_value());
  }
}

}  // namespace
