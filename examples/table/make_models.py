#!/usr/bin/env python3
"""Makes the models of the table scene: a torus knot, a round plate, a ball and a card, as OBJ files.

Textures don't repeat, so coordinates that should run on go back and forth between 0 and 1.
"""
import math
import os

FOLDER = os.path.join(os.path.dirname(os.path.abspath(__file__)), "models")


def normalize(a):
    length = math.sqrt(sum(x * x for x in a))
    return [x / length for x in a]


def cross(a, b):
    return [a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]]


def dot(a, b):
    return sum(x * y for x, y in zip(a, b))


def there_and_back(step, steps):
    """0 to 1 in `steps` steps, then back to 0, and so on."""
    phase = step % (2 * steps)
    return (phase if phase <= steps else 2 * steps - phase) / steps


class Model:
    def __init__(self, group):
        self.group, self.v, self.vt, self.faces = group, [], [], []

    def write(self, name):
        with open(os.path.join(FOLDER, name), "w") as f:
            f.writelines("v %.4f %.4f %.4f\n" % tuple(p) for p in self.v)
            f.writelines("vt %.5f %.5f\n" % tuple(t) for t in self.vt)
            f.write("g %s\n" % self.group)
            f.writelines("f %s\n" % " ".join("%d/%d" % (a + 1, b + 1) for a, b in face) for face in self.faces)


def knot(along=240, around=24, tube=17.0):
    """A (2, 3) torus knot; frames carried along the curve, their twist spread evenly."""
    def curve(t):
        r = 70 + 30 * math.cos(3 * t)
        return [r * math.cos(2 * t), r * math.sin(2 * t), 33 * math.sin(3 * t)]

    points = [curve(2 * math.pi * i / along) for i in range(along)]
    tangents = [normalize([a - b for a, b in zip(points[(i + 1) % along], points[i - 1])]) for i in range(along)]
    normal, frames = [0.0, 0.0, 1.0], []
    for tangent in tangents:
        normal = normalize([n - dot(normal, tangent) * t for n, t in zip(normal, tangent)])
        frames.append((normal, cross(tangent, normal)))
    end = normalize([n - dot(normal, tangents[0]) * t for n, t in zip(normal, tangents[0])])
    twist = math.atan2(dot(end, frames[0][1]), dot(end, frames[0][0]))
    model = Model("Knot")
    for i in range(along):
        for j in range(around):
            angle = 2 * math.pi * j / around - twist * i / along
            c, s = tube * math.cos(angle), tube * math.sin(angle)
            model.v.append([p + n * c + b * s for p, n, b in zip(points[i], *frames[i])])
    for i in range(along + 1):
        for j in range(around + 1):
            model.vt.append((there_and_back(i, 20), there_and_back(j, 12)))
    for i in range(along):
        for j in range(around):
            corners = ((i, j), (i + 1, j), (i + 1, j + 1), (i, j + 1))
            model.faces.append([((a % along) * around + b % around, a * (around + 1) + b) for a, b in corners])
    model.write("knot.obj")


def plate(radius=190.0, height=12.0, rim=5.0, around=96):
    model = Model("Plate")
    rings = [(radius - rim, 0.0), (radius - 0.3 * rim, -0.3 * rim), (radius, -rim), (radius, -height)]
    model.v.append([0, 0, 0])
    model.vt.append((0.5, 0.5))
    for r, y in rings:
        for i in range(around):
            a = 2 * math.pi * i / around
            model.v.append([r * math.cos(a), y, r * math.sin(a)])
            model.vt.append((0.5 + 0.49 * r / radius * math.cos(a), 0.5 - 0.49 * r / radius * math.sin(a)))
    for i in range(around):
        j = (i + 1) % around
        model.faces.append([(k, k) for k in (0, 1 + j, 1 + i)])
        for ring in range(len(rings) - 1):
            a = 1 + ring * around
            model.faces.append([(k, k) for k in (a + i, a + j, a + around + j, a + around + i)])
    model.write("plate.obj")


def ball(radius=28.0, around=48, down=24):
    model = Model("Ball")
    for j in range(down + 1):
        for i in range(around + 1):
            a, p = 2 * math.pi * i / around, math.pi * j / down
            model.v.append([radius * math.sin(p) * math.cos(a), radius * math.cos(p), -radius * math.sin(p) * math.sin(a)])
            model.vt.append((i / around, 1 - j / down))
    for j in range(down):
        for i in range(around):
            # The seam and the poles share their points, so that shading runs over them.
            def point(i, j):
                return j * (around + 1) + (0 if j in (0, down) else i % around)
            corners = [(i, j), (i, j + 1), (i + 1, j + 1), (i + 1, j)]
            if j == 0:
                corners.pop()
            if j == down - 1:
                corners.pop(2)
            model.faces.append([(point(a, b), b * (around + 1) + a) for a, b in corners])
    model.write("ball.obj")


def card(side=110.0):
    model = Model("Card")
    model.v = [[-side / 2, -side / 2, 0], [side / 2, -side / 2, 0], [side / 2, side / 2, 0], [-side / 2, side / 2, 0]]
    model.vt = [(0, 1), (1, 1), (1, 0), (0, 0)]
    model.faces = [[(k, k) for k in range(4)]]
    model.write("card.obj")


os.makedirs(FOLDER, exist_ok=True)
knot()
plate()
ball()
card()
