#!/usr/bin/env python3
"""Writes the stored forms and the table walks that the tests of core/ compare with, and the seeds of its fuzzers.

It shares no code with the library: forms are packed from their documents, tables are played slot by slot.
Run it here; it rewrites the files beside it.
"""
import struct


def entry(ident, kind, value):
    return struct.pack("<III", ident, len(value), int.from_bytes(kind.encode(), "big")) + value


def raw(entries, mode=0):
    """entries: (id, kind, value)"""
    total = sum(len(value) for _, _, value in entries)
    return struct.pack("<HHIIII", 1, 0, len(entries), total, mode, 0) + b"".join(entry(*e) for e in entries)


def code(text):
    return struct.pack("<I", int.from_bytes(text.encode(), "big"))


def current(entries, mode=0):
    body = raw(entries, mode) if entries else b""
    return code("CUS4") + struct.pack("<I", len(body)) + body


def chain(records):
    """The oldest layout: stride size + 15, the last record cut behind its value."""
    out = b""
    for i, (ident, value) in enumerate(records):
        last = i + 1 == len(records)
        out += struct.pack("<III", ident, len(value), 0 if last else 0x00C0FFEE) + value
        out += b"" if last else b"\xAA\xAA\xAA"
    return out


def older(magic, records):
    body = chain(records)
    return code(magic) + struct.pack("<I", len(body)) + body


def wide(text):
    return (text + "\0").encode("utf-16-le")


ALL_KINDS = [
    (1, " INT", struct.pack("<i", -2)),
    (2, "UINT", struct.pack("<I", 0xFFFFFFFE)),
    (3, "LONG", struct.pack("<i", -3)),
    (4, "ULON", struct.pack("<I", 4000000000)),
    (5, "LLON", struct.pack("<q", -(2**40))),
    (6, "ULLO", struct.pack("<Q", 2**63 + 1)),
    (7, "BOOL", struct.pack("<i", 2)),
    (8, "FLOA", struct.pack("<f", 1.5)),
    (9, "DOUB", struct.pack("<d", -0.1)),
    (10, "PTR6", struct.pack("<Q", 0x1122334455667788)),
    (11, " BIN", b"\0\1\2"),
    (12, "UNIC", wide("é€")),
    (13, "ANSI", b"caf\xe9\0"),
    (14, "USTR", wide("a") + wide("") + wide("bc")),
    (15, "CDAT", raw([(21, " INT", struct.pack("<i", 7))])),
]
WIDE_OLD = [(1, wide("xyz")), (2, b"\1\2\3\4\5"), (3, chain([(7, wide("nid"))])), (1, wide("abc"))]
NARROW_OLD = [(1, b"caf\xe9\0"), (2, b"un\0deux\0reste")]


def untyped(records):
    """What an older store becomes: the second record of an id and size overwrites the first in place."""
    values = {}
    for ident, value in records:
        values[ident] = value
    return [(ident, "    ", value) for ident, value in values.items()]


def prefs(stores):
    """stores: (key1, key2, archive form)"""
    return struct.pack("<I", len(stores)) + b"".join(struct.pack("<II", a, b) + form for a, b, form in stores)


NEW = [(1, " INT", struct.pack("<i", 42))]

FILES = {
    "all_kinds.cus4": current(ALL_KINDS),
    "wide_old.cusu": older("CUSU", WIDE_OLD),
    "wide_old.cus4": current(untyped(WIDE_OLD), 1),
    "narrow_old.cust": older("CUST", NARROW_OLD),
    "narrow_old.cus4": current(untyped(NARROW_OLD), 2),
    "before.prefs": prefs([(1, 1, older("CUSU", WIDE_OLD)), (1, 2, current(ALL_KINDS)), (2, 1, current([])),
                           (2, 2, older("CUST", NARROW_OLD))]),
    "after.prefs": prefs([(1, 1, current(untyped(WIDE_OLD), 1)), (2, 1, current([])),
                          (2, 2, current(untyped(NARROW_OLD), 2)), (1, 2, current(NEW))]),
}


def is_prime(n):
    return n > 1 and all(n % d for d in range(2, int(n**0.5) + 1))


def table_size(n):
    if n < 101:
        return 101
    while not is_prime(n):
        n += 1
    return n


