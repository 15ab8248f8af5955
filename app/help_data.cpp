#include "app/help_data.h"

#include <algorithm>

namespace tarn {
namespace {

constexpr std::string_view kBesselJ = "Bessel functions of the first kind";
constexpr std::string_view kBesselY = "Bessel functions of the second kind";
constexpr std::string_view kBesselI = "Modified Bessel functions of the first kind";
constexpr std::string_view kBesselK = "Modified Bessel functions of the second kind";
constexpr std::string_view kGamma = "Gamma function";
constexpr std::string_view kBeta = "Beta function";
constexpr std::string_view kTests = "Statistical tests";
constexpr std::string_view kErrorFunctions = "Error functions";
constexpr std::string_view kRandom = "Random deviates";
constexpr std::string_view kTail = "Normal density over its upper tail";

constexpr std::string_view kRealOrderDomain = "x > 0, order >= 0.";
constexpr std::string_view kSteedErrors =
    "Error 3: x <= 0; an order that is negative, NaN, infinite or more than 10,000,000 above x. "
    "Error 3 \"x too large; try asymptotic expansion\": x above some 900 with an order well below "
    "it, or NaN.";
constexpr std::string_view kSteedErrorsUnlessIntegral =
    "For an order that is not integral error 3: x <= 0; an order that is negative, NaN, infinite "
    "or more than 10,000,000 above x; and error 3 \"x too large; try asymptotic expansion\": x "
    "above some 900 with an order well below it, or NaN. Error 3 for an integral order beyond "
    "10,000,000 or -10,000,000.";
constexpr std::string_view kTemmeErrors =
    "Error 3: x <= 0; an order that is negative, NaN, infinite or above 10,000,000. Error 3 \"x "
    "too large; try asymptotic expansion\": x above some tens of thousands, or NaN.";
constexpr std::string_view kOrderFirst =
    "The order comes first. Where an order that is not integral is so far above x that J is below "
    "some 1e-600, the value is NaN.";
constexpr std::string_view kFarOrder =
    "Where the order is so far above x that J or I is below some 1e-600, the value is NaN.";
constexpr std::string_view kGammaErrors = "Error 3: x < 0 or a <= 0.";
constexpr std::string_view kGammaCaution =
    "For a above 15,000 and x from some a - 3 sqrt(a) to a + 1 the series gets only 1000 terms: "
    "digits are lost without an error, at x = a 1e-8 for a = 30,000 and a third for 1,000,000.";
constexpr std::string_view kBetaErrors =
    "Error 3: x outside [0, 1], a <= 0 or b <= 0. Error 3 \"a or b too big, Beta_P does not "
    "converge in 300 itterations\": the continued fraction has not converged in 1000 rounds, as "
    "happens for a and b of several millions.";

// Rows in the order of the module's function table.
constexpr HelpEntry kEntries[] = {
    {.signature = "Conjugate(any)",
     .call = "Conjugate(z)",
     .family = "Complex numbers",
     .summary = "complex conjugate",
     .meaning = "The complex conjugate of z: of a number, of each element of an array or a vector, "
                "of each ordinate of a tabulated function. Anything else is copied.",
     .domain = "Any value. A real number is its own conjugate.",
     .errors = "None.",
     .caution = "",
     .example = "Conjugate(2.5)",
     .value = "2.5"},
    {.signature = "BesselJ0(any)",
     .call = "BesselJ0(x)",
     .family = kBesselJ,
     .summary = "Bessel function J of order 0",
     .meaning = "J0(x), from the C library.",
     .domain = "Any x.",
     .errors = "",
     .caution = "",
     .example = "BesselJ0(1)",
     .value = "0.765198"},
    {.signature = "BesselJ1(any)",
     .call = "BesselJ1(x)",
     .family = kBesselJ,
     .summary = "Bessel function J of order 1",
     .meaning = "J1(x), from the C library.",
     .domain = "Any x.",
     .errors = "",
     .caution = "",
     .example = "BesselJ1(1)",
     .value = "0.440051"},
    {.signature = "BesselJn(number, any)",
     .call = "BesselJn(order, x)",
     .family = kBesselJ,
     .summary = "Bessel function J of any order",
     .meaning =
         "J of the given order. An integral order (within 32 bits) is left to the C library; any "
         "other one is computed by Steed's method, with Temme's series below x = 2.",
     .domain = "Any x for an integral order, which may be negative; x > 0 and order >= 0 for any "
               "other order.",
     .errors = kSteedErrorsUnlessIntegral,
     .caution = kOrderFirst,
     .example = "BesselJn(0.5, 2)",
     .value = "0.513016"},
    {.signature = "BesselJpn(number, any)",
     .call = "BesselJpn(order, x)",
     .family = kBesselJ,
     .summary = "derivative of J with respect to x",
     .meaning = "dJ/dx of the given order, by Steed's method for every order, integral or not.",
     .domain = kRealOrderDomain,
     .errors = kSteedErrors,
     .caution = kFarOrder,
     .example = "BesselJpn(1, 2)",
     .value = "-0.0644716"},
    {.signature = "BesselY0(any)",
     .call = "BesselY0(x)",
     .family = kBesselY,
     .summary = "Bessel function Y of order 0",
     .meaning = "Y0(x), from the C library.",
     .domain = "x > 0; -inf at 0, NaN below.",
     .errors = "",
     .caution = "",
     .example = "BesselY0(1)",
     .value = "0.088257"},
    {.signature = "BesselY1(any)",
     .call = "BesselY1(x)",
     .family = kBesselY,
     .summary = "Bessel function Y of order 1",
     .meaning = "Y1(x), from the C library.",
     .domain = "x > 0; -inf at 0, NaN below.",
     .errors = "",
     .caution = "",
     .example = "BesselY1(1)",
     .value = "-0.781213"},
    {.signature = "BesselYn(number, any)",
     .call = "BesselYn(order, x)",
     .family = kBesselY,
     .summary = "Bessel function Y of any order",
     .meaning =
         "Y of the given order. An integral order (within 32 bits) is left to the C library; any "
         "other one is computed by Steed's method, with Temme's series below x = 2.",
     .domain = "x > 0; order >= 0 where it is not integral. An integral order gives an infinite "
               "value at x = 0 and NaN below.",
     .errors = kSteedErrorsUnlessIntegral,
     .caution = kOrderFirst,
     .example = "BesselYn(0.5, 2)",
     .value = "0.234786"},
    {.signature = "BesselYpn(number, any)",
     .call = "BesselYpn(order, x)",
     .family = kBesselY,
     .summary = "derivative of Y with respect to x",
     .meaning = "dY/dx of the given order, by Steed's method for every order, integral or not.",
     .domain = kRealOrderDomain,
     .errors = kSteedErrors,
     .caution = kFarOrder,
     .example = "BesselYpn(1, 2)",
     .value = "0.563892"},
    {.signature = "BesselI0(any)",
     .call = "BesselI0(x)",
     .family = kBesselI,
     .summary = "modified Bessel function I of order 0",
     .meaning = "I0(x), from the polynomials of Abramowitz & Stegun 9.8.1 and 9.8.2, about seven "
                "digits.",
     .domain = "Any x; infinite from |x| of some 710 on.",
     .errors = "",
     .caution = "",
     .example = "BesselI0(1)",
     .value = "1.26607"},
    {.signature = "BesselI1(any)",
     .call = "BesselI1(x)",
     .family = kBesselI,
     .summary = "modified Bessel function I of order 1",
     .meaning = "I1(x), from the polynomials of Abramowitz & Stegun 9.8.3 and 9.8.4, about seven "
                "digits.",
     .domain = "Any x; infinite from |x| of some 710 on.",
     .errors = "",
     .caution = "",
     .example = "BesselI1(1)",
     .value = "0.565159"},
    {.signature = "BesselIn(number, any)",
     .call = "BesselIn(order, x)",
     .family = kBesselI,
     .summary = "modified Bessel function I of any order",
     .meaning = "I of the given order. Integral orders from 2 on come from Miller's downward "
                "recurrence, scaled by BesselI0 (about seven digits); other orders from Temme's "
                "method (about fifteen digits).",
     .domain = "Any x for an integral order; x > 0 and order >= 0 for any other order.",
     .errors = "Error 3: an integral order above 4,985,000, any other above 10,000,000; an order "
               "that is NaN or infinite. For an order that is not integral also x <= 0 or a "
               "negative order, and \"x too large; try asymptotic expansion\" for x above some "
               "tens of thousands, or NaN.",
     .caution = "For an integral order n from 2 on and x above n^2/2 the value can be off by tens "
                "of per cent; the order n + 1e-12 takes the accurate route. Every negative "
                "integral order gives I0. The order comes first.",
     .example = "BesselIn(2, 1)",
     .value = "0.135748"},
    {.signature = "LnBesselIn(number, any)",
     .call = "LnBesselIn(order, x)",
     .family = kBesselI,
     .summary = "logarithm of I",
     .meaning = "ln I of the given order, also where I itself leaves the range of a double. For "
                "order > 30 x the first term of the power series, n ln(x/2) - ln Gamma(n + 1); for "
                "8 x > 4 n^2 - 1 two terms of the asymptotic series; the logarithm of BesselIn "
                "between.",
     .domain = "x > 0, order >= 0.",
     .errors = "Between the two limits those of BesselIn.",
     .caution = "With u = (4 n^2 - 1)/(8 x) the asymptotic form is off by about -u^2/2, and by far "
                "more where u comes close to 1; up to x of some 700 ln BesselIn is the better "
                "choice. The order comes first.",
     .example = "LnBesselIn(2, 1000)",
     .value = "995.625"},
    {.signature = "BesselIpn(number, any)",
     .call = "BesselIpn(order, x)",
     .family = kBesselI,
     .summary = "derivative of I with respect to x",
     .meaning = "dI/dx of the given order, by Temme's method for every order, integral or not.",
     .domain = kRealOrderDomain,
     .errors = kTemmeErrors,
     .caution = kFarOrder,
     .example = "BesselIpn(1, 2)",
     .value = "1.48427"},
    {.signature = "LnBesselIpn(number, any)",
     .call = "LnBesselIpn(order, x)",
     .family = kBesselI,
     .summary = "logarithm of the derivative of I",
     .meaning =
         "ln dI/dx of the given order. For x < order / 30 the first term of the power series; for "
         "x > 10 order the first term of the asymptotic series, x - ln(2 pi x) / 2, without a "
         "correction; the logarithm of BesselIpn between.",
     .domain = "x > 0, order > 0.",
     .errors = "Between the two limits those of BesselIpn.",
     .caution = "The asymptotic form has no correction term: it is off by about (4 n^2 + 3)/(8 x). "
                "The order comes first.",
     .example = "LnBesselIpn(1, 2)",
     .value = "0.394921"},
    {.signature = "BesselK0(any)",
     .call = "BesselK0(x)",
     .family = kBesselK,
     .summary = "modified Bessel function K of order 0",
     .meaning = "K0(x), from the polynomials of Abramowitz & Stegun 9.8.5 and 9.8.6, about seven "
                "digits.",
     .domain = "x > 0; infinite at 0, NaN below.",
     .errors = "",
     .caution = "",
     .example = "BesselK0(1)",
     .value = "0.421024"},
    {.signature = "BesselK1(any)",
     .call = "BesselK1(x)",
     .family = kBesselK,
     .summary = "modified Bessel function K of order 1",
     .meaning = "K1(x), from the polynomials of Abramowitz & Stegun 9.8.7 and 9.8.8, about seven "
                "digits.",
     .domain = "x > 0; NaN at 0 and below.",
     .errors = "",
     .caution = "",
     .example = "BesselK1(1)",
     .value = "0.601907"},
    {.signature = "BesselKn(number, any)",
     .call = "BesselKn(order, x)",
     .family = kBesselK,
     .summary = "modified Bessel function K of any order",
     .meaning = "K of the given order. Integral orders come from BesselK0 and BesselK1 by upward "
                "recurrence (about seven digits), other orders from Temme's method (about fifteen "
                "digits).",
     .domain = "x > 0; order >= 0 where it is not integral.",
     .errors = "Error 3: an order above 10,000,001, NaN or infinite. For an order that is not "
               "integral also x <= 0 or a negative order, and \"x too large; try asymptotic "
               "expansion\" for x above some tens of thousands, or NaN.",
     .caution = "Every negative integral order gives K0. The order comes first.",
     .example = "BesselKn(2, 1)",
     .value = "1.62484"},
    {.signature = "BesselKpn(number, any)",
     .call = "BesselKpn(order, x)",
     .family = kBesselK,
     .summary = "derivative of K with respect to x",
     .meaning = "dK/dx of the given order, by Temme's method for every order, integral or not.",
     .domain = kRealOrderDomain,
     .errors = kTemmeErrors,
     .caution = "Where K is beyond the range of a double, as for an order far above x, the value "
                "is NaN.",
     .example = "BesselKpn(1, 2)",
     .value = "-0.183827"},
    {.signature = "LnGamma(any)",
     .call = "LnGamma(x)",
     .family = kGamma,
     .summary = "logarithm of the gamma function",
     .meaning = "ln Gamma(x), Lanczos' approximation with six coefficients; Gamma is within 2e-10 "
                "of itself.",
     .domain = "x > 0; infinite at 0, without meaning (mostly NaN) below.",
     .errors = "",
     .caution = "A negative x raises no error.",
     .example = "LnGamma(0.5)",
     .value = "0.572365"},
    {.signature = "Gamma_P(number, number)",
     .call = "Gamma_P(a, x)",
     .family = kGamma,
     .summary = "regularised lower incomplete gamma function",
     .meaning = "P(a, x), the integral of t^(a-1) e^-t from 0 to x over Gamma(a): the probability "
                "that a gamma variate of shape a does not exceed x. Series below x = a + 1, "
                "continued fraction from there on.",
     .domain = "a > 0, x >= 0; P(a, 0) = 0.",
     .errors = kGammaErrors,
     .caution = kGammaCaution,
     .example = "Gamma_P(2, 1.5)",
     .value = "0.442175"},
    {.signature = "LnGamma_P(number, number)",
     .call = "LnGamma_P(a, x)",
     .family = kGamma,
     .summary = "logarithm of Gamma_P",
     .meaning = "ln P(a, x), without forming P where P is small.",
     .domain = "a > 0, x > 0. At x = 0, where P is 0, the value is 0.",
     .errors = kGammaErrors,
     .caution = kGammaCaution,
     .example = "LnGamma_P(20, 1)",
     .value = "-43.2869"},
    {.signature = "Gamma_Q(number, number)",
     .call = "Gamma_Q(a, x)",
     .family = kGamma,
     .summary = "regularised upper incomplete gamma function",
     .meaning = "Q(a, x) = 1 - P(a, x): the probability that a gamma variate of shape a exceeds x. "
                "Not formed by subtraction from x = a + 1 on.",
     .domain = "a > 0, x >= 0; Q(a, 0) = 1.",
     .errors = kGammaErrors,
     .caution = kGammaCaution,
     .example = "Gamma_Q(2, 1.5)",
     .value = "0.557825"},
    {.signature = "LnGamma_Q(number, number)",
     .call = "LnGamma_Q(a, x)",
     .family = kGamma,
     .summary = "logarithm of Gamma_Q",
     .meaning = "ln Q(a, x), also far out in the tail where Q underflows.",
     .domain = "a > 0, x >= 0.",
     .errors = kGammaErrors,
     .caution =
         "For x < a + 1 with P(a, x) above 0.99, which takes an a below 0.047, the value is wrong: "
         "it comes from a series whose divisors are 2, 6, 42, 1806, ... and is close to 0 instead "
         "of close to ln Q. Take math.log(Gamma_Q(a, x)) there.",
     .example = "LnGamma_Q(2, 800)",
     .value = "-793.314"},
    {.signature = "Beta_I(number, number, number)",
     .call = "Beta_I(a, b, x)",
     .family = kBeta,
     .summary = "regularised incomplete beta function",
     .meaning = "I_x(a, b), the integral of t^(a-1) (1-t)^(b-1) from 0 to x over B(a, b): the "
                "probability that a beta variate does not exceed x. Continued fraction by Lentz' "
                "method.",
     .domain = "0 <= x <= 1, a > 0, b > 0; 0 at x = 0, 1 at x = 1.",
     .errors = kBetaErrors,
     .caution = "The order of arguments is a, b, x.",
     .example = "Beta_I(2, 3, 0.5)",
     .value = "0.6875"},
    {.signature = "LnBeta_I(number, number, number)",
     .call = "LnBeta_I(a, b, x)",
     .family = kBeta,
     .summary = "logarithm of Beta_I",
     .meaning = "ln I_x(a, b), also where I underflows.",
     .domain = "0 <= x <= 1, a > 0, b > 0; -1e300 at x = 0, 0 at x = 1.",
     .errors = kBetaErrors,
     .caution = "For x >= (a + 1)/(a + b + 2) with I below 0.0001, which takes a b below some "
                "0.0001, the value is NaN: it comes from a series whose divisors are 2, 6, 42, "
                "1806, ... and the logarithm of a negative number. Take math.log(Beta_I(a, b, x)) "
                "there.",
     .example = "LnBeta_I(200, 3, 0.01)",
     .value = "-911.136"},
    {.signature = "Beta(number, number)",
     .call = "Beta(a, b)",
     .family = kBeta,
     .summary = "beta function",
     .meaning = "B(a, b) = Gamma(a) Gamma(b) / Gamma(a + b), from LnGamma, to about nine digits.",
     .domain = "a > 0, b > 0.",
     .errors = "None.",
     .caution = "",
     .example = "Beta(2, 3)",
     .value = "0.0833333"},
    {.signature = "LnBeta(number, number)",
     .call = "LnBeta(a, b)",
     .family = kBeta,
     .summary = "logarithm of the beta function",
     .meaning = "ln B(a, b), from LnGamma.",
     .domain = "a > 0, b > 0.",
     .errors = "None.",
     .caution = "",
     .example = "LnBeta(200, 300)",
     .value = "-337.98"},
    {.signature = "ProbChi2(number, number)",
     .call = "ProbChi2(degrees, chi2)",
     .family = kTests,
     .summary = "probability of a smaller chi-square",
     .meaning = "The probability that chi-square with that many degrees of freedom does not exceed "
                "chi2: Gamma_P(degrees / 2, chi2 / 2). The significance of a fit is 1 minus it, or "
                "Gamma_Q(degrees / 2, chi2 / 2) where that is small.",
     .domain = "degrees > 0, chi2 >= 0.",
     .errors = "Error 3: degrees <= 0 or chi2 < 0.",
     .caution = "The lower tail, not the p-value of the test.",
     .example = "ProbChi2(10, 18.307)",
     .value = "0.949999"},
    {.signature = "FTest(refer object Vector, refer object Vector)",
     .call = "FTest(sample1, sample2)",
     .family = kTests,
     .summary = "significance of a difference of variances",
     .meaning = "The two-sided significance of the F test: the probability that two samples of one "
                "normal distribution have variances that differ by more than these. A small value "
                "says that the variances differ.",
     .domain = "Arrays or vectors of two or more numbers each; with fewer the value is 0. Equal "
               "variances give 1; a variance of 0 against another counts as a ratio of 1e6.",
     .errors = "None of its own.",
     .caution = "",
     .example = "FTest({1, 2, 3, 4, 5}, {2, 4, 6, 8, 11})",
     .value = "0.153863"},
    {.signature = "Errf(any)",
     .call = "Errf(x)",
     .family = kErrorFunctions,
     .summary = "error function",
     .meaning = "erf(x), computed as Gamma_P(1/2, x^2) with the sign of x, to about nine digits.",
     .domain = "Any finite x.",
     .errors = "",
     .caution = "",
     .example = "Errf(0.5)",
     .value = "0.5205"},
    {.signature = "Errf1(any)",
     .call = "Errf1(x)",
     .family = kErrorFunctions,
     .summary = "error function, fast and to seven digits",
     .meaning = "erf(x) by one Chebyshev fit for the whole line.",
     .domain = "Any x.",
     .errors = "",
     .caution = "Accurate to 1.2e-7 and no better: Errf1(0) is some 3e-8, not 0. Errf is the "
                "accurate one.",
     .example = "Errf1(0.5)",
     .value = "0.5205"},
    {.signature = "CErrf(any)",
     .call = "CErrf(x)",
     .family = kErrorFunctions,
     .summary = "complementary error function",
     .meaning = "erfc(x) = 1 - erf(x) by one Chebyshev fit; from x = 10 on the first term of the "
                "asymptotic series.",
     .domain = "Any x; 0 from some 27.2 on.",
     .errors = "",
     .caution =
         "Relative error up to 1.2e-7 below x = 10, and about 1/(2 x^2) from there on, which is "
         "0.5% at 10.",
     .example = "CErrf(1)",
     .value = "0.157299"},
    {.signature = "LnCErrf(any)",
     .call = "LnCErrf(x)",
     .family = kErrorFunctions,
     .summary = "logarithm of the complementary error function",
     .meaning = "ln erfc(x), also where erfc underflows: from x = 10 on -x^2 - ln x - ln(pi)/2.",
     .domain = "Any x.",
     .errors = "",
     .caution = "As accurate as CErrf: 1.2e-7 below x = 10, about 1/(2 x^2) from there on.",
     .example = "LnCErrf(2)",
     .value = "-5.36494"},
    {.signature = "Sinc(any)",
     .call = "Sinc(x)",
     .family = "Elementary functions",
     .summary = "sin(x)/x",
     .meaning = "sin(x)/x, exactly 1 at 0.",
     .domain = "Any finite x.",
     .errors = "",
     .caution = "Not the normalised form sin(pi x)/(pi x).",
     .example = "Sinc(1)",
     .value = "0.841471"},
    {.signature = "RandGauss(number, number)",
     .call = "RandGauss(mean, sigma)",
     .family = kRandom,
     .summary = "normal deviate",
     .meaning = "A normal deviate of that mean and standard deviation. Two deviates come from one "
                "point inside the unit circle; the second is kept for the next call.",
     .domain = "Any mean and sigma; sigma = 0 gives the mean, NaN gives NaN.",
     .errors = "None.",
     .caution = "",
     .example = "RandGauss(0, 1)",
     .value = ""},
    {.signature = "RandGaus(number, number)",
     .call = "RandGaus(mean, sigma)",
     .family = kRandom,
     .summary = "the same function as RandGauss",
     .meaning = "A second name of RandGauss, one function with one kept deviate.",
     .domain = "As RandGauss.",
     .errors = "None.",
     .caution = "",
     .example = "RandGaus(0, 1)",
     .value = ""},
    {.signature = "RandPoisson(number)",
     .call = "RandPoisson(mean)",
     .family = kRandom,
     .summary = "Poisson deviate",
     .meaning = "A count of events whose expected number is mean. Below 12 a product of uniforms, "
                "rejection from a Lorentzian from there on.",
     .domain = "mean >= 0. A mean that is NaN or above 2.5e305 gives NaN, a negative one 0.",
     .errors = "None.",
     .caution = "The mean -1 as the very first call gives a number near 745 instead of 0.",
     .example = "RandPoisson(3.5)",
     .value = ""},
    {.signature = "RandBinominal(number, int)",
     .call = "RandBinominal(p, trials)",
     .family = kRandom,
     .summary = "binomial deviate",
     .meaning =
         "The number of successes of probability p in so many trials. Up to 24 trials each is "
         "made; with fewer than one rarer outcome expected the deviate is a Poisson one; rejection "
         "from a Lorentzian otherwise.",
     .domain = "0 <= p <= 1, trials >= 0. A p below 0 counts as 0, one above 1 as 1; NaN gives "
               "NaN from 25 trials on, the number of trials below.",
     .errors = "None.",
     .caution = "The name is spelt Binominal. The Poisson form is within 2.5% of the binomial law, "
                "in total variation, and usually far nearer.",
     .example = "RandBinominal(0.3, 10)",
     .value = ""},
    {.signature = "Psi(any)",
     .call = "Psi(x)",
     .family = kTail,
     .summary = "normal density over its upper tail (not digamma)",
     .meaning = "phi(x) / Q(x), the standard normal density over its upper tail (the hazard rate, "
                "or inverse Mills ratio): exp(-x^2/2) sqrt(2/pi) / CErrf(x/sqrt 2) below x = 30, "
                "and its asymptote x from 30 on.",
     .domain = "Any x; NaN gives NaN.",
     .errors = "",
     .caution = "Not the digamma function, which is often called psi. As accurate as CErrf: 1.2e-7 "
                "below x = 14.14, but only about 1/x^2 from there on, which is 0.5% at 14.14.",
     .example = "Psi(1)",
     .value = "1.52514"},
    {.signature = "LnPsi(any)",
     .call = "LnPsi(x)",
     .family = kTail,
     .summary = "logarithm of Psi (not of digamma)",
     .meaning = "ln(phi(x) / Q(x)), the logarithm of the standard normal density over its upper "
                "tail; ln x from 30 on.",
     .domain = "Any x; NaN gives NaN.",
     .errors = "",
     .caution = "Not the logarithm of the digamma function. As accurate as Psi.",
     .example = "LnPsi(1)",
     .value = "0.422083"},
};

}  // namespace

std::span<const HelpEntry> HelpEntries() { return kEntries; }

const HelpEntry* FindHelp(std::string_view name) {
  const auto* found = std::ranges::find(kEntries, name, &HelpEntry::Name);
  return found == std::end(kEntries) ? nullptr : found;
}

std::string_view CommonErrors(std::string_view signature) {
  // The companion module's functions say themselves what they take.
  if (std::ranges::find(kEntries, signature, &HelpEntry::signature) == std::end(kEntries))
    return "";
  if (signature == "Conjugate(any)") return "";
  if (signature.find("any") == std::string_view::npos) return "";
  return "Error 3: an argument that is no number, array, vector value or tabulated function.";
}

}  // namespace tarn
