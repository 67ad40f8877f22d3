// The log of a process: its settings, its lines, and the counts at its end.
// SPDX-License-Identifier: MIT
#include "log.h"

#include <chrono>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "describe.h"
#include "original.h"

namespace kxtrace {

namespace {

using Clock = std::chrono::steady_clock;

const char* setting(const char* variable) {
  const char* value = std::getenv(variable);
  return value == nullptr ? "" : value;
}

/// Calls `take` with each word of a text; commas and blanks separate them.
template <typename Take>
void forEachWord(const char* text, Take&& take) {
  while (*(text += std::strspn(text, ", ")) != 0) {
    const std::size_t length = std::strcspn(text, ", ");
    take(std::string_view(text, length));
    text += length;
  }
}

/// A function's name, or the beginning of names with "*" behind it.
bool means(std::string_view word, std::string_view name) {
  return word == name || (word.ends_with('*') && name.starts_with(word.substr(0, word.size() - 1)));
}

bool meansAny(std::string_view word) {
#define KX_METHOD(slot, result, parameters) \
  if (means(word, "KX_" #slot)) return true;
#define KX_PLACEHOLDER KX_METHOD
#define KX_UNDESIGNED KX_METHOD
#define KX_FUNCTION(name, result, parameters) \
  if (means(word, #name)) return true;
#include "kxgraphic/exports/all.inc"
#undef KX_METHOD
#undef KX_PLACEHOLDER
#undef KX_UNDESIGNED
#undef KX_FUNCTION
  return false;
}

std::FILE* openLog() {
  const char* name = setting("KXTRACE_FILE");
  if (std::strcmp(name, "-") == 0) return stderr;
  if (*name == 0) name = "kxtrace.log";
  Line path;
  if (const char* number = std::strstr(name, "%p"); number != nullptr)
    path.add("%.*s%u%s", static_cast<int>(number - name), name, processNumber(), number + 2);
  else
    path.add("%s", name);
  std::FILE* file = std::fopen(path.text(), "wb");
  if (file == nullptr) static_cast<void>(std::fprintf(stderr, "kxtrace: cannot write %s\n", path.text()));
  return file;
}

/// The log of this process, opened with the first call.
class Log {
public:
  Log() : file_(openLog()) {
    forEachWord(setting("KXTRACE_ONLY"), [this](std::string_view word) {
      if (word == "failures")
        failuresOnly_ = true;
      else if (word == "program")
        programOnly_ = true;
      else
        hasNames_ = true;
    });
    print("kxtrace " KXTRACE_VERSION ", calls go to %s\n", originalFile());
    forEachWord(setting("KXTRACE_ONLY"), [this](std::string_view word) {
      if (word != "failures" && word != "program" && !meansAny(word))
        print("KXTRACE_ONLY: no function is called %.*s\n", static_cast<int>(word.size()), word.data());
    });
    const std::string_view enter = setting("KXTRACE_ENTER");
    writesBegin_ = !enter.empty() && enter != "0";
  }

  /// The end of the program: how often each function was called.
  ~Log() {
    print("%u calls, %u failed\n", static_cast<unsigned>(calls_), static_cast<unsigned>(failures_));
    for (const Entry* entry = first_; entry != nullptr; entry = entry->next) {
      Line fault;
      if (entry->failures != 0) fault.add(", %u failed", static_cast<unsigned>(entry->failures));
      if (entry->failures != 0 && entry->answer == Answer::Code) {
        fault.add(", last with ");
        describeCode(fault, entry->lastFailure);
      }
      print("%8u %s%s\n", static_cast<unsigned>(entry->calls), entry->name, fault.text());
    }
  }

  Log(const Log&) = delete;
  Log& operator=(const Log&) = delete;

  [[gnu::format(printf, 2, 3)]] void print(const char* format, ...);

  [[nodiscard]] bool choosesName(std::string_view name) const {
    bool chosen = !hasNames_;
    forEachWord(setting("KXTRACE_ONLY"), [&](std::string_view word) { chosen = chosen || means(word, name); });
    return chosen;
  }

  void add(Entry& entry) {
    *end_ = &entry;
    end_ = &entry.next;
  }

  std::uint32_t count(Entry& entry) {
    ++entry.calls;
    return ++calls_;
  }

  void countFailure(Entry& entry, std::uint32_t code) {
    ++entry.failures;
    ++failures_;
    entry.lastFailure = code;
  }

  [[nodiscard]] bool writes(const Entry& entry, unsigned depth, bool failed) const {
    return file_ != nullptr && entry.chosen && (failed || !failuresOnly_) && (depth == 0 || !programOnly_);
  }
  [[nodiscard]] bool writesBegin() const { return writesBegin_; }

  [[nodiscard]] double milliseconds() const {
    return std::chrono::duration<double, std::milli>(Clock::now() - begin_).count();
  }

private:
  std::FILE* file_;
  Clock::time_point begin_ = Clock::now();
  bool failuresOnly_ = false, programOnly_ = false, hasNames_ = false, writesBegin_ = false;
  std::uint32_t calls_ = 0, failures_ = 0;
  Entry* first_ = nullptr;
  Entry** end_ = &first_;
};

/// Each line goes out at once: the next call may be the program's last.
void Log::print(const char* format, ...) {  // NOLINT(cert-dcl50-cpp)
  if (file_ == nullptr) return;
  std::va_list arguments;
  va_start(arguments, format);
  static_cast<void>(std::vfprintf(file_, format, arguments));
  va_end(arguments);
  static_cast<void>(std::fflush(file_));
}

Log& log() {
  static Log instance;
  return instance;
}

thread_local unsigned callDepth = 0;

}  // namespace

void prepare(Entry& entry, unsigned argumentBytes) {
  entry.original = findOriginal(entry.name, argumentBytes);
  entry.chosen = log().choosesName(entry.name);
  log().add(entry);
  entry.known = true;
}

unsigned CallDepth::now() { return callDepth; }
void CallDepth::set(unsigned depth) { callDepth = depth; }

bool writes(const Entry& entry, unsigned depth, bool failed) { return log().writes(entry, depth, failed); }
bool writesBegin() { return log().writesBegin(); }

void write(std::uint32_t number, unsigned depth, const Line& line) {
  log().print("%8u %10.3f %*s%s\n", static_cast<unsigned>(number), log().milliseconds(), static_cast<int>(2 * depth),
              "", line.text());
}

std::uint32_t count(Entry& entry) { return log().count(entry); }
void countFailure(Entry& entry, std::uint32_t code) { log().countFailure(entry, code); }

}  // namespace kxtrace
