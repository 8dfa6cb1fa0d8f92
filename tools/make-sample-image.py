#!/usr/bin/python3
"""Draws samples/hardness-test.png, the micrograph under the sample scene: polished grains of a
steel with dark boundaries and a Vickers indentation whose corners are the sample's
(300,120) (420,240) (300,360) (178,240). Pure Python: python3 tools/make-sample-image.py OUT.png"""
import math
import random
import struct
import sys
import zlib

W, H = 640, 480
random.seed(17)

# Grain centres on a jittered grid, each with its own grey and a gentle slope of shade.
seeds = []
for gy in range(-1, 9):
    for gx in range(-1, 12):
        x = gx * 60 + random.uniform(5, 55)
        y = gy * 60 + random.uniform(5, 55)
        seeds.append((x, y, random.uniform(150, 205), random.uniform(-0.08, 0.08), random.uniform(-0.08, 0.08)))

corners = [(300, 120), (420, 240), (300, 360), (178, 240)]
cx = sum(p[0] for p in corners) / 4
cy = sum(p[1] for p in corners) / 4


def in_indent(x, y):
    # The diamond |dx|/a + |dy|/b <= 1, with its depth 0 at the edge and 1 at the centre.
    a = (corners[1][0] - corners[3][0]) / 2
    b = (corners[2][1] - corners[0][1]) / 2
    d = abs(x - cx) / a + abs(y - cy) / b
    return d


rows = []
for y in range(H):
    row = bytearray()
    near = [s for s in seeds if abs(s[1] - y) < 130]
    for x in range(W):
        best = second = 1e18
        grey = 0
        for sx, sy, g, ax, ay in near:
            d = (x - sx) ** 2 + (y - sy) ** 2
            if d < best:
                second, best = best, d
                grey = g + ax * (x - sx) + ay * (y - sy)
            elif d < second:
                second = d
        # Boundaries: where the two nearest centres are almost as near.
        gap = math.sqrt(second) - math.sqrt(best)
        if gap < 2.2:
            grey = 70 + gap * 30
        d = in_indent(x, y)
        if d <= 1:
            # Four faces lit differently, darker towards the tip.
            face = (x >= cx) * 2 + (y >= cy)
            grey = (55, 75, 90, 40)[face] + 40 * d
        elif d <= 1.04:
            grey = 230
        row.append(max(0, min(255, int(grey))))
    rows.append(bytes(row))


def chunk(kind, data):
    return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data) & 0xFFFFFFFF)


raw = b"".join(b"\x00" + r for r in rows)
png = b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", W, H, 8, 0, 0, 0, 0))
png += chunk(b"IDAT", zlib.compress(raw, 9)) + chunk(b"IEND", b"")
with open(sys.argv[1], "wb") as f:
    f.write(png)
