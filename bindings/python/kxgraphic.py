"""kxgraphic for Python: every exported function, record, constant and error, through ctypes.

What is here comes from the description kxgraphic.json; nothing is compiled. Functions have their C names and arguments.
Those that return a code raise Error instead; outputs are passed with ctypes.byref. A small class Picture is added.

    import kxgraphic as kx
    with kx.Picture(320, 200) as picture:
        kx.KX_fillRect(picture.bitmap, 10, 10, 100, 50, picture.colour(255, 128, 0))
        picture.save("orange.png")

The library is $KXGRAPHIC_LIBRARY, else one beside this file, in the build folder or in the folders of an unpacked
archive, else the system's. The description is
$KXGRAPHIC_DESCRIPTION, else kxgraphic.json beside this file or one folder up. A 32-bit DLL takes a 32-bit Python.
SPDX-License-Identifier: MIT
"""
import ctypes
import json
import os
import struct
import sys
import zlib

_folder = os.path.dirname(os.path.abspath(__file__))
_windows = sys.platform == "win32"


def _first_there(variable, names):
    """The file that an environment variable names, else the first of some that is there, else None."""
    if os.environ.get(variable):
        return os.environ[variable]
    paths = [os.path.join(_folder, name) for name in names]
    return next((path for path in paths if os.path.exists(path)), None)


def _read_description():
    path = _first_there("KXGRAPHIC_DESCRIPTION", ["kxgraphic.json", os.path.join("..", "kxgraphic.json")])
    if path is None:
        raise ImportError("kxgraphic.json is not beside kxgraphic.py; name it in KXGRAPHIC_DESCRIPTION")
    with open(path, encoding="utf-8") as file:
        return json.load(file)


def _load_library():
    name, build = ("kxgraphic.dll", "win32") if _windows else ("libkxgraphic.so.1", "release")
    up = os.path.join("..", "..")
    path = _first_there("KXGRAPHIC_LIBRARY", [name, os.path.join(up, "build", build, name),
                                              os.path.join(up, "bin" if _windows else "lib", name)]) or name
    try:
        # Its memory manager lies beside it.
        return ctypes.WinDLL(path, winmode=0) if _windows else ctypes.CDLL(path)
    except OSError as problem:
        raise ImportError(f"{path} cannot be loaded ({problem}); name the library in KXGRAPHIC_LIBRARY") from problem


description = _read_description()
library = _load_library()
version = description["version"]


class Error(Exception):
    """A code other than 0. `code` is the number, `name` that of the fault, `function` what returned it."""

    def __init__(self, code, function):
        fault = errors.get(code, {"name": "unknown", "english": "a code without a name"})
        super().__init__(f"{function}: 0x{code:04X} {fault['name']}: {fault['english']}")
        self.code, self.name, self.function = code, fault["name"], function


errors = {error["code"]: error for error in description["errors"]}
globals().update({constant["name"]: constant["value"] for constant in description["constants"]})

# Types. Records first exist by name, as they point at each other.
_types = {
    "char": ctypes.c_char, "float": ctypes.c_float, "uintptr_t": ctypes.c_size_t,
    "int8_t": ctypes.c_int8, "int16_t": ctypes.c_int16, "int32_t": ctypes.c_int32,
    "uint8_t": ctypes.c_uint8, "uint16_t": ctypes.c_uint16, "uint32_t": ctypes.c_uint32,
}
for _record in description["records"] + description["methodTables"]:
    _types[_record["name"]] = type(_record["name"], (ctypes.Structure,), {"__doc__": f"The record {_record['name']}."})


def _type(text):
    """The ctypes type of "const Bitmap**" and the like."""
    text = text.removeprefix("const ").strip()
    if not text.endswith("*"):
        return _types[text]
    return {"void*": ctypes.c_void_p, "char*": ctypes.c_char_p}.get(text) or ctypes.POINTER(_type(text[:-1]))


def _signature(function):
    return [_type(function["result"])] + [_type(argument["type"]) for argument in function["arguments"]]


