"""The 107 sections, in the order of the library.

Each is a function of its own or of its family; `section` puts it on the list under its name. Depths
beyond 0 or 100 are rims that stand proud of a face; they stay within 13.
"""

import math
import random

from pen import Pen

SECTIONS = []


def section(name, pen):
    SECTIONS.append((name, pen.finish()))


# ---- Basic, beads

section("Basic, Flat Sides", Pen(0, 0.0049).to(0, 99.9961))
section("Basic, Highlight Edges", Pen().to(2, 2).mirror())


def bead(radius):
    return Pen().to(0, 50 - radius).bow(0, 50 + radius, radius, 2).to(0, 100)


section("Bead, Double Edge", Pen().bow(0, 30, 15, 2).mirror())
section("Bead, Medium", bead(24))
section("Bead, Small", bead(11))


# ---- Bevels

def bevel(width, depth):
    return Pen().to(width, depth).mirror()


def front_bevel(size):
    return Pen().to(size, size, size, 100, 0, 100)


for title, size in (("Small", 5), ("Medium", 11), ("Large", 22)):
    section(f"Bevel, {title} Front", front_bevel(size))
    section(f"Bevel, {title}", bevel(size, size))

# The face lies below a ridge, from which a broad bevel falls to the side.
section("Bevel, Power", Pen().to(8, -9, 13, -9, 36, 18).mirror())
section("Bevel, Power Grooves",
        Pen().to(8, -9, 13, -9).grooves(36, 18, 3, 4.5, 4.5).mirror())
section("Bevel, Flat", bevel(30, 12))
section("Bevel, Flatter", bevel(34, 4))
section("Bevel with In-Point", Pen().to(18, 18, 18, 30, 3, 50).mirror())
section("Bevel with Point", Pen().to(11, 11, 11, 30, 30, 50).mirror())
section("Bevel with Scoop", Pen().to(18, 14, 18, 22).crown(-15).mirror())


# ---- Bowls and bulbs

section("Bowl, Crescent",
        Pen().bow(44, 0, -20, 2).bezier(53, 44, 34, 100, 0, 100))
section("Bowl, L",
        Pen().to(0, 74, 20, 74).quarter(36, 58, "x").to(36, 3, 39, 0, 45, 0, 48, 3, 48, 92, 40, 100,
                                                        0, 100))
section("Bowl, T",
        Pen().to(0, 40, 20, 40).quarter(32, 28, "x").to(32, 9, 35, 6, 41, 6, 44, 9).mirror())

section("Bulb, Holiday",
        Pen().to(0, 37, 3, 37, 3, 40, 6, 40, 6, 37, 9, 37, 9, 40, 13, 40)
        .bezier(15, 31, 20, 26, 28, 27).bezier(38, 28.5, 44, 45, 53, 50).mirror())


def light_bulb():
    centre, radius = 33.0, 19.0
    pen = Pen().to(0, 43.5, 1.5, 43.5, 2.5, 40.5)
    for _ in range(4):
        pen.by(1.2, -2, 1.2, 2)
    pen.by(1, 0)
    shoulder = math.radians(-128)
    sx, sy = centre + radius * math.cos(shoulder), 50 + radius * math.sin(shoulder)
    pen.bezier(pen.at[0] + 5, pen.at[1], sx + 5 * math.sin(shoulder), sy - 5 * math.cos(shoulder),
               sx, sy)
    return pen.arc(centre, 50, radius, -128, 0, 2).mirror()


section("Bulb, Light", light_bulb())


# ---- Chiseled: a long slope from the front, the block behind it

section("Chiseled", Pen().to(42, 60, 42, 100, 0, 100))
section("Chiseled, Beveled", Pen().to(30, 42, 30, 58, 44, 72, 44, 88, 32, 100, 0, 100))
section("Chiseled, Double", Pen().to(26, 32, 15, 43, 44, 80, 44, 100, 0, 100))
for title, lip in (("Small", 5), ("Medium", 11), ("Large", 20)):
    section(f"Chiseled, {title} Lip",
            Pen().to(28, 56, 28, 68, 28 + lip, 68, 28 + lip, 100, 0, 100))
section("Chiseled, Rounded", Pen().bezier(16, 6, 42, 30, 42, 66).to(42, 100, 0, 100))
section("Chiseled, Steps",
        Pen().by(*(6, 0, 0, 10) * 7).to(42, 100, 0, 100))


# ---- Circles: rims and shallow half pipes

