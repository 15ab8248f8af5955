"""Truth of LnGamma, Gamma_P, Gamma_Q, LnGamma_P and LnGamma_Q."""

import math

import mpmath as mp

from truth_table import Arguments, Table, around


def ln_gamma(x):
    return mp.loggamma(mp.mpf(x))


def lower_series(a, x):
    """P(a, x) = x^a exp(-x)/Gamma(a + 1) * sum of x^n/((a+1) ... (a+n)); every term is positive."""
    a, x = mp.mpf(a), mp.mpf(x)
    term = total = mp.mpf(1)
    n = 0
    while term > total * mp.eps:
        n += 1
        term *= x / (a + n)
        total += term
    return total * mp.exp(a * mp.log(x) - x - mp.loggamma(a + 1))


def upper(a, x):
    """Q(a, x); below the mean from 1 - P with digits enough for the cancellation."""
    if x == 0:
        return mp.mpf(1)
    if x < a + 1:
        with mp.workdps(80):
            return 1 - lower_series(a, x)
    return mp.gammainc(mp.mpf(a), mp.mpf(x), mp.inf, regularized=True)


def lower(a, x):
    if x == 0:
        return mp.mpf(0)
    if x < a + 1:
        return lower_series(a, x)
    with mp.workdps(80):
        return 1 - upper(a, x)


def ln_lower(a, x):
    return mp.log(lower(a, x))


def ln_upper(a, x):
    with mp.workdps(80):
        return mp.log(upper(a, x))


def write_ln_gamma():
    draw = Arguments(1)
    table = Table("LnGamma", "ln Gamma(x)", ln_gamma)
    table.region("tiniest", "rel", "1e-308 <= x < 5.8e-307: a quotient overflows; -ln x is the value",
                 draw.many(10, lambda: draw.log_uniform(1e-308, 5.7e-307)))
    table.region("tiny", "rel", "5.9e-307 <= x < 1e-3",
                 draw.many(60, lambda: draw.log_uniform(5.9e-307, 1e-3)))
    table.region("below_one", "abs", "1e-3 <= x < 1", draw.many(80, lambda: draw.log_uniform(1e-3, 1)))
    table.region("one_to_three", "abs", "1 <= x < 3, the roots at 1 and 2 within",
                 draw.many(100, lambda: draw.uniform(1, 3)) + around(1.0) + around(2.0))
    table.region("moderate", "rel", "3 <= x < 200", draw.many(80, lambda: draw.log_uniform(3, 200)))
    table.region("large", "rel", "200 <= x < 1e8", draw.many(60, lambda: draw.log_uniform(200, 1e8)))
    table.region("huge", "rel", "1e8 <= x < 2.5e305",
                 draw.many(60, lambda: draw.log_uniform(1e8, 2.5e305)))
    table.region("overflow", "abs", "x >= 2.6e305, where ln Gamma is no double; infinity is right",
                 draw.many(5, lambda: draw.log_uniform(2.6e305, 1e307)))
    table.write()


# Where the series ends and the continued fraction begins, and on which side a row shall be.
def below_switch(draw, low, high):
    def row():
        a = draw.log_uniform(low, high)
        return (a, (a + 1) * draw.uniform(0.02, 1) ** (1 / (1 + math.log1p(a))))
    return row


def above_switch(draw, low, high):
    def row():
        a = draw.log_uniform(low, high)
        return (a, (a + 1) + (3 + 5 * math.sqrt(a)) * draw.uniform(0, 1))
    return row


def at_switch(draw):
    """Rows at the last x of the series and the first of the continued fraction, x = a + 1."""
    rows = []
    for a in [0.25, 0.5, 1.0, 2.0, 7.5, 30.0, 100.0, 1000.0] + draw.many(
            12, lambda: draw.log_uniform(0.1, 5000)):
        rows += [(a, x) for x in around(a + 1, 1)]
    return rows


def write_incomplete(name, description, function, measures):
    """The same regions for all four functions; `measures` are those of the two sides of the switch."""
    draw = Arguments(2)
    series, fraction = measures
    table = Table(name, description, function)
    if name.startswith("Gamma"):
        table.region("zero", "abs", "x = 0",
                     [(a, 0.0) for a in (1e-300, 1e-3, 0.5, 1.0, 10.0, 1e4, 1e300)])
    table.region("series_small_a", series, "x < a + 1, 1e-3 <= a < 0.06, ln P below -0.01",
                 [row for row in draw.many(160, lambda: (draw.log_uniform(1e-3, 0.06),
                                                        draw.log_uniform(1e-300, 1)))
                  if row[1] < row[0] + 1 and ln_lower(*row) < -0.0101][:60])
    remark = ": not ln Q; use ln of Gamma_Q" if name == "LnGamma_Q" else ""
    table.region("series_p_near_one", series, "x < a + 1, a < 0.06, ln P above -0.01" + remark,
                 [row for row in draw.many(300, lambda: (draw.log_uniform(1e-4, 0.05),
                                                        draw.log_uniform(1e-6, 1.05)))
                  if row[1] < row[0] + 1 and ln_lower(*row) > -0.0099][:60])
    table.region("series", series, "x < a + 1, 0.06 <= a < 30",
                 draw.many(60, below_switch(draw, 0.06, 30)))
    table.region("series_tiny_x", series, "1e-10 <= x < 1e-2, 0.1 <= a < 20",
                 draw.many(40, lambda: (draw.uniform(0.1, 20), draw.log_uniform(1e-10, 1e-2))))
    table.region("series_large_a", series, "x < a + 1, 30 <= a < 1e4",
                 draw.many(40, below_switch(draw, 30, 1e4)))
    table.region("series_out_of_rounds", series, "x just below a, 2e4 <= a < 1e6: 1000 terms are too few",
                 draw.many(20, lambda: (lambda a: (a, a - math.sqrt(a) * draw.uniform(0, 1)))(
                     draw.log_uniform(2e4, 1e6))))
    table.region("switch", series, "x = a + 1 and the doubles next to it", at_switch(draw))
    table.region("fraction_small_a", fraction, "x >= a + 1, 1e-6 <= a < 1",
                 draw.many(40, above_switch(draw, 1e-6, 1)))
    table.region("fraction", fraction, "x >= a + 1, 1 <= a < 30",
                 draw.many(60, above_switch(draw, 1, 30)))
    table.region("fraction_large_a", fraction, "x >= a + 1, 30 <= a < 1e4",
                 draw.many(40, above_switch(draw, 30, 1e4)))
    table.region("fraction_very_large_a", fraction, "x >= a + 1, 1e4 <= a < 1e6",
                 draw.many(15, above_switch(draw, 1e4, 1e6)))
    table.region("far_tail", fraction, "x = a + 20 to a + 600, a < 30",
                 draw.many(40, lambda: (lambda a: (a, a + draw.uniform(20, 600)))(
                     draw.uniform(0.1, 30))))
    table.write()


write_ln_gamma()
write_incomplete("Gamma_P", "P(a, x)", lower, ("rel", "rel"))
write_incomplete("Gamma_Q", "Q(a, x)", upper, ("abs", "rel"))
write_incomplete("LnGamma_P", "ln P(a, x)", ln_lower, ("rel", "abs"))
write_incomplete("LnGamma_Q", "ln Q(a, x)", ln_upper, ("abs", "rel"))
