#include "special/bessel_real_order.h"

#include <gtest/gtest.h>

#include <cmath>

#include "special/host_errors.h"
#include "special/literal_bessel_real_order.h"
#include "special/same_bits.h"

namespace {

using host_errors::HostTest;
using host_errors::kInfinity;
using host_errors::kNaN;
using same_bits::Arguments;
using tarn::BesselIKValues;
using tarn::BesselJYValues;

constexpr double kPi = 3.141592653589793;
constexpr const char* kFirstFraction = "x too large; try asymptotic expansion";

class RealOrderBessel : public HostTest {
 protected:
  static BesselJYValues JY(double x, double nu) {
    BesselJYValues values = {};
    EXPECT_TRUE(tarn::BesselJY(x, nu, values));
    return values;
  }
  static BesselIKValues IK(double x, double nu) {
    BesselIKValues values = {};
    EXPECT_TRUE(tarn::BesselIK(x, nu, values));
    return values;
  }

  /// I and K together and K alone fail with the same error.
  void ExpectSameFailure(double x, double nu) {
    BesselIKValues values = {};
    EXPECT_FALSE(tarn::BesselIK(x, nu, values));
    const HostError error = host.TakeError();
    EXPECT_FALSE(tarn::BesselKAlone(x, nu, values));
    EXPECT_EQ(host.LastError().number, error.number);
    EXPECT_EQ(host.TakeError().message, error.message);
  }

