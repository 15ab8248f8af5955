#include "special/bessel_modified.h"

#include <gtest/gtest.h>

#include <cmath>

#include "special/bessel_real_order.h"
#include "special/gamma.h"
#include "special/host_errors.h"
#include "special/literal_bessel_modified.h"
#include "special/same_bits.h"

namespace {

using host_errors::HostTest;
using host_errors::kInfinity;
using host_errors::kNaN;
using same_bits::Arguments;

constexpr double kPi = 3.141592653589793;
constexpr const char* kFirstFraction = "x too large; try asymptotic expansion";

// The largest of the relative errors of the polynomials.
constexpr double kPolynomialError = 6e-7;

class ModifiedBessel : public HostTest {};

tarn::BesselIKValues RealOrder(double x, double order) {
  tarn::BesselIKValues values = {};
  EXPECT_TRUE(tarn::BesselIK(x, order, values));
  return values;
}

// Bits --------------------------------------------------------------------------------------------

TEST_F(ModifiedBessel, PolynomialsHaveTheBitsOfTheirNesting) {
  Arguments draw(1);
  for (int i = 0; i < 20000; ++i) {
    const double x = i % 2 == 0 ? draw.Uniform(0.0, 8.0) : draw.LogUniform(1e-300, 800.0);
    EXPECT_SAME_BITS(BesselI0(x), literal::BesselI0(x));
    EXPECT_SAME_BITS(BesselI0(-x), literal::BesselI0(-x));
    EXPECT_SAME_BITS(BesselI1(x), literal::BesselI1(x));
    EXPECT_SAME_BITS(BesselI1(-x), literal::BesselI1(-x));
    EXPECT_SAME_BITS(BesselK0(x), literal::BesselK0(x));
    EXPECT_SAME_BITS(BesselK1(x), literal::BesselK1(x));
  }
}

TEST_F(ModifiedBessel, PolynomialsSwitchWhereStated) {
  for (const double x : {3.75, std::nextafter(3.75, 0.0)}) {
    EXPECT_SAME_BITS(BesselI0(x), literal::BesselI0(x));
    EXPECT_SAME_BITS(BesselI1(x), literal::BesselI1(x));
  }
  for (const double x : {2.0, std::nextafter(2.0, 3.0)}) {
    EXPECT_SAME_BITS(BesselK0(x), literal::BesselK0(x));
    EXPECT_SAME_BITS(BesselK1(x), literal::BesselK1(x));
  }
}

TEST_F(ModifiedBessel, IntegralIHasTheBitsOfTheDownwardRecurrence) {
  Arguments draw(2);
  for (int i = 0; i < 5000; ++i) {
    const double x = draw.LogUniform(1e-3, 700.0) * draw.Sign();
    const int n = draw.Integer(-3, 200);
    EXPECT_SAME_BITS(BesselIn(x, n), literal::BesselIInt(n, x));
  }
}

TEST_F(ModifiedBessel, IntegralIOfSmallXKeepsItsBitsWhereTheRecurrenceStaysInRange) {
  Arguments draw(3);
  int kept = 0;
  for (int i = 0; i < 5000; ++i) {
    const double x = draw.LogUniform(1e-25, 1e-3) * draw.Sign();
    const int n = draw.Integer(2, 40);
    const double plain = literal::BesselIInt(n, x);
    // Out of range the plain recurrence ends with NaN or with a zero that is none.
    if (!std::isfinite(plain) || plain == 0.0) continue;
    ++kept;
    EXPECT_SAME_BITS(BesselIn(x, n), plain);
  }
  EXPECT_GT(kept, 1000);
}

TEST_F(ModifiedBessel, IntegralKHasTheBitsOfTheUpwardRecurrence) {
  Arguments draw(4);
  for (int i = 0; i < 5000; ++i) {
    const double x = draw.LogUniform(1e-10, 760.0);
    const int n = draw.Integer(-3, 300);
    EXPECT_SAME_BITS(BesselKn(x, n), literal::BesselKInt(n, x));
  }
}

TEST_F(ModifiedBessel, RealOrdersAndDerivativesComeFromTheRealOrderRoutine) {
  Arguments draw(5);
  for (int i = 0; i < 2000; ++i) {
    const double x = draw.LogUniform(1e-3, 700.0);
    const double order = draw.Uniform(0.0, 30.0);
    EXPECT_SAME_BITS(BesselIn(x, order), RealOrder(x, order).i);
    EXPECT_SAME_BITS(BesselKn(x, order), RealOrder(x, order).k);
    EXPECT_SAME_BITS(BesselIpn(x, order), RealOrder(x, order).iDerivative);
    EXPECT_SAME_BITS(BesselKpn(x, order), RealOrder(x, order).kDerivative);
    const double integral = std::floor(order);
    EXPECT_SAME_BITS(BesselIpn(x, integral), RealOrder(x, integral).iDerivative);
    EXPECT_SAME_BITS(BesselKpn(x, integral), RealOrder(x, integral).kDerivative);
  }
}

// Integral orders, edges --------------------------------------------------------------------------

TEST_F(ModifiedBessel, IOfZero) {
  EXPECT_SAME_BITS(BesselIn(0.0, 3.0), 0.0);
  EXPECT_SAME_BITS(BesselIn(0.0, 2.0), 0.0);
  EXPECT_SAME_BITS(BesselIn(0.0, 0.0), 1.0);
  EXPECT_SAME_BITS(BesselIn(0.0, 1.0), 0.0);
}

TEST_F(ModifiedBessel, OrderOneIsI1) {
  for (double x = -20.0; x < 20.0; x += 0.37) EXPECT_SAME_BITS(BesselIn(x, 1.0), BesselI1(x));
}

TEST_F(ModifiedBessel, OddOrdersAreOddAndEvenOrdersEven) {
  for (double x = 0.01; x < 50.0; x *= 1.1) {
    EXPECT_SAME_BITS(BesselIn(-x, 3.0), -BesselIn(x, 3.0));
    EXPECT_SAME_BITS(BesselIn(-x, 4.0), BesselIn(x, 4.0));
    EXPECT_SAME_BITS(BesselI1(-x), -BesselI1(x));
    EXPECT_SAME_BITS(BesselI0(-x), BesselI0(x));
  }
}

TEST_F(ModifiedBessel, NegativeIntegralOrdersGiveOrderZero) {
  for (double x = 0.1; x < 10.0; x += 0.3) {
    EXPECT_SAME_BITS(BesselKn(x, 0.0), BesselK0(x));
    EXPECT_SAME_BITS(BesselKn(x, -2.0), BesselK0(x));
    EXPECT_SAME_BITS(BesselKn(x, -1.0), BesselK0(x));
    EXPECT_SAME_BITS(BesselIn(x, -1.0), BesselI0(x));
    EXPECT_SAME_BITS(BesselIn(x, -2147483648.0), BesselI0(x));
  }
}

TEST_F(ModifiedBessel, KOutsideItsDomainRaisesNothing) {
  EXPECT_EQ(BesselK0(0.0), kInfinity);
  EXPECT_EQ(BesselKn(0.0, 0.0), kInfinity);
  EXPECT_TRUE(std::isnan(BesselK1(0.0)));
  EXPECT_TRUE(std::isnan(BesselK0(-1.0)));
  EXPECT_TRUE(std::isnan(BesselK1(-1.0)));
  EXPECT_TRUE(std::isnan(BesselKn(-1.0, 3.0)));
}

TEST_F(ModifiedBessel, NaNAndInfiniteArgumentsOfIntegralOrders) {
  for (const auto function : {BesselI0, BesselI1, BesselK0, BesselK1}) {
    EXPECT_TRUE(std::isnan(function(kNaN)));
  }
  for (const double n : {0.0, 1.0, 2.0, 7.0}) {
    EXPECT_TRUE(std::isnan(BesselIn(kNaN, n)));
    EXPECT_TRUE(std::isnan(BesselKn(kNaN, n)));
    EXPECT_TRUE(std::isnan(BesselIn(kInfinity, n)));
    EXPECT_SAME_BITS(BesselKn(kInfinity, n), 0.0);
  }
}

TEST_F(ModifiedBessel, IOfTinyXIsItsLeadingTerm) {
  // (x/2)^n/n!, to which nothing is added at this size.
  const auto leadingTerm = [](int n, double x) {
    long double value = 1.0L;
    for (int k = 1; k <= n; ++k) value *= static_cast<long double>(x) / 2.0L / k;
    return static_cast<double>(value);
  };
  EXPECT_NEAR(BesselIn(1e-20, 5.0) / leadingTerm(5, 1e-20), 1.0, 1e-14);
  EXPECT_NEAR(BesselIn(-1e-20, 5.0) / leadingTerm(5, -1e-20), 1.0, 1e-14);
  EXPECT_FALSE(std::isfinite(literal::BesselIInt(5, 1e-20)) && literal::BesselIInt(5, 1e-20) > 0.0);
  for (const int n : {2, 3, 5, 10, 25}) {
    for (double x = 1e-9; x > 1e-160; x /= 1e3) {
      const double expected = leadingTerm(n, x);
      if (expected < 1e-300) {
        EXPECT_NEAR(BesselIn(x, n), expected, 1e-314);
      } else {
        EXPECT_NEAR(BesselIn(x, n) / expected, 1.0, 1e-13) << n << ' ' << x;
      }
    }
  }
}

TEST_F(ModifiedBessel, IOfLeastXUnderflowsToSignedZero) {
  for (const double x : {1e-163, 1e-200, 1e-300, 1e-308, 5e-324}) {
    EXPECT_SAME_BITS(BesselIn(x, 2.0), 0.0);
    EXPECT_SAME_BITS(BesselIn(x, 7.0), 0.0);
    EXPECT_SAME_BITS(BesselIn(-x, 2.0), 0.0);
    EXPECT_SAME_BITS(BesselIn(-x, 7.0), -0.0);
  }
}

TEST_F(ModifiedBessel, IOfHugeOrderAndModerateXUnderflowsToZero) {
  EXPECT_SAME_BITS(BesselIn(0.5, 1e6), 0.0);
  EXPECT_SAME_BITS(BesselIn(1e-6, 1e6), 0.0);
}

// Guarded orders ----------------------------------------------------------------------------------

TEST_F(ModifiedBessel, OrdersBeyondTheLongestRecurrenceRaiseError3) {
  for (const double n : {5e6, 2147483647.0, 2147483648.0, 1e300, kInfinity, kNaN}) {
    EXPECT_SAME_BITS(BesselIn(2.0, n), 0.0);
    ExpectBareError();
  }
  for (const double n : {10000002.0, 2147483647.0, 1e300, kInfinity, kNaN}) {
    EXPECT_SAME_BITS(BesselKn(2.0, n), 0.0);
    ExpectBareError();
  }
  for (const auto function : {BesselIpn, BesselKpn, BesselIn, BesselKn}) {
    for (const double n : {10000001.5, 1e300, kInfinity, kNaN}) {
      EXPECT_SAME_BITS(function(2.0, n), 0.0);
      ExpectBareError();
    }
  }
}

TEST_F(ModifiedBessel, LongestRecurrencesRun) {
  EXPECT_SAME_BITS(BesselIn(2.0, 4985000.0), 0.0);
  EXPECT_EQ(BesselKn(2.0, 10000001.0), kInfinity);
  EXPECT_EQ(BesselKn(2.0, 9999999.25), kInfinity);
}

TEST_F(ModifiedBessel, LogarithmsAreZeroAfterAnError) {
  EXPECT_SAME_BITS(LnBesselIn(1e6, 5e6), 0.0);  // 30 x > n, so a recurrence would be needed
  ExpectBareError();
  EXPECT_SAME_BITS(LnBesselIn(2.0, kNaN), 0.0);
  ExpectBareError();
  EXPECT_SAME_BITS(LnBesselIpn(2.0, kNaN), 0.0);
  ExpectBareError();
  EXPECT_SAME_BITS(LnBesselIn(2.0, -2.5), 0.0);
  ExpectBareError();
  EXPECT_SAME_BITS(LnBesselIpn(1e8, 2e7), 0.0);
  ExpectBareError();
  EXPECT_SAME_BITS(LnBesselIn(kNaN, 2.5), 0.0);
  ExpectError(kFirstFraction);
  EXPECT_SAME_BITS(LnBesselIpn(kNaN, 2.0), 0.0);
  ExpectError(kFirstFraction);
}

TEST_F(ModifiedBessel, RealOrderOfNonPositiveXRaisesError3) {
  for (const auto function : {BesselIn, BesselKn, BesselIpn, BesselKpn}) {
    for (const double x : {0.0, -0.0, -1.0, -kInfinity}) {
      EXPECT_SAME_BITS(function(x, 2.5), 0.0);
      ExpectBareError();
    }
    EXPECT_SAME_BITS(function(1.0, -0.5), 0.0);
    ExpectBareError();
  }
  EXPECT_SAME_BITS(BesselIpn(-1.0, 2.0), 0.0);
  ExpectBareError();
  EXPECT_SAME_BITS(BesselKpn(1.0, -2.0), 0.0);
  ExpectBareError();
}

TEST_F(ModifiedBessel, HugeXOfRealOrderFailsInTheFirstFraction) {
  for (const auto function : {BesselIn, BesselKn, BesselIpn, BesselKpn}) {
    for (const double x : {1e6, 1e300, kInfinity, kNaN}) {
      EXPECT_SAME_BITS(function(x, 2.5), 0.0);
      ExpectError(kFirstFraction);
    }
  }
}

// Logarithms --------------------------------------------------------------------------------------

double SmallForm(double x, double n) { return n * std::log(x / 2.0) - LnGamma(n + 1.0); }

double LargeForm(double x, double n) {
  const double mu = 4.0 * (n * n) - 1.0;
  return std::log(1.0 - mu / (8.0 * x)) + x - 0.5 * std::log(2.0 * kPi * x);
}

TEST_F(ModifiedBessel, LnIUsesTheSmallFormWhereAThirtiethOfTheOrderExceedsX) {
  EXPECT_SAME_BITS(LnBesselIn(1.0, 60.0), SmallForm(1.0, 60.0));
  EXPECT_SAME_BITS(LnBesselIn(1.0, 60.5), SmallForm(1.0, 60.5));
  EXPECT_SAME_BITS(LnBesselIn(1.0, 1e9), SmallForm(1.0, 1e9));
  // Not at equality.
  EXPECT_SAME_BITS(LnBesselIn(2.0, 60.0), std::log(literal::BesselIInt(60, 2.0)));
  EXPECT_EQ(LnBesselIn(0.0, 3.0), -kInfinity);
}

TEST_F(ModifiedBessel, LnIUsesTheLargeFormBeyondAnEighthOfMu) {
  const double n = 5.0;  // mu/8 = 12.375
  EXPECT_SAME_BITS(LnBesselIn(12.375, n), std::log(literal::BesselIInt(5, 12.375)));
  const double above = std::nextafter(12.375, 13.0);
  EXPECT_SAME_BITS(LnBesselIn(above, n), LargeForm(above, n));
  EXPECT_SAME_BITS(LnBesselIn(1000.0, 2.5), LargeForm(1000.0, 2.5));
  EXPECT_SAME_BITS(LnBesselIn(0.25, 0.0), LargeForm(0.25, 0.0));  // mu is negative
  EXPECT_SAME_BITS(LnBesselIn(1e300, 2.0), LargeForm(1e300, 2.0));
}

TEST_F(ModifiedBessel, LnIInBetweenIsTheLogarithmOfI) {
  Arguments draw(6);
  for (int i = 0; i < 2000; ++i) {
    const double order = draw.Uniform(2.0, 20.0);
    const double n = std::ceil(order);
    const double x = draw.Uniform(n / 29.0, (4.0 * order * order - 1.0) / 8.5);
    EXPECT_SAME_BITS(LnBesselIn(x, order), std::log(RealOrder(x, order).i));
    EXPECT_SAME_BITS(LnBesselIn(x, n), std::log(literal::BesselIInt(static_cast<int>(n), x)));
  }
}

TEST_F(ModifiedBessel, LnIDerivativeUsesThreeForms) {
  const auto small = [](double x, double n) {
    return std::log(n / 2.0) + (n - 1.0) * std::log(x / 2.0) - LnGamma(n + 1.0);
  };
  const auto large = [](double x) { return x - 0.5 * std::log(2.0 * kPi * x); };
  EXPECT_SAME_BITS(LnBesselIpn(1.0, 60.0), small(1.0, 60.0));
  EXPECT_SAME_BITS(LnBesselIpn(2.0, 60.0), std::log(RealOrder(2.0, 60.0).iDerivative));
  EXPECT_SAME_BITS(LnBesselIpn(100.0, 5.0), large(100.0));
  EXPECT_SAME_BITS(LnBesselIpn(50.0, 5.0), std::log(RealOrder(50.0, 5.0).iDerivative));
  EXPECT_SAME_BITS(LnBesselIpn(30.0, 5.0), std::log(RealOrder(30.0, 5.0).iDerivative));
  EXPECT_SAME_BITS(LnBesselIpn(30.0, 5.5), std::log(RealOrder(30.0, 5.5).iDerivative));
  EXPECT_SAME_BITS(LnBesselIpn(1e300, 5.5), large(1e300));
}

TEST_F(ModifiedBessel, LogarithmsOfNegativeXAreNaN) {
  EXPECT_TRUE(std::isnan(LnBesselIn(-2.0, 3.0)));
  EXPECT_TRUE(std::isnan(LnBesselIpn(-2.0, 3.0)));
}

// Identities --------------------------------------------------------------------------------------

TEST_F(ModifiedBessel, PolynomialsObeyTheWronskian) {
  // I0 K1 + I1 K0 = 1/x.
  for (double x = 0.01; x < 300.0; x *= 1.03) {
    const double left = BesselI0(x) * BesselK1(x) + BesselI1(x) * BesselK0(x);
    EXPECT_NEAR(left * x, 1.0, 2.0 * kPolynomialError);
  }
}

TEST_F(ModifiedBessel, IntegralIObeysTheThreeTermRecurrence) {
  // I_{n-1} - I_{n+1} = 2n/x I_n, and I_0 carries the error of its polynomial through all of them.
  for (int n = 3; n < 30; ++n) {
    for (double x = 0.1; x < n; x *= 1.4) {
      const double left = BesselIn(x, n - 1.0) - BesselIn(x, n + 1.0);
      EXPECT_NEAR(left / (2.0 * n / x * BesselIn(x, n)), 1.0, 1e-12);
    }
  }
}

TEST_F(ModifiedBessel, IntegralAndNeighbouringRealOrdersAgree) {
  for (int n = 2; n < 20; ++n) {
    for (double x = 0.2; x < n * n / 2.0; x *= 1.5) {
      EXPECT_NEAR(BesselIn(x, n) / BesselIn(x, n + 1e-12), 1.0, kPolynomialError);
      EXPECT_NEAR(BesselKn(x, n) / BesselKn(x, n + 1e-12), 1.0, kPolynomialError);
    }
  }
}

}  // namespace
