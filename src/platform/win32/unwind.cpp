// Throwing out of a DLL that carries its own copy of the compiler's unwinder.
//
// A program compiled with the same compiler has an unwinder too, and each of the two knows the functions of its own
// module only: without help a throw from here finds no handler in the program and ends it. So before a throw the stack
// is walked, and the unwind table of each module met there that is not known yet (section .eh_frame) is registered with
// this DLL's unwinder. It is registered as a copy in which the personality routine, the function that reads a frame's
// list of handlers, is this DLL's: the program's would call into the program's unwinder, which aborts when the program
// itself has not thrown before.
// SPDX-License-Identifier: MIT
#include <windows.h>

#include <unwind.h>

#include <cstdint>
#include <cstring>

#include "platform/platform.h"

// Of the compiler's runtime library; no header declares them.
extern "C" {
struct dwarf_eh_bases {
  void* tbase;
  void* dbase;
  void* func;
};
const void* _Unwind_Find_FDE(void* address, dwarf_eh_bases* bases);
void __register_frame_info(const void* table, void* storage);
void __gxx_personality_v0();
}

namespace kx::platform {

namespace {

using Byte = unsigned char;

std::uint32_t load(const Byte* p) {
  std::uint32_t value;
  std::memcpy(&value, p, sizeof value);
  return value;
}

void store(Byte* p, std::uint32_t value) { std::memcpy(p, &value, sizeof value); }

/// A section of a loaded module.
struct Section {
  Byte* begin = nullptr;
  std::uint32_t size = 0;
};

/// The start of the module that holds an address, or null.
Byte* moduleOf(const void* address) {
  MEMORY_BASIC_INFORMATION memory;
  if (VirtualQuery(address, &memory, sizeof memory) == 0 || memory.Type != MEM_IMAGE) return nullptr;
  return static_cast<Byte*>(memory.AllocationBase);
}

/// True for a section that starts with the head of an unwind table: a CIE (a length, the id 0, version 1 or 3).
bool startsLikeUnwindTable(const Section& section) {
  return section.size > 9 && load(section.begin) != 0 && load(section.begin + 4) == 0 &&
         (section.begin[8] == 1 || section.begin[8] == 3);
}

/// The .eh_frame section. Its name has nine letters: a loaded image has the first eight of them, or "/" and an offset
/// into a table of names that stays in the file, as debug sections have too.
Section findUnwindTable(Byte* module) {
  const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(module);
  const auto* nt = reinterpret_cast<const IMAGE_NT_HEADERS*>(module + dos->e_lfanew);
  const auto* headers = reinterpret_cast<const IMAGE_SECTION_HEADER*>(
      reinterpret_cast<const Byte*>(&nt->OptionalHeader) + nt->FileHeader.SizeOfOptionalHeader);
  for (unsigned i = 0; i < nt->FileHeader.NumberOfSections; ++i) {
    const IMAGE_SECTION_HEADER& header = headers[i];
    if (std::memcmp(header.Name, ".eh_fram", sizeof header.Name) != 0 && header.Name[0] != '/') continue;
    if ((header.Characteristics & IMAGE_SCN_MEM_DISCARDABLE) != 0) continue;
    const Section section{module + header.VirtualAddress, header.Misc.VirtualSize};
    if (startsLikeUnwindTable(section)) return section;
  }
  return {};
}

/// Pointer encodings: how a pointer is stored (low four bits) and what it counts from.
constexpr Byte storedAsWord[] = {0x00, 0x03, 0x0B};  // absolute, unsigned and signed 32-bit
constexpr Byte fromOwnAddress = 0x10;
constexpr Byte indirect = 0x80;
constexpr Byte absent = 0xFF;

bool takesAWord(Byte encoding) {
  for (const Byte stored : storedAsWord)
    if ((encoding & ~(fromOwnAddress | indirect)) == stored) return true;
  return false;
}

/// Adapts a copy of an unwind table to the place it lies at.
class TableCopy {
public:
  TableCopy(Byte* begin, std::uint32_t size, const Byte* original)
      : begin_(begin), end_(begin + size), distance_(static_cast<std::uint32_t>(original - begin)) {}

  /// False when the table is not understood.
  bool adapt() {
    for (Byte* entry = begin_; end_ - entry >= 4 && load(entry) != 0;) {
      const std::uint32_t length = load(entry);
      if (length < 4 || length > static_cast<std::size_t>(end_ - entry) - 4) return false;
      Byte* id = entry + 4;
      entry = id + length;
      // A function's description (FDE) says how far back its CIE is, which describes what a group of functions shares.
      if (load(id) == 0) {
        if (!readCommon(id + 4, entry, true)) return false;
      } else {
        if (load(id) > static_cast<std::size_t>(id - begin_) || !readCommon(id - load(id) + 8, entry, false))
          return false;
        adaptFunction(id + 4, entry);
      }
    }
    return true;
  }

private:
  static std::uint32_t readLeb(const Byte*& p, const Byte* end) {
    std::uint32_t value = 0;
    for (unsigned shift = 0; p < end; shift += 7) {
      const Byte byte = *p++;
      if (shift < 32) value |= static_cast<std::uint32_t>(byte & 0x7F) << shift;
      if ((byte & 0x80) == 0) break;
    }
    return value;
  }

