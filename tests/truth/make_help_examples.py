#!/usr/bin/python3
"""Writes help_examples.txt: the examples of the help texts with their values to six digits.

Every function is written here from its definition in terms of mpmath, at 40 digits. Random deviates
have no value. Needs python3-mpmath.
"""

import mpmath
from mpmath import mpf

mpmath.mp.dps = 40


def sample_variance(sample):
    mean = mpmath.fsum(sample) / len(sample)
    return mpmath.fsum((x - mean) ** 2 for x in sample) / (len(sample) - 1)


def f_test(first, second):
    """Two-sided significance: twice the upper tail of the larger variance over the smaller."""
    if sample_variance(first) < sample_variance(second):
        first, second = second, first
    ratio = sample_variance(first) / sample_variance(second)
    n1, n2 = len(first) - 1, len(second) - 1
    tail = mpmath.betainc(mpf(n2) / 2, mpf(n1) / 2, 0, n2 / (n2 + n1 * ratio), regularized=True)
    return 2 * tail if 2 * tail <= 1 else 2 - 2 * tail


def hazard(x):
    return mpmath.npdf(x) / (mpmath.erfc(x / mpmath.sqrt(2)) / 2)


def lower_gamma(a, x):
    return mpmath.gammainc(a, 0, x, regularized=True)


def upper_gamma(a, x):
    return mpmath.gammainc(a, x, mpmath.inf, regularized=True)


def beta_ratio(a, b, x):
    return mpmath.betainc(a, b, 0, x, regularized=True)


J, Y, I, K = mpmath.besselj, mpmath.bessely, mpmath.besseli, mpmath.besselk

EXAMPLES = (
    ("Conjugate(2.5)", mpf("2.5")),
    ("BesselJ0(1)", J(0, 1)),
    ("BesselJ1(1)", J(1, 1)),
    ("BesselJn(0.5, 2)", J(0.5, 2)),
    ("BesselJpn(1, 2)", J(1, 2, derivative=1)),
    ("BesselY0(1)", Y(0, 1)),
    ("BesselY1(1)", Y(1, 1)),
    ("BesselYn(0.5, 2)", Y(0.5, 2)),
    ("BesselYpn(1, 2)", Y(0, 2) - Y(1, 2) / 2),
    ("BesselI0(1)", I(0, 1)),
    ("BesselI1(1)", I(1, 1)),
    ("BesselIn(2, 1)", I(2, 1)),
    ("LnBesselIn(2, 1000)", mpmath.log(I(2, 1000))),
    ("BesselIpn(1, 2)", I(0, 2) - I(1, 2) / 2),
    ("LnBesselIpn(1, 2)", mpmath.log(I(0, 2) - I(1, 2) / 2)),
    ("BesselK0(1)", K(0, 1)),
    ("BesselK1(1)", K(1, 1)),
    ("BesselKn(2, 1)", K(2, 1)),
    ("BesselKpn(1, 2)", -K(0, 2) - K(1, 2) / 2),
    ("LnGamma(0.5)", mpmath.loggamma(mpf("0.5"))),
    ("Gamma_P(2, 1.5)", lower_gamma(2, mpf("1.5"))),
    ("LnGamma_P(20, 1)", mpmath.log(lower_gamma(20, 1))),
    ("Gamma_Q(2, 1.5)", upper_gamma(2, mpf("1.5"))),
    ("LnGamma_Q(2, 800)", mpmath.log(upper_gamma(2, 800))),
    ("Beta_I(2, 3, 0.5)", beta_ratio(2, 3, mpf("0.5"))),
    ("LnBeta_I(200, 3, 0.01)", mpmath.log(beta_ratio(200, 3, mpf("0.01")))),
    ("Beta(2, 3)", mpmath.beta(2, 3)),
    ("LnBeta(200, 300)", mpmath.log(mpmath.beta(200, 300))),
    ("ProbChi2(10, 18.307)", lower_gamma(5, mpf("18.307") / 2)),
    ("FTest({1, 2, 3, 4, 5}, {2, 4, 6, 8, 11})", f_test((1, 2, 3, 4, 5), (2, 4, 6, 8, 11))),
    ("Errf(0.5)", mpmath.erf(mpf("0.5"))),
    ("Errf1(0.5)", mpmath.erf(mpf("0.5"))),
    ("CErrf(1)", mpmath.erfc(1)),
    ("LnCErrf(2)", mpmath.log(mpmath.erfc(2))),
    ("Sinc(1)", mpmath.sin(1)),
    ("Psi(1)", hazard(1)),
    ("LnPsi(1)", mpmath.log(hazard(1))),
)


def main():
    print("# Examples of the help texts, by make_help_examples.py.")
    for expression, value in EXAMPLES:
        print(f"{expression} = {float(value):.6g}")


if __name__ == "__main__":
    main()
