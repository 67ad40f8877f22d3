// Filling method tables for a caller, from a driver library and from the library itself.
// SPDX-License-Identifier: MIT
#include <cstddef>
#include <cstdio>
#include <cstring>

#include "frame/checks.h"
#include "frame/heap.h"
#include "interface/method_tables.h"
#include "kxgraphic/kxgraphic.h"
#include "platform/platform.h"

namespace kx {

namespace {

/// One slot as drivers export it. Every argument takes one 32-bit word of the stack, which makes the byte count.
struct SlotSymbol {
  const char* name;
  unsigned argumentBytes;
};

template <typename Value, typename... Arguments>
constexpr SlotSymbol slotSymbol(const char* name, Value(KX_CALL*)(Arguments...)) {
  static_assert(sizeof(void*) != 4 || ((sizeof(Arguments) <= 4) && ...));
  return {name, 4 * static_cast<unsigned>(sizeof...(Arguments))};
}

#define KX_METHOD(slot, result, parameters) slotSymbol(#slot, static_cast<result(KX_CALL*) parameters>(nullptr)),
#define KX_PLACEHOLDER KX_METHOD
#define KX_UNDESIGNED KX_METHOD

constexpr SlotSymbol bitmapSymbols[] = {
#include "kxgraphic/exports/bitmap_methods.inc"
};

constexpr SlotSymbol screenSymbols[] = {
#include "kxgraphic/exports/screen_methods.inc"
};

constexpr SlotSymbol deviceSymbols[] = {
#include "kxgraphic/exports/device_methods.inc"
};

#undef KX_METHOD
#undef KX_PLACEHOLDER
#undef KX_UNDESIGNED

/// Room for the longest slot name, "_", "@" and a byte count.
constexpr std::size_t longestSlotText = 80;

/// Puts the driver's functions into the slots; null where it has none. False when the driver cannot be loaded.
bool loadSlots(void** slots, const SlotSymbol* symbols, std::size_t count, const char* driverFile, const char* prefix) {
  if (isBadReadPointer(driverFile)) return false;
  if (prefix == nullptr) prefix = "";
  if (isBadReadPointer(prefix)) return false;
  const std::size_t textSize = std::strlen(prefix) + longestSlotText;
  const HeapArray<char> text = makeHeapArray<char>(textSize);
  if (!text) return false;
  const platform::Module driver(driverFile);
  if (!driver.loaded()) return false;
  for (std::size_t i = 0; i < count; ++i) {
    if (platform::symbolsCarryByteCount)
      std::snprintf(text.get(), textSize, "_%s_%s@%u", prefix, symbols[i].name, symbols[i].argumentBytes);
    else
      std::snprintf(text.get(), textSize, "_%s_%s", prefix, symbols[i].name);
    slots[i] = driver.symbol(text.get());
  }
  return true;
}

/// The steps shared by the three families. `own` is null where the library's functions do not fill gaps.
template <typename Methods, std::size_t Count>
bool fillTable(Methods* table, const SlotSymbol (&symbols)[Count], const Methods* own, const char* driverFile,
               const char* prefix) {
  static_assert(sizeof(Methods) == (Count + 1) * sizeof(void*));
  constexpr std::size_t firstSlot = sizeof(void*);
  if (isBadWritePointer(table)) return false;
  std::memset(table, 0, sizeof(Methods));
  table->version = currentVersion;

  void* slots[Count] = {};
  if (driverFile != nullptr && !loadSlots(slots, symbols, Count, driverFile, prefix)) return false;
  if (own != nullptr) {
    void* ownSlots[Count];
    std::memcpy(ownSlots, reinterpret_cast<const char*>(own) + firstSlot, sizeof ownSlots);
    for (std::size_t i = 0; i < Count; ++i)
      if (slots[i] == nullptr) slots[i] = ownSlots[i];
  }
  std::memcpy(reinterpret_cast<char*>(table) + firstSlot, slots, sizeof slots);
  return true;
}

}  // namespace

}  // namespace kx

std::uint8_t KX_CALL KX_getBitmapInterface(BitmapMethods* table, const char* driverFile, const char* prefix,
                                           std::uint8_t driverOnly) {
  const bool fallBack = driverFile == nullptr || driverOnly == 0;
  return kx::fillTable(table, kx::bitmapSymbols, fallBack ? kx::ownBitmapMethods() : nullptr, driverFile, prefix);
}

std::uint8_t KX_CALL KX_get3DDeviceInterface(DeviceMethods* table, const char* driverFile, const char* prefix,
                                             std::uint8_t driverOnly) {
  const bool fallBack = driverFile == nullptr || driverOnly == 0;
  return kx::fillTable(table, kx::deviceSymbols, fallBack ? kx::ownDeviceMethods() : nullptr, driverFile, prefix);
}

// Settled: the screen table has no fallback, and without a driver it stays empty and the answer is 0.
std::uint8_t KX_CALL KX_getScreenInterface(ScreenMethods* table, const char* driverFile, const char* prefix) {
  const bool filled = kx::fillTable<ScreenMethods>(table, kx::screenSymbols, nullptr, driverFile, prefix);
  return filled && driverFile != nullptr;
}
