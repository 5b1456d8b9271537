#!/usr/bin/env python3
"""Makes the sample models and images in this folder; the committed files are its output.

The JPEG is made from the TGA's picture with ImageMagick (package imagemagick), everything else by this script.
"""
import math
import os
import struct
import subprocess
import sys
import zlib

HERE = os.path.dirname(os.path.abspath(__file__))


def path(*parts):
    full = os.path.join(HERE, *parts)
    os.makedirs(os.path.dirname(full), exist_ok=True)
    return full


def write(data, *parts):
    with open(path(*parts), "wb") as file:
        file.write(data if isinstance(data, bytes) else data.encode("utf-8"))


def crate():
    """A box of quads with two materials, texture coordinates and one group for its lid."""
    text = ["# a crate", "mtllib caisse.mtl"]
    text += [f"v {x} {y} {z}" for z in (0, 1) for y in (0, 1) for x in (0, 1)]
    text += ["vt 0 0", "vt 1 0", "vt 1 1", "vt 0 1", "g corps", "usemtl bois"]
    for face in ((1, 3, 4, 2), (1, 2, 6, 5), (2, 4, 8, 6), (4, 3, 7, 8), (3, 1, 5, 7)):
        text.append("f " + " ".join(f"{v}/{i + 1}" for i, v in enumerate(face)))
    text += ["g couvercle", "usemtl métal", "f 5/1 6/2 8/3 7/4"]
    write("\n".join(text) + "\n", "modèles", "caisse.obj")
    write("newmtl bois\nKd 0.55 0.35 0.17\nKs 0.1 0.1 0.1\nNs 8\n\n"
          "newmtl métal\nKd 0.6 0.6 0.65\nKs 0.9 0.9 0.9\nNs 96\n", "modèles", "caisse.mtl")


def nut():
    """A hexagonal nut as a text file of triangles."""
    lines = ["solid écrou M6"]

    def facet(a, b, c):
        lines.append("  facet normal 0 0 0\n    outer loop")
        lines.extend("      vertex %g %g %g" % v for v in (a, b, c))
        lines.append("    endloop\n  endfacet")

    def quad(a, b, c, d):
        facet(a, b, c)
        facet(a, c, d)

    outer = [(5.8 * math.cos(k * math.pi / 3), 5.8 * math.sin(k * math.pi / 3)) for k in range(6)]
    inner = [(3 * math.cos(k * math.pi / 3), 3 * math.sin(k * math.pi / 3)) for k in range(6)]
    for k in range(6):
        (ax, ay), (bx, by) = outer[k], outer[(k + 1) % 6]
        (cx, cy), (dx, dy) = inner[k], inner[(k + 1) % 6]
        quad((ax, ay, 0), (bx, by, 0), (bx, by, 5), (ax, ay, 5))
        quad((dx, dy, 0), (cx, cy, 0), (cx, cy, 5), (dx, dy, 5))
        quad((ax, ay, 5), (bx, by, 5), (dx, dy, 5), (cx, cy, 5))
        quad((bx, by, 0), (ax, ay, 0), (cx, cy, 0), (dx, dy, 0))
    lines.append("endsolid écrou M6")
    write("\n".join(lines) + "\n", "modèles", "pièces détachées", "écrou.stl")


def torus():
    """A ring as a binary file of triangles."""
    rings, sides = 24, 10

    def at(i, j):
        u, v = 2 * math.pi * i / rings, 2 * math.pi * j / sides
        radius = 10 + 3 * math.cos(v)
        return radius * math.cos(u), radius * math.sin(u), 3 * math.sin(v)

    triangles = []
    for i in range(rings):
        for j in range(sides):
            a, b, c, d = at(i, j), at(i + 1, j), at(i + 1, j + 1), at(i, j + 1)
            triangles += [(a, b, c), (a, c, d)]
    data = b"a ring".ljust(80) + struct.pack("<I", len(triangles))
    for triangle in triangles:
        data += struct.pack("<12fH", 0, 0, 0, *(x for vertex in triangle for x in vertex), 0)
    write(data, "modèles", "pièces détachées", "joint torique.stl")


