/* kxgraphic: names for the result codes.
 * SPDX-License-Identifier: MIT */
#ifndef KXGRAPHIC_ERRORS_H
#define KXGRAPHIC_ERRORS_H

#define KX_ERROR_GROUP(name, text)
#define KX_ERROR(code, leaf, group, text, english) KX_ERROR_##leaf = (code),

/** Result codes: KX_ERROR_<leaf> is the code of the exception class KX_<leaf>_Exception. Bits 12 to 15 name the group.
 */
enum KxError {
  KX_NO_ERROR = 0,
#include "exports/errors.inc"
};

#undef KX_ERROR_GROUP
#undef KX_ERROR

#endif
