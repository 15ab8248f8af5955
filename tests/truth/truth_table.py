"""Tables of function values to 25 digits, computed with 50 and more, and the arguments to take.

A table is a text file data/NAME.txt:

    # what the function is, and which script wrote the file
    region NAME MEASURE description of the region
    argument ... value

Arguments are doubles, written so that they read back exactly; MEASURE says how the error of the
function is measured in that region: abs (absolute), rel (relative) or ulp (spacings of doubles at the
value). Run a script to write its tables again:  /usr/bin/python3 tests/truth/gamma_truth.py
"""

import math
import os
import random
import sys

import mpmath as mp

mp.mp.dps = 50

DATA = os.path.join(os.path.dirname(os.path.abspath(__file__)), "data")


class Table:
    """One function's table; regions are added in the order in which they are to be read."""

    def __init__(self, name, description, function):
        self.function = function
        self.path = os.path.join(DATA, name + ".txt")
        script = os.path.basename(sys.argv[0])
        self.lines = ["# " + description, f"# Written by tests/truth/{script}."]

    def region(self, name, measure, description, rows):
        """Adds the function's value at every row of arguments (numbers or tuples of numbers)."""
        self.lines.append(f"region {name} {measure} {description}")
        for row in rows:
            arguments = row if isinstance(row, tuple) else (row,)
            value = self.function(*arguments)
            self.lines.append(" ".join([repr(a) for a in arguments] + [mp.nstr(value, 25)]))

    def write(self):
        with open(self.path, "w", encoding="ascii") as file:
            file.write("\n".join(self.lines) + "\n")
        print(os.path.basename(self.path), os.path.getsize(self.path))


class Arguments:
    """Reproducible random arguments, each kind drawn from the seeded generator in turn."""

    def __init__(self, seed):
        self.random = random.Random(seed)

    def uniform(self, low, high):
        return self.random.uniform(low, high)

    def log_uniform(self, low, high):
        return math.exp(self.random.uniform(math.log(low), math.log(high)))

    def integer(self, low, high):
        return self.random.randint(low, high)

    def many(self, count, draw):
        return [draw() for _ in range(count)]


def around(center, count=3):
    """The doubles next to `center` on both sides and `center` itself."""
    below, above = [center], [center]
    for _ in range(count):
        below.append(math.nextafter(below[-1], -math.inf))
        above.append(math.nextafter(above[-1], math.inf))
    return sorted(set(below + above))
