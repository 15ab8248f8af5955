#!/usr/bin/python3
"""Checks the saved output of the examples against values computed here with mpmath.

    example_values_test.py FOLDER-OF-EXAMPLES [unittest options]

Nothing here uses the module: the statistics are computed from their definitions, to 30 digits.
"""

import re
import subprocess
import sys
import unittest

import mpmath
from mpmath import mpf

EXAMPLES = sys.argv.pop(1)
mpmath.mp.dps = 30


def expected(name):
    with open(f"{EXAMPLES}/expected/{name}.txt", encoding="utf-8") as file:
        return file.read()


def columns(name):
    with open(f"{EXAMPLES}/data/{name}", encoding="utf-8") as file:
        rows = [line.replace(",", " ").split("#")[0].split() for line in file]
    rows = [row for row in rows if row]
    return [[mpf(field) for field in column] for column in zip(*rows)]


def mean(sample):
    return mpmath.fsum(sample) / len(sample)


def variance(sample):
    return mpmath.fsum((x - mean(sample)) ** 2 for x in sample) / (len(sample) - 1)


def f_test(first, second):
    """Two-sided: twice the probability that F exceeds the larger variance over the smaller."""
    if variance(first) < variance(second):
        first, second = second, first
    n1, n2 = len(first) - 1, len(second) - 1
    ratio = variance(first) / variance(second)

    def density(x):
        return (mpmath.sqrt((n1 * x) ** n1 * mpf(n2) ** n2 / (n1 * x + n2) ** (n1 + n2))
                / (x * mpmath.beta(mpf(n1) / 2, mpf(n2) / 2)))

    return 2 * mpmath.quad(density, [ratio, 2 * ratio, 10 * ratio, mpmath.inf])


def written_by(generator):
    return subprocess.run([sys.executable, generator], capture_output=True, text=True,
                          check=True).stdout


