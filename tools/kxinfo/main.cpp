// Tells what a bug report should say: versions, processor, display modes, and whether the library draws as it should.
// SPDX-License-Identifier: MIT
#include <cpuid.h>

#include <cstdio>
#include <cstring>
#include <string>

#include "kxgraphic/kxgraphic.h"
#include "kxgraphic/mmgr.h"
#include "pixel/cpu.h"
#include "self_test.h"
#include "system.h"

namespace {

std::string processorName() {
  unsigned words[12] = {};
  for (unsigned part = 0; part < 3; ++part) {
    unsigned* const at = words + std::size_t{4} * part;
    if (__get_cpuid(0x80000002 + part, at, at + 1, at + 2, at + 3) == 0) return "unknown";
  }
  char text[sizeof words + 1] = {};
  std::memcpy(text, words, sizeof words);
  return text + std::strspn(text, " ");
}

const char* levelName(kx::CpuLevel level) {
  switch (level) {
    case kx::CpuLevel::Portable:
      return "portable";
    case kx::CpuLevel::Sse2:
      return "SSE2";
    case kx::CpuLevel::Avx2:
      return "AVX2";
    default:
      return "AVX-512";
  }
}

void tellModule(const char* topic, const char* library) {
  const kxinfo::Module module = kxinfo::findModule(library);
  if (module.file.empty())
    std::printf("%-12s %s is not loaded\n", topic, library);
  else
    std::printf("%-12s %s%s%s\n", topic, module.version.c_str(), module.version.empty() ? "" : ", ",
                module.file.c_str());
}

void tellDisplay() {
  ScreenMethods methods;
  Screen* screen = nullptr;
  VideoMode* modes = nullptr;
  std::int32_t count = 0;
  KX_getScreenInterface(&methods, nullptr, nullptr);
  std::uint32_t code = KX_createScreen(&screen, nullptr, 0, &methods);
  if (code == 0) {
    code = KX_getVideoModeList(screen, &modes, &count);
    KX_deleteScreen(screen);
  }
  tellModule("display", kxinfo::displayLibrary);
  if (code != 0) {
    std::printf("modes        code 0x%X\n", static_cast<unsigned>(code));
    return;
  }
  std::printf("modes        %d\n", static_cast<int>(count));
  for (std::int32_t i = 0; i < count; ++i)
    std::printf("             %d x %d, %d bits, %u Hz\n", static_cast<int>(modes[i].width),
                static_cast<int>(modes[i].height), modes[i].format == KX_FORMAT_888 ? 24 : 16,
                static_cast<unsigned>(modes[i].refresh));
  mmgr_free(modes);
}

/// False when something is drawn differently.
bool tellSelfTest() {
  bool same = true;
  for (const kxinfo::Finding& finding : kxinfo::selfTest()) {
    const bool equal = finding.checksum == finding.wanted;
    std::printf("self-test    %-18s %08X %s\n", finding.family, static_cast<unsigned>(finding.checksum),
                equal ? "ok" : "DIFFERENT");
    same = same && equal;
  }
  return same;
}

}  // namespace

int main(int count, char** arguments) {
  if (count > 1 && std::strcmp(arguments[1], "--no-modes") != 0) {
    std::puts(
        "usage: kxinfo [--no-modes]\nTells versions, processor, display modes, and whether the library draws as it "
        "should (exit code 1 when not).");
    return 2;
  }
  std::printf("kxinfo       %s, %d-bit\n", KXGRAPHIC_VERSION, static_cast<int>(8 * sizeof(void*)));
  tellModule("kxgraphic", "kxgraphic");
  tellModule("mmgr", "mmgr");
  std::printf("system       %s\n", kxinfo::systemName().c_str());
  std::printf("processor    %s, used up to %s\n", processorName().c_str(), levelName(kx::detectedCpuLevel()));
  if (count == 1) tellDisplay();
  const bool same = tellSelfTest();
  std::puts(same ? "All is drawn as it should be." : "Please report these lines.");
  return same ? 0 : 1;
}
