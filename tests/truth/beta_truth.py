"""Truth of Beta, LnBeta, Beta_I and LnBeta_I, and of the F test, which is made of them."""

import math
from fractions import Fraction

import mpmath as mp

from truth_table import Arguments, Table, around


def ln_beta(a, b):
    a, b = mp.mpf(a), mp.mpf(b)
    with mp.workdps(50 + int(mp.log10(1 + a + b))):
        return mp.loggamma(a) + mp.loggamma(b) - mp.loggamma(a + b)


def incomplete_series(a, b, x):
    """I_x(a, b) = x^a (1-x)^b/(a B(a, b)) * sum of x^n (a+b) ... (a+b+n-1)/((a+1) ... (a+n)), all
    terms positive; for x below the mean."""
    term = total = mp.mpf(1)
    n = 0
    while term > total * mp.eps:
        term *= x * (a + b + n) / (a + 1 + n)
        total += term
        n += 1
    return total * mp.exp(a * mp.log(x) + b * mp.log(1 - x) - ln_beta(a, b)) / a


def incomplete_beta(a, b, x):
    """I_x(a, b) directly or as 1 - I_{1-x}(b, a), with digits enough for the difference."""
    with mp.workdps(90):
        a, b, x = mp.mpf(a), mp.mpf(b), mp.mpf(x)
        if x == 0 or x == 1:
            return x
        if x * (a + b) <= a:
            return incomplete_series(a, b, x)
        return 1 - incomplete_series(b, a, 1 - x)


def ln_incomplete_beta(a, b, x):
    with mp.workdps(90):
        return mp.log(incomplete_beta(a, b, x))


def switch(a, b):
    return (a + 1.0) / (a + b + 2.0)


def write_beta(name, description, function, measure):
    draw = Arguments(3)
    table = Table(name, description, function)
    table.region("small", measure, "both between 1e-5 and 1",
                 draw.many(60, lambda: (draw.log_uniform(1e-5, 1), draw.log_uniform(1e-5, 1))))
    table.region("moderate", measure, "both between 1 and 100",
                 draw.many(80, lambda: (draw.log_uniform(1, 100), draw.log_uniform(1, 100))))
    table.region("large", measure, "both between 100 and 1e4",
                 draw.many(40, lambda: (draw.log_uniform(100, 1e4), draw.log_uniform(100, 1e4))))
    table.region("unequal", measure, "one below 10, the other between 1e4 and 1e8",
                 draw.many(40, lambda: (draw.log_uniform(0.01, 10), draw.log_uniform(1e4, 1e8))))
    table.region("tiny", measure, "one between 1e-300 and 1e-5, the other between 1 and 10",
                 draw.many(40, lambda: (draw.log_uniform(1e-300, 1e-5), draw.log_uniform(1, 10))))
    table.write()


def direct_row(draw, low, high):
    a, b = draw.log_uniform(low, high), draw.log_uniform(low, high)
    return (a, b, switch(a, b) * draw.uniform(0.05, 1) ** (1 / (1 + math.log1p(a))))


def reflected_row(draw, low, high):
    a, b, x = direct_row(draw, low, high)
    return (b, a, 1.0 - x)


def is_direct(row):
    return row[2] < switch(row[0], row[1])


def at_switch(draw):
    rows = []
    for _ in range(20):
        a, b = draw.log_uniform(0.1, 300), draw.log_uniform(0.1, 300)
        rows += [(a, b, x) for x in around(switch(a, b), 1)]
    return rows


