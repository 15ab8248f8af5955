"""Truth of the modified Bessel functions, their derivatives and logarithms."""

import mpmath as mp

from truth_table import Arguments, Table, around


def bessel_i(x, order):
    return mp.besseli(mp.mpf(order), mp.mpf(x))


def bessel_k(x, order):
    return mp.besselk(mp.mpf(order), mp.mpf(x))


def derivative_i(x, order):
    return mp.mpf(order) / mp.mpf(x) * bessel_i(x, order) + bessel_i(x, mp.mpf(order) + 1)


def derivative_k(x, order):
    with mp.workdps(80):
        return mp.mpf(order) / mp.mpf(x) * bessel_k(x, order) - bessel_k(x, mp.mpf(order) + 1)


def write_polynomial(name, description, function, switch, sign):
    draw = Arguments(13)
    table = Table(name, description, function)
    table.region("tiny", "rel", "1e-290 <= x < 1e-3",
                 draw.many(40, lambda: draw.log_uniform(1e-290, 1e-3)))
    table.region("small", "rel", f"1e-3 <= |x| < {switch}",
                 draw.many(80, lambda: draw.uniform(1e-3, switch) * (sign if draw.integer(0, 1) else 1)))
    table.region("switch", "rel", f"x = {switch} and the doubles next to it", around(switch))
    table.region("large", "rel", f"{switch} <= |x| < 700",
                 draw.many(100, lambda: draw.log_uniform(switch, 700) * (
                     sign if draw.integer(0, 1) else 1)))
    table.write()


def write_integral(name, description, function, negative_x):
    draw = Arguments(14)
    table = Table(name, description, function)
    sign = -1 if negative_x else 1
    table.region("tiny_x", "rel", "1e-60 <= |x| < 1e-3, orders 2 to 5",
                 draw.many(40, lambda: (draw.log_uniform(1e-60, 1e-3) * (sign if draw.integer(0, 1) else 1),
                                        float(draw.integer(2, 5)))))
    table.region("small_x", "rel", "1e-3 <= |x| < 2, orders 2 to 30",
                 draw.many(60, lambda: (draw.uniform(1e-3, 2) * (sign if draw.integer(0, 1) else 1),
                                        float(draw.integer(2, 30)))))
    table.region("moderate", "rel", "2 <= |x| < 30, orders 2 to 30",
                 draw.many(60, lambda: (draw.uniform(2, 30) * (sign if draw.integer(0, 1) else 1),
                                        float(draw.integer(2, 30)))))
    table.region("large_x", "rel", "30 <= |x| < order^2/2, orders 10 to 60",
                 [(x, n) for x, n in draw.many(120, lambda: (
                     draw.uniform(30, 700) * (sign if draw.integer(0, 1) else 1),
                     float(draw.integer(10, 60)))) if abs(x) < n * n / 2][:60])
    remark = "" if name.startswith("BesselK") else ": the recurrence starts too low"
    table.region("x_far_above_order", "rel", "order^2/2 <= |x| < 700, orders 2 to 30" + remark,
                 [(x, n) for x, n in draw.many(120, lambda: (
                     draw.uniform(30, 700) * (sign if draw.integer(0, 1) else 1),
                     float(draw.integer(2, 30)))) if abs(x) >= n * n / 2][:60])
    table.region("large_order", "rel", "orders 60 to 400, x from order/3 to order",
                 draw.many(40, lambda: (lambda n: (n * draw.uniform(0.34, 1), float(n)))(
                     draw.integer(60, 400))))
    table.write()


def write_real_order(name, description, function):
    draw = Arguments(15)
    table = Table(name, description, function)
    table.region("small_x", "rel", "1e-8 <= x < 0.1, 0.05 < order < 8",
                 draw.many(60, lambda: (draw.log_uniform(1e-8, 0.1), draw.uniform(0.05, 8))))
    table.region("series", "rel", "0.1 <= x < 2, 0 < order < 3",
                 draw.many(80, lambda: (draw.uniform(0.1, 2), draw.uniform(0, 3))))
    table.region("series_high_order", "rel", "0.05 <= x < 2, 3 < order < 60",
                 draw.many(50, lambda: (draw.log_uniform(0.05, 2), draw.uniform(3, 60))))
    table.region("half_integers", "rel", "0.5 <= x < 30, orders 1/2 to 9/2",
                 draw.many(30, lambda: (draw.uniform(0.5, 30), draw.integer(0, 4) + 0.5)))
    table.region("crossover", "rel", "x = 2 and the doubles next to it, 0 < order < 3",
                 [(x, order) for order in draw.many(10, lambda: draw.uniform(0, 3))
                  for x in around(2.0, 1)])
    table.region("moderate", "rel", "2 <= x < 100, orders below 20",
                 draw.many(80, lambda: (draw.uniform(2, 100), draw.uniform(0, 20))))
    table.region("large_x", "rel", "100 <= x < 690, orders below 50",
                 draw.many(40, lambda: (draw.uniform(100, 690), draw.uniform(0, 50))))
    table.region("high_order", "rel", "2 <= x < 100, orders 1.2 x to 3 x",
                 draw.many(50, lambda: (lambda x: (x, x * draw.uniform(1.2, 3)))(draw.uniform(2, 100))))
    table.region("order_far_above", "rel",
                 "0.01 <= x < 0.1, 300 < order < 400: the recurrence leaves the range of a double, NaN but for K",
                 draw.many(10, lambda: (draw.uniform(0.01, 0.1), draw.uniform(300, 400))))
    table.write()


