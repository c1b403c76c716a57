#!/usr/bin/env python3
"""Writes the texts of the edge library from the sections drawn in sections.py.

    author.py            writes the NN-*.txt files of the folder above
    author.py --check    writes nothing; prints the totals and complains of what can't be swept well
    author.py --svg FILE draws all sections on one sheet

The build doesn't run this.
"""

import math
import pathlib
import sys

sys.dont_write_bytecode = True

from sections import SECTIONS  # noqa: E402

FILES = (("01-basic-bead", 5), ("02-bevel", 13), ("03-bowl-bulb", 5), ("04-chiseled", 8),
         ("05-circle-to-deco", 9), ("06-fins-flare", 8), ("07-grooves-to-heart", 7),
         ("08-outline-to-point", 15), ("09-round", 11), ("10-scallops-to-shrinkwrap", 10),
         ("11-star-to-threads", 7), ("12-tiers-to-wavey", 9))

TOTALS = {"edges": 107, "curves": 310, "Bezier": 189, "Linear": 121, "points": 1731, "lines": 4661}


def text(name, curves):
    lines = ["begin ProfileI", f' name "{name}"', ' filename ",0,0"', ' layer ""',
             " begin InputProfile2", "  begin CompositeCurve2", "   closed 0"]
    for i, (kind, points) in enumerate(curves):
        lines += ["   begin Curve2", f"    type {kind}"]
        lines += [f"    p {x + 0.0:.6f} {y + 0.0:.6f}" for x, y in points]
        lines += [f"    attachedHead {int(i > 0)}", f"    attachedTail {int(i + 1 < len(curves))}",
                  "    closed 0", "   end Curve2"]
    return lines + ["  end CompositeCurve2", " end InputProfile2", "end ProfileI"]


def totals():
    curves = [curve for _, edge in SECTIONS for curve in edge]
    return {"edges": len(SECTIONS),
            "curves": len(curves),
            "Bezier": sum(kind == "Bezier" for kind, _ in curves),
            "Linear": sum(kind == "Linear" for kind, _ in curves),
            "points": sum(len(points) for _, points in curves),
            "lines": sum(len(text(name, edge)) for name, edge in SECTIONS)}


def flat(curves, steps=16):
    """The section as one polyline."""
    out = [curves[0][1][0]]
    for kind, p in curves:
        if kind == "Linear":
            out += p[1:]
            continue
        for i in range(1, steps + 1):
            t = i / steps
            weights = ((1 - t) ** 3, 3 * t * (1 - t) ** 2, 3 * t * t * (1 - t), t ** 3)
            out.append(tuple(sum(w * q[axis] for w, q in zip(weights, p)) for axis in (0, 1)))
    return out


def crosses(a, b, c, d):
    def side(p, q, r):
        return (q[0] - p[0]) * (r[1] - p[1]) - (q[1] - p[1]) * (r[0] - p[0])

    for axis in (0, 1):
        if (max(a[axis], b[axis]) < min(c[axis], d[axis]) or
                max(c[axis], d[axis]) < min(a[axis], b[axis])):
            return False
    return side(a, b, c) * side(a, b, d) <= 0 and side(c, d, a) * side(c, d, b) <= 0


def apart(a, b):
    """How far one polyline strays from the other, whichever strays more."""
    def stray(p, q):
        return max(min(math.dist(u, v) for v in q) for u in p)

    def dense(p):
        out = []
        for u, v in zip(p, p[1:]):
            n = max(1, int(math.dist(u, v) / 1.5))
            out += [(u[0] + (v[0] - u[0]) * k / n, u[1] + (v[1] - u[1]) * k / n) for k in range(n)]
        return out + [p[-1]]

    a, b = dense(a), dense(b)
    return max(stray(a, b), stray(b, a))


def complaints():
    found = []
    lines = {name: flat(curves) for name, curves in SECTIONS}
    for name, curves in SECTIONS:
        def complain(what):
            found.append(f"{name}: {what}")

        if name != "Basic, Flat Sides" and (curves[0][1][0], curves[-1][1][-1]) != ((0, 0), (0, 100)):
            complain("doesn't run from face to face")
        for before, after in zip(curves, curves[1:]):
            if before[1][-1] != after[1][0]:
                complain("isn't one chain")
        for kind, points in curves:
            if kind == "Bezier" and len(points) != 4:
                complain("has a Bezier of other than four points")
            if any(math.dist(p, q) < 0.3 for p, q in zip(points, points[1:])):
                complain("has a step too short to shade")
            for p in points:
                near = abs(p[0]) <= 0.5 and (abs(p[1]) <= 0.5 or 99.5 <= p[1] <= 100.5)
                if near and p not in ((0, 0), (0, 100)) and name != "Basic, Flat Sides":
                    complain(f"has {p} where points are moved to the face's end")
        line = lines[name]
        if min(x for x, _ in line) < 0:
            complain("goes into the outline")
        if min(y for _, y in line) < -13 or max(y for _, y in line) > 113:
            complain("leaves the square")
        segments = list(zip(line, line[1:]))
        touching = [a for i, (a, b) in enumerate(segments)
                    for c, d in segments[i + 2:] if crosses(a, b, c, d)]
        if touching:
            complain(f"touches itself near {touching[0]}")
    names = list(lines)
    for i, name in enumerate(names):
        for other in names[i + 1:]:
            gap = apart(lines[name], lines[other])
            if gap < 2.0:
                found.append(f"{name} and {other}: only {gap:.1f} apart")
    return found


def svg():
    """Each section as the cut through a stroke."""
    columns, cell_x, cell_y, stroke = 9, 210, 190, 30
    rows = -(-len(SECTIONS) // columns)
    out = [f'<svg xmlns="http://www.w3.org/2000/svg" width="{columns * cell_x}" '
           f'height="{rows * cell_y}"><rect width="100%" height="100%" fill="white"/>']
    for i, (name, curves) in enumerate(SECTIONS):
        ox, oy = i % columns * cell_x + 105, i // columns * cell_y + 45
        right = [(x + stroke / 2, y) for x, y in flat(curves)]
        left = [(-x, y) for x, y in reversed(right)]
        d = " ".join(f"{ox + x:.2f},{oy + y:.2f}" for x, y in right + left)
        title = name.replace("&", "&amp;")
        out.append(f'<polygon points="{d}" fill="#9bb" stroke="#123" stroke-width="1"/>'
                   f'<text x="{ox - 98}" y="{oy - 28}" font-size="12" '
                   f'font-family="DejaVu-Sans">{i} {title}</text>')
    return "\n".join(out + ["</svg>", ""])


def write(folder):
    first = 0
    for name, count in FILES:
        lines = [line for edge in SECTIONS[first:first + count] for line in text(*edge)]
        (folder / f"{name}.txt").write_text("\n".join(lines) + "\n", encoding="ascii", newline="\n")
        first += count


def main(arguments):
    if arguments[:1] == ["--svg"]:
        pathlib.Path(arguments[1]).write_text(svg(), encoding="utf-8")
        return 0
    have = totals()
    print("  ".join(f"{key} {have[key]} of {TOTALS[key]}" for key in TOTALS))
    if arguments[:1] == ["--check"]:
        found = complaints()
        print(*found, sep="\n")
        return 1 if found or have != TOTALS else 0
    write(pathlib.Path(__file__).resolve().parent.parent)
    return 0 if have == TOTALS else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
