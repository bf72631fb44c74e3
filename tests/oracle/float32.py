"""32-bit float steps. A step is worked out as double and rounded: exact for + - * /."""

import math
import struct

LARGEST = struct.unpack(">f", bytes.fromhex("7f7fffff"))[0]


def single(number):
    """The nearest 32-bit float, widened; infinite beyond the largest."""
    try:
        return struct.unpack("<f", struct.pack("<f", number))[0]
    except OverflowError:
        return math.copysign(math.inf, number)


def booked(number):
    """What enters a sum, the ledger or a series: a number that is not finite counts as nothing."""
    return number if math.isfinite(number) else 0.0


def single_of_integer(number):
    """The nearest 32-bit float of a whole number, ties to even: in one step, as a 64-bit number is
    converted, and not by way of a double."""
    magnitude = abs(number)
    shift = max(magnitude.bit_length() - 24, 0)
    significand, rest = magnitude >> shift, magnitude & ((1 << shift) - 1)
    if shift and (rest, significand & 1) > (1 << shift - 1, 0):
        significand += 1
    return math.copysign(float(significand << shift), number)
