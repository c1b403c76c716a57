#!/usr/bin/env python3
"""Makes bloom.ai: a compass star that opens into a flower, draws it in to a rosette and becomes a star
again, a layer for each picture.

    orvinex outline examples/art/bloom.ai --cycle loop -o bloom.twp
"""
import math
import os

FOLDER = os.path.dirname(os.path.abspath(__file__))
PICTURES = 30
TIPS = 8
PER_TIP = 8  # curves
RADIUS = 92.0
CENTER = (320.0, 290.0)
INK = "0 0.62 0.9 0.02 k"
CORNER = math.radians(25.0)  # a sharper bend between two curves stays a corner


def ray_length(angle, a, b):
    """How far the ray at `angle` goes to the line from a to b (points as length, angle)."""
    ax, ay = a[0] * math.cos(a[1]), a[0] * math.sin(a[1])
    bx, by = b[0] * math.cos(b[1]), b[0] * math.sin(b[1])
    dx, dy = bx - ax, by - ay
    return (ax * dy - ay * dx) / (dy * math.cos(angle) - dx * math.sin(angle))


def star(phase):
    """By phase: a tip at each whole number, a long one and a short one in turn."""
    half = math.pi / TIPS
    nearest = round(phase)
    angle = abs(phase - nearest) * 2.0 * half
    return ray_length(angle, (1.0 if nearest % 2 == 0 else 0.62, 0.0), (0.4, half))


def flower(phase):
    return 0.97 - 0.3 * abs(math.sin(math.pi * phase)) ** 3


def rosette(phase):
    return 0.68 - 0.1 * math.cos(2.0 * math.pi * phase)


def outline(picture):
    turn = 3.0 * picture / PICTURES
    step = int(turn)
    t = turn - step
    t = t * t * (3.0 - 2.0 * t)
    shapes = [star, flower, rosette]
    a, b = shapes[step % 3], shapes[(step + 1) % 3]
    points = []
    for i in range(TIPS * PER_TIP):
        r = RADIUS * ((1.0 - t) * a(i / PER_TIP) + t * b(i / PER_TIP))
        angle = 2.0 * math.pi * i / (TIPS * PER_TIP) + math.pi / 2.0
        points.append((CENTER[0] + r * math.cos(angle), CENTER[1] + r * math.sin(angle)))
    return points


def tangents(points, i):
    """Towards a point from the one before, and away from it to the next: one, but at corners."""
    p, q, r = points[i - 1], points[i], points[(i + 1) % len(points)]
    before = (q[0] - p[0], q[1] - p[1])
    after = (r[0] - q[0], r[1] - q[1])
    bend = math.atan2(before[0] * after[1] - before[1] * after[0], before[0] * after[0] + before[1] * after[1])
    if abs(bend) > CORNER:
        return before, after
    mean = ((before[0] + after[0]) / 2.0, (before[1] + after[1]) / 2.0)
    return mean, mean


def curve_lines(points):
    yield "%.3f %.3f m" % points[0]
    for i, q in enumerate(points):
        j = (i + 1) % len(points)
        r = points[j]
        away, towards = tangents(points, i)[1], tangents(points, j)[0]
        yield "%.3f %.3f %.3f %.3f %.3f %.3f c" % (
            q[0] + away[0] / 3.0, q[1] + away[1] / 3.0, r[0] - towards[0] / 3.0, r[1] - towards[1] / 3.0, *r)
    yield "f"


lines = ["%!PS-Adobe-3.0 EPSF-3.0", "%%Title: Bloom", "%%BoundingBox: 228 198 412 382",
         "%AI5_FileFormat 3", "%%EndComments", "%%BeginProlog", "%%EndProlog", "%%BeginSetup", "%%EndSetup"]
for picture in range(PICTURES):
    lines += ["%AI5_BeginLayer", "1 1 1 1 0 0 0 79 128 255 Lb", "(Bloom %d) Ln" % (picture + 1), INK]
    lines += curve_lines(outline(picture))
    lines += ["LB", "%AI5_EndLayer--"]
lines += ["%%PageTrailer", "%%Trailer", "%%EOF"]
with open(os.path.join(FOLDER, "bloom.ai"), "w", newline="\n") as f:
    f.write("\n".join(lines) + "\n")
