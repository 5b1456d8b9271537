"""read_shortcut.py SHORTCUT OUT: reads a shell shortcut by its published format (MS-SHLLINK) and nothing of
the library's, and writes what it says to OUT, a field a line in UTF-8, at once."""
import os
import struct
import sys


def text_at(data, at):
    return data[at:data.index(b"\0", at)].decode("cp1252")


def target_of(info):
    size, head, flags, volume, path, net, suffix = struct.unpack_from("<7I", info)
    assert size == len(info) and flags & 1 and head == 0x1C, "a local path, in the code page alone"
    return text_at(info, path) + text_at(info, suffix)


def read(data):
    at, class_id, flags = struct.unpack_from("<I16sI", data)
    assert at == 0x4C and class_id.hex() == "0114020000000000c000000000000046", "the header"
    fields = {"hotkey": "%04x" % struct.unpack_from("<H", data, 64)}
    if flags & 1:
        at += 2 + struct.unpack_from("<H", data, at)[0]
    if flags & 2:
        size = struct.unpack_from("<I", data, at)[0]
        fields["target"] = target_of(data[at:at + size])
        at += size
    for bit, name in enumerate(["description", "relative", "folder", "arguments", "icon"]):
        if flags & 4 << bit:
            size = struct.unpack_from("<H", data, at)[0] * (2 if flags & 0x80 else 1)
            text = data[at + 2:at + 2 + size].decode("utf-16-le" if flags & 0x80 else "cp1252")
            fields[name] = text.rstrip("\0")  # some writers count one
            at += 2 + size
    while (size := struct.unpack_from("<I", data, at)[0]) >= 4:
        at += size
    assert at + 4 == len(data), "the block that ends the file"
    return fields


with open(sys.argv[1], "rb") as source:
    said = read(source.read())
with open(sys.argv[2] + ".part", "w", encoding="utf-8") as out:
    for field in ["target", "arguments", "folder", "description", "hotkey"]:
        out.write("%s=%s\n" % (field, said.get(field, "")))
os.replace(sys.argv[2] + ".part", sys.argv[2])
