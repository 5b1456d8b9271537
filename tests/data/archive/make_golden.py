#!/usr/bin/env python3
"""Writes the archive goldens from the description of the format alone. Run in this folder."""
import struct


def wide(text):
    return b"\xff\xfe\xff" + length(len(text)) + text.encode("utf-16-le")


def length(n):
    if n < 0xFF:
        return struct.pack("<B", n)
    if n < 0xFFFE:
        return struct.pack("<BH", 0xFF, n)
    return struct.pack("<BHI", 0xFF, 0xFFFF, n)


def count(n):
    if n < 0xFFFF:
        return struct.pack("<H", n)
    if n < 0xFFFFFFFF:
        return struct.pack("<HI", 0xFFFF, n)
    return struct.pack("<HIQ", 0xFFFF, 0xFFFFFFFF, n)


def new_class(name, schema):
    return struct.pack("<HHH", 0xFFFF, schema, len(name)) + name.encode("ascii")


def values():
    out = struct.pack("<BbHBHhiIiIqQfd", 0xFE, ord("A"), 0x20AC, 1, 0xBEEF, -2, -3, 0xDEADBEEF, -123456789,
                      4000000000, -5000000000, 0xFEDCBA9876543210, 1.5, -0.1)
    for n in (0, 0xFFFE, 0xFFFF, 0xFFFFFFFE, 0xFFFFFFFF, 0x123456789A):
        out += count(n)
    out += wide("") + wide("déjà €") + length(5) + "d\xe9j\xe0\x80".encode("latin-1")
    out += "ligne\r\n".encode("utf-16-le")
    return out


def objects():
    """1 class TestNode, 2 root, 3 class TestLeaf, 4 leaf; the node is a name and two references."""
    out = new_class("TestNode", 2) + wide("root")
    out += new_class("TestLeaf", 1) + wide("leaf") + struct.pack("<HH", 2, 0) + struct.pack("<I", 77)
    out += struct.pack("<H", 2)                                   # the root's second reference: itself
    out += struct.pack("<H", 0x8000 | 1) + wide("again") + struct.pack("<HH", 4, 0)   # 5
    out += struct.pack("<HH", 0, 5)
    return out


for name, content in (("values.bin", values()), ("objects.bin", objects())):
    with open(name, "wb") as file:
        file.write(content)
