#!/usr/bin/env python3
"""Draws state_images.bmp, the three row icons: 16 x 16 pixels each, 16 colours, silver where transparent."""
import pathlib
import struct

SIGNS = {
    "exclamation": ["................", "................", "................", ".......##.......",
                    ".......##.......", ".......##.......", ".......##.......", ".......##.......",
                    ".......##.......", "................", "................", ".......##.......",
                    ".......##.......", "................", "................", "................"],
    "check": ["................", "................", "................", "................",
              "...........#....", "..........##....", ".........##.....", "....#...##......",
              "....##.##.......", ".....###........", "......#.........", "................",
              "................", "................", "................", "................"],
    "question": ["................", "................", "................", "......####......",
                 ".....##..##.....", ".........##.....", "........##......", ".......##.......",
                 ".......##.......", "................", ".......##.......", ".......##.......",
                 "................", "................", "................", "................"],
}
# The 16 colours of the standard palette, in its order.
PALETTE = [(0, 0, 0), (128, 0, 0), (0, 128, 0), (128, 128, 0), (0, 0, 128), (128, 0, 128), (0, 128, 128),
           (192, 192, 192), (128, 128, 128), (255, 0, 0), (0, 255, 0), (255, 255, 0), (0, 0, 255),
           (255, 0, 255), (0, 255, 255), (255, 255, 255)]
RED, GREEN, BLUE, SILVER, WHITE = 9, 2, 12, 7, 15
STATES = [("exclamation", RED), ("check", GREEN), ("question", BLUE)]  # the keys "i", "OK", "IE"


def pixel(sign, colour, x, y):
    if SIGNS[sign][y][x] == "#":
        return WHITE
    inside = (x - 7.5) ** 2 + (y - 7.5) ** 2 <= 7.4 ** 2
    return colour if inside else SILVER


def bitmap():
    width, height = 16 * len(STATES), 16
    rows = b""
    for y in reversed(range(height)):
        pixels = [pixel(sign, colour, x, y) for sign, colour in STATES for x in range(16)]
        rows += bytes(a << 4 | b for a, b in zip(pixels[::2], pixels[1::2]))
    palette = b"".join(bytes((b, g, r, 0)) for r, g, b in PALETTE)
    info = struct.pack("<IiiHHIIiiII", 40, width, height, 1, 4, 0, len(rows), 0, 0, 16, 0)
    offset = 14 + len(info) + len(palette)
    return struct.pack("<2sIHHI", b"BM", offset + len(rows), 0, 0, offset) + info + palette + rows


if __name__ == "__main__":
    pathlib.Path(__file__).with_name("state_images.bmp").write_bytes(bitmap())
