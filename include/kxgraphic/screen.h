/* kxgraphic: video modes and presenting frames.
 *
 * A Screen owns one, two or three buffers. The caller draws into the back buffer and calls KX_flip, which lets the
 * buffers change places and puts the new front buffer on the display. With one buffer, front and back are the same
 * bitmap; with three they rotate: back to front, third to back, front to third.
 *
 * A mode is windowed (buffers of the window's client size, always 5-5-5) or full screen (buffers of the display's size
 * and of its depth). Any number of windowed screens may be set up at a time, or one full-screen screen. A mode that is
 * in force is restored before another is set.
 *
 * Every function tests the handle first: 7 when it is not writable, 3 when the version in the record is not 0x10000.
 * The screen calls its own restoreMode through the table it was created with; where that slot is null, as in the table
 * that KX_getScreenInterface leaves without a driver, KX_restoreMode itself stands in.
 *
 * Windows: the window is an HWND, and full screen switches the display mode.
 * Elsewhere: the window is an SDL_Window* of the caller's, and the modes are those of SDL's display 0, each at 16 and
 * at 24 bits. Full screen is a borderless window over the desktop, with the frame scaled by the greatest whole factor
 * that fits and centred (a frame larger than the desktop is scaled down in proportion); restoring gives the window back
 * as it was. Frames go through the window's surface (SDL_GetWindowSurface). SDL2 is loaded when a screen first needs
 * it; without it there are no modes, and no handle is a window.
 *
 * SPDX-License-Identifier: MIT */
#ifndef KXGRAPHIC_SCREEN_H
#define KXGRAPHIC_SCREEN_H

#include "types.h"

/** The flags of KX_setMode: a kind and a number of buffers. Kinds 3, 6 and 7 are full screen and 4 and 5 windowed, none
 *  of which changes the display mode. */
enum KxModeFlags {
  KX_MODE_KIND_MASK = 0x07,    /**< the bits of the kind */
  KX_MODE_NONE = 0x00,         /**< only restore */
  KX_MODE_WINDOWED = 0x01,     /**< buffers of the window's client size */
  KX_MODE_FULL_SCREEN = 0x02,  /**< as a bit of the kind: the buffers are the whole display's */
  KX_MODE_BUFFERS_MASK = 0x18, /**< the bits of the number of buffers */
  KX_MODE_TWO_BUFFERS = 0x08,  /**< front and back */
  KX_MODE_THREE_BUFFERS = 0x10 /**< both bits or neither: one buffer */
};

#include "exports/declare_begin.inc"
#include "exports/screen_object.inc"
#include "exports/declare_end.inc"

#endif
