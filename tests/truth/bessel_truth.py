"""Truth of the Bessel functions of the first and second kind and their derivatives."""

import mpmath as mp

from truth_table import Arguments, Table, around


def bessel_j(x, order):
    return mp.besselj(mp.mpf(order), mp.mpf(x))


def bessel_y(x, order):
    return mp.bessely(mp.mpf(order), mp.mpf(x))


def derivative_of(function):
    """f' = (order/x) f - f of order + 1, with digits for the difference."""
    def derivative(x, order):
        with mp.workdps(80):
            return mp.mpf(order) / mp.mpf(x) * function(x, order) - function(x, mp.mpf(order) + 1)
    return derivative


def write_platform(name, description, function, lowest):
    draw = Arguments(10)
    table = Table(name, description, function)
    table.region("small", "abs", f"{lowest} <= x < 2", draw.many(60, lambda: draw.log_uniform(lowest, 2)))
    table.region("moderate", "abs", "2 <= x < 100", draw.many(100, lambda: draw.uniform(2, 100)))
    table.region("large", "abs", "100 <= x < 1e6", draw.many(60, lambda: draw.log_uniform(100, 1e6)))
    table.write()


def write_integral(name, description, function, negative_x):
    draw = Arguments(11)
    table = Table(name, description, function)

    def argument(low, high):
        sign = -1 if negative_x and draw.integer(0, 1) else 1
        return sign * draw.uniform(low, high)

    table.region("oscillating", "abs", "10 <= |x| < 200, orders -10 to 10",
                 draw.many(80, lambda: (argument(10, 200), float(draw.integer(-10, 10)))))
    table.region("transition", "rel", "5 <= x < 200, orders from x to x + 3",
                 draw.many(50, lambda: (lambda n: (n - draw.uniform(0, 3), float(n)))(
                     draw.integer(8, 200))))
    table.region("evanescent", "rel", "1 <= x < 50, orders 1.5 x to 3 x",
                 draw.many(60, lambda: (lambda x: (x, float(2 + int(x * draw.uniform(1.5, 3)))))(
                     draw.uniform(1, 50))))
    table.write()


def write_real_order(name, description, function):
    draw = Arguments(12)
    table = Table(name, description, function)
    table.region("small_x", "rel", "1e-8 <= x < 0.5, 0.3 < order < 8",
                 draw.many(60, lambda: (draw.log_uniform(1e-8, 0.5), draw.uniform(0.3, 8))))
    table.region("series", "abs", "0.5 <= x < 2, 0 < order < 2",
                 draw.many(60, lambda: (draw.uniform(0.5, 2), draw.uniform(0, 2))))
    table.region("series_high_order", "rel", "0.05 <= x < 2, 2 < order < 60",
                 draw.many(60, lambda: (draw.log_uniform(0.05, 2), draw.uniform(2, 60))))
    table.region("half_integers", "abs", "3.5 <= x < 30, orders 1/2 to 9/2",
                 draw.many(30, lambda: (draw.uniform(3.5, 30), draw.integer(0, 4) + 0.5)))
    table.region("crossover", "abs", "x = 2 and the doubles next to it, 0 < order < 2",
                 [(x, order) for order in draw.many(10, lambda: draw.uniform(0, 2))
                  for x in around(2.0, 1)])
    table.region("oscillating", "abs", "2 <= x < 100, orders below x",
                 draw.many(80, lambda: (lambda x: (x, draw.uniform(0, x)))(draw.uniform(2, 100))))
    table.region("far", "abs", "100 <= x < 900, orders below 50",
                 draw.many(60, lambda: (draw.uniform(100, 900), draw.uniform(0, 50))))
    table.region("transition", "rel", "2 <= x < 500, orders x to x + 3 x^(1/3)",
                 draw.many(50, lambda: (lambda x: (x, x + draw.uniform(0, 3) * x ** (1 / 3)))(
                     draw.log_uniform(2, 500))))
    table.region("evanescent", "rel", "2 <= x < 100, orders 1.2 x to 3 x",
                 draw.many(50, lambda: (lambda x: (x, x * draw.uniform(1.2, 3)))(draw.uniform(2, 100))))
    table.region("order_far_above", "rel",
                 "0.01 <= x < 0.1, 300 < order < 400: the recurrence leaves the range of a double, NaN",
                 draw.many(10, lambda: (draw.uniform(0.01, 0.1), draw.uniform(300, 400))))
    table.write()


write_platform("BesselJ0", "J_0(x)", lambda x: bessel_j(x, 0), 1e-5)
write_platform("BesselJ1", "J_1(x)", lambda x: bessel_j(x, 1), 1e-5)
write_platform("BesselY0", "Y_0(x)", lambda x: bessel_y(x, 0), 1e-5)
write_platform("BesselY1", "Y_1(x)", lambda x: bessel_y(x, 1), 0.1)
write_integral("BesselJn", "J of integral order, columns x, order", bessel_j, True)
write_integral("BesselYn", "Y of integral order, columns x, order", bessel_y, False)
write_real_order("BesselJ", "J of real order, columns x, order", bessel_j)
write_real_order("BesselY", "Y of real order, columns x, order", bessel_y)
write_real_order("BesselJDerivative", "dJ/dx, columns x, order", derivative_of(bessel_j))
write_real_order("BesselYDerivative", "dY/dx, columns x, order", derivative_of(bessel_y))
