/* kxgraphic: what a result code means, in words. Inline functions for C11 and C++17, made from the list of errors;
 * nothing of the library is called. Texts are static and in UTF-8 (the lines of ERRORLOG.TXT are in Windows-1252).
 * SPDX-License-Identifier: MIT */
#ifndef KXGRAPHIC_ERROR_TEXT_H
#define KXGRAPHIC_ERROR_TEXT_H

#include <stdint.h>

#define KX_ERROR_GROUP(name, text)

/** The name of a code's exception class: 0x2005 gives "KX_CoordinateOutOfRange_Exception". 0 gives "KX_NO_ERROR", a
 * code without a class "unknown code".
 *  @param code a result code
 *  @return static text, never null */
static inline const char* kxErrorName(uint32_t code) {
  switch (code) {
    case 0:
      return "KX_NO_ERROR";
#define KX_ERROR(number, leaf, group, german, english) \
  case number:                                         \
    return "KX_" #leaf "_Exception";
#include "exports/errors.inc"
#undef KX_ERROR
    default:
      return "unknown code";
  }
}

/** The library's own message, in German: 0x2005 gives "Koordinaten außerhalb des gültigen Bereichs". 0 gives "kein
 *  Fehler", a code without a class "unbekannter Code".
 *  @param code a result code
 *  @return static text in UTF-8, never null */
static inline const char* kxErrorTextGerman(uint32_t code) {
  switch (code) {
    case 0:
      return "kein Fehler";
#define KX_ERROR(number, leaf, group, german, english) \
  case number:                                         \
    return german;
#include "exports/errors.inc"
#undef KX_ERROR
    default:
      return "unbekannter Code";
  }
}

/** The message in English: 0x2005 gives "coordinates out of range". 0 gives "no error", a code without a class "unknown
 *  code".
 *  @param code a result code
 *  @return static text, never null */
static inline const char* kxErrorText(uint32_t code) {
  switch (code) {
    case 0:
      return "no error";
#define KX_ERROR(number, leaf, group, german, english) \
  case number:                                         \
    return english;
#include "exports/errors.inc"
#undef KX_ERROR
    default:
      return "unknown code";
  }
}

#undef KX_ERROR_GROUP

#endif