section("Circle, Rim", Pen().arc(11, 0, 11, -180, 60, 3).mirror())
section("Circle, Shallow", Pen().bow(0, 100, 20, 2))
section("Circle, Shallow Flanged",
        Pen().to(16, 0, 16, 9, 4, 9).bow(4, 91, 20, 2).to(16, 91, 16, 100, 0, 100))
section("Circle, Shallow Scooped", Pen().bow(20, 28, 6).bow(20, 72, -13, 2).bow(0, 100, 6))


# ---- Built of girders and blocks

section("Constructionist 1",
        Pen().to(26, 0, 26, 14, 7, 20, 7, 40, 18, 44).mirror())
section("Constructionist 2",
        Pen().quarter(14, 14, "y").to(14, 24, 30, 24, 30, 38, 20, 38, 20, 45).mirror())


def corrugated(periods):
    pen = Pen()
    step = 50.0 / periods
    for i in range(2 * periods):
        x, y = pen.at
        far = 0.0 if i % 2 else 9.0
        pen.bezier(x, y + 0.45 * step, far, y + 0.55 * step, far, y + step)
    return pen


section("Corrugated", corrugated(6))
section("Deco 1",
        Pen().quarter(16, 16, "x").to(22, 16, 22, 26, 29, 26, 29, 38, 37, 38).mirror())
section("Deco 2",
        Pen().to(0, 6, 8, 6, 8, 14).bow(8, 36, 9, 2).crown(14).mirror())


# ---- Fins: plates with gaps as deep as the outline

def fins(thickness, lengths):
    gap = (100.0 - thickness * len(lengths)) / (len(lengths) - 1)
    pen = Pen()
    for i, far in enumerate(lengths):
        y = i * (thickness + gap)
        pen.to(0, y, far, y, far, y + thickness, 0, y + thickness)
    del pen.curves[0][1][0]
    return pen


for title, thickness, count in (("Thin", 4, 10), ("Medium", 10, 5), ("Large", 20, 3)):
    section(f"Fins, {title}", fins(thickness, [30] * count))
    section(f"Fins, {title} Stepped",
            fins(thickness, [10 + 28 * i / (count - 1) for i in range(count)]))

section("Flare, Curved", Pen().bezier(0, 54, 10, 86, 42, 92).to(42, 100, 0, 100))
section("Flare, Straight", Pen().to(0, 44, 42, 92, 42, 100, 0, 100))


# ---- Grooves: cut into a board that stands out by its depth and a little more

section("Grooves, Beveled", Pen().to(16, 0).grooves(16, 100, 2, 8, 12, mouth=9).to(0, 100))
section("Grooves, Small", Pen().to(16, 0).grooves(16, 100, 2, 8, 8).to(0, 100))
section("Grooves, Large", Pen().to(16, 0).grooves(16, 100, 2, 16, 12).to(0, 100))
section("Grooves, 3 Inlaid",
        Pen().to(18, 0, 18, 13, 11, 13).grooves(11, 87, 3, 9, 8).to(18, 87, 18, 100, 0, 100))


# ---- Inset faces

section("Halo",
        Pen().bezier(0, 20, 14, 20, 14, -4).bow(23, -4, 4.5).mirror())
# A whole heart leans on the outline, its lobes proud of the face; clipped, it has lost the tip and
# the outer flank.
section("Heart",
        Pen().bezier(0, -14, 22, -18, 25, 3).bezier(28, -18, 50, -14, 50, 4)
        .bezier(50, 26, 33, 42, 25, 66).bezier(18, 46, 8, 38, 0, 26).to(0, 100))
section("Heart, Clipped",
        Pen().bezier(0, -14, 22, -18, 25, 3).bezier(26, -7, 30, -12, 36, -12)
        .bezier(39, -12, 42, -10.5, 44, -8).to(44, 21, 33, 46, 17, 46, 0, 25, 0, 100))
section("Outline", Pen().to(0, -7, 10, -7).mirror())
section("Outline, Box", Pen().to(0, -8, 20, -8, 20, 14, 6, 14).mirror())
section("Outline, Pressed Box",
        Pen().to(0, -8, 5, -8, 8, -4, 14, -4, 17, -8, 22, -8, 22, -4, 18, 0, 18, 8, 22, 12, 22, 16,
                 6, 16).mirror())
section("Outline, Rounded Box",
        Pen().quarter(7, -8, "y").to(14, -8).quarter(20, -2, "x").to(20, 8)
        .quarter(14, 14, "y").to(6, 14).mirror())


# ---- Pipes, pleats, points

