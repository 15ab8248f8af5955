#!/usr/bin/python3
"""Writes bessel_zeros.csv: zeros of J0, J1, J2 and the derivatives there, to ten decimals.

The same numbers are published in Abramowitz & Stegun, Handbook of Mathematical Functions,
table 9.5. Needs python3-mpmath.
"""

import mpmath

ZEROS_PER_ORDER = 10
ORDERS = (0, 1, 2)

HEADER = """\
# Zeros j of the Bessel functions J of order 0, 1 and 2, and the derivative J'(j).
# Abramowitz & Stegun, Handbook of Mathematical Functions, table 9.5; these from mpmath, by
# make_bessel_zeros.py.
# order, number, zero, derivative
"""


def main():
    mpmath.mp.dps = 40
    print(HEADER, end="")
    for order in ORDERS:
        for number in range(1, ZEROS_PER_ORDER + 1):
            zero = mpmath.besseljzero(order, number)
            slope = mpmath.besselj(order, zero, derivative=1)
            print(f"{order},{number},{fixed(zero)},{fixed(slope)}")


def fixed(value):
    """The value rounded to ten decimals."""
    scaled = int(mpmath.nint(value * 10**10))
    sign = "-" if scaled < 0 else ""
    return f"{sign}{abs(scaled) // 10**10}.{abs(scaled) % 10**10:010d}"


if __name__ == "__main__":
    main()