class Table:
    """An open-addressing table: slots of [key, value, state], 0 active, 1 empty, 2 deleted."""

    def __init__(self, hash_key):
        self.hash_key = hash_key
        self.reset(101)

    def reset(self, size):
        self.slots = [[None, None, 1] for _ in range(size)]
        self.used = self.count = 0

    def find(self, key):
        size = len(self.slots)
        start = self.hash_key(key) % size
        k = 0
        while True:
            pos = (start + k * k) % size
            if self.slots[pos][2] == 1 or self.slots[pos][0] == key:
                return pos
            k += 1

    def insert(self, key, value):
        slot = self.slots[self.find(key)]
        if slot[2] == 0:
            slot[1] = value
            return
        slot[:] = [key, value, 0]
        self.count += 1
        self.used += 1
        if self.used >= len(self.slots) // 2:
            self.rehash(2 * len(self.slots))

    def remove(self, key):
        slot = self.slots[self.find(key)]
        if slot[2] == 0:
            slot[2] = 2
            self.count -= 1

    def rehash(self, n):
        size = table_size(n)
        if size == len(self.slots):
            return
        old = self.slots
        self.reset(size)
        for key, value, state in old:
            if state == 0:
                self.insert(key, value)

    def minimize(self):
        if int(self.count * 2.5) < len(self.slots):
            self.rehash(2 * self.count)

    def walk(self):
        return [(key, value) for key, value, state in self.slots if state == 0]


def hash_int(key):
    return (key << 4) & 0xFFFFFFFF


def hash_text(text):
    h = 0
    for c in reversed(struct.unpack("<%dH" % len(text), text.encode("utf-16-le"))):
        h = (h ^ c ^ (h << 5)) & 0xFFFFFFFF
    return h


def name(number):
    return ("Élément " * (number % 4)) + str(number)


def digest(data):
    """FNV-1a"""
    h = 0x811C9DC5
    for byte in data:
        h = ((h ^ byte) * 0x01000193) & 0xFFFFFFFF
    return h


def walks():
    """Plays 60,000 operations on a map of ints and a set of names; a line for every 5,000."""
    numbers, names = Table(hash_int), Table(hash_text)
    x = 1
    lines = []
    for step in range(1, 60001):
        x = (x * 1103515245 + 12345) & 0xFFFFFFFF
        # Three phases: growing, shrinking, few keys under constant change.
        keys = 6000 if step <= 40000 else 60
        key = (x >> 8) % keys
        grows = 11 if step <= 20000 else 5 if step <= 40000 else 8
        number = (key * 2654435761) & 0xFFFFFFFF
        if (x >> 28) < grows:
            numbers.insert(number, step)
            names.insert(name(key), None)
        else:
            numbers.remove(number)
            names.remove(name(key))
        if step % 5000:
            continue
        if step % 10000 == 0:
            numbers.minimize()
            names.minimize()
        walked = b"".join(struct.pack("<II", k, v) for k, v in numbers.walk())
        spelled = b"".join(wide(k) for k, _ in names.walk())
        lines.append("%d %d %d %u %d %d %u" % (step, len(numbers.slots), numbers.count, digest(walked),
                                              len(names.slots), names.count, digest(spelled)))
    return "\n".join(lines) + "\n"


def image(entries):
    """What GetData gives, with made-up links."""
    return b"".join(struct.pack("<QIII", i + 1 < len(entries), ident, len(value), int.from_bytes(kind.encode(), "big"))
                    + value for i, (ident, kind, value) in enumerate(entries))


CORPUS = "../../../fuzz/corpus/"
FILES |= {
    CORPUS + "StoreRaw/current": b"\0" + current(ALL_KINDS),
    CORPUS + "StoreRaw/wide_old": b"\0" + older("CUSU", WIDE_OLD),
    CORPUS + "StoreRaw/narrow_old": b"\0" + older("CUST", NARROW_OLD),
    CORPUS + "StoreRaw/raw": b"\1" + raw([(1, "CDAT", raw(NEW)), (1, " INT", b"\0\0\0\1"), (2, " BIN", b"")]),
    CORPUS + "StoreRaw/image": b"\2" + image([(1, "ASTR", b"a\0\0b"), (2, "USTR", wide("a") + b"b"), (3, " BIN", b"")]),
    CORPUS + "StoreRaw/chain": b"\3" + chain([(1, b"8 bytes."), (1, b"5 byt"), (2, chain([(3, b"")]))]),
    CORPUS + "Preferences/whole": prefs([(1, 1, older("CUSU", WIDE_OLD)), (1, 2, current(NEW)), (2, 1, current([]))]),
    CORPUS + "Preferences/damaged_behind": prefs([(1, 2, current(NEW)), (2, 2, current(NEW)[:-1])]),
    CORPUS + "Preferences/empty": b"",
}
for path, data in FILES.items():
    with open(path, "wb") as file:
        file.write(data)
with open("table_walks.txt", "w") as file:
    file.write(walks())
