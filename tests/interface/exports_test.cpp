// The exports as a program sees them: every function links and is found by its text, the tables can be read.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cstddef>

#include "kxgraphic/kxgraphic.h"
#include "symbols.h"

namespace {

struct Export {
  const char* name;
  unsigned argumentBytes;
  void (*function)();
  bool isSlot;
};

/// Every argument takes one word of the stack where the bytes are counted.
template <typename Value, typename... Arguments>
Export describe(const char* name, Value(KX_CALL* function)(Arguments...), bool isSlot) {
  return {name, 4 * static_cast<unsigned>(sizeof...(Arguments)), reinterpret_cast<void (*)()>(function), isSlot};
}

#define KX_METHOD(slot, result, parameters) describe("KX_" #slot, &KX_##slot, true),
#define KX_PLACEHOLDER KX_METHOD
#define KX_UNDESIGNED(slot, result, parameters)
#define KX_FUNCTION(name, result, parameters) describe(#name, &name, false),
const Export functions[] = {
#include "kxgraphic/exports/all.inc"
};
#undef KX_METHOD
#undef KX_PLACEHOLDER
#undef KX_UNDESIGNED
#undef KX_FUNCTION

TEST(Exports, EveryFunctionLinksAndIsFoundByItsText) {
  for (const Export& item : functions) {
    EXPECT_NE(nullptr, item.function);
    EXPECT_NE(nullptr, kxtest::exportedSymbol(item.name, item.argumentBytes)) << item.name;
    if (item.isSlot) {
      EXPECT_NE(nullptr, kxtest::driverSymbol(item.name, item.argumentBytes)) << item.name;
    }
  }
  EXPECT_EQ(nullptr, kxtest::driverSymbol("KX_noSuchFunction", 4));
  EXPECT_EQ(nullptr, kxtest::driverSymbol("mmgr_alloc", 4));
}

/// A slot that no function stands behind yet, called as it will be one day.
template <typename... Arguments>
std::uint32_t callUndesigned(KxUndesignedMethod slot, std::uint32_t(KX_CALL*)(Arguments...)) {
  return reinterpret_cast<std::uint32_t(KX_CALL*)(Arguments...)>(slot)(Arguments{}...);
}

TEST(Exports, UndesignedSlotsAnswerThatTheyAreNotSupported) {
  BitmapMethods table;
  ASSERT_EQ(1u, KX_getBitmapInterface(&table, nullptr, nullptr, 0));
#define KX_UNDESIGNED(slot, result, parameters) \
  EXPECT_EQ(6u, callUndesigned(table.slot, static_cast<result(KX_CALL*) parameters>(nullptr))) << #slot;
#include "kxgraphic/exports/undesigned_methods.inc"
#undef KX_UNDESIGNED
}

TEST(Exports, AlphaTablesAreFilledAtLoad) {
  unsigned wrong = 0;
  const auto check = [&wrong](const auto& direct, const auto& inverse) {
    for (unsigned alpha = 0; alpha < 256; ++alpha)
      for (unsigned value = 0; value < std::size(direct[0]); ++value)
        wrong += direct[alpha][value] != alpha * value || inverse[alpha][value] != (255 - alpha) * value;
  };
  check(Alpha8BPP_Color8BPP, Alpha8BPP_Color8BPP_Inverse);
  check(Alpha8BPP_Color15BPP, Alpha8BPP_Color15BPP_Inverse);
  check(Alpha8BPP_Color16BPP, Alpha8BPP_Color16BPP_Inverse);
  for (unsigned sum = 0; sum <= 255 * 255; ++sum) wrong += Alpha8BPP_DivTable[sum] != sum / 255;
  EXPECT_EQ(0u, wrong);
}

}  // namespace
