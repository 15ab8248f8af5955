"""Truth of TFunc::LogIntegralExp: ln of the integral of exp(y) over a table, y linear between knots.

A row holds the abscissae, the ordinates and the value, as many of the first two as there are knots.
Writes tests/tfunc/data/LogIntegralExp.txt, apart from the tables of functions of a few arguments.
"""

import os

import mpmath as mp

from truth_table import Arguments, Table

DATA = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "tfunc", "data")


def log_integral_exp(*points):
    """The integral over an interval is dx exp(y0) (exp(dy) - 1) / dy; all of it in exact doubles and
    50 digits, the largest ordinate taken out beforehand."""
    count = len(points) // 2
    x = [mp.mpf(value) for value in points[:count]]
    y = [mp.mpf(value) for value in points[count:]]
    top = max(y)
    total = mp.mpf(0)
    with mp.workdps(400):
        for i in range(1, count):
            dx, dy = x[i] - x[i - 1], y[i] - y[i - 1]
            mean = mp.expm1(dy) / dy if dy != 0 else mp.mpf(1)
            total += dx * mp.exp(y[i - 1] - top) * mean
        return top + mp.log(total)


def interval(draw, step, difference):
    """One interval of the given width from a random start, rising or falling by the difference."""
    x = draw.uniform(-10, 10)
    y = draw.uniform(-5, 5)
    sign = 1 if draw.integer(0, 1) else -1
    return (x, x + step, y, y + sign * difference)


def from_zero(draw, difference):
    """One interval with ordinates 0 and +-difference, so that no digit of the difference is lost."""
    sign = 1 if draw.integer(0, 1) else -1
    return (0.0, draw.uniform(0.1, 4), 0.0, sign * difference)


def many_knots(draw, count, height):
    x = sorted(draw.uniform(-10, 10) for _ in range(count))
    return tuple(x + [draw.uniform(-height, height) for _ in range(count)])


def main():
    draw = Arguments(41)
    table = Table("LogIntegralExp", "ln of the integral of exp of a tabulated function",
                  log_integral_exp)
    table.path = os.path.join(DATA, "LogIntegralExp.txt")
    table.region("subnormal", "abs", "two knots, subnormal difference of the ordinates",
                 draw.many(20, lambda: from_zero(draw, draw.integer(1, 2 ** 50) * 5e-324)))
    table.region("tiny", "abs", "two knots, differences of 1e-300 to 1e-14",
                 draw.many(40, lambda: from_zero(draw, draw.log_uniform(1e-300, 1e-14))))
    table.region("cancelling", "abs", "two knots, differences of 1e-14 to 1e-3",
                 draw.many(80, lambda: from_zero(draw, draw.log_uniform(1e-14, 1e-3))))
    table.region("moderate", "abs", "two knots, differences of 1e-3 to 19",
                 draw.many(60, lambda: interval(draw, draw.log_uniform(1e-3, 10),
                                                draw.log_uniform(1e-3, 19))))
    table.region("switch", "abs", "two knots, differences of 19 to 21",
                 draw.many(30, lambda: interval(draw, draw.uniform(0.5, 2), draw.uniform(19, 21))))
    table.region("large", "abs", "two knots, differences of 20 to 1e6",
                 draw.many(40, lambda: interval(draw, draw.uniform(0.5, 2),
                                                draw.log_uniform(20, 1e6))))
    table.region("huge", "abs", "two knots, differences of 1e6 to 1e250",
                 draw.many(20, lambda: from_zero(draw, draw.log_uniform(1e6, 1e250))))
    table.region("narrow", "abs", "two knots, steps of 1e-320 to 1e-300",
                 draw.many(20, lambda: (0.0, draw.log_uniform(1e-320, 1e-300),
                                        draw.uniform(-3, 3), draw.uniform(-3, 3))))
    table.region("wide", "abs", "two knots, steps of 1e100 to 1e300",
                 draw.many(20, lambda: (0.0, draw.log_uniform(1e100, 1e300),
                                        draw.uniform(-3, 3), draw.uniform(-3, 3))))
    table.region("knots", "abs", "3 to 20 knots, ordinates to 3",
                 draw.many(40, lambda: many_knots(draw, draw.integer(3, 20), 3)))
    table.region("peaks", "abs", "3 to 20 knots, ordinates to 2000",
                 draw.many(30, lambda: many_knots(draw, draw.integer(3, 20), 2000)))
    table.write()


main()
