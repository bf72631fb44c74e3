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