def pipe(radius, neck, stem):
    """A pipe on a stem `neck` wide and `stem` long."""
    half = math.asin(neck / 2 / radius)
    centre = stem + radius * math.cos(half)
    end = 180 - math.degrees(half)
    pen = Pen().to(0, 50 - neck / 2, stem, 50 - neck / 2)
    return pen.arc(centre, 50, radius, -end, 0, 2).mirror()


section("Pipe, Full",
        Pen().bezier(0, 8, 2, 15, 5, 14).arc(17, 50, math.hypot(12, 36),
                                             math.degrees(math.atan2(-36, -12)), 0, 2).mirror())
section("Piping, Small", pipe(11, 10, 4))
section("Piping, Large", pipe(21, 16, 4))


def pleats(count):
    """Knife pleats, flat enough at the back that the folds show from the front."""
    pitch = 100.0 / count
    return Pen().by(*(0.34 * pitch, 0.25 * pitch, -0.34 * pitch, 0.75 * pitch) * count)


for count in (2, 3, 4, 10):
    section(f"Pleats, {count}", pleats(count))

section("Point, Small", Pen().to(0, 38, 12, 50).mirror())
section("Point, Medium", Pen().to(0, 26, 24, 50).mirror())
section("Point, Wide", Pen().to(20, 50).mirror())
section("Point, Full", Pen().to(50, 50).mirror())


# ---- Rounds

def round_edge(radius):
    return Pen().quarter(radius, radius, "x")


section("Round & Grooved",
        Pen().quarter(22, 28, "x").held(22, 39, last=0).to(12, 43).mirror())
section("Round Edges, Small", round_edge(8).to(8, 9.5).mirror())
section("Round Edges, Large", round_edge(24).to(24, 25.5).mirror())
section("Round Edges + 3 Grooves",
        round_edge(15).to(15, 28).by(-8, 0, 0, 8, 8, 0, 0, 10, -8, 0).mirror())
section("Round, Bubble Rims",
        Pen().arc(10, 2, math.hypot(10, 2), math.degrees(math.atan2(-2, -10)), 105, 3)
        .crown(20).mirror())
section("Round, Bumper",
        round_edge(9).held(9, 27, last=0).quarter(24, 50, "x").mirror())
section("Round, Butterfly Rims",
        Pen().bezier(8, 3, 20, -2, 30, -11).bezier(34, 4, 26, 14, 10, 18).crown(13).mirror())
section("Round, Double", Pen().bow(0, 50, 22, 2).mirror())
section("Round, Half", Pen().to(0, 11, 6, 11).quarter(36, 50, "x").mirror())
section("Round, Mushroom Cap",
        Pen().bezier(1, -9, 12, -11, 20, -10).bezier(34, -8, 44, 6, 42, 22)
        .bezier(41, 28, 33, 27, 30, 23).bezier(24, 15, 10, 22, 9, 36).bezier(9, 66, 7, 86, 0, 100))
section("Round, Quarter", Pen().quarter(36, 44, "x").to(42, 44, 42, 100, 0, 100))


# ---- Scallops and scoops

section("Scallops, 2 Point", Pen().bow(24, 27, -6).bow(24, 73, -14).bow(0, 100, -6))
section("Scallops, 3 Point",
        Pen().bow(22, 18, -4).bow(22, 50, -11).bow(22, 82, -11).bow(0, 100, -4))
section("Scoop, Full", Pen().to(30, 0, 30, 5).bow(30, 95, -27, 2).to(30, 100, 0, 100))
section("Scoop, Half", Pen().quarter(36, 44, "y").to(42, 44, 42, 100, 0, 100))


# ---- Half pipes

def half_pipe(grooves, width, depth):
    """A half round with `grooves` grooves `width` degrees wide."""
    band = (180.0 - grooves * width) / (grooves + 1)
    pen = Pen()
    angle = -90.0
    pieces = 2 if band > 80 else 1
    for i in range(grooves + 1):
        pen.arc(0, 50, 50, angle, angle + band, pieces)
        angle += band + width
        if i == grooves:
            break
        for radius, a in ((50 - depth, angle - width), (50 - depth, angle)):
            a = math.radians(a)
            pen.to(radius * math.cos(a), 50 + radius * math.sin(a))
    pen.curves[-1][1][-1] = (0, 100)
    return pen


section("Semicircle", half_pipe(0, 0, 0))
section("Semicircle, 4 Stripe", half_pipe(3, 7, 6))
section("Semicircle, 6 Stripe", half_pipe(5, 6, 6))
section("Semicircle, Grooved", half_pipe(1, 32, 16))
section("Semicircle, Scooped",
        Pen().arc(0, 50, 50, -90, -34, 1).bow(50 * math.cos(math.radians(34)),
                                             50 + 50 * math.sin(math.radians(34)), -20, 2)
        .arc(0, 50, 50, 34, 90, 1))

