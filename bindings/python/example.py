"""Draws a night over water, half of it by alpha, and saves it: python3 example.py [night.png]
SPDX-License-Identifier: MIT
"""
import ctypes
import sys

import kxgraphic as kx

WIDTH, HEIGHT, HORIZON = 320, 200, 120

with kx.Picture(WIDTH, HEIGHT, kx.KX_FORMAT_565) as picture:
    night = picture.bitmap
    for y in range(HORIZON):
        kx.KX_fillRect(night, 0, y, WIDTH, 1, picture.colour(y // 4, y // 3, 40 + y))

    # The moon, with a halo of rings that each hide less.
    for radius in range(60, 20, -4):
        for y in range(-radius, radius + 1):
            half = int((radius * radius - y * y) ** 0.5)
            if 0 <= 60 + y < HORIZON:
                kx.KX_fillRectAlpha(night, 220 - half, 60 + y, 2 * half + 1, 1, picture.colour(255, 250, 200),
                                    40 if radius < 28 else 225)

    # The water: the sky upside down, darker to the front.
    for y in range(HORIZON, HEIGHT):
        kx.KX_bltCopy(night, 0, y, night, 0, 2 * HORIZON - y - 1, WIDTH, 1)
        kx.KX_fillRectAlpha(night, 0, y, WIDTH, 1, picture.colour(0, 20, 40), 220 - y)
    for x in range(80, 240, 8):
        kx.KX_drawDottedLineAlpha(night, x, HORIZON, 2 * x - 160, HEIGHT - 1, picture.colour(255, 255, 255), 3, 200)

    try:
        kx.KX_fillRect(night, 300, 0, 40, 1, 0)
    except kx.Error as error:
        print("as expected:", error)

    size = ctypes.c_uint32()
    kx.KX_getBitmapSize(night, ctypes.byref(size))
    checksum = kx.KX_calculateCRC(night.contents.pixels, size.value)
    name = sys.argv[1] if len(sys.argv) > 1 else "night.png"
    picture.save(name)
    print(f"{name}: {WIDTH} x {HEIGHT} pixels, CRC {checksum:08X}, kxgraphic {kx.version}")
