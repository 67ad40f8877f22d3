/* kxgraphic: the records, handles and method tables of the interface.
 * Every other public header builds on this one.
 * SPDX-License-Identifier: MIT */
#ifndef KXGRAPHIC_TYPES_H
#define KXGRAPHIC_TYPES_H

#include <stdint.h>

#ifdef _WIN32
#define KX_CALL __stdcall
#else
#define KX_CALL
#endif

/* Tables of data must be imported on Windows; a program that links the static archive defines KXGRAPHIC_STATIC. */
#if defined(_WIN32) && !defined(KXGRAPHIC_STATIC)
#define KX_DATA __declspec(dllimport)
#else
#define KX_DATA
#endif

#ifdef __cplusplus
extern "C" {
#endif

typedef struct Bitmap Bitmap;
typedef struct BitmapMethods BitmapMethods;
typedef struct Screen Screen;
typedef struct ScreenMethods ScreenMethods;
typedef struct Device3D Device3D;
typedef struct DeviceMethods DeviceMethods;
typedef struct Texture Texture;
typedef struct Camera Camera;
typedef struct Landscape Landscape;

/** Format words: a format code in the low four bits, the kind of storage in bits 4 and 5. */
enum KxFormat {
  KX_FORMAT_MONO = 0,    /**< one bit per pixel, the leftmost pixel in the most significant bit */
  KX_FORMAT_GREY = 3,    /**< eight bits, one intensity; also alpha maps, Z buffers and Z maps */
  KX_FORMAT_PALETTE = 4, /**< eight bits, an index into the bitmap's palette */
  KX_FORMAT_555 = 5,     /**< sixteen bits: red in bits 10-14, green 5-9, blue 0-4 */
  KX_FORMAT_565 = 6,     /**< sixteen bits: red in bits 11-15, green 5-10, blue 0-4 */
  KX_FORMAT_888 = 7,     /**< three bytes in memory order blue, green, red */
  KX_FORMAT_CODE_MASK = 0x0F,
  KX_STORAGE_PACKED = 0x10, /**< or'ed to a code: rows are run-length coded and reached through the row table */
  KX_STORAGE_MASK = 0x30
};

/** Bits of Bitmap.flags: a set bit marks a block that belongs to somebody else and is never freed. */
enum KxBitmapFlags {
  KX_BORROWED_PIXELS = 0x01,    /**< the pixels, which then end with their last row */
  KX_BORROWED_ROW_TABLE = 0x02, /**< the row table of a packed bitmap */
  KX_BORROWED_PALETTE = 0x04,   /**< the palette */
  KX_BORROWED_TABLE15 = 0x08,   /**< the palette's translation to 5-5-5 */
  KX_BORROWED_TABLE16 = 0x10,   /**< the palette's translation to 5-6-5 */
  KX_BORROWED_TABLE8 = 0x20     /**< the palette's translation to grey */
};

/** An image. Drivers create such records too, so the layout is part of the interface. */
struct Bitmap {
  BitmapMethods* methods; /**< table given at creation; the bitmap is locked and drawn through it */
  uint32_t version;       /**< always 0x10000 */
  uint32_t lockCount;     /**< KX_lock raises it, KX_unlock lowers it */
  int32_t width;          /**< pixels, above 0 */
  int32_t height;         /**< rows, above 0 */
  uint32_t reserved6;     /**< 0 */
  uint32_t format;        /**< format code in bits 0-3, storage in bits 4-5, creation flags above */
  uint32_t flags;         /**< KxBitmapFlags */
  uint32_t reserved9;     /**< 0 */
  int32_t pitch;          /**< bytes from row to row; 0 for packed storage */
  uint8_t* pixels;        /**< rows from the top, or packed rows */
  uint32_t* rowTable;     /**< packed storage: byte offset of each row in pixels; else null */
  uint8_t* palette;       /**< format 4: 256 entries of blue, green, red; else null */
  uint16_t* table15;      /**< palette index to 5-5-5 pixel, or null */
  uint16_t* table16;      /**< palette index to 5-6-5 pixel, or null */
  uint8_t* table8;        /**< palette index to grey, or null */
  uint32_t reserved17;    /**< 0 */
  uint32_t reserved18;    /**< 0 */
  uint32_t extra1;        /**< the caller's, carried by clone and KX_createFromData */
  uint32_t extra2;        /**< the caller's, carried by clone and KX_createFromData */
  uint32_t reserved21;    /**< 0 */
  uint32_t reserved22;    /**< 0 */
};

/** A display mode, in the mode list and as a request. */
typedef struct VideoMode {
  int32_t width;    /**< pixels */
  int32_t height;   /**< pixels */
  uint32_t refresh; /**< Hz; 0 in a request means any */
  int32_t format;   /**< 5, 6 or 7: the format code of the buffers */
} VideoMode;

/** What puts finished frames on the display. */
struct Screen {
  ScreenMethods* methods; /**< table given at creation */
  uint32_t version;       /**< always 0x10000 */
  VideoMode mode;         /**< the mode passed to KX_setMode, zero when none was */
  uint8_t modeFlags;      /**< low byte of the flags of the mode in force; 0 when none is set */
  uint8_t restored;       /**< 1 after KX_restoreMode of a set mode */
  int32_t frameIndex;     /**< counts the flips, from 0 to bufferCount - 1 and over again */
  int32_t bufferCount;    /**< 1, 2 or 3 */
  void* window;           /**< what KX_flip presents to: an HWND or an SDL_Window* */
  void* application;      /**< as given to KX_createScreen */
  Bitmap** thirdBuffer;   /**< a cell of its own that holds the third buffer or null */
  Bitmap* front;          /**< what KX_flip presents */
  Bitmap* back;           /**< what the caller draws into; the front buffer when there is one only */
};

/** A render target with its clip rectangle and Z buffer. */
struct Device3D {
  DeviceMethods* methods;                           /**< table given at creation */
  uint32_t version;                                 /**< always 0x10000 */
  int32_t clipLeft, clipRight, clipTop, clipBottom; /**< pixels, inclusive */
  Bitmap* target;                                   /**< null for a device on a screen */
  Screen* screen;                                   /**< null for a device on a bitmap */
  Bitmap* zBuffer;                                  /**< the device's own, or null */
  uint32_t parameter1, parameter2;                  /**< stored, not interpreted */
  int32_t renderingDepth;                           /**< calls of KX_beginRendering not ended yet */
  uint16_t savedControlWord;                        /**< x87 control word at the outermost KX_beginRendering */
};

/** A chain of mip levels in the pixel format of the device's target. */
struct Texture {
  Device3D* device;      /**< the device it was made for */
  Bitmap* levels[9];     /**< level 0 is the full size; null beyond levelCount */
  int32_t widthCodes[9]; /**< log2(level width) + 1 */
  int32_t levelCount;    /**< 1 to 9 */
};

/** A position, three angles and a projection. */
struct Camera {
  Device3D* device;                       /**< the device it was made for */
  float position[6];                      /**< x, y, z; the other three are stored only */
  float rotation[6];                      /**< three angles in radians; the other three are stored only */
  float parameters[5];                    /**< distance, view width, view height, screen width, screen height */
  float matrix[9];                        /**< row by row */
  float scaleX, scaleY, centreX, centreY; /**< of the projection, pixels */
};

/** A triangle's corner with float fields (integer flag 0). */
typedef struct VertexFloat {
  float x, y, z;  /**< screen position in pixels; z is not used */
  float u, v;     /**< texel position in level 0 */
  uint32_t shade; /**< signed bytes added to the channels: byte 0 blue, 1 green, 2 red */
} VertexFloat;

/** A triangle's corner with integer fields (integer flag not 0). */
typedef struct VertexInt {
  int32_t x, y, z; /**< screen position in pixels; z is not used */
  int32_t u, v;    /**< texel position in level 0 */
  uint32_t shade;  /**< as in VertexFloat */
} VertexInt;

/** A height-map terrain of width x height cells. */
struct Landscape {
  Device3D* device;            /**< whose target bounds drawing */
  uint32_t position[6];        /**< stored values of the drawing transformation */
  float scale[6];              /**< the first three are above 0 */
  int32_t width, height;       /**< cells, 1 or more */
  uint8_t* heightMap;          /**< width x height, row by row */
  uint8_t* lightMap;           /**< 1 or 3 bytes a cell, by colourLight */
  uint16_t* textureMap;        /**< 1-based index into the texture table; 0 is none */
  uint32_t colourLight;        /**< 1: three light bytes a cell (red, green, blue); else one */
  int32_t textureCount;        /**< 0 to 32767 */
  uintptr_t* textureHandles;   /**< null while textureCount is 0 */
  uint32_t* textureParameters; /**< one a texture */
  uint8_t* textureFlags;       /**< one a texture */
  uint32_t drawingState[4];    /**< cleared whenever the size changes */
  void* preparedGeometry;      /**< null */
  void* materials;             /**< null */
  void* selection;             /**< null */
};

/** The caller's description of one texture, for saving and restoring a landscape. */
typedef struct TextureRef {
  uintptr_t handle; /**< as in Landscape.textureHandles; 0 when read from a block */
  char name[64];    /**< stored and returned verbatim */
  uint32_t value;   /**< stored and returned */
} TextureRef;

/* The method tables: a version word (0x10000), then one typed slot a function, in the order of the lists.
 * A slot whose argument list is not public yet has the type KxUndesignedMethod. */
typedef void(KX_CALL* KxUndesignedMethod)(void);
#define KX_METHOD(slot, result, parameters) result(KX_CALL* slot) parameters;
#define KX_PLACEHOLDER(slot, result, parameters) result(KX_CALL* slot) parameters;
#define KX_UNDESIGNED(slot, result, parameters) KxUndesignedMethod slot;

struct BitmapMethods {
  uint32_t version;
#include "exports/bitmap_methods.inc"
};

struct ScreenMethods {
  uint32_t version;
#include "exports/screen_methods.inc"
};

struct DeviceMethods {
  uint32_t version;
#include "exports/device_methods.inc"
};

#undef KX_METHOD
#undef KX_PLACEHOLDER
#undef KX_UNDESIGNED

#ifdef __cplusplus
}
#endif

#endif
