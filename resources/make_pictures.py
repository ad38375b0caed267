#!/usr/bin/env python3
"""Renders the drawings in pictures/ into the bitmaps and the icon that the program carries.

Needs rsvg-convert (Debian: librsvg2-bin) and ImageMagick's convert. The results are kept in the tree, so that a
build needs neither of the two.
"""
import pathlib
import struct
import subprocess

HERE = pathlib.Path(__file__).resolve().parent
PICTURES = {"help": "help.svg", "about": "emblem.svg"}
PICTURE_SIZES = {96: 64, 144: 96, 192: 128}  # pixels per inch: pixels
# Windows 98 and Me show icons of 16 and 256 colours, Windows XP and later those with an alpha channel.
ICON_SIZES = {4: [16, 32], 8: [16, 32, 48], 32: [16, 20, 24, 32, 40, 48, 64]}
STANDARD_16 = [(0, 0, 0), (128, 0, 0), (0, 128, 0), (128, 128, 0), (0, 0, 128), (128, 0, 128), (0, 128, 128),
               (192, 192, 192), (128, 128, 128), (255, 0, 0), (0, 255, 0), (255, 255, 0), (0, 0, 255),
               (255, 0, 255), (0, 255, 255), (255, 255, 255)]
CUBE_256 = [(r * 51, g * 51, b * 51) for r in range(6) for g in range(6) for b in range(6)]
CUBE_256 += [(v * 6, v * 6, v * 6) for v in range(40)]


def rendered(drawing, size):
    """Rows of (red, green, blue, alpha), from the top."""
    png = subprocess.run(["rsvg-convert", "-w", str(size), "-h", str(size), HERE / "pictures" / drawing],
                         check=True, capture_output=True).stdout
    raw = subprocess.run(["convert", "png:-", "-depth", "8", "rgba:-"], input=png, check=True,
                         capture_output=True).stdout
    pixels = list(struct.iter_unpack("4B", raw))
    return [pixels[y * size:(y + 1) * size] for y in range(size)]


def alpha_rows(rows):
    """32-bit rows from the bottom; the colours are premultiplied, so that blending needs one multiplication."""
    return b"".join(bytes((b * a // 255, g * a // 255, r * a // 255, a)) for row in reversed(rows) for r, g, b, a in row)


def write_bitmap(path, rows):
    size = len(rows)
    bits = alpha_rows(rows)
    info = struct.pack("<IiiHHIIiiII", 40, size, size, 1, 32, 0, len(bits), 0, 0, 0, 0)
    path.write_bytes(struct.pack("<2sIHHI", b"BM", 54 + len(bits), 0, 0, 54) + info + bits)


def nearest(palette, colour):
    return min(range(len(palette)), key=lambda i: sum((a - b) ** 2 for a, b in zip(palette[i], colour)))


def packed(values, bits):
    """One row of pixel values, padded to 32 bits."""
    text = "".join(format(value, f"0{bits}b") for value in values)
    text += "0" * (-len(text) % 32)
    return int(text, 2).to_bytes(len(text) // 8, "big")


def icon_image(rows, bits):
    size = len(rows)
    mask = b"".join(packed([0 if a >= 128 else 1 for *_, a in row], 1) for row in reversed(rows))
    if bits == 32:
        palette = []
        image = b"".join(bytes((b, g, r, a)) for row in reversed(rows) for r, g, b, a in row)
    else:
        palette = STANDARD_16 if bits == 4 else CUBE_256
        image = b"".join(packed([nearest(palette, pixel[:3]) if pixel[3] >= 128 else 0 for pixel in row], bits)
                         for row in reversed(rows))
    header = struct.pack("<IiiHHIIiiII", 40, size, 2 * size, 1, bits, 0, len(image) + len(mask), 0, 0, 0, 0)
    return header + b"".join(bytes((b, g, r, 0)) for r, g, b in palette) + image + mask


def write_icon(path):
    images = [(size, bits, icon_image(rendered("icon_small.svg" if size <= 20 else "emblem.svg", size), bits))
              for bits, sizes in ICON_SIZES.items() for size in sizes]
    entries, offset = b"", 6 + 16 * len(images)
    for size, bits, image in images:
        colours = 16 if bits == 4 else 0
        entries += struct.pack("<BBBBHHII", size, size, colours, 0, 1, bits, len(image), offset)
        offset += len(image)
    path.write_bytes(struct.pack("<HHH", 0, 1, len(images)) + entries + b"".join(image for *_, image in images))


if __name__ == "__main__":
    for name, drawing in PICTURES.items():
        for dpi, size in PICTURE_SIZES.items():
            write_bitmap(HERE / f"{name}_{dpi}.bmp", rendered(drawing, size))
    write_icon(HERE / "quillon.ico")
