/* kxgraphic: faults, method tables and drivers.
 * SPDX-License-Identifier: MIT */
#ifndef KXGRAPHIC_FRAME_H
#define KXGRAPHIC_FRAME_H

#include "errors.h"
#include "types.h"

/* Results. Functions return 0 or the code of a fault (KxError); they test their arguments in the order of the argument
 * list and change nothing when a test fails. Codes that any function may return:
 *   2       memory ran out; what the call had allocated is freed, its outputs are untouched
 *   7       a pointer that cannot be accessed (the first four bytes are tried), or a value out of its domain
 *   0x2000  the operation does not know the pixel format
 *   0x2001  the bitmap's pixel memory or row table cannot be accessed
 *   0x2002  the palette cannot be accessed
 *
 * Method tables. Bitmaps, screens and 3D devices are reached through tables of functions: a version (0x10000), then one
 * slot a function, named as the export without "KX_". A program fills a table, makes objects through it and keeps it as
 * long as they live: each object points at its table, and the library itself locks, reads and deletes an object through
 * that table only.
 *
 * Drivers. A library that exports some of these functions under names of its own stands in for them. The text of a slot
 * is "_", the prefix, "_", the slot's name and, on Windows, "@" and the bytes of its arguments: with the prefix "ACME"
 * "_ACME_lock@4" on Windows and "_ACME_lock" elsewhere. The library exports the functions of its tables
 * under "KX" in this way too, so that it can be a driver of itself. */

#include "exports/declare_begin.inc"
#include "exports/common_methods.inc"
#include "exports/interfaces.inc"
#include "exports/declare_end.inc"

#endif
