"""Truth of the probability functions of a location and of the two likelihoods of the statistics.

Writes tests/stat/data/probability.txt, rows "prior axis location n x... d... w... value", and
tests/stat/data/likelihood.txt, rows "n x... normal log-normal"; everything in exact doubles and 50
digits. Run: /usr/bin/python3 tests/truth/probability_truth.py
"""

import os
import random

import mpmath as mp

mp.mp.dps = 50
DATA = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "stat", "data")


def term(prior, r, s, w, logarithmic):
    """w * l(r, s) as it enters the sum."""
    r = abs(r)
    if prior == 0:
        if logarithmic:
            r = mp.sqrt(max(r * r, mp.mpf(1e-10)))
        elif r / mp.sqrt(2 * s) < 1e-5:
            return mp.log(2 / mp.sqrt(mp.pi)) - mp.log(2 * s) / 2 * w
        return w * mp.log(mp.erf(r / mp.sqrt(2 * s)) / r)
    if prior == 1:
        q = r * r / s
        return w * (mp.log(-mp.expm1(-q / 2) / q) if q > 0 else mp.log(0.5))
    if prior == 2:
        return -w * mp.log(1 + r * r / (2 * s))
    return -w * r * r / (2 * s)


def probability(prior, logarithmic, location, x, d, w):
    total = mp.mpf(0)
    for xi, di, wi in zip(map(mp.mpf, x), map(mp.mpf, d), map(mp.mpf, w)):
        if logarithmic:
            g = 1 + di / xi**2
            total += term(prior, mp.log(xi / mp.sqrt(g) / location), mp.log(g), wi, True)
        else:
            total += term(prior, xi - location, di, wi, False)
    return -total


def likelihoods(x):
    x = [mp.mpf(value) for value in x]
    n = mp.mpf(len(x))

    def variance(values):
        mean = mp.fsum(values) / n
        squares = mp.fsum((value - mean) ** 2 for value in values)
        return mean, (squares if squares != 0 else 1 / n) / n

    def shared(v):
        return (mp.loggamma((n + 1) / 2) + mp.log(2) / 2 - n / 2 * mp.log(mp.pi)
                - (n - 1) / 2 * mp.log(n) - n / 2 * mp.log(v))

    _, v = variance(x)
    mean_of_logarithms, u = variance([mp.log(value) for value in x])
    return (shared(v) - mp.log(20 * mp.sqrt(v)) - mp.log(10000),
            shared(u) - n * mean_of_logarithms - 2 * mp.log(10000))


def write(name, lines):
    with open(os.path.join(DATA, name), "w") as file:
        file.write("# Written by tests/truth/probability_truth.py.\n")
        file.write("\n".join(lines) + "\n")


def main():
    draw = random.Random(20260101)
    lines = []
    for prior in range(4):
        for axis in (0, 1):
            for n in (1, 2, 5, 20):
                for case in range(6):
                    x = [draw.uniform(1, 9) for _ in range(n)]
                    d = [draw.uniform(0.05, 2) for _ in range(n)]
                    w = [draw.uniform(0.2, 2) for _ in range(n)]
                    # Away from a distance of 0, where prior 1 loses its digits; every third prior-0
                    # row has a value at the location.
                    location = x[0] if prior == 0 and case % 3 == 0 else draw.uniform(10, 15)
                    value = probability(prior, axis, mp.mpf(location), x, d, w)
                    numbers = [repr(v) for v in [location] + [float(n)] + x + d + w]
                    lines.append(f"{prior} {axis} " + " ".join(numbers) + " " + mp.nstr(value, 25))
    write("probability.txt", lines)
    lines = []
    for n in (2, 3, 10, 99, 100, 150):
        for sigma in (0.01, 0.3, 1.5):
            x = [draw.lognormvariate(0.7, sigma) for _ in range(n)]
            normal, lognormal = likelihoods(x)
            lines.append(f"{n} " + " ".join(map(repr, x)) + f" {mp.nstr(normal, 25)}"
                         f" {mp.nstr(lognormal, 25)}")
    write("likelihood.txt", lines)


if __name__ == "__main__":
    main()
