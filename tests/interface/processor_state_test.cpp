// Calls leave the control words of the processor's floating-point units as they found them.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <xmmintrin.h>

#include "calls.h"

namespace {

std::uint16_t x87ControlWord() {
  std::uint16_t word = 0;
  __asm__ volatile("fnstcw %0" : "=m"(word));
  return word;
}

void setX87ControlWord(std::uint16_t word) { __asm__ volatile("fldcw %0" : : "m"(word)); }

/// Without the flags that arithmetic itself leaves behind.
unsigned sseControlBits() { return _mm_getcsr() & ~0x3Fu; }

TEST(ProcessorState, FloatingPointControlWordsAreKept) {
  kxtest::Scene scene;
  const std::uint16_t usualWord = x87ControlWord();
  const unsigned usualBits = _mm_getcsr();
  // Single precision, rounding up: what no part of the library would set by chance.
  constexpr std::uint16_t oddWord = 0x087F;
  const unsigned oddBits = (sseControlBits() & ~0x6000u) | 0x4000u;
  const char* blamed = nullptr;
  kxtest::callEveryFamily(scene, [&](const char* name, auto function, auto... arguments) {
    setX87ControlWord(oddWord);
    _mm_setcsr(oddBits);
    function(arguments...);
    if (x87ControlWord() != oddWord || sseControlBits() != oddBits) blamed = name;
  });
  setX87ControlWord(usualWord);
  _mm_setcsr(usualBits);
  EXPECT_STREQ(nullptr, blamed);
}

}  // namespace