_functions = {function["name"]: function for function in description["functions"]}
_prototype = ctypes.WINFUNCTYPE if _windows else ctypes.CFUNCTYPE

for _table in description["methodTables"]:
    _slots = [("version", ctypes.c_uint32)]
    for _slot in _table["slots"]:
        _function = _functions["KX_" + _slot]
        _public = "arguments" in _function
        _slots.append((_slot, _prototype(*_signature(_function)) if _public else ctypes.c_void_p))
    _types[_table["name"]]._fields_ = _slots

for _record in description["records"]:
    _fields = [(_field["name"], _type(_field["type"]) * _field["count"] if _field["count"] > 1 else _type(_field["type"]))
               for _field in _record["fields"]]
    _types[_record["name"]]._fields_ = _fields
    if ctypes.sizeof(_types[_record["name"]]) != _record["size64" if ctypes.sizeof(ctypes.c_void_p) == 8 else "size32"]:
        raise ImportError(f"the record {_record['name']} has another size here than in {description['library']}")

globals().update({name: _types[name] for name in
                  [record["name"] for record in description["records"] + description["methodTables"]]})


def _raise_code(code, function, arguments):
    if code != 0:
        raise Error(code, function.__name__)
    return code


def _raise_flag(flag, function, arguments):
    if flag == 0:
        raise Error(9, function.__name__)
    return flag


for _name, _function in _functions.items():
    if "arguments" not in _function:
        continue
    _entry = library[_function["decorated"] if _windows else _name]
    _entry.__name__ = _name
    _entry.restype, *_entry.argtypes = _signature(_function)
    _check = {"code": _raise_code, "flag": _raise_flag}.get(_function["answer"])
    if _check is not None:
        _entry.errcheck = _check
    globals()[_name] = _entry

#: The library's own bitmap functions, for KX_createBitmap and its kin.
bitmap_methods = _types["BitmapMethods"]()
globals()["KX_getBitmapInterface"](bitmap_methods, None, None, 0)


class Picture:
    """A bitmap that is deleted with the `with` block or by close(). `bitmap` is its handle for the functions."""

    def __init__(self, width, height, format=7):
        self.bitmap = ctypes.POINTER(_types["Bitmap"])()
        KX_createBitmap(ctypes.byref(self.bitmap), width, height, format, 0, 0, bitmap_methods)
        self.width, self.height, self.format = width, height, format

    def close(self):
        if self.bitmap:
            KX_deleteBitmap(self.bitmap)
            self.bitmap = ctypes.POINTER(_types["Bitmap"])()

    def __enter__(self):
        return self

    def __exit__(self, *unused):
        self.close()

    def colour(self, red, green, blue):
        """A colour as the functions take it for this bitmap."""
        return KX_toRGB(self.format, red, green, blue)

    def rgb(self):
        """The pixels as bytes: red, green, blue, row by row. Formats 3, 5, 6 and 7, plain."""
        if self.format == 7:
            record, rows = self.bitmap.contents, []
            for y in range(self.height):
                at = ctypes.addressof(record.pixels.contents) + y * record.pitch
                row = bytearray(ctypes.string_at(at, 3 * self.width))
                row[0::3], row[2::3] = row[2::3], row[0::3]
                rows.append(bytes(row))
            return b"".join(rows)
        with Picture(self.width, self.height, 7) as copy:
            KX_bltCopy(copy.bitmap, 0, 0, self.bitmap, 0, 0, self.width, self.height)
            return copy.rgb()

    def save(self, name):
        """Writes a PNG file."""
        pixels, pitch = self.rgb(), 3 * self.width
        rows = b"".join(b"\0" + pixels[at:at + pitch] for at in range(0, len(pixels), pitch))

        def chunk(kind, data):
            return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

        with open(name, "wb") as file:
            file.write(b"\x89PNG\r\n\x1a\n"
                       + chunk(b"IHDR", struct.pack(">IIBBBBB", self.width, self.height, 8, 2, 0, 0, 0))
                       + chunk(b"IDAT", zlib.compress(rows, 9)) + chunk(b"IEND", b""))
