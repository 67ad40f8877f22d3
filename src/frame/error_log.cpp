// KX_reportError: a fault becomes a line of the log, or an exception where the log cannot be opened.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstring>

#include "frame/checks.h"
#include "frame/exceptions.h"
#include "kxgraphic/frame.h"
#include "platform/platform.h"

namespace kx {

namespace {

constexpr const char* logFile = "ERRORLOG.TXT";

/// Settled: the layout without the group is kept with the other texts, and not used.
[[maybe_unused, gnu::used]] constexpr char lineWithoutGroup[] = "[%08x] %s (Zeile %i in Datei \"%s\")\r\n";

/// Bytes of a line with its NUL.
constexpr std::size_t lineSize = 256;

/// Appends the fault's line to the log. False when the log cannot be opened.
bool logFault(const KX_Exception& fault, std::int32_t line, const char* file) {
  if (isBadReadPointer(file)) file = "?";
  char text[lineSize];
  const auto format = [&](int fileLength) {
    return std::snprintf(text, sizeof text, "[%08x] %s: %s (Zeile %i in Datei \"%.*s\")\r\n",
                         static_cast<unsigned>(platform::millisecondClock()), fault.groupText, fault.text, line,
                         fileLength, file);
  };
  // A file name that is too long loses its end, so that the line keeps its own.
  constexpr int longest = static_cast<int>(lineSize) - 1;
  const int wanted = format(longest);
  if (wanted > longest) {
    const auto end = static_cast<const char*>(std::memchr(file, 0, lineSize));
    const int fileLength = end == nullptr ? longest : static_cast<int>(end - file);
    format(std::max(0, fileLength - (wanted - longest)));
  }
  return platform::appendToFile(logFile, text, std::strlen(text));
}

}  // namespace

}  // namespace kx

// The object is thrown only where it will leave the library, which nobody can tell from throwing it always and catching
// it here: the log comes first, and no exception is needed to write it.
std::uint32_t KX_CALL KX_reportError(std::uint32_t code, std::int32_t line, const char* file) {
  const kx::FaultClass* faultClass = kx::findFaultClass(code);
  if (faultClass != nullptr && !kx::logFault(faultClass->fault, line, file)) {
    kx::platform::prepareUnwindIntoCaller();
    faultClass->throwObject();
  }
  return code;
}
