// The words for result codes: the German ones are those of the exception classes, in UTF-8.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "kxgraphic/error_text.h"
#include "kxgraphic/exceptions.hpp"

namespace {

std::string latin1FromUtf8(const char* text) {
  std::string result;
  for (; *text != 0; ++text) {
    const auto unit = static_cast<unsigned char>(*text);
    if (unit < 0x80)
      result += *text;
    else
      result += static_cast<char>((unit & 3) << 6 | (*++text & 0x3F));
  }
  return result;
}

TEST(ErrorText, EveryClassHasItsNameAndBothTexts) {
  const struct {
    const char* name;
    KX_Exception object;
  } leaves[] = {
#define KX_ERROR_GROUP(name, text)
#define KX_ERROR(code, leaf, group, text, english) {"KX_" #leaf "_Exception", KX_##leaf##_Exception()},
#include "kxgraphic/exports/errors.inc"
#undef KX_ERROR
#undef KX_ERROR_GROUP
  };
  for (const auto& leaf : leaves) {
    EXPECT_STREQ(leaf.name, kxErrorName(leaf.object.code));
    EXPECT_EQ(leaf.object.text, latin1FromUtf8(kxErrorTextGerman(leaf.object.code)));
    const std::string english = kxErrorText(leaf.object.code);
    EXPECT_GT(english.size(), 8u) << leaf.name;
    EXPECT_TRUE(std::all_of(english.begin(), english.end(), [](char c) { return c >= ' ' && c <= '~'; })) << english;
  }
  EXPECT_STREQ("coordinates out of range", kxErrorText(0x2005));
}

TEST(ErrorText, OtherCodesHaveWordsToo) {
  EXPECT_STREQ("no error", kxErrorText(0));
  for (const std::uint32_t code : {0x14u, 0x200Cu, 0x3000u, 0xFFFFFFFFu}) {
    EXPECT_STREQ("unknown code", kxErrorName(code));
    EXPECT_STREQ("unknown code", kxErrorText(code));
    EXPECT_STREQ("unbekannter Code", kxErrorTextGerman(code));
  }
}

}  // namespace