def write_incomplete(name, description, function, measures):
    direct, reflected = measures
    draw = Arguments(4)
    table = Table(name, description, function)
    if name == "Beta_I":
        table.region("ends", "abs", "x = 0 and x = 1",
                     [(a, b, x) for a in (1e-5, 1.0, 1e5) for b in (1e-5, 1.0, 1e5) for x in (0.0, 1.0)])
    table.region("direct_small", direct, "x below the switch, a and b between 1e-3 and 1",
                 [row for row in draw.many(80, lambda: direct_row(draw, 1e-3, 1)) if is_direct(row)])
    table.region("direct", direct, "x below the switch, a and b between 1 and 50",
                 [row for row in draw.many(80, lambda: direct_row(draw, 1, 50)) if is_direct(row)])
    table.region("direct_large", direct, "x below the switch, a and b between 50 and 1e4",
                 [row for row in draw.many(50, lambda: direct_row(draw, 50, 1e4)) if is_direct(row)])
    table.region("direct_very_large", direct, "x below the switch, a and b between 1e4 and 1e5",
                 [row for row in draw.many(12, lambda: direct_row(draw, 1e4, 1e5)) if is_direct(row)])
    table.region("tail", direct, "x between 1e-12 and 1e-2, a and b between 0.5 and 20",
                 draw.many(40, lambda: (draw.uniform(0.5, 20), draw.uniform(0.5, 20),
                                        draw.log_uniform(1e-12, 1e-2))))
    table.region("switch", "abs", "x = (a + 1)/(a + b + 2) and the doubles next to it",
                 at_switch(draw))
    table.region("reflected_small", reflected, "x from the switch on, a and b between 1e-3 and 1",
                 [row for row in draw.many(80, lambda: reflected_row(draw, 1e-3, 1))
                  if not is_direct(row)])
    table.region("reflected", reflected, "x from the switch on, a and b between 1 and 50",
                 [row for row in draw.many(80, lambda: reflected_row(draw, 1, 50))
                  if not is_direct(row)])
    table.region("reflected_large", reflected, "x from the switch on, a and b between 50 and 1e4",
                 [row for row in draw.many(50, lambda: reflected_row(draw, 50, 1e4))
                  if not is_direct(row)])
    remark = ": NaN; use ln of Beta_I" if name == "LnBeta_I" else ""
    table.region("reflected_near_zero", reflected,
                 "x from the switch on, 1e-9 <= b < 1e-5, so that I is below 1e-4" + remark,
                 [row for row in draw.many(60, lambda: (draw.log_uniform(0.5, 20),
                                                        draw.log_uniform(1e-9, 1e-5),
                                                        draw.uniform(0.6, 0.999)))
                  if not is_direct(row) and incomplete_beta(*row) < 0.9e-4])
    table.write()


def variance(sample):
    numbers = [Fraction(value) for value in sample]
    mean = sum(numbers) / len(numbers)
    return sum((value - mean) ** 2 for value in numbers) / (len(numbers) - 1)


def larger_over_smaller(*row):
    """The ratio and its degrees of freedom for a row n1 n2 value ... of two samples."""
    n1, n2 = row[0], row[1]
    first, second = row[2:2 + n1], row[2 + n1:]
    v1, v2 = variance(first), variance(second)
    if v1 > v2:
        return v1 / v2, n1 - 1, n2 - 1
    return v2 / v1, n2 - 1, n1 - 1


def f_ratio(*row):
    ratio = larger_over_smaller(*row)[0]
    return mp.mpf(ratio.numerator) / ratio.denominator


def f_significance(*row):
    _, nu1, nu2 = larger_over_smaller(*row)
    p = 2 * incomplete_beta(mp.mpf(nu2) / 2, mp.mpf(nu1) / 2, nu2 / (nu2 + nu1 * f_ratio(*row)))
    return 2 - p if p > 1 else p


def two_samples(draw, offset, ratio):
    n1, n2 = draw.integer(2, 12), draw.integer(2, 12)
    scale = draw.log_uniform(*ratio)
    first = [offset + draw.uniform(-1, 1) for _ in range(n1)]
    second = [offset + scale * draw.uniform(-1, 1) for _ in range(n2)]
    return (n1, n2, *first, *second)


def write_f_test(name, description, function):
    draw = Arguments(5)
    table = Table(name, description, function)
    table.region("typical", "rel", "2 to 12 values around 0, scatter ratio 0.3 to 3",
                 draw.many(40, lambda: two_samples(draw, 0.0, (0.3, 3))))
    table.region("unequal", "rel", "scatter ratio 1e-4 to 1e4",
                 draw.many(30, lambda: two_samples(draw, 0.0, (1e-4, 1e4))))
    table.region("offset", "rel", "values around 1000, scatter about 1: the variance cancels",
                 draw.many(30, lambda: two_samples(draw, 1000.0, (0.3, 3))))
    table.write()


write_beta("Beta", "B(a, b)", lambda a, b: mp.exp(ln_beta(a, b)), "rel")
write_beta("LnBeta", "ln B(a, b)", ln_beta, "abs")
write_incomplete("Beta_I", "I_x(a, b), columns a, b, x", incomplete_beta, ("rel", "abs"))
write_incomplete("LnBeta_I", "ln I_x(a, b), columns a, b, x", ln_incomplete_beta, ("abs", "abs"))
write_f_test("FTest", "significance of the F test, columns n1, n2, first sample, second sample",
             f_significance)
write_f_test("FTest_ratio", "variance ratio of the F test, columns n1, n2, first sample, second sample",
             f_ratio)
