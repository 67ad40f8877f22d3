// Programs compiled for old Windows keep the stack aligned to 4 bytes only, and leave rubbish beside 8-bit arguments;
// calls from there work the same. SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "calls.h"

// Calls a __stdcall function with the given words as its arguments. The stack pointer at the call is `shift` bytes
// below a multiple of 16.
extern "C" std::uint32_t callWithStackShifted(void (*function)(), const std::uint32_t* words, std::uint32_t count,
                                              std::uint32_t shift);
__asm__(
    ".text\n"
    ".globl _callWithStackShifted\n"
    "_callWithStackShifted:\n"
    "  pushl %ebp\n"
    "  movl %esp, %ebp\n"
    "  pushl %esi\n"
    "  movl 12(%ebp), %esi\n"
    "  movl 16(%ebp), %ecx\n"
    "  leal (,%ecx,4), %eax\n"
    "  subl %eax, %esp\n"
    "  andl $-16, %esp\n"
    "  subl 20(%ebp), %esp\n"
    "  xorl %edx, %edx\n"
    "1:\n"
    "  cmpl %ecx, %edx\n"
    "  je 2f\n"
    "  movl (%esi,%edx,4), %eax\n"
    "  movl %eax, (%esp,%edx,4)\n"
    "  incl %edx\n"
    "  jmp 1b\n"
    "2:\n"
    "  call *8(%ebp)\n"
    "  leal -4(%ebp), %esp\n"
    "  popl %esi\n"
    "  popl %ebp\n"
    "  ret\n");

namespace {

/// An argument on the stack. What an 8-bit one does not fill is left as it was by many a compiler.
template <typename Parameter, typename Argument>
std::uint32_t word(Argument argument) {
  const auto parameter = static_cast<Parameter>(argument);
  std::uint32_t result = 0xA5C3A5C3;
  std::memcpy(&result, &parameter, sizeof parameter);
  return result;
}

template <typename Value, typename... Parameters, typename... Arguments>
Value callShifted(std::uint32_t shift, Value(KX_CALL* function)(Parameters...), Arguments... arguments) {
  const std::uint32_t words[] = {word<Parameters>(arguments)..., 0};
  return static_cast<Value>(
      callWithStackShifted(reinterpret_cast<void (*)()>(function), words, sizeof...(Parameters), shift));
}

TEST(StackAlignment, CallsWorkWithFourByteAlignment) {
  std::vector<std::uint32_t> expected;
  kxtest::Scene plain;
  kxtest::callEveryFamily(
      plain, [&](const char*, auto function, auto... arguments) { expected.push_back(function(arguments...)); });
  for (const std::uint32_t shift : {0u, 4u, 8u, 12u}) {
    std::vector<std::uint32_t> results;
    kxtest::Scene scene;
    kxtest::callEveryFamily(scene, [&](const char*, auto function, auto... arguments) {
      results.push_back(callShifted(shift, function, arguments...));
    });
    EXPECT_EQ(expected, results) << shift;
    EXPECT_EQ(plain.sum(), scene.sum()) << shift;
  }
}

}  // namespace
