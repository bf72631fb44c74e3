#!/usr/bin/env python3
"""icon_file.py FILE NAME: writes an icon with a colour for the name.

A disc on a transparent background, in 32 and 16 pixels, 32 bits a pixel.
"""

import colorsys
import struct
import sys
import zlib

SIDES = (32, 16)


def colour_of(name):
    """Blue, green and red for a name, bright and saturated, the same in every build."""
    hue = zlib.crc32(name.encode()) % 360 / 360
    red, green, blue = colorsys.hsv_to_rgb(hue, 0.8, 0.9)
    return bytes(round(part * 255) for part in (blue, green, red))


def image(side, colour):
    """The icon's bitmap: header, pixels from the bottom row up, and the mask of transparency."""
    middle = (side - 1) / 2
    pixels, mask = b"", b""
    for y in range(side):
        inside = [(x - middle) ** 2 + (y - middle) ** 2 <= (side / 2) ** 2 for x in range(side)]
        pixels += b"".join(colour + b"\xff" if hit else bytes(4) for hit in inside)
        bits = "".join("0" if hit else "1" for hit in inside).ljust(32, "0")
        mask += int(bits, 2).to_bytes(4, "big")
    # The height counts pixels and mask.
    header = struct.pack("<IiiHHIIiiII", 40, side, 2 * side, 1, 32, 0, len(pixels), 0, 0, 0, 0)
    return header + pixels + mask


def icon(name):
    images = [image(side, colour_of(name)) for side in SIDES]
    directory = struct.pack("<HHH", 0, 1, len(images))
    offset = len(directory) + 16 * len(images)
    for side, data in zip(SIDES, images):
        directory += struct.pack("<BBBBHHII", side, side, 0, 0, 1, 32, len(data), offset)
        offset += len(data)
    return directory + b"".join(images)


def write_icon(path, name):
    with open(path, "wb") as file:
        file.write(icon(name))


if __name__ == "__main__":
    write_icon(sys.argv[1], sys.argv[2])
