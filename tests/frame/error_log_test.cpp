// The exception tree and the lines of the error log.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <set>
#include <string>

#include "kxgraphic/exceptions.hpp"
#include "kxgraphic/frame.h"
#include "support/scratch_folder.h"

namespace {

constexpr const char* logFile = "ERRORLOG.TXT";

/// The line that a report writes, without its clock "[xxxxxxxx] ", which must be there.
std::string reportedLine(std::uint32_t code, std::int32_t line, const char* file) {
  const kxtest::ScratchFolder folder;
  EXPECT_EQ(code, KX_reportError(code, line, file));
  std::string text = kxtest::readFile(logFile);
  if (text.empty()) return text;
  const std::size_t digits = text.find_first_not_of("0123456789abcdef", 1) - 1;
  EXPECT_TRUE(text[0] == '[' && digits == 8 && text.compare(9, 2, "] ") == 0) << text;
  return text.substr(11);
}

/// True when the report throws an object of class Leaf that holds what a new one does.
template <typename Leaf>
bool throwsLeaf() {
  const Leaf expected;
  try {
    KX_reportError(expected.code, 1, "x");
  } catch (const Leaf& fault) {
    return fault.code == expected.code && fault.text == expected.text && fault.groupText == expected.groupText;
  } catch (...) {
  }
  return false;
}

struct LeafCase {
  std::uint32_t code;
  KX_Exception object;
  bool (*isThrown)();
};

const LeafCase leaves[] = {
#define KX_ERROR_GROUP(name, text)
#define KX_ERROR(code, leaf, group, text, english) {code, KX_##leaf##_Exception(), &throwsLeaf<KX_##leaf##_Exception>},
#include "kxgraphic/exports/errors.inc"
#undef KX_ERROR
#undef KX_ERROR_GROUP
};

TEST(ErrorLog, LinesAreExactInWindows1252) {
  EXPECT_EQ(
      "genereller Fehler: Index au\xDF"
      "erhalb des g\xFCltigen Bereichs (Zeile 265 in Datei \"array.h\")\r\n",
      reportedLine(0x000A, 265, "array.h"));
  EXPECT_EQ(
      "genereller Fehler: Index au\xDF"
      "erhalb des g\xFCltigen Bereichs (Zeile -1 in Datei \"\")\r\n",
      reportedLine(0x000B, -1, ""));
  EXPECT_EQ(
      "genereller Fehler: ung\xFCltige Gr\xF6\xDF"
      "e (Zeile 0 in Datei \"%s%n.c\")\r\n",
      reportedLine(0x000C, 0, "%s%n.c"));
  EXPECT_EQ("Text-/Parser-Fehler: Font-Parameter ung\xFClig oder Font nicht vorhanden (Zeile 7 in Datei \"a b.c\")\r\n",
            reportedLine(0x5001, 7, "a b.c"));
  EXPECT_EQ("Graphik-Fehler: Objekt mit Daten kann ein Unterobjekt haben (Zeile 1 in Datei \"x\")\r\n",
            reportedLine(0x2020, 1, "x"));
  EXPECT_EQ("Screen-Fehler: Videomodus wird nicht unterst\xFCtzt (Zeile 1 in Datei \"?\")\r\n",
            reportedLine(0x4004, 1, nullptr));
}

TEST(ErrorLog, CodesWithoutALeafAreReturnedUnlogged) {
  for (const std::uint32_t code : {0u, 0x14u, 0x3000u, 0x200Cu, 0x6003u, 0x100Au, 0xA001u, 0x10002u, 0xFFFFFFFFu})
    EXPECT_EQ("", reportedLine(code, 1, "x")) << code;
}

TEST(ErrorLog, EveryReportAppendsALine) {
  const kxtest::ScratchFolder folder;
  std::ofstream(logFile, std::ios::binary) << "old";
  for (const LeafCase& leaf : leaves) EXPECT_EQ(leaf.code, KX_reportError(leaf.code, 1, "x"));
  const std::string text = kxtest::readFile(logFile);
  EXPECT_EQ("old[", text.substr(0, 4));
  EXPECT_EQ(std::size(leaves), static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')));
  EXPECT_EQ(std::string::npos, text.find('\xC3')) << "UTF-8 in the log";
}

TEST(ErrorLog, LongFileNamesLoseTheirEnd) {
  const std::string whole = reportedLine(0xA000, 12, "");
  const std::size_t room = 255 - 11 - whole.size();
  for (const std::size_t length : {room - 1, room, room + 1, std::size_t{254}, std::size_t{256}, std::size_t{5000}}) {
    const std::string name(length, 'n');
    EXPECT_EQ("Netzwerk-Fehler: Nicht verbunden (Zeile 12 in Datei \"" + name.substr(0, room) + "\")\r\n",
              reportedLine(0xA000, 12, name.c_str()));
  }
}

TEST(ErrorLog, AShutLogLetsTheLeafOut) {
  const kxtest::ScratchFolder folder;
  std::filesystem::create_directory(logFile);
  for (const LeafCase& leaf : leaves) EXPECT_TRUE(leaf.isThrown()) << leaf.code;
  EXPECT_THROW(KX_reportError(0x9003, 1, "x"), KX_SoundException);
  EXPECT_THROW(KX_reportError(0x9003, 1, "x"), KX_Exception);
  EXPECT_NO_THROW(KX_reportError(0, 1, "x"));
  EXPECT_NO_THROW(KX_reportError(0x3000, 1, "x"));
}

TEST(ExceptionTree, GroupsAreTheHighDigitOfTheCode) {
  std::set<std::uint32_t> codes;
  std::set<std::pair<std::uint32_t, std::string>> groups;
  for (const LeafCase& leaf : leaves) {
    EXPECT_EQ(leaf.code, leaf.object.code);
    codes.insert(leaf.code);
    groups.emplace(leaf.code >> 12, leaf.object.groupText);
  }
  EXPECT_EQ(93u, codes.size());
  EXPECT_EQ(10u, groups.size());

  const KX_Exception root;
  EXPECT_EQ(nullptr, root.text);
  EXPECT_EQ(nullptr, root.groupText);
  EXPECT_EQ(nullptr, KX_SoundException().text);
}

}  // namespace