  /// Both functions fail and leave their outputs alone.
  static void ExpectFailure(bool (*function)(double, double, BesselJYValues&), double x,
                            double nu) {
    BesselJYValues values = {1.0, 2.0, 3.0, 4.0};
    EXPECT_FALSE(function(x, nu, values));
    EXPECT_TRUE(values.j == 1.0 && values.y == 2.0);
    EXPECT_TRUE(values.jDerivative == 3.0 && values.yDerivative == 4.0);
  }
  static void ExpectFailure(bool (*function)(double, double, BesselIKValues&), double x,
                            double nu) {
    BesselIKValues values = {1.0, 2.0, 3.0, 4.0};
    EXPECT_FALSE(function(x, nu, values));
    EXPECT_TRUE(values.i == 1.0 && values.k == 2.0);
    EXPECT_TRUE(values.iDerivative == 3.0 && values.kDerivative == 4.0);
  }
};

/// Orders of all kinds, half integers and integers among them.
double DrawOrder(Arguments& draw) {
  switch (draw.Integer(0, 3)) {
    case 0:
      return draw.Integer(0, 40);
    case 1:
      return draw.Integer(0, 40) + 0.5;
    case 2:
      return draw.LogUniform(1e-20, 1.0);
    default:
      return draw.Uniform(0.0, 150.0);
  }
}

double DrawArgument(Arguments& draw) {
  switch (draw.Integer(0, 2)) {
    case 0:
      return draw.LogUniform(1e-300, 1.0);
    case 1:
      return draw.Uniform(0.0, 5.0);
    default:
      return draw.Uniform(2.0, 700.0);
  }
}

// Bits --------------------------------------------------------------------------------------------

TEST_F(RealOrderBessel, JYHasTheBitsOfItsProcedure) {
  Arguments draw(1);
  for (int i = 0; i < 10000; ++i) {
    const double x = DrawArgument(draw);
    const double nu = DrawOrder(draw);
    BesselJYValues expected = {};
    ASSERT_TRUE(literal::BesselJY(x, nu, expected.j, expected.y, expected.jDerivative,
                                  expected.yDerivative));
    const BesselJYValues values = JY(x, nu);
    EXPECT_SAME_BITS(values.j, expected.j);
    EXPECT_SAME_BITS(values.y, expected.y);
    EXPECT_SAME_BITS(values.jDerivative, expected.jDerivative);
    EXPECT_SAME_BITS(values.yDerivative, expected.yDerivative);
  }
}

TEST_F(RealOrderBessel, IKHasTheBitsOfItsProcedure) {
  Arguments draw(2);
  for (int i = 0; i < 10000; ++i) {
    const double x = DrawArgument(draw);
    const double nu = DrawOrder(draw);
    BesselIKValues expected = {};
    ASSERT_TRUE(literal::BesselIK(x, nu, expected.i, expected.k, expected.iDerivative,
                                  expected.kDerivative));
    const BesselIKValues values = IK(x, nu);
    EXPECT_SAME_BITS(values.i, expected.i);
    EXPECT_SAME_BITS(values.k, expected.k);
    EXPECT_SAME_BITS(values.iDerivative, expected.iDerivative);
    EXPECT_SAME_BITS(values.kDerivative, expected.kDerivative);
  }
}

TEST_F(RealOrderBessel, KAloneHasTheBitsAndErrorsOfIK) {
  Arguments draw(7);
  const double ends[] = {5e-324, 1e-310, 1e-300, 2e-300, std::nextafter(2.0, 0.0),
                         2.0,    399.9,  400.0,  700.0,  2e4,
                         1e5,    1e300};
  for (int i = 0; i < 20000; ++i) {
    const double x = i % 4 == 0 ? ends[draw.Integer(0, 11)] : draw.LogUniform(1e-305, 1e3);
    const double nu = i % 3 == 0 ? draw.LogUniform(1e-300, 3e4) : DrawOrder(draw);
    BesselIKValues both = {};
    BesselIKValues alone = {};
    const bool solved = tarn::BesselIK(x, nu, both);
    const HostError error = host.TakeError();
    EXPECT_EQ(tarn::BesselKAlone(x, nu, alone), solved) << x << ' ' << nu;
    EXPECT_EQ(host.TakeError().message, error.message);
    EXPECT_SAME_BITS(alone.k, both.k);
    EXPECT_SAME_BITS(alone.kDerivative, both.kDerivative);
  }
  for (const double nu : {-1.0, kNaN, kInfinity, 1e10}) {
    ExpectSameFailure(5.0, nu);
    ExpectSameFailure(500.0, nu);
  }
  ExpectSameFailure(-1.0, 2.5);
  ExpectSameFailure(kNaN, 2.5);
}

TEST_F(RealOrderBessel, MethodsMeetAtTwo) {
  for (const double nu : {0.0, 0.25, 0.5, 1.0, 3.75, 20.0}) {
    const double below = std::nextafter(2.0, 0.0);
    EXPECT_NEAR(JY(below, nu).j / JY(2.0, nu).j, 1.0, 1e-13);
    EXPECT_NEAR(JY(below, nu).y / JY(2.0, nu).y, 1.0, 1e-13);
    EXPECT_NEAR(IK(below, nu).i / IK(2.0, nu).i, 1.0, 1e-13);
    EXPECT_NEAR(IK(below, nu).k / IK(2.0, nu).k, 1.0, 1e-13);
  }
}

TEST_F(RealOrderBessel, ChebyshevSumIsClenshawsRecurrence) {
  // T_0/2 * 4 + 3 T_1 + 2 T_2 + T_3 at z = 1/2: 2 + 1.5 - 1 - 1.
  const double c[] = {4.0, 3.0, 2.0, 1.0};
  EXPECT_DOUBLE_EQ(tarn::ChebyshevEval(-1.0, 1.0, c, 4, 0.5), 1.5);
  EXPECT_DOUBLE_EQ(tarn::ChebyshevEval(0.0, 4.0, c, 4, 3.0), 1.5);
  EXPECT_DOUBLE_EQ(tarn::ChebyshevEval(-1.0, 1.0, c, 1, 0.5), 2.0);
}

TEST_F(RealOrderBessel, ChebyshevSumOutsideItsIntervalRaisesError3) {
  const double c[] = {4.0, 3.0};
  for (const double y : {std::nextafter(1.0, 2.0), -1.5, kInfinity}) {
    EXPECT_SAME_BITS(tarn::ChebyshevEval(-1.0, 1.0, c, 2, y), 0.0);
    ExpectBareError();
  }
  EXPECT_DOUBLE_EQ(tarn::ChebyshevEval(-1.0, 1.0, c, 2, 1.0), 5.0);
  EXPECT_DOUBLE_EQ(tarn::ChebyshevEval(-1.0, 1.0, c, 2, -1.0), -1.0);
  EXPECT_TRUE(std::isnan(tarn::ChebyshevEval(-1.0, 1.0, c, 2, kNaN)));
}

TEST_F(RealOrderBessel, GammaCoefficientsAreReciprocalGammas) {
  for (double mu = -0.5; mu <= 0.5; mu += 0.01) {
    const tarn::TemmeGamma gamma = tarn::GammaCoefficients(mu);
    EXPECT_NEAR(gamma.gampl, 1.0 / std::tgamma(1.0 + mu), 1e-14);
    EXPECT_NEAR(gamma.gammi, 1.0 / std::tgamma(1.0 - mu), 1e-14);
    EXPECT_NEAR(gamma.gam2, (gamma.gampl + gamma.gammi) / 2.0, 1e-15);
    double gam1 = 0.0;
    double gam2 = 0.0;
    double gampl = 0.0;
    double gammi = 0.0;
    literal::Gammas(mu, gam1, gam2, gampl, gammi);
    EXPECT_SAME_BITS(gamma.gam1, gam1);
    EXPECT_SAME_BITS(gamma.gam2, gam2);
    EXPECT_SAME_BITS(gamma.gampl, gampl);
    EXPECT_SAME_BITS(gamma.gammi, gammi);
  }
  // The limit at 0 is the negative of Euler's constant.
  EXPECT_NEAR(tarn::GammaCoefficients(0.0).gam1, -0.57721566490153286, 1e-15);
}

// Failures ----------------------------------------------------------------------------------------

TEST_F(RealOrderBessel, NonPositiveXRaisesError3) {
  for (const double x : {0.0, -0.0, -5e-324, -1.0, -kInfinity}) {
    ExpectFailure(tarn::BesselJY, x, 2.5);
    ExpectBareError();
    ExpectFailure(tarn::BesselIK, x, 2.5);
    ExpectBareError();
  }
}

TEST_F(RealOrderBessel, NegativeNaNAndInfiniteOrdersRaiseError3) {
  for (const double nu : {-5e-324, -1.0, -kInfinity, kInfinity, kNaN}) {
    for (const double x : {1.0, 5.0}) {
      ExpectFailure(tarn::BesselJY, x, nu);
      ExpectBareError();
      ExpectFailure(tarn::BesselIK, x, nu);
      ExpectBareError();
    }
  }
}

TEST_F(RealOrderBessel, RecurrencesOverTenMillionStepsRaiseError3) {
  for (const double nu : {10000000.5, 1e10, 1e300}) {
    ExpectFailure(tarn::BesselJY, 1.0, nu);
    ExpectBareError();
    ExpectFailure(tarn::BesselIK, 5.0, nu);
    ExpectBareError();
  }
  ExpectFailure(tarn::BesselJY, 5.0, 10000005.0);
  ExpectBareError();
  // J counts its steps from x on from x = 2 on: here they are few, and it is the fraction that
  // fails.
  ExpectFailure(tarn::BesselJY, 1.1e7, 1.1e7 + 100.5);
  ExpectError(kFirstFraction);
}

TEST_F(RealOrderBessel, FirstFractionOutOfRounds) {
  for (const double x : {1e4, 1e300, kInfinity, kNaN}) {
    ExpectFailure(tarn::BesselJY, x, 2.5);
    ExpectError(kFirstFraction);
  }
  for (const double x : {1e6, 1e300, kInfinity, kNaN}) {
    ExpectFailure(tarn::BesselIK, x, 2.5);
    ExpectError(kFirstFraction);
  }
  // 2/x overflows.
  ExpectFailure(tarn::BesselJY, 1e-310, 2.5);
  ExpectError(kFirstFraction);
  ExpectFailure(tarn::BesselIK, 1e-310, 2.5);
  ExpectError(kFirstFraction);
}

TEST_F(RealOrderBessel, SecondFractionOfJYOutOfRounds) {
  ExpectFailure(tarn::BesselJY, 1639998.5475651955, 1745736.2081934747);
  ExpectError("cf2 failed in bessjy");
}

TEST_F(RealOrderBessel, SeriesAndFractionOfKConvergeForEveryArgument) {
  Arguments draw(3);
  for (int i = 0; i < 20000; ++i) {
    JY(draw.LogUniform(1e-307, 2.0), draw.LogUniform(1e-320, 100.0));
    IK(draw.LogUniform(1e-307, 2e4), draw.LogUniform(1e-320, 100.0));
  }
}

TEST_F(RealOrderBessel, ErrorTexts) {
  EXPECT_STREQ(tarn::kFirstFractionFailed, "x too large; try asymptotic expansion");
  EXPECT_STREQ(tarn::kSeriesOfYFailed, "bessy series failed to converge");
  EXPECT_STREQ(tarn::kSecondFractionOfJYFailed, "cf2 failed in bessjy");
  EXPECT_STREQ(tarn::kSeriesOfKFailed, "series failed to converge");
  EXPECT_STREQ(tarn::kSecondFractionOfKFailed, "failure to converge in cf2");
}

TEST_F(RealOrderBessel, OrdersFarAboveXEndOutOfRange) {
  EXPECT_TRUE(std::isnan(JY(0.1, 400.5).j));
  EXPECT_TRUE(std::isnan(IK(0.1, 400.5).i));
  EXPECT_EQ(IK(0.1, 400.5).k, kInfinity);
  EXPECT_TRUE(std::isnan(IK(0.1, 1e6 + 0.5).i));
}

// Identities --------------------------------------------------------------------------------------

TEST_F(RealOrderBessel, HalfIntegralOrdersAreElementary) {
  for (double x = 0.1; x < 100.0; x *= 1.07) {
    const double factor = std::sqrt(2.0 / (kPi * x));
    const BesselJYValues half = JY(x, 0.5);
    EXPECT_NEAR(half.j, factor * std::sin(x), 1e-14);
    EXPECT_NEAR(half.y, -factor * std::cos(x), 2e-14);
    const BesselJYValues threeHalves = JY(x, 1.5);
    EXPECT_NEAR(threeHalves.j, factor * (std::sin(x) / x - std::cos(x)), 2e-14);
    const BesselIKValues modified = IK(x, 0.5);
    EXPECT_NEAR(modified.i / (factor * std::sinh(x)), 1.0, 1e-14);
    EXPECT_NEAR(modified.k / (kPi / 2.0 * factor * std::exp(-x)), 1.0, 1e-14);
  }
}

TEST_F(RealOrderBessel, WronskianOfJAndYIsTwoOverPiX) {
  Arguments draw(4);
  for (int i = 0; i < 3000; ++i) {
    const double x = draw.LogUniform(0.01, 800.0);
    const BesselJYValues v = JY(x, draw.Uniform(0.0, std::fmax(2.0, x)));
    EXPECT_NEAR((v.j * v.yDerivative - v.jDerivative * v.y) * kPi * x / 2.0, 1.0, 1e-11);
  }
}

TEST_F(RealOrderBessel, WronskianOfIAndKIsMinusOneOverX) {
  Arguments draw(5);
  for (int i = 0; i < 3000; ++i) {
    const double x = draw.LogUniform(0.01, 600.0);
    const BesselIKValues v = IK(x, draw.Uniform(0.0, std::fmax(2.0, x)));
    EXPECT_NEAR((v.i * v.kDerivative - v.iDerivative * v.k) * -x, 1.0, 1e-11);
  }
}

TEST_F(RealOrderBessel, OrdersObeyTheThreeTermRecurrences) {
  Arguments draw(6);
  for (int i = 0; i < 3000; ++i) {
    const double x = draw.LogUniform(0.1, 300.0);
    const double nu = draw.Uniform(1.0, 20.0);
    const double factor = 2.0 * nu / x;
    const double scaleY = std::fabs(JY(x, nu + 1.0).y) + 1.0;
    EXPECT_NEAR(JY(x, nu - 1.0).j + JY(x, nu + 1.0).j, factor * JY(x, nu).j, 1e-12);
    EXPECT_NEAR(JY(x, nu - 1.0).y + JY(x, nu + 1.0).y, factor * JY(x, nu).y, 1e-12 * scaleY);
    const double scaleI = IK(x, nu - 1.0).i;
    const double scaleK = IK(x, nu + 1.0).k;
    EXPECT_NEAR(IK(x, nu - 1.0).i - IK(x, nu + 1.0).i, factor * IK(x, nu).i, 1e-12 * scaleI);
    EXPECT_NEAR(IK(x, nu + 1.0).k - IK(x, nu - 1.0).k, factor * IK(x, nu).k, 1e-12 * scaleK);
  }
}

}  // namespace
