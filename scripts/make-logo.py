#!/usr/bin/env python3
"""Writes the program's logo, data/logo.x, and its sizes, data/mdata.ini.

The logo is a desk calendar: a page block under a red header band, a grid of date tiles on
the front with today's in red, and two rings through the top. Run it again after changing it
and commit both files; the build copies them next to the executable.

The shape is built with y up and the front facing +z. The file is a text DirectX mesh with
z up (the logo's quarter turn stands it up) and clockwise front faces, as DirectX reads it.
"""

import math
import pathlib

ROOT = pathlib.Path(__file__).resolve().parent.parent

# name: (diffuse r, g, b, power, specular r, g, b)
MATERIALS = {
    "Paper": (0.94, 0.94, 0.97, 0.0, 0.0, 0.0, 0.0),
    "Red": (0.80, 0.12, 0.15, 20.0, 0.30, 0.30, 0.30),
    "Ink": (0.18, 0.22, 0.32, 30.0, 0.50, 0.50, 0.50),
}

# The sizes the logo is shown at, in scene units, are the model's times this.
SCALE = 115


class Mesh:
    def __init__(self):
        self.vertices = []  # (position, normal)
        self.faces = []  # (a, b, c, material), counter-clockwise seen from outside

    def add(self, position, normal):
        self.vertices.append((position, normal))
        return len(self.vertices) - 1

    def quad(self, corners, normal, material):
        a, b, c, d = (self.add(p, normal) for p in corners)
        self.faces.append((a, b, c, material))
        self.faces.append((a, c, d, material))

    def box(self, low, high, material, faces="xXyYzZ"):
        (x0, y0, z0), (x1, y1, z1) = low, high
        sides = {
            "z": ([(x1, y0, z0), (x0, y0, z0), (x0, y1, z0), (x1, y1, z0)], (0, 0, -1)),
            "Z": ([(x0, y0, z1), (x1, y0, z1), (x1, y1, z1), (x0, y1, z1)], (0, 0, 1)),
            "x": ([(x0, y0, z0), (x0, y0, z1), (x0, y1, z1), (x0, y1, z0)], (-1, 0, 0)),
            "X": ([(x1, y0, z1), (x1, y0, z0), (x1, y1, z0), (x1, y1, z1)], (1, 0, 0)),
            "y": ([(x0, y0, z0), (x1, y0, z0), (x1, y0, z1), (x0, y0, z1)], (0, -1, 0)),
            "Y": ([(x0, y1, z1), (x1, y1, z1), (x1, y1, z0), (x0, y1, z0)], (0, 1, 0)),
        }
        for side in faces:
            corners, normal = sides[side]
            self.quad(corners, normal, material)

    def ring(self, centre, radius, tube, material, around=24, across=10):
        """A torus about the x axis: it stands in the y-z plane."""
        cx, cy, cz = centre
        first = len(self.vertices)
        for i in range(around):
            u = 2 * math.pi * i / around
            for j in range(across):
                v = 2 * math.pi * j / across
                # Outward from the tube's own centre line.
                n = (math.sin(v), math.cos(v) * math.cos(u), math.cos(v) * math.sin(u))
                r = radius + tube * math.cos(v)
                p = (cx + tube * math.sin(v), cy + r * math.cos(u), cz + r * math.sin(u))
                self.add(p, n)
        for i in range(around):
            for j in range(across):
                a = first + i * across + j
                b = first + ((i + 1) % around) * across + j
                c = first + ((i + 1) % around) * across + (j + 1) % across
                d = first + i * across + (j + 1) % across
                self.faces.append((a, b, c, material))
                self.faces.append((a, c, d, material))


def calendar():
    mesh = Mesh()
    half_width, depth = 0.8, 0.12
    mesh.box((-half_width, -0.9, -depth), (half_width, 0.35, depth), "Paper", "xXyzZ")
    mesh.box((-half_width, 0.35, -depth), (half_width, 0.62, depth), "Red", "xXYzZ")
    columns, rows, tile, gap = 4, 3, 0.26, 0.07
    left = -(columns * tile + (columns - 1) * gap) / 2
    top = 0.2
    for row in range(rows):
        for column in range(columns):
            x = left + column * (tile + gap)
            y = top - row * (tile + gap)
            today = (row, column) == (1, 2)
            mesh.box((x, y - tile, depth), (x + tile, y, depth + 0.025),
                     "Red" if today else "Ink", "xXyYZ")
    for x in (-0.45, 0.45):
        mesh.ring((x, 0.62, 0.0), 0.14, 0.035, "Ink")
    return mesh


def to_file(p):
    """Design axes (y up) to the file's (z up)."""
    x, y, z = p
    return (x, z, y)


def number(value):
    return f"{value:.6f}"


def write_x(mesh, path):
    names = list(MATERIALS)
    out = ["xof 0303txt 0032", ""]
    for name, (r, g, b, power, sr, sg, sb) in MATERIALS.items():
        out += [
            f"Material {name} {{",
            f" {number(r)};{number(g)};{number(b)};1.000000;;",
            f" {number(power)};",
            f" {number(sr)};{number(sg)};{number(sb)};;",
            " 0.000000;0.000000;0.000000;;",
            "}",
            "",
        ]
    # Swapping two axes mirrors the shape, so every face is written the other way round.
    faces = [(a, c, b, m) for a, b, c, m in mesh.faces]
    vertex_lines = [";".join(number(c) for c in to_file(p)) + ";" for p, _ in mesh.vertices]
    normal_lines = [";".join(number(c) for c in to_file(n)) + ";" for _, n in mesh.vertices]
    face_lines = [f"3;{a},{b},{c};" for a, b, c, _ in faces]

    def listing(lines, end):
        return [" " + line + ("," if i < len(lines) - 1 else end) for i, line in enumerate(lines)]

    out += ["Mesh Calendar {", f" {len(vertex_lines)};"]
    out += listing(vertex_lines, ";")
    out += [f" {len(face_lines)};"]
    out += listing(face_lines, ";")
    out += [" MeshNormals {", f"  {len(normal_lines)};"]
    out += [" " + line for line in listing(normal_lines, ";")]
    out += [f"  {len(face_lines)};"]
    out += [" " + line for line in listing(face_lines, ";")]
    out += [" }", " MeshMaterialList {", f"  {len(names)};", f"  {len(faces)};"]
    material_lines = [str(names.index(m)) for _, _, _, m in faces]
    out += [" " + line for line in listing(material_lines, ";")]
    out += [f"  {{{name}}}" for name in names]
    out += [" }", "}", ""]
    path.write_text("\n".join(out), newline="\r\n")


def write_mdata(mesh, path):
    points = [to_file(p) for p, _ in mesh.vertices]
    sizes = [round((max(p[i] for p in points) - min(p[i] for p in points)) * SCALE)
             for i in range(3)]
    lines = ["[DATA]"] + [f"{key}={size}" for key, size in zip("XYZ", sizes)] + [""]
    path.write_text("\n".join(lines), newline="\r\n")


def main():
    mesh = calendar()
    write_x(mesh, ROOT / "data" / "logo.x")
    write_mdata(mesh, ROOT / "data" / "mdata.ini")


if __name__ == "__main__":
    main()