class ExampleValuesTest(unittest.TestCase):
    def test_generated_files_are_what_their_generators_write(self):
        truth = f"{EXAMPLES}/../tests/truth"
        for generator, name in (
            (f"{EXAMPLES}/data/make_bessel_zeros.py", f"{EXAMPLES}/data/bessel_zeros.csv"),
            (f"{truth}/make_help_examples.py", f"{truth}/help_examples.txt"),
        ):
            with open(name, encoding="utf-8") as file:
                self.assertEqual(file.read(), written_by(generator), name)

    def test_michelson(self):
        series = columns("michelson_1879.txt")
        text = expected("michelson_f_test")
        described = re.findall(r"^ +(\d) +20 +([\d.]+) +([\d.]+)$", text, re.M)
        self.assertEqual(len(described), 5)
        for number, average, deviation in described:
            sample = series[int(number) - 1]
            self.assertEqual(average, f"{float(299000 + mean(sample)):.1f}")
            self.assertEqual(deviation, f"{float(mpmath.sqrt(variance(sample))):.1f}")
        tests = re.findall(r"^ +(\d) +(0\.\d{4}) +(.*)$", text, re.M)
        self.assertEqual([number for number, _, _ in tests], ["2", "3", "4", "5"])
        for number, significance, verdict in tests:
            truth = f_test(series[0], series[int(number) - 1])
            self.assertEqual(significance, f"{float(truth):.4f}")
            self.assertEqual(verdict, "scatters differently" if truth < 0.05
                             else "may scatter alike")

    def test_alpha_particles(self):
        particles, intervals = columns("rutherford_geiger_1910.txt")
        text = expected("alpha_particles_chi2")
        total = mpmath.fsum(intervals)
        events = mpmath.fsum(k * n for k, n in zip(particles, intervals))
        rate = events / total
        self.assertIn(f"{int(events)} particles in {int(total)} intervals: {float(rate):.4f} each",
                      text)
        cells = [total * rate**k * mpmath.exp(-rate) / mpmath.factorial(k) for k in range(11)]
        cells.append(total - mpmath.fsum(cells))
        observed = [*intervals[:11], mpmath.fsum(intervals[11:])]
        rows = re.findall(r"^ +\d+[ +] +(\d+) +([\d.]+)$", text, re.M)
        self.assertEqual(rows, [(f"{int(n)}", f"{float(e):.1f}") for n, e in zip(observed, cells)])
        chi2 = mpmath.fsum((n - e) ** 2 / e for n, e in zip(observed, cells))
        tail = mpmath.gammainc(5, chi2 / 2, mpmath.inf, regularized=True)
        self.assertIn(f"chi-square {float(chi2):.2f} with 10 degrees of freedom", text)
        self.assertIn(f"worse in {float(100 * tail):.0f}% of", text)

    def test_bessel_zeros(self):
        rows = re.findall(r"^J(\d)  zero (\d)  ([\d.]+)  slope +([-\d.]+)$",
                          expected("bessel_zeros"), re.M)
        self.assertEqual(len(rows), 9)
        for order, number, zero, slope in rows:
            truth = mpmath.besseljzero(int(order), int(number))
            self.assertEqual(zero, f"{float(truth):.10f}")
            # Abramowitz & Stegun 9.1.27: J' = -J of the next order at a zero. The example takes
            # the slope at the zero as the file rounds it.
            rounded = mpf(zero)
            derivative = mpmath.besselj(int(order), rounded, derivative=1)
            self.assertEqual(slope, f"{float(derivative):.10f}")
            self.assertAlmostEqual(float(derivative),
                                   float(-mpmath.besselj(int(order) + 1, truth)), places=9)
        self.assertNotIn("NO", expected("bessel_zeros"))

    def test_the_speed_of_light(self):
        series = columns("michelson_1879.txt")
        text = expected("speed_of_light")
        runs = [x for sample in series for x in sample]
        error = mpmath.sqrt(variance(runs) / len(runs))
        self.assertIn(f"mean {float(299000 + mean(runs)):.1f} +- {float(error):.1f} km/s", text)
        self.assertIn(f"one run {float(mpmath.sqrt(variance(runs))):.0f} km/s", text)
        weights = [len(sample) / variance(sample) for sample in series]
        weighted = mpmath.fdot(weights, map(mean, series)) / mpmath.fsum(weights)
        row = f"{float(299000 + weighted):8.1f}  {float(1 / mpmath.sqrt(mpmath.fsum(weights))):5.1f}"
        self.assertRegex(text, rf"(?m)^weighted +{re.escape(row.strip())} +0\.0$")
        self.assertIn(f"value in air, {float(mpf('299792.458') / mpf('1.00028')):.1f}, is", text)

    def test_gravitation(self):
        values, errors = columns("gravitation.txt")
        text = expected("gravitation")
        weights = [1 / error**2 for error in errors]
        weighted = mpmath.fdot(weights, values) / mpmath.fsum(weights)
        error = 1 / mpmath.sqrt(mpmath.fsum(weights))
        self.assertRegex(text, rf"(?m)^weighted mean +{float(weighted):.6f} +{float(error):.6f} +0.0")
        chi2 = mpmath.fsum(w * (x - weighted) ** 2 for w, x in zip(weights, values))
        self.assertIn(f"16 measurements, chi-square about their weighted mean {float(chi2):.0f}", text)
        tail = mpmath.gammainc(mpf(15) / 2, chi2 / 2, mpmath.inf, regularized=True)
        self.assertIn(f"chance of so much or more: {float(tail):.1e}", text)
        # With the extra scatter as printed, the other mean and its error follow.
        limited, its_error, scatter = (mpf(x) for x in re.search(
            r"limited Jeffreys +([\d.]+) +([\d.]+) +([\d.]+)", text).groups())
        weights = [1 / (scatter**2 + error**2) for error in errors]
        self.assertAlmostEqual(float(limited), float(mpmath.fdot(weights, values)
                                                     / mpmath.fsum(weights)), places=6)
        self.assertAlmostEqual(float(its_error), float(1 / mpmath.sqrt(mpmath.fsum(weights))),
                               places=6)

    def test_the_posterior(self):
        n, b = 7, 3
        text = expected("posterior")

        def above(s):
            """Probability of a strength of s or more."""
            return (mpmath.gammainc(n + 1, s + b, mpmath.inf)
                    / mpmath.gammainc(n + 1, b, mpmath.inf))

        def quantile(p):
            return float(mpmath.findroot(lambda s: above(s) - (1 - p), mpf(5)))

        height = mpf(4 + b) ** n * mpmath.exp(-(4 + b)) / mpmath.gammainc(n + 1, b, mpmath.inf)
        self.assertIn(f"exact height at 4 {float(height):.6f}", text)
        tabulated = re.search(r"tabulated +([\d.]+)", text).group(1)
        self.assertAlmostEqual(float(tabulated), float(height), places=5)
        self.assertIn(f"most probable     {n - b:.2f}", text)
        self.assertIn(f"median            {quantile(0.5):.2f}", text)
        self.assertIn(f"68 % interval     {quantile(0.16):.2f} to {quantile(0.84):.2f}", text)
        self.assertIn(f"90 % upper limit  {quantile(0.9):.2f}", text)

    def test_the_nearly_singular_problem(self):
        text = expected("nearly_singular")
        matrix = mpmath.matrix([[(1 + mpf(i) / 100) ** j for j in range(5)] for i in range(1, 6)])
        values = "  ".join(f"{float(value):.2e}" for value in mpmath.svd_r(matrix, compute_uv=False))
        self.assertIn(f"singular values  {values}", text)
        determinant = mpmath.det(matrix)
        self.assertIn(f"determinant      {float(determinant):.2e}, its logarithm "
                      f"{float(mpmath.log(determinant)):.2f}", text)
        right = matrix * mpmath.matrix([1] * 5)
        spoiled = mpmath.matrix([b * (1 + mpf("1e-6") * (-1) ** (i + 1))
                                 for i, b in enumerate(right)])
        solved = mpmath.lu_solve(matrix, spoiled)
        numbers = re.search(r"(?m)^solved +([-\d.]+) +([-\d.]+) +([-\d.]+)", text).groups()
        for number, truth in zip(numbers, solved):
            self.assertAlmostEqual(float(number) / float(truth), 1.0, places=5)

    def test_the_decay(self):
        text = expected("decay")
        fitted = [float(x) for x in re.search(
            r"fitted +([\d.]+) +([\d.]+) +([\d.]+)", text).groups()]
        errors = [float(x) for x in re.search(
            r"error +([\d.]+) +([\d.]+) +([\d.]+)", text).groups()]
        for number, truth, error in zip(fitted, (500, 8, 20), errors):
            self.assertLess(abs(number - truth), 3 * error)
        chi2, percent = re.search(r"chi-square ([\d.]+) .* (\d+) % of", text).groups()
        tail = mpmath.gammainc(mpf(57) / 2, mpf(chi2) / 2, mpmath.inf, regularized=True)
        self.assertAlmostEqual(int(percent), float(100 * tail), delta=1)

    def test_the_tour(self):
        half, sqrt2 = mpf(1) / 2, mpmath.sqrt(2)
        tail = mpmath.erfc(2 / sqrt2) / 2
        samples = ((1, 2, 3, 4, 5), (2, 4, 6, 8, 11))
        truth = {
            "J0(1)": (6, mpmath.besselj(0, 1)),
            "J of order 2 at 3": (6, mpmath.besselj(2, 3)),
            "J of order 1/2 at 3": (6, mpmath.besselj(half, 3)),
            "its derivative": (6, mpmath.besselj(half, 3, derivative=1)),
            "Y of order 2 at 3": (6, mpmath.bessely(2, 3)),
            "I of order 3/2 at 2": (6, mpmath.besseli(3 * half, 2)),
            "K of order 3/2 at 2": (6, mpmath.besselk(3 * half, 2)),
            "ln I of order 2 at 5000": (3, mpmath.log(mpmath.besseli(2, 5000))),
            "ln Gamma(10.5)": (6, mpmath.loggamma(mpf("10.5"))),
            "P(3, 2)": (6, mpmath.gammainc(3, 0, 2, regularized=True)),
            "ln Q(3, 1000), which underflows":
                (3, mpmath.log(mpmath.gammainc(3, 1000, mpmath.inf, regularized=True))),
            "B(2, 3)": (6, mpf(1) / 12),
            "I of 0.4 (2, 3)": (6, mpmath.betainc(2, 3, 0, mpf("0.4"), regularized=True)),
            "probability of more":
                (4, mpmath.gammainc(5, mpf("9.15"), mpmath.inf, regularized=True)),
            "significance of the F test": (4, f_test(*[[mpf(x) for x in s] for s in samples])),
            "erf(1/2)": (6, mpmath.erf(half)),
            "erfc(2)": (6, mpmath.erfc(2)),
            # The first term of the asymptotic series, which is what the function promises there.
            "ln erfc(30), which underflows":
                (4, -900 - mpmath.log(30) - mpmath.log(mpmath.pi) / 2),
            "Psi(2), which is not digamma": (6, mpmath.npdf(2) / tail),
            "sin(1/2) / (1/2)": (6, 2 * mpmath.sin(half)),
            "normal of mean 100, sigma 5": (0, mpf(100)),
            "Poisson of mean 50": (0, mpf(50)),
            "successes, 40 trials of 1/4": (0, mpf(10)),
        }
        several = [" ".join(f"{float(mpmath.besselj(0, x)):.4f}" for x in (0, 1, 2)),
                   f"3 {float(mpmath.log(120)):.4f}"]
        for line in several:
            self.assertIn("  " + line + "\n", expected("tour"))
        printed = dict(re.findall(r"^(\S.*?\S) {2,}(-?[\d.]+)$", expected("tour"), re.M))
        self.assertEqual(set(printed), set(truth))
        for label, (digits, value) in truth.items():
            self.assertEqual(printed[label], f"{float(value):.{digits}f}", label)


if __name__ == "__main__":
    unittest.main()