section("Shrinkwrap",
        Pen().bezier(4, -1, 9, 2, 10, 8).bezier(10, 18, 2, 22, 2, 30)
        .bezier(2, 38, 9, 42, 9, 50).mirror())


# ---- Stars

def star(points, outer, inner):
    """Points and notches about the middle of the outline's edge: (angle, ...) of the points."""
    angles = []
    for a, b in zip(points, points[1:]):
        angles += [(a, outer), ((a + b) / 2, inner)]
    angles.append((points[-1], outer))
    pen = Pen()
    for a, r in angles:
        x, y = r * math.cos(math.radians(a)), 50 + r * math.sin(math.radians(a))
        if math.dist((x, y), pen.at) > 0.01 and x > 0.01:
            pen.to(x, y)
    return pen.to(0, 100)


section("Star, Overhang", Pen().to(9, -12, 16, 3, 33, -5, 29, 15, 45, 23, 34, 37, 49, 50).mirror())
section("Star, Overhanging", Pen().to(23, -9, 17, 20, 47, 29, 25, 50).mirror())
section("Star, Shallow", star([-90, -54, -18, 18, 54, 90], 50, 38))
section("Star, Sharp", star([-90, -45, 0, 45, 90], 50, 20))

section("Steps",
        Pen().to(0, -3, 5, -3, 5, -6, 10, -6, 10, -9, 17, -9, 17, -2, 23, -2, 23, 5, 29, 5, 29, 12)
        .mirror())


def thrashed(points):
    """Dents of all sizes: a coarse walk with fine scratches on it."""
    dice = random.Random(11)
    pen = Pen()
    step = 100.0 / (points + 1)
    dent = 6.0
    for i in range(points):
        if i % 5 == 0:
            dent = dice.uniform(3, 13)
        y = step * (i + 1 + dice.uniform(-0.42, 0.42))
        pen.to(dent + dice.uniform(-2.4, 2.4), y)
    return pen.to(0, 100)


section("Thrashed", thrashed(79))


def threads(count, depth):
    """A screw: chamfered at both ends, with flat crests and roots. Sharp ones vanish at a slant: then
    the flanks that look the same way hide all else."""
    pen = Pen().to(3, 3)
    pitch = 94.0 / count
    for _ in range(count):
        pen.by(depth, 0.28 * pitch, 0, 0.24 * pitch, -depth, 0.28 * pitch, 0, 0.2 * pitch)
    return pen.to(0, 100)


section("Threads", threads(10, 6))


# ---- Tiers, tongues, curves

section("Tiers, Beveled", Pen().by(*(6, 6, 0, 19, 4, 0) * 3).by(6, 6).to(36, 100, 0, 100))


def rounded_tiers(count):
    pen = Pen()
    pitch = 100.0 / count
    for i in range(count):
        x, y = pen.at
        pen.quarter(x + 8, y + 10, "x")
        pen.held(x + 8, y + pitch, last=0)
        if i + 1 < count:
            pen.by(3, 0)
    return pen.to(0, 100)


section("Tiers, Rounded", rounded_tiers(4))
section("Tongue, Beveled", Pen().to(6, 6, 6, 26, 26, 38).mirror())
section("Tongue, Small", Pen().to(0, 40, 18, 40).mirror())
section("Tongue, Large", Pen().to(0, 27, 26, 27).mirror())
section("VexCave",
        Pen().quarter(20, 24, "x").bezier(20, 52, 28, 78, 44, 84).to(44, 100, 0, 100))
section("VexCave, Pouting",
        Pen().quarter(24, 20, "x").bezier(24, 40, 6, 40, 8, 58).bezier(9, 68, 24, 68, 38, 72)
        .bezier(50, 76, 46, 100, 0, 100))
section("Wacko",
        Pen().to(5, -9, 11, 2).bezier(18, -14, 36, 0, 22, 18).to(12, 22, 30, 28)
        .bezier(44, 34, 38, 52, 16, 46).to(8, 62, 34, 68).bezier(24, 74, 20, 82, 34, 92)
        .bezier(30, 112, 12, 114, 0, 100))
section("Wavey",
        Pen().bezier(1, -9, 9, -12, 14, -6).bezier(18, 0, 6, 8, 6, 16).bezier(6, 24, 20, 26, 20, 33)
        .bezier(20, 41, 6, 42, 6, 50).mirror())
