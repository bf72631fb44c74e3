"""32-bit float arithmetic. A step is computed in double and rounded, which is exact for + - * /."""

import math
import struct

LARGEST = struct.unpack(">f", bytes.fromhex("7f7fffff"))[0]


def single(number):
    """The nearest 32-bit float as a double; infinite beyond the largest."""
    try:
        return struct.unpack("<f", struct.pack("<f", number))[0]
    except OverflowError:
        return math.copysign(math.inf, number)


def booked(number):
    """The value that enters a sum, the ledger or a series: 0 for a number that is not finite."""
    return number if math.isfinite(number) else 0.0


def single_of_integer(number):
    """The nearest 32-bit float of an integer, ties to even. In one step, as a 64-bit integer is
    converted; a conversion to double first would round twice."""
    magnitude = abs(number)
    shift = max(magnitude.bit_length() - 24, 0)
    significand, rest = magnitude >> shift, magnitude & ((1 << shift) - 1)
    if shift and (rest, significand & 1) > (1 << shift - 1, 0):
        significand += 1
    return math.copysign(float(significand << shift), number)
