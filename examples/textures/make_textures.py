#!/usr/bin/env python3
"""Makes the textures of this folder, from nothing but numbers: run it to get the same bytes again.

brushed-checker.tga  colour: squares of brushed steel and blue enamel, tiles on both axes
hammered.tga         bump: soft dents with a fine grain, tiles on both axes
studio.sgi           reflection: a dark studio with soft boxes, wraps around in s
emblem.tga           colour and alpha: a ring with three blades

Run-length packets are kept to 32 pixels, because the reader counts no further.
"""
import math
import random
import struct
from pathlib import Path

HERE = Path(__file__).resolve().parent


def clamp(value, low=0.0, high=1.0):
    return max(low, min(high, value))


def smoothstep(low, high, value):
    t = clamp((value - low) / (high - low))
    return t * t * (3.0 - 2.0 * t)


def mix(a, b, t):
    return tuple(x + (y - x) * t for x, y in zip(a, b))


def to_byte(value):
    return int(clamp(value) * 255.0 + 0.5)


# ---- writers; rows come bottom row first


def tga_packets(row):
    """The pixels of one row (bytes objects) as run-length packets of at most 32 pixels."""
    out = bytearray()
    at = 0
    while at < len(row):
        run = 1
        while run < 32 and at + run < len(row) and row[at + run] == row[at]:
            run += 1
        if run > 1:
            out += bytes([0x80 | (run - 1)]) + row[at]
            at += run
            continue
        end = at + 1
        while end < len(row) and end - at < 32 and (end + 1 >= len(row) or row[end] != row[end + 1]):
            end += 1
        out += bytes([end - at - 1]) + b"".join(row[at:end])
        at = end
    return bytes(out)


def write_tga(name, rows):
    """Rows of grey (1), RGB (3) or RGBA (4) floats in 0..1."""
    channels = len(rows[0][0])
    kind = 11 if channels == 1 else 10
    order = {1: (0,), 3: (2, 1, 0), 4: (2, 1, 0, 3)}[channels]
    header = struct.pack("<BBBHHBHHHHBB", 0, 0, kind, 0, 0, 0, 0, 0, len(rows[0]), len(rows),
                         8 * channels, 8 if channels == 4 else 0)
    body = b"".join(
        tga_packets([bytes(to_byte(pixel[c]) for c in order) for pixel in row]) for row in rows)
    (HERE / name).write_bytes(header + body)


def sgi_row(values):
    out = bytearray()
    at = 0
    while at < len(values):
        run = 1
        while run < 127 and at + run < len(values) and values[at + run] == values[at]:
            run += 1
        if run > 2:
            out += bytes([run, values[at]])
            at += run
            continue
        end = at + 1
        while end < len(values) and end - at < 127 and values[end:end + 3] != values[end:end + 1] * 3:
            end += 1
        out += bytes([0x80 | (end - at)]) + values[at:end]
        at = end
    return bytes(out) + b"\0"


def write_sgi(name, rows):
    """Rows of RGB floats in 0..1."""
    width, height, channels = len(rows[0]), len(rows), 3
    header = struct.pack(">HBBHHHHii4x80si404x", 474, 1, 1, 3, width, height, channels, 0, 255,
                         name.encode(), 0)
    coded = [sgi_row(bytes(to_byte(pixel[c]) for pixel in row))
             for c in range(channels) for row in rows]
    offset = len(header) + 8 * len(coded)
    offsets = []
    for row in coded:
        offsets.append(offset)
        offset += len(row)
    tables = struct.pack(f">{len(coded)}I", *offsets)
    tables += struct.pack(f">{len(coded)}I", *(len(row) for row in coded))
    (HERE / name).write_bytes(header + tables + b"".join(coded))


# ---- noise that tiles


