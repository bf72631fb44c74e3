"""The text that the JSON writer prints for a number.

The writer uses the Grisu2 algorithm (Loitsch 2010), whose text always reads back as the same number
but is not always the shortest one, so Python's repr() sometimes differs. This is the same algorithm in
integers, with the writer's default of 324 decimal places. The CTest core.oracle.numbers_like_the_writer
compares it with the writer.
"""

import struct
from fractions import Fraction

HIDDEN_BIT = 1 << 52
MASK64 = (1 << 64) - 1


def _cached_power(index):
    """10 to the power 8 * index - 348 as a rounded 64-bit significand and a binary exponent."""
    value = Fraction(10) ** (8 * index - 348)
    exponent = value.numerator.bit_length() - value.denominator.bit_length() - 64
    while value / Fraction(2) ** exponent >= 1 << 64:
        exponent += 1
    while value / Fraction(2) ** exponent < 1 << 63:
        exponent -= 1
    return int(value / Fraction(2) ** exponent + Fraction(1, 2)), exponent


_CACHED_POWERS = [_cached_power(index) for index in range(87)]


def _scale_for(binary_exponent):
    """The cached power that scales a number of this exponent into range, and its decimal exponent."""
    estimate = (-61 - binary_exponent) * 0.30102999566398114 + 347
    k = int(estimate)
    if estimate - k > 0.0:
        k += 1
    index = (k >> 3) + 1
    return _CACHED_POWERS[index], 348 - 8 * index


def _multiply(left, right):
    product = left[0] * right[0]
    return (product + (1 << 63)) >> 64, left[1] + right[1] + 64


def _normalize(significand, exponent):
    shift = 64 - significand.bit_length()
    return significand << shift, exponent - shift


def _round_last_digit(digits, delta, rest, ten_kappa, distance):
    while (
        rest < distance
        and delta - rest >= ten_kappa
        and (rest + ten_kappa < distance or distance - rest > rest + ten_kappa - distance)
    ):
        digits[-1] -= 1
        rest += ten_kappa


def _generate_digits(value, upper, delta, k):
    shift = -upper[1]
    one = 1 << shift
    distance = upper[0] - value[0]
    whole, fraction = upper[0] >> shift, upper[0] & (one - 1)
    kappa = min(len(str(whole)), 9)
    digits = []
    while kappa > 0:
        digit, whole = divmod(whole, 10 ** (kappa - 1))
        if digit or digits:
            digits.append(digit)
        kappa -= 1
        rest = (whole << shift) + fraction
        if rest <= delta:
            _round_last_digit(digits, delta, rest, 10**kappa << shift, distance)
            return digits, k + kappa
    while True:
        fraction *= 10
        delta = delta * 10 & MASK64
        digit = fraction >> shift
        if digit or digits:
            digits.append(digit)
        fraction &= one - 1
        kappa -= 1
        if fraction < delta:
            scale = 10**-kappa if -kappa < 9 else 0
            _round_last_digit(digits, delta, fraction, one, distance * scale & MASK64)
            return digits, k + kappa


def _grisu2(number):
    bits = struct.unpack("<Q", struct.pack("<d", number))[0]
    biased, significand = bits >> 52, bits & (HIDDEN_BIT - 1)
    exponent = biased - 1075 if biased else -1074
    if biased:
        significand += HIDDEN_BIT
    upper = _normalize(2 * significand + 1, exponent - 1)
    if significand == HIDDEN_BIT:
        lower = 4 * significand - 1, exponent - 2
    else:
        lower = 2 * significand - 1, exponent - 1
    lower = lower[0] << (lower[1] - upper[1]), upper[1]
    power, k = _scale_for(upper[1])
    value = _multiply(_normalize(significand, exponent), power)
    upper = _multiply(upper, power)
    lower = _multiply(lower, power)
    upper = upper[0] - 1, upper[1]
    return _generate_digits(value, upper, upper[0] - (lower[0] + 1), k)


def _lay_out(digits, k):
    """Digits times 10^k, in the writer's plain or exponent form."""
    point = len(digits) + k
    if k >= 0 and point <= 21:
        return digits + "0" * k + ".0"
    if 0 < point <= 21:
        return digits[:point] + "." + digits[point:]
    if -6 < point <= 0:
        return "0." + "0" * -point + digits
    if point < -324:
        return "0.0"
    if len(digits) == 1:
        return f"{digits}e{point - 1}"
    return f"{digits[0]}.{digits[1:]}e{point - 1}"


def written(number):
    """The text of a finite number as the JSON writer prints it."""
    sign = "-" if struct.pack(">d", number)[0] & 0x80 else ""
    if number == 0.0:
        return sign + "0.0"
    digits, k = _grisu2(abs(number))
    return sign + _lay_out("".join(map(str, digits)), k)
