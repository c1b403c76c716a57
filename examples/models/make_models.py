#!/usr/bin/env python3
"""Makes the example models: knot.obj and gem.obj. Run it from anywhere; needs nothing but Python.

knot.obj  a trefoil of a round tube with a groove, smooth, textured (vt), 11,520 quads: group "knot"
gem.obj   a brilliant cut stone over a turned stand: groups "gem" (flat facets), "claws" and "stand",
          11,497 faces

One unit is a pixel of the picture; both stand around the origin, y up, some 200 units high.
"""
import math
from pathlib import Path


def add(a, b):
    return tuple(x + y for x, y in zip(a, b))


def sub(a, b):
    return tuple(x - y for x, y in zip(a, b))


def mul(a, s):
    return tuple(x * s for x in a)


def dot(a, b):
    return sum(x * y for x, y in zip(a, b))


def cross(a, b):
    return (a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0])


def unit(a):
    length = math.sqrt(dot(a, a))
    return mul(a, 1 / length) if length else a


class Model:
    """Lines of an OBJ file; points that are there already are used again."""

    def __init__(self, title):
        self.points = {"v": {}, "vt": {}, "vn": {}}
        self.groups = []
        self.title = title

    def index(self, kind, values):
        text = " ".join(f"{v + 0.0:.5f}".replace("-0.00000", "0.00000") for v in values)
        return self.points[kind].setdefault(text, len(self.points[kind]) + 1)

    def group(self, name):
        self.groups.append((name, []))

    def face(self, corners):
        """corners: (position, texture or None, normal)"""
        words = []
        for v, t, n in corners:
            texture = self.index("vt", t) if t is not None else ""
            words.append(f"{self.index('v', v)}/{texture}/{self.index('vn', n)}")
        self.groups[-1][1].append("f " + " ".join(words))

    def write(self, path):
        lines = [f"# {self.title}"]
        for kind, texts in self.points.items():
            lines += [f"{kind} {text}" for text in texts]
        for name, faces in self.groups:
            lines += [f"g {name}"] + faces
        path.write_text("\n".join(lines) + "\n")
        print(f"{path.name}: {sum(len(f) for _, f in self.groups)} faces")


def grid(model, rows, columns, surface, flip=False):
    """Quads over surface(row, column) -> (position, normal), textured from 0 to 1 both ways."""
    cells = [[surface(r, c) for c in range(columns + 1)] for r in range(rows + 1)]
    for r in range(rows):
        for c in range(columns):
            corners = []
            for dr, dc in ((0, 0), (0, 1), (1, 1), (1, 0)):
                position, normal = cells[r + dr][c + dc]
                corners.append((position, ((c + dc) / columns, (r + dr) / rows), normal))
            if flip:
                corners.reverse()
            distinct = []
            for corner in corners:
                if corner[0] not in [d[0] for d in distinct]:
                    distinct.append(corner)
            if len(distinct) >= 3:
                model.face(distinct)


# ---- knot


def trefoil(t):
    return mul((math.sin(t) + 2 * math.sin(2 * t), math.cos(t) - 2 * math.cos(2 * t),
                -1.15 * math.sin(3 * t)), 32)


def knot():
    along, round_ = 320, 36
    model = Model("a trefoil knot with a groove that winds along it")
    model.group("knot")
    step = 2 * math.pi / along
    centres = [trefoil(i * step) for i in range(along)]
    tangents = [unit(sub(trefoil((i + 0.01) * step), trefoil((i - 0.01) * step)))
                for i in range(along)]

    # A frame carried along the curve without twist, then turned evenly so that it closes.
    up = unit(cross(tangents[0], (0, 0, 1)))
    frames = []
    for tangent in tangents + [tangents[0]]:
        up = unit(sub(up, mul(tangent, dot(up, tangent))))
        frames.append(up)
    side = cross(tangents[0], frames[0])
    twist = math.atan2(dot(frames[-1], side), dot(frames[-1], frames[0]))

    def radius(i, angle):
        return 19 - 2.4 * max(0.0, math.cos(angle * 3 + 2 * math.pi * 4 * i / along)) ** 6

    def position(i, j):
        k = i % along
        angle = 2 * math.pi * (j % round_) / round_
        turn = angle - twist * k / along
        side_ = cross(tangents[k], frames[k])
        out = add(mul(frames[k], math.cos(turn)), mul(side_, math.sin(turn)))
        return add(centres[k], mul(out, radius(k, angle)))

    points = [[position(i, j) for j in range(round_)] for i in range(along)]

    def surface(i, j):
        i, j = i % along, j % round_
        du = sub(points[(i + 1) % along][j], points[i - 1][j])
        dv = sub(points[i][(j + 1) % round_], points[i][j - 1])
        return points[i][j], unit(cross(dv, du))

    grid(model, along, round_, surface)
    return model


# ---- gem


def flat(model, corners):
    normal = (0, 0, 0)
    for i in range(2, len(corners)):
        normal = add(normal, cross(sub(corners[i - 1], corners[0]), sub(corners[i], corners[0])))
    normal = unit(normal)
    model.face([(p, (0.5 + p[0] / 120, 0.5 + p[2] / 120), normal) for p in corners])


