"""Truth of the singular values of matrices that are hard on a decomposition.

The table singular_values.txt holds, for every matrix,

    matrix NAME single|double ROWS COLUMNS
    a line of elements per row, hexadecimal, representable in that precision
    a line of min(ROWS, COLUMNS) singular values in descending order, 25 digits

computed with 200 digits from the elements as they stand in the table, so rounding of the elements
is no error. Run the script to write the table again:  /usr/bin/python3 tests/truth/singular_values_truth.py
"""

import os
import random
import struct

import mpmath as mp

mp.mp.dps = 200

PATH = os.path.join(os.path.dirname(os.path.abspath(__file__)), "singular_values.txt")


def to_single(value):
    return struct.unpack("f", struct.pack("f", value))[0]


def hilbert(rows, cols):
    """1/(i + j + 1): singular values fall off exponentially."""
    return [[mp.mpf(1) / (i + j + 1) for j in range(cols)] for i in range(rows)]


def kahan(n):
    """Kahan's triangular matrix with s^2 + c^2 = 1: hides its near singularity."""
    s, c = mp.sin(mp.mpf("1.2")), mp.cos(mp.mpf("1.2"))
    return [[s**i * (1 if i == j else -c if j > i else 0) for j in range(n)] for i in range(n)]


def vandermonde(rows, cols):
    """Powers of points spread over (0, 1]."""
    return [[mp.mpf(i + 1) ** j / mp.mpf(rows) ** j for j in range(cols)] for i in range(rows)]


def graded(rows, cols, step):
    """Random elements times a factor that falls by `step` from row to row and column to column."""
    source = random.Random(rows * 100 + cols)
    return [[mp.mpf(source.uniform(-1, 1)) * mp.mpf(step) ** (-i - j) for j in range(cols)]
            for i in range(rows)]


def rank_deficient(rows, cols, rank):
    """Sum of `rank` products of small integer vectors, exact in every precision."""
    source = random.Random(rows * 100 + cols + rank)
    matrix = [[mp.mpf(0)] * cols for _ in range(rows)]
    for _ in range(rank):
        u = [source.randint(-3, 3) for _ in range(rows)]
        v = [source.randint(-3, 3) for _ in range(cols)]
        for i in range(rows):
            for j in range(cols):
                matrix[i][j] += u[i] * v[j]
    return matrix


def hadamard(n):
    """Sylvester's matrix of signs: all singular values are sqrt(n)."""
    return [[mp.mpf(-1) ** bin(i & j).count("1") for j in range(n)] for i in range(n)]


def repeated(n):
    """Signs times a diagonal of the values 5, 2 and 1 in turn: threefold repeated values."""
    return [[sign * (5, 2, 1)[j % 3] for j, sign in enumerate(row)] for row in hadamard(n)]


def nearly_repeated(n):
    """The identity disturbed in the ninth digit: clustered values."""
    source = random.Random(n)
    return [[mp.mpf(1 if i == j else 0) + mp.mpf(source.uniform(-1, 1)) * mp.mpf(10) ** -9
             for j in range(n)] for i in range(n)]


def scaled(matrix, exponent):
    """The matrix times a power of two, towards the ends of the range."""
    return [[mp.ldexp(element, exponent) for element in row] for row in matrix]


FAMILIES = {
    "hilbert_4x4": hilbert(4, 4),
    "hilbert_8x8": hilbert(8, 8),
    "hilbert_12x12": hilbert(12, 12),
    "hilbert_9x5": hilbert(9, 5),
    "hilbert_5x9": hilbert(5, 9),
    "kahan_10": kahan(10),
    "kahan_24": kahan(24),
    "vandermonde_8x8": vandermonde(8, 8),
    "vandermonde_15x6": vandermonde(15, 6),
    "vandermonde_6x11": vandermonde(6, 11),
    "graded_8x8": graded(8, 8, 10),
    "graded_12x7": graded(12, 7, 4),
    "graded_7x12": graded(7, 12, 4),
    "rank_3_of_8x6": rank_deficient(8, 6, 3),
    "rank_2_of_6x8": rank_deficient(6, 8, 2),
    "rank_1_of_7x7": rank_deficient(7, 7, 1),
    "rank_5_of_9x9": rank_deficient(9, 9, 5),
    "hadamard_8": hadamard(8),
    "hadamard_16": hadamard(16),
    "repeated_8": repeated(8),
    "nearly_repeated_10": nearly_repeated(10),
    "column_5x1": graded(5, 1, 2),
    "row_1x5": graded(1, 5, 2),
    "large_hilbert_6x6": scaled(hilbert(6, 6), 50),
    "small_hilbert_6x6": scaled(hilbert(6, 6), -20),
}


def singular_values(elements):
    values = mp.svd_r(mp.matrix(elements), compute_uv=False)
    return sorted(values, reverse=True)


def lines_of(name, precision, exact):
    rounding = to_single if precision == "single" else float
    rows = [[rounding(float(element)) for element in row] for row in exact]
    lines = [f"matrix {name} {precision} {len(rows)} {len(rows[0])}"]
    lines += [" ".join(element.hex() for element in row) for row in rows]
    values = singular_values([[mp.mpf(element) for element in row] for row in rows])
    lines.append(" ".join(mp.nstr(value, 25) if value > mp.mpf(10) ** -150 else "0"
                          for value in values))
    return lines


def main():
    lines = ["# Singular values by matrix", "# Written by tests/truth/singular_values_truth.py."]
    for name, exact in FAMILIES.items():
        for precision in ("double", "single"):
            lines += lines_of(name, precision, exact)
    with open(PATH, "w", encoding="ascii") as file:
        file.write("\n".join(lines) + "\n")


main()