def write_ln_i():
    draw = Arguments(16)
    table = Table("LnBesselIn", "ln I, columns x, order", lambda x, n: mp.log(bessel_i(x, n)))
    table.region("leading_term", "abs", "x < order/30, 0.1 < order < 1000",
                 draw.many(60, lambda: (lambda n: (n / 30 * draw.log_uniform(1e-6, 0.999), n))(
                     draw.log_uniform(0.1, 1000))))
    table.region("direct_integral", "abs", "order/30 < x < mu/8, orders 3 to 40",
                 draw.many(60, lambda: (lambda n: (draw.uniform(n / 29, (4 * n * n - 1) / 8.2), float(n)))(
                     draw.integer(3, 40))))
    table.region("direct_real", "abs", "order/30 < x < mu/8, orders 1 to 36",
                 draw.many(60, lambda: (lambda n: (draw.uniform(n / 29, (4 * n * n - 1) / 8.2), n))(
                     draw.uniform(1, 36))))
    table.region("asymptotic_edge", "abs", "mu/8 < x < mu/4: the terms cancel",
                 draw.many(40, lambda: (lambda n: ((4 * n * n - 1) / 8 * draw.uniform(1.001, 2), n))(
                     draw.uniform(1, 40))))
    table.region("asymptotic", "abs", "mu/4 < x < 50 mu, orders 1 to 40",
                 draw.many(60, lambda: (lambda n: ((4 * n * n - 1) / 4 * draw.log_uniform(1, 200), n))(
                     draw.uniform(1, 40))))
    table.region("order_below_half_small_x", "abs", "orders 0 and below 1/2, order/30 < x < 2",
                 [(draw.uniform(0.05, 2), 0.0) for _ in range(15)]
                 + draw.many(25, lambda: (draw.uniform(0.05, 2), draw.uniform(0.01, 0.5))))
    table.region("order_below_half_large_x", "abs", "orders 0 and below 1/2, 2 < x < 1e4",
                 [(draw.log_uniform(2, 1e4), 0.0) for _ in range(20)]
                 + draw.many(20, lambda: (draw.log_uniform(2, 1e4), draw.uniform(0.01, 0.5))))
    table.write()


def write_ln_derivative_i():
    draw = Arguments(17)
    table = Table("LnBesselIpn", "ln of dI/dx, columns x, order", lambda x, n: mp.log(derivative_i(x, n)))
    table.region("leading_term", "abs", "x < order/30, 0.1 < order < 1000",
                 draw.many(60, lambda: (lambda n: (n / 30 * draw.log_uniform(1e-6, 0.999), n))(
                     draw.log_uniform(0.1, 1000))))
    table.region("direct", "abs", "order/30 < x < 10 order, orders 0.5 to 60",
                 draw.many(80, lambda: (lambda n: (n * draw.log_uniform(1 / 29, 10), n))(
                     draw.uniform(0.5, 60))))
    table.region("direct_integral", "abs", "order/30 < x < 10 order, orders 1 to 60",
                 draw.many(40, lambda: (lambda n: (n * draw.log_uniform(1 / 29, 10), float(n)))(
                     draw.integer(1, 60))))
    table.region("asymptotic", "abs", "10 order < x < 1e5, orders 1 to 60",
                 draw.many(60, lambda: (lambda n: (n * draw.log_uniform(10, 1000), n))(
                     draw.uniform(1, 60))))
    table.region("order_below_one", "abs", "10 order < x, orders below 1, 0.1 < x < 1e4",
                 draw.many(40, lambda: (lambda x: (x, min(1, x / 10) * draw.uniform(0, 0.99)))(
                     draw.log_uniform(0.1, 1e4))))
    table.write()


write_polynomial("BesselI0", "I_0(x)", lambda x: bessel_i(x, 0), 3.75, -1)
write_polynomial("BesselI1", "I_1(x)", lambda x: bessel_i(x, 1), 3.75, -1)
write_polynomial("BesselK0", "K_0(x)", lambda x: bessel_k(x, 0), 2.0, 1)
write_polynomial("BesselK1", "K_1(x)", lambda x: bessel_k(x, 1), 2.0, 1)
write_integral("BesselIn_integral", "I of integral order, columns x, order", bessel_i, True)
write_integral("BesselKn_integral", "K of integral order, columns x, order", bessel_k, False)
write_real_order("BesselIn", "I of real order, columns x, order", bessel_i)
write_real_order("BesselKn", "K of real order, columns x, order", bessel_k)
write_real_order("BesselIpn", "dI/dx, columns x, order", derivative_i)
write_real_order("BesselKpn", "dK/dx, columns x, order", derivative_k)
write_ln_i()
write_ln_derivative_i()