def hill():
    """A height field as a text file of polygons with normals."""
    size = 13

    def height(x, y):
        return 3 * math.exp(-((x - 6) ** 2 + (y - 6) ** 2) / 12)

    rows = []
    for y in range(size):
        for x in range(size):
            slope = (height(x - 0.5, y) - height(x + 0.5, y), height(x, y - 0.5) - height(x, y + 0.5), 1)
            length = math.sqrt(sum(value * value for value in slope))
            rows.append("%g %g %g %g %g %g" % (x, y, height(x, y), *(value / length for value in slope)))
    faces = [f"4 {y * size + x} {y * size + x + 1} {(y + 1) * size + x + 1} {(y + 1) * size + x}"
             for y in range(size - 1) for x in range(size - 1)]
    header = ["ply", "format ascii 1.0", "comment a hill", f"element vertex {len(rows)}"]
    header += [f"property float {name}" for name in ("x", "y", "z", "nx", "ny", "nz")]
    header += [f"element face {len(faces)}", "property list uchar int vertex_indices", "end_header"]
    text = "\n".join(header + rows + faces) + "\n"
    write(text, "modèles", "terrain", "colline.ply")
    write(text[:len(text) // 2], "modèles", "terrain", "colline abîmée.ply")


def globe():
    """A sphere as a big-endian file of polygons with texture coordinates."""
    rings, sides = 12, 16
    vertices, faces = b"", b""
    for i in range(rings + 1):
        for j in range(sides + 1):
            v, u = math.pi * i / rings, 2 * math.pi * j / sides
            vertices += struct.pack(">5f", math.sin(v) * math.cos(u), math.sin(v) * math.sin(u), math.cos(v),
                                    j / sides, i / rings)
    for i in range(rings):
        for j in range(sides):
            a = i * (sides + 1) + j
            faces += struct.pack(">B4i", 4, a, a + 1, a + sides + 2, a + sides + 1)
    header = "ply\nformat binary_big_endian 1.0\nelement vertex %d\n" % ((rings + 1) * (sides + 1))
    header += "".join(f"property float {name}\n" for name in ("x", "y", "z", "s", "t"))
    header += "element face %d\nproperty list uchar int vertex_indices\nend_header\n" % (rings * sides)
    write(header.encode() + vertices + faces, "modèles", "terrain", "globe.ply")


def png(width, height, pixel):
    rows = b"".join(b"\0" + b"".join(bytes(pixel(x, y)) for x in range(width)) for y in range(height))

    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">2I5B", width, height, 8, 6, 0, 0, 0))
            + chunk(b"IDAT", zlib.compress(rows, 9)) + chunk(b"IEND", b""))


def disc(x, y):
    distance = math.hypot(x - 31.5, y - 31.5)
    return 220, 60 + 2 * y, 40, max(0, min(255, round(255 * (30 - distance))))


def sky(x, y):
    sun = max(0.0, 1 - math.hypot(x - 60, y - 40) / 22)
    return (min(255, round(120 + y * 1.6 + 200 * sun)), min(255, round(80 + y * 0.7 + 160 * sun)),
            max(0, round(160 - y * 1.5)))


def tga(width, height, pixel):
    data = struct.pack("<3B2HB4H2B", 0, 0, 2, 0, 0, 0, 0, 0, width, height, 24, 0x20)
    return data + b"".join(bytes(pixel(x, y)[::-1]) for y in range(height) for x in range(width))


def bmp(width, height, pixel):
    pad = -3 * width % 4
    rows = b"".join(b"".join(bytes(pixel(x, y)[::-1]) for x in range(width)) + b"\0" * pad
                    for y in reversed(range(height)))
    return (b"BM" + struct.pack("<I2HI", 54 + len(rows), 0, 0, 54)
            + struct.pack("<I2i2H6I", 40, width, height, 1, 24, 0, len(rows), 2835, 2835, 0, 0) + rows)


def main():
    crate()
    nut()
    torus()
    hill()
    globe()
    write(png(64, 64, disc), "images", "pastille.png")
    write(bmp(48, 48, lambda x, y: (240, 240, 240) if (x // 6 + y // 6) % 2 else (30, 60, 120)),
          "images", "damier.bmp")
    write(tga(96, 64, sky), "images", "photos d'été", "coucher de soleil.tga")
    if len(sys.argv) > 1:
        subprocess.run([sys.argv[1], path("images", "photos d'été", "coucher de soleil.tga"), "-quality", "85",
                        path("images", "photos d'été", "aurore.jpg")], check=True)


main()
