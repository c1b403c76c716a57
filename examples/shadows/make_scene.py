#!/usr/bin/env python3
"""Makes word.twp: a word in letters of our own with a round bevel, on a floor, under one spot light.

The word stands in the project as curves, so that the program that opens it builds the solid.
"""
import math
import os

FOLDER = os.path.dirname(os.path.abspath(__file__))

# Letters in a box of height 100: width, then loops of points; a point of six numbers ends a Bezier
# curve (two handles, then the point).
K = 0.5522847498


def ellipse(cx, cy, rx, ry):
    kx, ky = rx * K, ry * K
    return [(cx + rx, cy),
            (cx + rx, cy + ky, cx + kx, cy + ry, cx, cy + ry),
            (cx - kx, cy + ry, cx - rx, cy + ky, cx - rx, cy),
            (cx - rx, cy - ky, cx - kx, cy - ry, cx, cy - ry),
            (cx + kx, cy - ry, cx + rx, cy - ky, cx + rx, cy)]


LETTERS = {
    "O": (104, [ellipse(52, 50, 52, 51.5), ellipse(52, 50, 29, 31)]),
    "R": (84, [
        [(0, 0), (23, 0), (23, 36), (35, 36), (56, 0), (84, 0), (58, 41),
         (72, 46, 80, 56, 80, 69), (80, 88, 67, 100, 44, 100), (0, 100)],
        [(23, 55), (23, 81), (43, 81), (52, 81, 57, 76.5, 57, 68), (57, 59.5, 52, 55, 43, 55)]]),
    "V": (94, [[(0, 100), (25, 100), (47, 31), (69, 100), (94, 100), (59, 0), (35, 0)]]),
    "I": (23, [[(0, 0), (23, 0), (23, 100), (0, 100)]]),
    "N": (86, [[(0, 0), (23, 0), (23, 62), (63, 0), (86, 0), (86, 100), (63, 100), (63, 38),
                (23, 100), (0, 100)]]),
    "E": (66, [[(0, 0), (66, 0), (66, 20), (23, 20), (23, 41), (61, 41), (61, 60), (23, 60),
                (23, 80), (65, 80), (65, 100), (0, 100)]]),
    "X": (92, [[(0, 0), (27, 0), (46, 31), (65, 0), (92, 0), (60, 51), (91, 100), (65, 100),
                (46, 71), (27, 100), (1, 100), (32, 51)]]),
}
SPACING = 40
DEPTH = 56
FLOOR = 1500


def curves(loop):
    """The loop as (type, points), straight runs in one piece."""
    out, run = [], [loop[0][-2:]]
    for point in loop[1:]:
        end = point[-2:]
        if len(point) == 2:
            run.append(end)
            continue
        if len(run) > 1:
            out.append(("Linear", run))
        out.append(("Bezier", [run[-1], point[0:2], point[2:4], end]))
        run = [end]
    if math.dist(run[-1], loop[0]) > 1e-9:
        run.append(loop[0])
    if len(run) > 1:
        out.append(("Linear", run))
    return out


def write_profile(out, name, paths, closed):
    out.append(f'  begin ProfileI\n   name "{name}"\n   begin InputProfile2')
    for path in paths:
        out.append(f"    begin CompositeCurve2\n     closed {closed}")
        for i, (kind, points) in enumerate(path):
            out.append(f"     begin Curve2\n      type {kind}")
            out += [f"      p {x:g} {y:g}" for x, y in points]
            out.append(f"      attachedHead {int(closed or i > 0)}\n"
                       f"      attachedTail {int(closed or i + 1 < len(path))}\n"
                       "     end Curve2")
        out.append("    end CompositeCurve2")
    out.append("   end InputProfile2\n  end ProfileI")


def word_paths(word):
    paths, x = [], -(sum(LETTERS[c][0] for c in word) + SPACING * (len(word) - 1)) / 2
    for c in word:
        width, loops = LETTERS[c]
        for loop in loops:
            moved = [tuple(v + (x if i % 2 == 0 else 0) for i, v in enumerate(p)) for p in loop]
            paths.append(curves(moved))
        x += width + SPACING
    return paths


HEAD = """# The scene of the shadow pages and of the comparison with another renderer; made by make_scene.py.
 Version "Orvinex WIN32-Pro Scene Format 3.0"
 RenderSize 640 360
 AntiAliasLevel "6"
 RenderMethod "1"
 RenderShadows "1"
 ShadowQuality "1000"
 begin SceneX
  name "Word"
  begin CameraX
   name "dflt_cam"
   mode LOOKAT
   lens 40
   aperture 36
   aspect 1.777778
   eye -60 760 820
   target 22 10 30
  end CameraX
  begin MaterialX
   name "defaultMtl"
  end MaterialX
  begin MaterialX
   name "face"
   diffuse 0.86 0.34 0.16
   specular 60 0.3
  end MaterialX
  begin MaterialX
   name "ground"
   diffuse 0.82 0.82 0.84
  end MaterialX"""

TAIL = f"""  begin ObjectXStyle
   name "style"
   perim "round"
   depth {DEPTH}
   material 0 "face"
  end ObjectXStyle
  begin ObjectX
   name "Word"
   rotate -90 0 0
   translate 0 56 60
   face "word"
   style "style"
   flatRender FLATNESS
  end ObjectX
  begin ObjectP
   name "Floor"
   load "examples/shadows/floor.obj"
   material 0 "ground"
  end ObjectP
  begin LightX
   name "Ambient Light"
   type AMBIENT
   intensity 0.22
  end LightX
  begin LightX
   name "Spot"
   type SPOT
   mode LOOKAT
   eye -560 640 -330
   target 30 0 30
   intensity 0.95
   angles 26 37
   shadow 1
   shadow-softness 6
   shadow-darkness 0.85
  end LightX
 end SceneX"""


def main():
    out = [HEAD]
    write_profile(out, "word", word_paths("ORVINEX"), 1)
    edge = [[("Bezier", [(0, 0), (7, 0), (13, 6), (13, 13)]),
             ("Linear", [(13, 13), (13, 87)]),
             ("Bezier", [(13, 87), (13, 94), (7, 100), (0, 100)])]]
    write_profile(out, "round", edge, 0)
    out.append(TAIL.replace("FLATNESS", "0.22"))
    with open(os.path.join(FOLDER, "word.twp"), "w") as file:
        file.write("\n".join(out) + "\n")
    with open(os.path.join(FOLDER, "floor.obj"), "w") as file:
        file.write("# The floor of word.twp\n")
        for x, z in ((-1, 1), (1, 1), (1, -1), (-1, -1)):
            file.write(f"v {x * FLOOR} 0 {z * FLOOR}\n")
        file.write("vn 0 1 0\nf 1//1 2//1 3//1 4//1\n")


main()
