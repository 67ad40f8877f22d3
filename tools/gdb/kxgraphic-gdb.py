# gdb shows a Bitmap as what it is: size, format, storage, locks, and which blocks are somebody else's.
# gdb -x kxgraphic-gdb.py PROGRAM, or in a running gdb: source kxgraphic-gdb.py. The Debian package puts it where gdb finds it
# by itself, under the auto-load folder as <library's file>-gdb.py.
# SPDX-License-Identifier: MIT
import gdb
import gdb.printing

FORMATS = {0: "mono", 3: "grey", 4: "palette", 5: "555", 6: "565", 7: "888"}
BLOCKS = ["pixels", "rowTable", "palette", "table15", "table16", "table8"]  # by the bits of `flags`


class BitmapPrinter:
    def __init__(self, value):
        self.value = value

    def number(self, field):
        return int(self.value[field])

    def to_string(self):
        if self.number("version") != 0x10000:
            return "no bitmap (version 0x%x)" % self.number("version")
        word = self.number("format")
        kind = word & 0x30
        text = "%d x %d, format %s, %s" % (
            self.number("width"), self.number("height"), FORMATS.get(word & 15, "unknown (%d)" % (word & 15)),
            "plain, pitch %d" % self.number("pitch") if kind == 0 else "packed")
        if word & ~0x3F:
            text += ", creation flags 0x%x" % (word & ~0x3F)
        return text + ", locked %d" % self.number("lockCount")

    def children(self):
        if self.number("version") != 0x10000:
            return
        yield "methods", self.value["methods"]
        flags = self.number("flags")
        for bit, block in enumerate(BLOCKS):
            pointer = self.value[block]
            if int(pointer) == 0:
                continue
            text = "0x%x, %s" % (int(pointer), "borrowed" if flags >> bit & 1 else "own")
            if block == "palette":
                text += self.first_colours(pointer)
            yield block, text
        for extra in ("extra1", "extra2"):
            if self.number(extra) != 0:
                yield extra, self.value[extra]

    @staticmethod
    def first_colours(palette):
        """The first entries as red, green, blue."""
        try:
            data = bytes(gdb.selected_inferior().read_memory(int(palette), 768))
        except gdb.MemoryError:
            return ", not readable"
        colours = ["%02x%02x%02x" % (data[i + 2], data[i + 1], data[i]) for i in range(0, 12, 3)]
        return ", " + " ".join(colours) + " ..."


def _register():
    printers = gdb.printing.RegexpCollectionPrettyPrinter("kxgraphic")
    printers.add_printer("Bitmap", "^Bitmap$", BitmapPrinter)
    gdb.printing.register_pretty_printer(gdb.current_objfile(), printers, replace=True)


_register()