def lattice_noise(size, cells, seed):
    """Value noise over size x size pixels with `cells` lattice cells a side."""
    rnd = random.Random(seed)
    lattice = [[rnd.random() for _ in range(cells)] for _ in range(cells)]
    steps = []
    for i in range(size):
        p = i * cells / size
        cell = int(p)
        f = p - cell
        steps.append((cell, (cell + 1) % cells, f * f * (3.0 - 2.0 * f)))
    rows = []
    for y0, y1, fy in steps:
        low, high = lattice[y0], lattice[y1]
        line = [a + (b - a) * fy for a, b in zip(low, high)]
        rows.append([line[x0] + (line[x1] - line[x0]) * fx for x0, x1, fx in steps])
    return rows


def streaks(size, radius, seed):
    """Rows of noise, each smoothed along x in a circle: the traces of a brush."""
    rnd = random.Random(seed)
    rows = []
    for _ in range(size):
        row = [rnd.random() - 0.5 for _ in range(size)]
        for r in (radius, radius // 3):
            total = sum(row[i] for i in range(-r, r + 1))
            smooth = []
            for x in range(size):
                smooth.append(total / math.sqrt(2 * r + 1))
                total += row[(x + r + 1) % size] - row[x - r]
            row = smooth
        rows.append(row)
    return rows


# ---- pictures


def brushed_checker(size=512, squares=4):
    along, across = streaks(size, 45, 1), streaks(size, 45, 2)
    cloud = lattice_noise(size, 8, 3)
    side = size // squares
    rows = []
    for y in range(size):
        row = []
        for x in range(size):
            steel = (x // side + y // side) % 2 == 0
            u, v = x % side + 0.5, y % side + 0.5
            edge = min(u, v, side - u, side - v)
            if steel:
                grain = across[x][y] * 0.045 + (cloud[y][x] - 0.5) * 0.10
                colour = tuple(c + grain for c in (0.66, 0.68, 0.71))
            else:
                grain = along[y][x] * 0.02 + (cloud[y][x] - 0.5) * 0.08
                colour = mix((0.03, 0.12, 0.30), (0.07, 0.27, 0.54), v / side)
                colour = tuple(c + grain for c in colour)
            # A dark joint, and a thin light chamfer inside it that catches the light from above.
            rim = smoothstep(6.5, 4.5, edge) * smoothstep(2.0, 3.5, edge)
            lit = 0.5 + 0.5 * ((v > side / 2) - (v < side / 2)) * (abs(v - side / 2) > abs(u - side / 2))
            colour = mix(colour, mix((0.20, 0.21, 0.23), (0.95, 0.96, 0.98), lit), 0.55 * rim)
            colour = mix((0.045, 0.05, 0.06), colour, smoothstep(1.0, 2.8, edge))
            row.append(colour)
        rows.append(row)
    return rows


def hammered(size=256, dents=320):
    rnd = random.Random(4)
    height = [[0.0] * size for _ in range(size)]
    for _ in range(dents):
        cx, cy = rnd.random() * size, rnd.random() * size
        radius = rnd.uniform(12.0, 26.0)
        depth = radius / 26.0
        reach = int(radius) + 1
        for dy in range(-reach, reach + 1):
            for dx in range(-reach, reach + 1):
                x, y = int(cx) + dx, int(cy) + dy
                d = math.hypot(x + 0.5 - cx, y + 0.5 - cy) / radius
                if d < 1.0:
                    line = height[y % size]
                    line[x % size] = min(line[x % size], -depth * (1.0 - d * d) ** 1.2)
    fine, finer = lattice_noise(size, 32, 5), lattice_noise(size, 128, 6)
    return [[(0.86 + 0.72 * height[y][x] + 0.07 * (fine[y][x] - 0.5) + 0.05 * (finer[y][x] - 0.5),)
             for x in range(size)] for y in range(size)]


def soft_box(s, t, centre_s, centre_t, half_s, half_t, soft):
    """1 inside a rectangle with rounded, faded edges, around the circle in s."""
    ds = abs((s - centre_s + 0.5) % 1.0 - 0.5) - half_s
    dt = abs(t - centre_t) - half_t
    outside = math.hypot(max(ds * 2.0, 0.0), max(dt, 0.0))  # a turn is twice as long as the arc in t
    return smoothstep(soft, 0.0, outside)


def studio(width=512, height=256):
    lights = [  # centre and half size in s and t, softness, colour, strength
        (0.36, 0.72, 0.065, 0.085, 0.035, (1.00, 0.97, 0.92), 1.05),  # key
        (0.66, 0.66, 0.030, 0.140, 0.030, (0.80, 0.90, 1.00), 0.85),  # strip
        (0.50, 0.93, 0.220, 0.022, 0.035, (0.95, 0.97, 1.00), 0.80),  # overhead
        (0.05, 0.62, 0.022, 0.150, 0.030, (0.62, 0.80, 1.00), 0.70),  # rim, behind
        (0.87, 0.58, 0.014, 0.110, 0.025, (1.00, 0.70, 0.42), 0.65),  # warm rim
    ]
    rows = []
    for y in range(height):
        t = (y + 0.5) / height
        row = []
        for x in range(width):
            s = (x + 0.5) / width
            if t < 0.5:  # floor: light near the horizon, dark below
                colour = mix((0.070, 0.074, 0.085), (0.360, 0.370, 0.400), (t / 0.5) ** 2.2)
            else:  # wall: a glow over the horizon that fades upwards
                colour = mix((0.440, 0.480, 0.560), (0.070, 0.085, 0.125), ((t - 0.5) / 0.5) ** 0.50)
            colour = mix(colour, (0.56, 0.59, 0.64), 0.7 * math.exp(-((t - 0.5) / 0.012) ** 2))
            side = 0.80 + 0.20 * math.cos(2.0 * math.pi * (s - 0.42))
            colour = tuple(c * side for c in colour)
            for cs, ct, hs, ht, soft, tint, strength in lights:
                box = soft_box(s, t, cs, ct, hs, ht, soft)
                halo = 0.10 * soft_box(s, t, cs, ct, hs, ht, 0.22) ** 2
                mirror = 0.13 * soft_box(s, 1.0 - t, cs, ct, hs, ht, 0.09) * smoothstep(0.0, 0.4, t)
                amount = strength * max(box, 0.0) + halo + (mirror if t < 0.5 else 0.0)
                colour = tuple(c + a * amount for c, a in zip(colour, tint))
            row.append(colour)
        rows.append(row)
    return rows


def emblem(size=512):
    """Coverage from distances, one pixel of softness."""
    pixel = 2.0 / size
    blue, light = (0.04, 0.20, 0.48), (0.16, 0.55, 0.86)
    orange, gold = (0.93, 0.36, 0.06), (1.00, 0.76, 0.22)

    def cover(distance):
        return clamp(0.5 - distance / pixel)

    def blade_distance(x, y):
        """A crescent: inside one circle and outside another."""
        inside = math.hypot(x - 0.20, y - 0.16) - 0.42
        outside = math.hypot(x - 0.40, y - 0.02) - 0.40
        return max(inside, -outside)

    turns = [(math.cos(a), math.sin(a)) for a in (math.pi / 2 + k * 2 * math.pi / 3 for k in range(3))]
    rows = []
    for j in range(size):
        y = (j + 0.5) * pixel - 1.0
        row = []
        for i in range(size):
            x = (i + 0.5) * pixel - 1.0
            r = math.hypot(x, y)
            ring = cover(abs(r - 0.84) - 0.085)
            hub = cover(r - 0.13)
            blade = max(cover(blade_distance(c * x + s * y, c * y - s * x)) for c, s in turns)
            blade = max(blade, cover(r - 0.285))
            shade = clamp(0.5 + 0.5 * (x * 0.4 + y * 0.9))
            # The colour goes on where alpha is 0, so that filtering drags no other edge in.
            colour = mix(blue, light, shade)
            if r < 0.745:
                colour = mix(orange, gold, clamp(r / 0.72) * 0.7 + 0.3 * shade)
            colour = mix(colour, (0.97, 0.97, 0.98), hub)
            row.append(colour + (max(ring, blade, hub),))
        rows.append(row)
    return rows


if __name__ == "__main__":
    write_tga("brushed-checker.tga", brushed_checker())
    write_tga("hammered.tga", hammered())
    write_sgi("studio.sgi", studio())
    write_tga("emblem.tga", emblem())
