// Text encodings of problem files: UTF-8 both ways and Windows-1250 in.
#include "problems/text_encoding.h"

#include <gtest/gtest.h>

#include <string>

namespace zorvane {
namespace {

TEST(TextEncoding, Utf8ReadsOneToFourBytes) {
    EXPECT_EQ(Utf8ToWide("a\xc5\x82\xe2\x82\xac\xf0\x9f\x98\x80"),
              std::wstring(L"a\u0142\u20ac") + wchar_t(0x1F600));
}

TEST(TextEncoding, Utf8WritesOneToFourBytes) {
    EXPECT_EQ(WideToUtf8(std::wstring(L"a\u0142\u20ac") + wchar_t(0x1F600)),
              "a\xc5\x82\xe2\x82\xac\xf0\x9f\x98\x80");
}

TEST(TextEncoding, Utf8RoundTripOfPolishAndUkrainian) {
    const std::wstring text = L"Wariant g\u0142\u00f3wny \u041e\u0441\u043d\u043e\u0432\u043d\u0438\u0439";
    EXPECT_EQ(Utf8ToWide(WideToUtf8(text)), text);
}

TEST(TextEncoding, InvalidUtf8BecomesReplacementCharacters) {
    const std::wstring r(1, REPLACEMENT_CHARACTER);
    EXPECT_EQ(Utf8ToWide("\x80"), r);                         // stray continuation
    EXPECT_EQ(Utf8ToWide("\xc0\xaf"), r + r);                 // overlong "/"
    EXPECT_EQ(Utf8ToWide("\xed\xa0\x80"), r + r + r);         // surrogate
    EXPECT_EQ(Utf8ToWide("\xf4\x90\x80\x80"), r + r + r + r); // beyond U+10FFFF
    EXPECT_EQ(Utf8ToWide("a\xe2\x82"), L"a" + r + r);         // cut short at the end
    EXPECT_EQ(Utf8ToWide("\xff"
                         "b"),
              r + L"b");
}

TEST(TextEncoding, NoScalarValueIsWrittenAsReplacementCharacter) {
    std::wstring text;
    text += wchar_t(0xD800);
    text += wchar_t(0x110000);
    EXPECT_EQ(WideToUtf8(text), "\xef\xbf\xbd\xef\xbf\xbd");
}

TEST(TextEncoding, Windows1250PolishLetters) {
    // "Zażółć gęślą jaźń" in Windows-1250.
    EXPECT_EQ(Windows1250ToWide("Za\xbf\xf3\xb3\xe6 g\xea\x9cl\xb9 ja\x9f\xf1"),
              L"Za\u017c\u00f3\u0142\u0107 g\u0119\u015bl\u0105 ja\u017a\u0144");
    EXPECT_EQ(Windows1250ToWide("\xa3\xa5\x8c\xaf\x8f\xc6\xca\xd1\xd3"),
              L"\u0141\u0104\u015a\u017b\u0179\u0106\u0118\u0143\u00d3");
}

TEST(TextEncoding, Windows1250UndefinedBytes) {
    EXPECT_EQ(Windows1250ToWide("\x81\x83\x88\x90\x98"), std::wstring(5, REPLACEMENT_CHARACTER));
    EXPECT_EQ(Windows1250ToWide("\x80\xa0\xff"), L"\u20ac\u00a0\u02d9");
}

TEST(TextEncoding, Windows1250KeepsAscii) {
    std::string ascii;
    std::wstring wide;
    for (int c = 0; c < 128; ++c) {
        ascii += static_cast<char>(c);
        wide += static_cast<wchar_t>(c);
    }
    EXPECT_EQ(Windows1250ToWide(ascii), wide);
}

} // namespace
} // namespace zorvane
