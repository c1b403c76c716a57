"""A pen that draws one section from the front face to the back one.

x is how far the section stands out of the outline, y the depth: the front face ends at (0, 0), the
back one at (0, 100). Round parts become Beziers, everything else polylines.

Traps. A polyline shades hard at every inner point, a joint of a Bezier shades smooth where both
sides meet within 20 degrees. Where a long flat goes on from a round, a second point close behind the
joint (`held`) keeps the round's shading out of the flat. Points within 0.5 of a face's end are moved
onto it when the library is loaded, so nothing else may lie there. The sweep repairs only rings that
go outward, so x stays at 0 or above.
"""

import math


def _rounded(p):
    return (round(p[0], 6), round(p[1], 6))


class Pen:
    """Each curve is ["Linear" or "Bezier", list of points]; the next begins where the last ends."""

    def __init__(self, x=0.0, y=0.0):
        self.curves = []
        self.at = (x, y)

    # ---- straight

    def to(self, *coordinates):
        """Lines through x, y, x, y, ..."""
        for x, y in zip(coordinates[::2], coordinates[1::2]):
            if not self.curves or self.curves[-1][0] != "Linear":
                self.curves.append(["Linear", [self.at]])
            self.curves[-1][1].append((x, y))
            self.at = (x, y)
        return self

    def by(self, *steps):
        """Lines by steps."""
        for dx, dy in zip(steps[::2], steps[1::2]):
            self.to(self.at[0] + dx, self.at[1] + dy)
        return self

    def held(self, x, y, first=1.5, last=1.5):
        """A line whose shading is kept flat by a point near its ends; 0 leaves an end alone."""
        x0, y0 = self.at
        far = math.hypot(x - x0, y - y0)
        ux, uy = (x - x0) / far, (y - y0) / far
        if first:
            self.to(x0 + ux * first, y0 + uy * first)
        if last:
            self.to(x - ux * last, y - uy * last)
        return self.to(x, y)

    def grooves(self, x, y, count, width, depth, mouth=0.0, margin=None):
        """A line to (x, y) with `count` equal grooves cut into it, evenly spread; `mouth` widens
        them on either side at the surface, `margin` is what stays plain at the ends."""
        x0, y0 = self.at
        far = math.hypot(x - x0, y - y0)
        ux, uy = (x - x0) / far, (y - y0) / far
        opening = width + 2 * mouth
        if margin is None:
            margin = (far - count * opening) / (count + 1)
        pitch = (far - 2 * margin - opening) / (count - 1) if count > 1 else 0.0

        def point(along, down):
            return (x0 + ux * along - uy * down, y0 + uy * along + ux * down)

        for i in range(count):
            s = margin + i * pitch
            for p in (point(s, 0), point(s + mouth, depth), point(s + mouth + width, depth),
                      point(s + opening, 0)):
                self.to(*p)
        return self.to(x, y)

    # ---- round

    def bezier(self, *coordinates):
        """Control point, control point, end."""
        pairs = list(zip(coordinates[::2], coordinates[1::2]))
        self.curves.append(["Bezier", [self.at] + pairs])
        self.at = pairs[2]
        return self

    def quarter(self, x, y, leave):
        """A quarter of an ellipse, leaving along "x" or "y"."""
        k = 0.5522847498
        x0, y0 = self.at
        dx, dy = x - x0, y - y0
        if leave == "x":
            return self.bezier(x0 + k * dx, y0, x, y - k * dy, x, y)
        return self.bezier(x0, y0 + k * dy, x - k * dx, y, x, y)

    def arc(self, cx, cy, radius, begin, end, pieces):
        """An arc about (cx, cy) in degrees: -90 points to the front, 0 outward, 90 to the back. A
        line leads to its beginning where the pen isn't there."""
        def point(a):
            return (cx + radius * math.cos(a), cy + radius * math.sin(a))

        a, b = math.radians(begin), math.radians(end)
        start = point(a)
        if math.dist(start, self.at) > 1e-6:
            self.to(*start)
        step = (b - a) / pieces
        k = 4.0 / 3.0 * math.tan(step / 4.0) * radius
        for i in range(pieces):
            a0, a1 = a + i * step, a + (i + 1) * step
            p0, p3 = point(a0), point(a1)
            self.bezier(p0[0] - k * math.sin(a0), p0[1] + k * math.cos(a0),
                        p3[0] + k * math.sin(a1), p3[1] - k * math.cos(a1), *p3)
        return self

    def bow(self, x, y, rise, pieces=1):
        """A circular arc to (x, y) that stands out by `rise`; a negative one hollows."""
        x0, y0 = self.at
        chord = math.hypot(x - x0, y - y0)
        ux, uy = (x - x0) / chord, (y - y0) / chord
        h = abs(rise)
        radius = (chord * chord / 4 + h * h) / (2 * h)
        side = 1.0 if rise > 0 else -1.0
        ox, oy = uy * side, -ux * side  # from the chord towards the arc
        cx = (x0 + x) / 2 - ox * (radius - h)
        cy = (y0 + y) / 2 - oy * (radius - h)
        half = 2 * math.atan2(2 * h, chord)
        middle = math.atan2(oy, ox)
        begin = math.degrees(middle - side * half)
        end = math.degrees(middle + side * half)
        self.arc(cx, cy, radius, begin, end, pieces)
        self.curves[-1][1][-1] = (x, y)  # without the rounding of the angles
        self.at = (x, y)
        return self

    def crown(self, rise):
        """The front half of a bow across the middle; `mirror` makes it whole."""
        x, y = self.at
        half = Pen(x, y).bow(x, 100.0 - y, rise, 2)
        self.curves.append(half.curves[0])
        self.curves[-1][1][-1] = self.at = (x + rise, 50.0)
        return self

    # ---- whole sections

    def mirror(self):
        """The back half as the mirror image of what is drawn so far."""
        back = []
        for kind, points in reversed(self.curves):
            back.append([kind, [(x, 100.0 - y) for x, y in reversed(points)]])
        if abs(self.at[1] - 50.0) > 1e-9:
            self.to(*back[0][1][0])
        if back[0][0] == "Linear" and self.curves[-1][0] == "Linear":
            self.curves[-1][1] += back.pop(0)[1][1:]
        self.curves += back
        self.at = self.curves[-1][1][-1]
        return self

    def finish(self):
        """The curves with six decimals, joints exact."""
        done = [[kind, [_rounded(p) for p in points]] for kind, points in self.curves]
        for before, after in zip(done, done[1:]):
            after[1][0] = before[1][-1]
        return done
