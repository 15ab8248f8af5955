"""Truth of the estimators of samples with dispersions and of most probable values.

Writes tests/stat/data/estimators.txt, rows "type n x... d... w... mean disp sem2 disp0 weightedmean
weightedsem2", and tests/stat/data/most_probable.txt, rows "prior n x... d... location squarederror";
everything in exact doubles and 40 digits. Run: /usr/bin/python3 tests/truth/statistics_truth.py
"""

import os
import random

import mpmath as mp

mp.mp.dps = 40
DATA = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "stat", "data")


def slope(kind, t, x, d):
    """Slope of the logarithm of the restricted likelihood times the prior, in D = exp(t)."""
    big_d = mp.exp(t)
    w = [1 / (big_d + s) for s in d]
    s1 = mp.fsum(w)
    mu = mp.fsum(wi * xi for wi, xi in zip(w, x)) / s1
    core = (s1 - mp.fsum(wi**2 for wi in w) / s1
            - mp.fsum(((xi - mu) * wi) ** 2 for wi, xi in zip(w, x)))
    if kind == 1:
        core += 1 / big_d
    if kind == 0:
        core += 1 / (1 / mp.fsum(1 / s for s in d) + big_d)
    return core


def intrinsic(kind, x, d, variance):
    """The root in D, bisected in ln D; 0 where the slope does not change its sign."""
    lo, hi = mp.log(variance / 100), mp.log(variance * 100)
    at_lo = slope(kind, lo, x, d)
    if at_lo * slope(kind, hi, x, d) >= 0:
        return mp.mpf(0)
    for _ in range(90):
        middle = (lo + hi) / 2
        if slope(kind, middle, x, d) * at_lo < 0:
            hi = middle
        else:
            lo = middle
    return mp.exp(lo)


def estimates(kind, x, d, w):
    n = len(x)
    mean = mp.fsum(x) / n
    variance = mp.fsum((xi - mean) ** 2 for xi in x) / (n - 1)
    norm = mp.fsum(w) / n
    w = [wi / norm for wi in w]
    weighted = mp.fsum(wi * xi for wi, xi in zip(w, x)) / n
    weighted_sem2 = mp.fsum(wi * (xi - weighted) ** 2 for wi, xi in zip(w, x)) / ((n - 1) * n)
    if kind == 4:
        return mean, variance, variance / n, mp.mpf(0), weighted, weighted_sem2
    disp0 = intrinsic(kind, x, d, variance) if kind < 3 else mp.mpf(0)
    if kind < 2:
        disp0 = disp0 * n / (n - 1)
    total = [disp0 + s for s in d]
    norm = mp.fsum(1 / t for t in total)
    return (mp.fsum(xi / t for xi, t in zip(x, total)) / norm, mp.fsum(total) / n, 1 / norm, disp0,
            weighted, weighted_sem2)


def log_probability(prior, location, x, d):
    total = mp.mpf(0)
    for xi, s in zip(x, d):
        r = abs(xi - location)
        if prior == 0:
            total += mp.log(mp.erf(r / mp.sqrt(2 * s)) / r) if r else mp.log(2 / mp.sqrt(2 * mp.pi * s))
        elif prior == 1:
            q = r * r / s
            total += mp.log(-mp.expm1(-q / 2) / q) if r else mp.log(0.5)
        elif prior == 2:
            total -= mp.log(1 + r * r / (2 * s))
        else:
            total -= r * r / (2 * s)
    return total


def most_probable(prior, x, d):
    """The location, and the squared half length of the interval with 34 % of the probability, as far
    as it lies within 1e-4 of the peak, on either side."""
    def f(location):
        return log_probability(prior, location, x, d)

    grid = [min(x) + (max(x) - min(x)) * k / 2000 for k in range(2001)]
    best = max(grid, key=f)
    a, b = best - (max(x) - min(x)) / 1000, best + (max(x) - min(x)) / 1000
    third = (mp.sqrt(5) - 1) / 2
    for _ in range(70):
        u, v = b - third * (b - a), a + third * (b - a)
        if f(u) > f(v):
            b = v
        else:
            a = u
    location = (a + b) / 2
    peak = f(location)

    def edge(direction):
        inner, outer = mp.mpf(0), mp.mpf(1)
        while f(location + direction * outer) - peak > mp.log(1e-4):
            outer *= 2
        for _ in range(60):
            middle = (inner + outer) / 2
            if f(location + direction * middle) - peak > mp.log(1e-4):
                inner = middle
            else:
                outer = middle
        return location + direction * inner

    left, right = edge(-1), edge(1)
    cells = 400
    def area(p, q):
        h = (q - p) / cells
        return h / 3 * mp.fsum((1 if k in (0, cells) else 4 if k % 2 else 2)
                               * mp.exp(f(p + k * h) - peak) for k in range(cells + 1))

    whole = area(left, location) + area(location, right)

    def share(outer):
        inner, far = location, outer
        for _ in range(30):
            middle = (inner + far) / 2
            if area(min(location, middle), max(location, middle)) < mp.mpf("0.34") * whole:
                inner = middle
            else:
                far = middle
        return inner

    half = (share(right) - share(left)) / 2
    return location, half**2


def numbers(values):
    return " ".join(repr(v) for v in values)


def write(name, lines):
    with open(os.path.join(DATA, name), "w") as file:
        file.write("# Written by tests/truth/statistics_truth.py.\n")
        file.write("\n".join(lines) + "\n")


def main():
    draw = random.Random(20260202)
    lines = []
    for kind in range(5):
        for n in (2, 3, 10, 60):
            for scale in (1.0, 1e-6):
                d = [(scale * draw.uniform(0.2, 1.5)) ** 2 for _ in range(n)]
                x = [draw.gauss(3 * scale, 2 * scale) for _ in range(n)]
                w = [draw.uniform(0.2, 2) for _ in range(n)]
                exact = [[mp.mpf(v) for v in values] for values in (x, d, w)]
                truth = " ".join(mp.nstr(v, 25) for v in estimates(kind, *exact))
                lines.append(f"{kind} {n} {numbers(x)} {numbers(d)} {numbers(w)} {truth}")
    write("estimators.txt", lines)
    mp.mp.dps = 20
    lines = []
    for prior in range(4):
        for n in (5, 12):
            d = [draw.uniform(0.5, 1.5) for _ in range(n)]
            x = [draw.gauss(3, 1.5) for _ in range(n)]
            exact = [[mp.mpf(v) for v in values] for values in (x, d)]
            truth = " ".join(mp.nstr(v, 12) for v in most_probable(prior, *exact))
            lines.append(f"{prior} {n} {numbers(x)} {numbers(d)} {truth}")
    write("most_probable.txt", lines)


if __name__ == "__main__":
    main()
