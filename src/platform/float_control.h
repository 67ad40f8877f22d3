// The processor's floating-point modes: the x87 control word and the rounding mode of SSE arithmetic. Both belong to
// the calling thread. Processors without them get functions that do nothing. SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#if defined(__i386__) || defined(__x86_64__)
#include <xmmintrin.h>
#define KX_HAS_X87 1
#endif

namespace kx::platform {

/// Bits of the x87 control word.
constexpr std::uint16_t x87ExceptionMasks = 0x003F;
constexpr std::uint16_t x87PrecisionControl = 0x0300;  ///< 0: single precision
constexpr std::uint16_t x87RoundingControl = 0x0C00;   ///< 0: to nearest

/// Rounding bits of the SSE control register; 0: to nearest.
constexpr std::uint32_t sseRoundingControl = 0x6000;

#ifdef KX_HAS_X87

inline std::uint16_t x87ControlWord() {
  std::uint16_t word = 0;  // the memory sanitizer does not see what assembly writes
  __asm__ volatile("fnstcw %0" : "=m"(word));
  return word;
}

inline void setX87ControlWord(std::uint16_t word) { __asm__ volatile("fldcw %0" : : "m"(word) : "memory"); }

inline std::uint32_t sseControl() { return _mm_getcsr(); }
inline void setSseControl(std::uint32_t control) { _mm_setcsr(control); }

#else

inline std::uint16_t x87ControlWord() { return x87ExceptionMasks; }
inline void setX87ControlWord(std::uint16_t) {}
inline std::uint32_t sseControl() { return 0; }
inline void setSseControl(std::uint32_t) {}

#endif

}  // namespace kx::platform
