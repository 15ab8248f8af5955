"""Truth of Erf, CErf and LogCErf and of the script functions made of them: Errf, Psi, LnPsi."""

import mpmath as mp

from truth_table import Arguments, Table, around


def ln_complement(x):
    return mp.log(mp.erfc(mp.mpf(x)))


def psi(x):
    """Normal density over upper tail; the functions are defined as the asymptote x from 30 on."""
    x = mp.mpf(x)
    return mp.npdf(x) / (mp.erfc(x / mp.sqrt(2)) / 2)


def either_sign(draw, low, high):
    return draw.uniform(low, high) * (1 if draw.integer(0, 1) else -1)


def write_erf(name, description):
    draw = Arguments(6)
    table = Table(name, description, lambda x: mp.erf(mp.mpf(x)))
    table.region("near_zero", "abs", "|x| < 1e-3, zero within",
                 [0.0] + draw.many(40, lambda: draw.log_uniform(1e-300, 1e-3) * (
                     1 if draw.integer(0, 1) else -1)))
    table.region("small", "abs", "1e-3 <= |x| < 1", draw.many(80, lambda: either_sign(draw, 1e-3, 1)))
    table.region("moderate", "abs", "1 <= |x| < 6", draw.many(80, lambda: either_sign(draw, 1, 6)))
    table.region("large", "abs", "6 <= |x| < 1e150",
                 draw.many(40, lambda: draw.log_uniform(6, 1e150) * (1 if draw.integer(0, 1) else -1)))
    table.write()


def write_complement():
    draw = Arguments(7)
    table = Table("CErf", "erfc(x)", lambda x: mp.erfc(mp.mpf(x)))
    table.region("negative", "rel", "-20 < x < 0", draw.many(60, lambda: -draw.log_uniform(1e-6, 20)))
    table.region("small", "rel", "0 <= x < 2", [0.0] + draw.many(80, lambda: draw.uniform(0, 2)))
    table.region("moderate", "rel", "2 <= x < 10", draw.many(100, lambda: draw.uniform(2, 10)))
    table.region("asymptotic", "rel", "10 <= x < 26.5",
                 around(10.0)[3:] + draw.many(80, lambda: draw.uniform(10, 26.5)))
    table.region("underflow", "abs", "26.5 <= x, below the least normal double",
                 draw.many(40, lambda: draw.log_uniform(26.6, 1e4)))
    table.write()


def write_ln_complement():
    draw = Arguments(8)
    table = Table("LogCErf", "ln erfc(x)", ln_complement)
    table.region("negative", "abs", "-20 < x < 0", draw.many(60, lambda: -draw.log_uniform(1e-6, 20)))
    table.region("small", "abs", "0 <= x < 2", [0.0] + draw.many(80, lambda: draw.uniform(0, 2)))
    table.region("moderate", "abs", "2 <= x < 10", draw.many(100, lambda: draw.uniform(2, 10)))
    table.region("asymptotic", "abs", "10 <= x < 1000",
                 around(10.0)[3:] + draw.many(80, lambda: draw.log_uniform(10, 1000)))
    table.region("huge", "rel", "1000 <= x < 1e150",
                 draw.many(40, lambda: draw.log_uniform(1000, 1e150)))
    table.write()


def write_psi(name, description, function, measure):
    draw = Arguments(9)
    table = Table(name, description, function)
    table.region("negative", measure, "-37 < x < 0", draw.many(60, lambda: -draw.log_uniform(1e-6, 37)))
    table.region("moderate", measure, "0 <= x < 14", draw.many(100, lambda: draw.uniform(0, 14)))
    table.region("asymptotic_tail", measure, "14.2 <= x < 30", draw.many(60, lambda: draw.uniform(14.2, 30)))
    table.region("asymptote", measure, "30 <= x < 1e6", draw.many(40, lambda: draw.log_uniform(30, 1e6)))
    table.write()


write_erf("Erf", "erf(x)")
write_erf("Errf", "erf(x), the script function that goes through the incomplete gamma function")
write_complement()
write_ln_complement()
write_psi("Psi", "normal density over upper tail", psi, "rel")
write_psi("LnPsi", "ln of normal density over upper tail", lambda x: mp.log(psi(x)), "abs")
