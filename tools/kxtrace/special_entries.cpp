// The entries that do more than pass a call on.
// Method tables: a program would call the library's own functions there unseen, so those slots get the functions of
// this library instead. Slots of another driver stay its own. Reports of faults: they may leave with an exception.
// SPDX-License-Identifier: MIT
#include "interface/undesigned.h"
#include "kxgraphic/kxgraphic.h"
#include "original.h"
#include "trace.h"

namespace {

using kxtrace::Entry;

template <typename Value, typename... Arguments>
void takeSlot(Value(KX_CALL*& slot)(Arguments...), const char* name, Value(KX_CALL* here)(Arguments...)) {
  if (reinterpret_cast<void*>(slot) == kxtrace::findOriginal(name, 4 * static_cast<unsigned>(sizeof...(Arguments))))
    slot = here;
}

template <typename Value, typename... Arguments>
void takeSlot(KxUndesignedMethod& slot, const char* name, Value(KX_CALL* here)(Arguments...)) {
  auto typed = reinterpret_cast<Value(KX_CALL*)(Arguments...)>(slot);
  takeSlot(typed, name, here);
  slot = reinterpret_cast<KxUndesignedMethod>(typed);
}

#define KX_METHOD(slot, result, parameters) takeSlot(table->slot, "KX_" #slot, &KX_##slot);
#define KX_PLACEHOLDER KX_METHOD
#define KX_UNDESIGNED KX_METHOD

void takeSlots(BitmapMethods* table) {
#include "kxgraphic/exports/bitmap_methods.inc"
}

void takeSlots(DeviceMethods* table) {
#include "kxgraphic/exports/device_methods.inc"
}

void takeSlots(ScreenMethods* table) {
#include "kxgraphic/exports/screen_methods.inc"
}

#undef KX_METHOD
#undef KX_PLACEHOLDER
#undef KX_UNDESIGNED

}  // namespace

std::uint8_t KX_CALL KX_getBitmapInterface(BitmapMethods* table, const char* driverFile, const char* prefix,
                                           std::uint8_t driverOnly) {
  static Entry entry{"KX_getBitmapInterface", "table, driverFile, prefix, driverOnly", kxtrace::Answer::Flag};
  const std::uint8_t filled = kxtrace::pass(entry, &KX_getBitmapInterface, table, driverFile, prefix, driverOnly);
  if (filled != 0) takeSlots(table);
  return filled;
}

std::uint8_t KX_CALL KX_get3DDeviceInterface(DeviceMethods* table, const char* driverFile, const char* prefix,
                                             std::uint8_t driverOnly) {
  static Entry entry{"KX_get3DDeviceInterface", "table, driverFile, prefix, driverOnly", kxtrace::Answer::Flag};
  const std::uint8_t filled = kxtrace::pass(entry, &KX_get3DDeviceInterface, table, driverFile, prefix, driverOnly);
  if (filled != 0) takeSlots(table);
  return filled;
}

std::uint8_t KX_CALL KX_getScreenInterface(ScreenMethods* table, const char* driverFile, const char* prefix) {
  static Entry entry{"KX_getScreenInterface", "table, driverFile, prefix", kxtrace::Answer::Flag};
  // Without a driver there is nothing to fill in, and every program asks so.
  entry.answer = driverFile == nullptr ? kxtrace::Answer::Value : kxtrace::Answer::Flag;
  const std::uint8_t filled = kxtrace::pass(entry, &KX_getScreenInterface, table, driverFile, prefix);
  if (filled != 0) takeSlots(table);
  return filled;
}

// The line is written first, as there may be no return.
std::uint32_t KX_CALL KX_reportError(std::uint32_t code, std::int32_t line, const char* file) {
  static Entry entry{"KX_reportError", "code, line, file", kxtrace::Answer::Code};
  const auto original = kxtrace::originalOf(entry, &KX_reportError);
  if (original == nullptr) return code;
  const std::uint32_t number = kxtrace::count(entry);
  if (code != 0) kxtrace::countFailure(entry, code);
  if (const unsigned depth = kxtrace::CallDepth::now(); kxtrace::writes(entry, depth, code != 0)) {
    kxtrace::Line text;
    kxtrace::describeCall(text, entry, code, line, file);
    text.add(" ");
    kxtrace::describeCode(text, code);
    kxtrace::write(number, depth, text);
  }
  return original(code, line, file);
}
