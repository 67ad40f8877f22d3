// Reading the lists.
// SPDX-License-Identifier: MIT
#include "interface.h"

#include "kxgraphic/kxgraphic.h"

namespace kxinterface {

std::vector<Function> functions() {
  return {
#define KX_METHOD(slot, result, parameters) \
  {"KX_" #slot, #result, parametersOf(#parameters), Function::State::Designed, true},
#define KX_PLACEHOLDER(slot, result, parameters) \
  {"KX_" #slot, #result, parametersOf(#parameters), Function::State::Placeholder, true},
#define KX_UNDESIGNED(slot, result, parameters) \
  {"KX_" #slot, #result, parametersOf(#parameters), Function::State::Reserved, true},
#define KX_FUNCTION(name, result, parameters) \
  {#name, #result, parametersOf(#parameters), Function::State::Designed, false},
#include "kxgraphic/exports/all.inc"
#undef KX_METHOD
#undef KX_PLACEHOLDER
#undef KX_UNDESIGNED
#undef KX_FUNCTION
  };
}

std::vector<Table> tables() {
  return {
#define KX_TABLE(name, type, dimensions) {#name, #type, #dimensions, sizeof(name)},
#include "kxgraphic/exports/data.inc"
#undef KX_TABLE
  };
}

std::vector<Record> records() {
  std::vector<Record> result;
#define KX_RECORD(record, size32, size64) result.push_back({#record, sizeof(record), size32, size64, {}});
#define KX_FIELD(record, type, field, count, offset32, offset64) \
  result.back().fields.push_back({#type, #field, count, offsetof(record, field), offset32, offset64});
#include "kxgraphic/exports/records.inc"
#undef KX_RECORD
#undef KX_FIELD
  return result;
}

std::vector<MethodTable> methodTables() {
#define KX_METHOD(slot, result, parameters) #slot,
#define KX_PLACEHOLDER KX_METHOD
#define KX_UNDESIGNED KX_METHOD
  return {
      {"BitmapMethods",
       sizeof(BitmapMethods),
       {
#include "kxgraphic/exports/bitmap_methods.inc"
       }},
      {"ScreenMethods",
       sizeof(ScreenMethods),
       {
#include "kxgraphic/exports/screen_methods.inc"
       }},
      {"DeviceMethods",
       sizeof(DeviceMethods),
       {
#include "kxgraphic/exports/device_methods.inc"
       }},
  };
#undef KX_METHOD
#undef KX_PLACEHOLDER
#undef KX_UNDESIGNED
}

std::vector<Fault> faults() {
  return {
#define KX_ERROR_GROUP(name, text)
#define KX_ERROR(code, leaf, group, german, english) {code, #leaf, #group, german, english},
#include "kxgraphic/exports/errors.inc"
#undef KX_ERROR_GROUP
#undef KX_ERROR
  };
}

std::vector<Constant> constants() {
#define KX_CONSTANT(name) \
  { #name, name }
  return {KX_CONSTANT(KX_FORMAT_MONO),       KX_CONSTANT(KX_FORMAT_GREY),        KX_CONSTANT(KX_FORMAT_PALETTE),
          KX_CONSTANT(KX_FORMAT_555),        KX_CONSTANT(KX_FORMAT_565),         KX_CONSTANT(KX_FORMAT_888),
          KX_CONSTANT(KX_FORMAT_CODE_MASK),  KX_CONSTANT(KX_STORAGE_PACKED),     KX_CONSTANT(KX_STORAGE_MASK),
          KX_CONSTANT(KX_BORROWED_PIXELS),   KX_CONSTANT(KX_BORROWED_ROW_TABLE), KX_CONSTANT(KX_BORROWED_PALETTE),
          KX_CONSTANT(KX_BORROWED_TABLE15),  KX_CONSTANT(KX_BORROWED_TABLE16),   KX_CONSTANT(KX_BORROWED_TABLE8),
          KX_CONSTANT(KX_MODE_KIND_MASK),    KX_CONSTANT(KX_MODE_NONE),          KX_CONSTANT(KX_MODE_WINDOWED),
          KX_CONSTANT(KX_MODE_FULL_SCREEN),  KX_CONSTANT(KX_MODE_BUFFERS_MASK),  KX_CONSTANT(KX_MODE_TWO_BUFFERS),
          KX_CONSTANT(KX_MODE_THREE_BUFFERS)};
#undef KX_CONSTANT
}

}  // namespace kxinterface
