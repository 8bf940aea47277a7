#!/usr/bin/env python3
"""Draws the toolkit's own icons (PNG/*.png) at 1x, 3:2 and 2x.

Run from this folder: python3 make_icons.py. Only the standard library is
used; shapes are rasterised with 4x4 supersampling.
"""
import math
import struct
import zlib

SS = 4  # samples per pixel and axis


def png(path, width, height, pixels):
    raw = b"".join(b"\x00" + bytes(pixels[y * width * 4:(y + 1) * width * 4]) for y in range(height))

    def chunk(tag, data):
        c = struct.pack(">I", len(data)) + tag + data
        return c + struct.pack(">I", zlib.crc32(tag + data) & 0xFFFFFFFF)

    with open(path, "wb") as f:
        f.write(b"\x89PNG\r\n\x1a\n")
        f.write(chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 6, 0, 0, 0)))
        f.write(chunk(b"IDAT", zlib.compress(raw, 9)))
        f.write(chunk(b"IEND", b""))


def render(size, layers):
    """layers: list of (inside(x, y) in unit square, rgba). Later layers paint over."""
    out = []
    for py in range(size):
        for px in range(size):
            r = g = b = a = 0.0
            for sy in range(SS):
                for sx in range(SS):
                    x = (px + (sx + 0.5) / SS) / size
                    y = (py + (sy + 0.5) / SS) / size
                    colour = None
                    for inside, rgba in layers:
                        if inside(x, y):
                            colour = rgba
                    if colour:
                        alpha = colour[3] / 255.0
                        r += colour[0] * alpha
                        g += colour[1] * alpha
                        b += colour[2] * alpha
                        a += alpha
            n = SS * SS
            if a > 0:
                out += [round(r / a), round(g / a), round(b / a), round(255 * a / n)]
            else:
                out += [0, 0, 0, 0]
    return out


def circle(cx, cy, radius):
    return lambda x, y: (x - cx) ** 2 + (y - cy) ** 2 <= radius ** 2


def rect(x0, y0, x1, y1):
    return lambda x, y: x0 <= x <= x1 and y0 <= y <= y1


def triangle(pad):
    # Point up, base at the bottom.
    top, bottom = pad, 1 - pad

    def inside(x, y):
        if y < top or y > bottom:
            return False
        half = (y - top) / (bottom - top) * (0.5 - pad)
        return abs(x - 0.5) <= half
    return inside


def info_layers(dark):
    disc = (70, 150, 240, 255) if dark else (30, 110, 210, 255)
    mark = (20, 30, 40, 255) if dark else (255, 255, 255, 255)
    return [(circle(0.5, 0.5, 0.47), disc), (circle(0.5, 0.28, 0.08), mark), (rect(0.43, 0.42, 0.57, 0.78), mark)]


def alert_layers(dark):
    body = (255, 200, 60, 255) if dark else (240, 170, 20, 255)
    mark = (30, 30, 30, 255)
    return [(triangle(0.05), body), (rect(0.45, 0.36, 0.55, 0.68), mark), (circle(0.5, 0.79, 0.06), mark)]


ICONS = [("SP_INFO_SM_N", 16, info_layers), ("SP_ALERT_XS_N", 12, alert_layers), ("SP_ALERT_MD_N", 24, alert_layers)]

for name, size, layers in ICONS:
    for dark in (False, True):
        base = name + ("_D" if dark else "")
        for suffix, scale_num, scale_den in (("", 1, 1), ("_AT_3TO2X", 3, 2), ("_AT_2X", 2, 1)):
            pixels = size * scale_num // scale_den  # sizes round down
            png("PNG/%s%s.png" % (base, suffix), pixels, pixels, render(pixels, layers(dark)))