  /// Reads a CIE from its version on and sets the encodings; where asked to, puts in the personality routine.
  bool readCommon(Byte* start, const Byte* end, bool setPersonality) {
    const Byte version = *start;
    const auto* augmentation = reinterpret_cast<const char*>(start + 1);
    const Byte* p = start + 1;
    while (p < end && *p != 0) ++p;
    ++p;
    readLeb(p, end);  // alignment of code and of data, the register of the return address
    readLeb(p, end);
    if (version == 1)
      ++p;
    else
      readLeb(p, end);

    addressEncoding_ = 0;
    handlersEncoding_ = absent;
    hasAugmentation_ = *augmentation == 'z';
    if (!hasAugmentation_) return *augmentation == 0;
    readLeb(p, end);  // bytes of augmentation data
    for (++augmentation; *augmentation != 0; ++augmentation) {
      if (end - p < 6 && *augmentation == 'P') return false;
      switch (*augmentation) {
        case 'R':
          addressEncoding_ = *p++;
          break;
        case 'L':
          handlersEncoding_ = *p++;
          break;
        case 'P': {
          if (!takesAWord(*p)) return false;
          Byte* field = start + (p - start);
          if (setPersonality) {
            *field = 0;
            store(field + 1, static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(&__gxx_personality_v0)));
          }
          p += 5;
          break;
        }
        case 'S':
          break;
        default:
          return false;
      }
    }
    return takesAWord(addressEncoding_) && (handlersEncoding_ == absent || takesAWord(handlersEncoding_));
  }

  void adaptFunction(Byte* p, const Byte* end) {
    if (end - p < 8) return;
    adaptPointer(p, addressEncoding_);
    if (!hasAugmentation_ || handlersEncoding_ == absent) return;
    const Byte* data = p + 8;  // past the start and the size of the function
    if (readLeb(data, end) >= 4 && end - data >= 4) adaptPointer(p + (data - p), handlersEncoding_);
  }

  void adaptPointer(Byte* field, Byte encoding) const {
    const std::uint32_t value = load(field);
    if (value != 0 && (encoding & fromOwnAddress) != 0) store(field, value + distance_);
  }

  Byte* begin_;
  Byte* end_;
  std::uint32_t distance_;  ///< from the copy to the original
  Byte addressEncoding_ = 0;
  Byte handlersEncoding_ = absent;
  bool hasAugmentation_ = false;
};

/// A module whose table is registered; the copy of the table follows the record. Never freed: the unwinder keeps it.
struct KnownModule {
  const Byte* module;
  KnownModule* next;
  void* unwinderStorage[16];
};

KnownModule* knownModules = nullptr;

/// Makes the functions of a module known to this DLL's unwinder. False when nothing was gained.
bool registerModule(Byte* module) {
  for (const KnownModule* known = knownModules; known != nullptr; known = known->next)
    if (known->module == module) return false;
  const Section table = findUnwindTable(module);
  if (table.begin == nullptr) return false;

  // Four zero bytes end the copy, whatever the original has.
  void* block = VirtualAlloc(nullptr, sizeof(KnownModule) + table.size + 4, MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE);
  if (block == nullptr) return false;
  auto* known = static_cast<KnownModule*>(block);
  auto* copy = static_cast<Byte*>(block) + sizeof(KnownModule);
  std::memcpy(copy, table.begin, table.size);
  if (!TableCopy(copy, table.size, table.begin).adapt()) {
    VirtualFree(block, 0, MEM_RELEASE);
    return false;
  }
  // The module has to stay where the table says it is.
  HMODULE pinned;
  GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                     reinterpret_cast<const char*>(module), &pinned);
  __register_frame_info(copy, known->unwinderStorage);
  known->module = module;
  known->next = knownModules;
  knownModules = known;
  return true;
}

/// The start-up code hands this DLL's own table to the compiler's runtime DLL where the program has loaded that one,
/// and not to the unwinder in here.
bool registerOwnModule() {
  static void* unwinderStorage[16];
  const auto self = reinterpret_cast<void*>(&registerModule);
  dwarf_eh_bases bases;
  if (_Unwind_Find_FDE(self, &bases) != nullptr) return true;
  const Section table = findUnwindTable(moduleOf(self));
  if (table.begin == nullptr) return false;
  __register_frame_info(table.begin, unwinderStorage);
  return true;
}

_Unwind_Reason_Code noteAddress(_Unwind_Context* frame, void* address) {
  *static_cast<_Unwind_Ptr*>(address) = _Unwind_GetIP(frame);
  return _URC_NO_REASON;
}

}  // namespace

void prepareUnwindIntoCaller() {
  if (!registerOwnModule()) return;
  // The walk ends at the first function that is not known; once its module is, the next walk comes further.
  for (;;) {
    _Unwind_Ptr last = 0;
    _Unwind_Backtrace(noteAddress, &last);
    Byte* module = moduleOf(reinterpret_cast<const void*>(last));
    if (module == nullptr || !registerModule(module)) return;
  }
}

}  // namespace kx::platform