def brilliant(model, base):
    """A round brilliant: table, crown, girdle and pavilion with eight-fold symmetry."""
    def ring(radius, height, offset, count):
        return [(radius * math.cos(2 * math.pi * (i + offset) / count), base + height,
                 -radius * math.sin(2 * math.pi * (i + offset) / count)) for i in range(count)]

    girdle_low = ring(56, 46, 0, 16)
    girdle_high = ring(56, 49, 0, 16)
    table = ring(32, 67, 0.5, 8)
    crown = ring(46, 58.7, 0, 8)
    pavilion = ring(15, 12, 0, 8)
    culet = (0, base, 0)
    flat(model, table)
    for i in range(16):
        flat(model, [girdle_low[i], girdle_low[(i + 1) % 16], girdle_high[(i + 1) % 16],
                     girdle_high[i]])
    for i in range(8):
        after = (i + 1) % 8
        corner, middle, following = girdle_high[2 * i], girdle_high[2 * i + 1], \
            girdle_high[(2 * i + 2) % 16]
        flat(model, [crown[i], crown[after], table[i]])                    # star
        flat(model, [crown[i], table[i], table[i - 1]])                     # kite, upper half
        flat(model, [corner, middle, crown[i]])                            # upper halves
        flat(model, [middle, following, crown[after]])
        flat(model, [middle, crown[after], crown[i]])
        low = girdle_low[2 * i], girdle_low[2 * i + 1], girdle_low[(2 * i + 2) % 16]
        flat(model, [low[1], low[0], pavilion[i]])                         # lower halves
        flat(model, [low[2], low[1], pavilion[after]])
        flat(model, [low[1], pavilion[i], pavilion[after]])
        flat(model, [pavilion[after], pavilion[i], culet])                 # mains


def smooth(points, subdivisions):
    """A Catmull-Rom curve through the points."""
    out = []
    for i in range(len(points) - 1):
        p0, p1, p2, p3 = (points[max(i - 1, 0)], points[i], points[i + 1],
                          points[min(i + 2, len(points) - 1)])
        for k in range(subdivisions):
            t = k / subdivisions
            out.append(tuple(
                0.5 * (2 * b + (c - a) * t + (2 * a - 5 * b + 4 * c - d) * t * t +
                       (3 * b - a - 3 * c + d) * t ** 3)
                for a, b, c, d in zip(p0, p1, p2, p3)))
    return out + [points[-1]]


def turned(model, profile, columns):
    """A body of revolution round the y axis from a profile of (radius, height), bottom to top."""
    def surface(r, c):
        radius, height = profile[r]
        below, above = profile[max(r - 1, 0)], profile[min(r + 1, len(profile) - 1)]
        slope = unit((above[1] - below[1], -(above[0] - below[0]), 0))
        a = 2 * math.pi * (c % columns) / columns
        return ((radius * math.cos(a), height, -radius * math.sin(a)),
                (slope[0] * math.cos(a), slope[1], -slope[0] * math.sin(a)))

    grid(model, len(profile) - 1, columns, surface)


def claw(model, angle, base):
    """A bent rod from the stand's cup to the stone's girdle."""
    path = smooth([(9, base - 14), (24, base - 2), (45, base + 24), (58.5, base + 42),
                   (56, base + 53), (50, base + 57)], 4)
    sides = 10

    def surface(r, c):
        before, after = path[max(r - 1, 0)], path[min(r + 1, len(path) - 1)]
        along = unit((after[0] - before[0], after[1] - before[1], 0))
        out = (along[1], -along[0], 0)
        a = 2 * math.pi * (c % sides) / sides
        thick = 2.8 * (1 - 0.45 * r / (len(path) - 1)) if r < len(path) - 1 else 0.0
        normal = add(mul(out, math.cos(a)), mul((0, 0, 1), math.sin(a)))
        p = add((path[r][0], path[r][1], 0), mul(normal, thick))
        if r == len(path) - 1:
            normal = along
        turn = lambda q: (q[0] * math.cos(angle) + q[2] * math.sin(angle), q[1],
                          -q[0] * math.sin(angle) + q[2] * math.cos(angle))
        return turn(p), turn(normal)

    grid(model, len(path) - 1, sides, surface, flip=True)


def gem():
    model = Model("a brilliant in four claws on a turned stand")
    base = 22
    model.group("gem")
    brilliant(model, base)
    model.group("claws")
    for i in range(4):
        claw(model, math.pi / 4 + i * math.pi / 2, base)
    model.group("stand")
    outline = [(0, -100), (62, -100), (66, -97), (66, -92), (58, -88), (46, -84), (30, -76),
               (17, -64), (11, -50), (9, -36), (13, -26), (19, -20), (13, -14), (8.5, -6), (12, 2),
               (19, 8), (14, 11), (0, 9)]
    turned(model, smooth(outline, 6), 104)
    return model


if __name__ == "__main__":
    here = Path(__file__).resolve().parent
    knot().write(here / "knot.obj")
    gem().write(here / "gem.obj")
