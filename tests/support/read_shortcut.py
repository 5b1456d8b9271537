"""read_shortcut.py SHORTCUT OUT: reads a shell shortcut by its published format (MS-SHLLINK) and nothing of
the library's, and writes what it says to OUT, a field a line in UTF-8, at once."""
import os
import struct
import sys

CLASS = bytes.fromhex("0114020000000000C000000000000046")
TEXTS = ["description", "relative", "folder", "arguments", "icon"]


def text_at(data, at, wide):
    if wide:
        end = next(i for i in range(at, len(data), 2) if data[i:i + 2] == b"\0\0")
        return data[at:end].decode("utf-16-le")
    return data[at:data.index(b"\0", at)].decode("cp1252")


def target_of(info):
    size, head, flags, volume, path, net, suffix = struct.unpack_from("<7I", info)
    assert size == len(info) and flags & 1, "a local path"
    if head >= 0x24:
        path, suffix = struct.unpack_from("<2I", info, 0x1C)
    return text_at(info, path, head >= 0x24) + text_at(info, suffix, head >= 0x24)


def read(data):
    size, class_id, flags = struct.unpack_from("<I16sI", data)
    assert size == 0x4C and class_id == CLASS, "the header"
    fields = {"hotkey": "%04x" % struct.unpack_from("<H", data, 64)}
    at = size
    if flags & 1:
        at += 2 + struct.unpack_from("<H", data, at)[0]
    if flags & 2:
        size = struct.unpack_from("<I", data, at)[0]
        fields["target"] = target_of(data[at:at + size])
        at += size
    for bit, name in enumerate(TEXTS):
        if flags & 4 << bit:
            size = struct.unpack_from("<H", data, at)[0] * (2 if flags & 0x80 else 1)
            text = data[at + 2:at + 2 + size].decode("utf-16-le" if flags & 0x80 else "cp1252")
            fields[name] = text.rstrip("\0")  # some writers count one
            at += 2 + size
    while struct.unpack_from("<I", data, at)[0] >= 4:
        at += struct.unpack_from("<I", data, at)[0]
    assert at + 4 == len(data), "the block that ends the file"
    return fields


def main(shortcut, out):
    try:
        with open(shortcut, "rb") as file:
            fields = read(file.read())
        text = "".join("%s=%s\n" % (name, fields.get(name, "")) for name in
                       ["target", "arguments", "folder", "description", "hotkey"])
    except (AssertionError, OSError, StopIteration, ValueError, struct.error) as failure:
        text = "unreadable: %s\n" % failure
    with open(out + ".part", "w", encoding="utf-8") as file:
        file.write(text)
    os.replace(out + ".part", out)


main(*sys.argv[1:])
