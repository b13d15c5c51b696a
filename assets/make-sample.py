#!/usr/bin/env python3
"""Draws the project's sample image: 640 x 360 RGBA, straight alpha, 8 bits.

Colour gradients, a glowing disc, concentric rings, a striped band, a hilly
horizon and soft transparent edges and holes, so that every control of the
effect has something to work on. No third-party modules: the PNG is written
with zlib. Usage: make-sample.py [OUT] (default: sample.png next to this file).
"""
import math
import os
import struct
import sys
import zlib

WIDTH, HEIGHT = 640, 360


def mix(a, b, t):
    return tuple(x + (y - x) * t for x, y in zip(a, b))


def smoothstep(e0, e1, x):
    t = min(max((x - e0) / (e1 - e0), 0.0), 1.0)
    return t * t * (3.0 - 2.0 * t)


def over(dst, src, alpha):
    """Paints colour `src` with coverage `alpha` over colour `dst`."""
    return mix(dst, src, alpha)


SKY_TOP = (18, 24, 72)
SKY_MID = (150, 40, 130)
SKY_LOW = (250, 140, 60)
DISC_IN = (255, 245, 170)
DISC_OUT = (255, 150, 40)
HILL_NEAR = (12, 40, 60)
HILL_FAR = (40, 70, 120)
RING_A = (30, 200, 210)
RING_B = (240, 240, 255)


def sky(x, y):
    t = y / (HEIGHT - 1)
    base = mix(SKY_TOP, SKY_MID, t / 0.6) if t < 0.6 else mix(SKY_MID, SKY_LOW, (t - 0.6) / 0.4)
    # A faint horizontal shift of hue so rows differ along their length.
    s = 0.5 + 0.5 * math.sin(x / WIDTH * math.pi * 2.0 + y / 90.0)
    return mix(base, (base[2], base[0], base[1]), 0.25 * s)


def pixel(x, y):
    px, py = x + 0.5, y + 0.5
    colour = sky(px, py)

    # Glowing disc with a halo.
    d = math.hypot(px - 440.0, py - 140.0)
    halo = max(0.0, 1.0 - d / 160.0) ** 2
    colour = over(colour, DISC_OUT, 0.6 * halo)
    colour = over(colour, mix(DISC_IN, DISC_OUT, min(d / 80.0, 1.0)), smoothstep(81.0, 79.0, d))

    # Concentric rings.
    r = math.hypot(px - 150.0, py - 120.0)
    if r < 95.0:
        band = int(r // 12.0) % 2
        edge = smoothstep(95.0, 93.0, r)
        colour = over(colour, RING_A if band else RING_B, 0.85 * edge)

    # Diagonal stripes on a band across the lower middle.
    if 200.0 <= py <= 250.0:
        stripe = 0.5 + 0.5 * math.sin((px + py) * 0.25)
        cover = smoothstep(200.0, 204.0, py) * smoothstep(250.0, 246.0, py)
        colour = over(colour, (250, 210, 40), 0.55 * cover * stripe)

    # Two layers of hills.
    far = 270.0 - 28.0 * math.sin(px / 70.0) - 12.0 * math.sin(px / 23.0 + 1.0)
    colour = over(colour, HILL_FAR, smoothstep(far - 1.0, far + 1.0, py))
    near = 310.0 - 22.0 * math.sin(px / 110.0 + 2.0) - 6.0 * math.sin(px / 13.0)
    colour = over(colour, mix(HILL_NEAR, (5, 10, 20), (py - near) / 60.0 if py > near else 0.0),
                  smoothstep(near - 1.0, near + 1.0, py))

    # Alpha: soft transparent left and right edges, a clear hole and a
    # half-transparent square. Colour stays meaningful under low alpha.
    alpha = smoothstep(0.0, 70.0, px) * smoothstep(WIDTH, WIDTH - 70.0, px)
    alpha *= smoothstep(20.0, 24.0, math.hypot(px - 560.0, py - 290.0))
    if 40.0 <= px <= 120.0 and 250.0 <= py <= 330.0:
        alpha *= 0.5
    return colour, alpha


def png_chunk(kind, data):
    chunk = kind + data
    return struct.pack(">I", len(data)) + chunk + struct.pack(">I", zlib.crc32(chunk) & 0xFFFFFFFF)


def clamp8(v):
    return max(0, min(255, int(math.floor(v + 0.5))))


def main():
    out = sys.argv[1] if len(sys.argv) > 1 else os.path.join(os.path.dirname(__file__), "sample.png")
    rows = bytearray()
    for y in range(HEIGHT):
        rows.append(0)  # filter: none
        for x in range(WIDTH):
            (r, g, b), a = pixel(x, y)
            rows.extend((clamp8(r), clamp8(g), clamp8(b), clamp8(a * 255.0)))
    header = struct.pack(">IIBBBBB", WIDTH, HEIGHT, 8, 6, 0, 0, 0)  # 8-bit RGBA
    data = (b"\x89PNG\r\n\x1a\n" + png_chunk(b"IHDR", header) +
            png_chunk(b"IDAT", zlib.compress(bytes(rows), 9)) + png_chunk(b"IEND", b""))
    with open(out, "wb") as f:
        f.write(data)


if __name__ == "__main__":
    main()
