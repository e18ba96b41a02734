// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/metadata/text_encoding.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace complexion {

namespace {

using namespace std::string_view_literals;

ByteView viewOf(std::string_view text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

TEST(TextEncoding, RecognizesUtf8OfAllLengths) {
    for (const std::string_view text : {""sv, "a"sv, "\xc2\x80"sv, "\xdf\xbf"sv, "\xe2\x82\xac"sv,
                                        "\xf0\x9f\x98\x80"sv, "a\xc3\xa4\xe2\x82\xac\xf0\x9f\x98\x80z"sv})
        EXPECT_TRUE(isUtf8(text)) << text;
    for (const std::string_view text :
         {"\x80"sv, "\xc0\x80"sv, "\xc1\xbf"sv, "\xf5\x80\x80\x80"sv, "\xff"sv, "\xc3"sv, "\xe2\x82"sv,
          "\xf0\x9f\x98"sv, "\xc3("sv, "\xe2(\xac"sv, "\xf0\x9f\x98z"sv})
        EXPECT_FALSE(isUtf8(text)) << testing::PrintToString(text);
}

TEST(TextEncoding, TakesOtherTextForLatin1) {
    EXPECT_EQ(utf8Of(viewOf("f\xe4"sv)), "f\xc3\xa4");
    EXPECT_EQ(utf8Of(viewOf("f\xc3\xa4"sv)), "f\xc3\xa4");
    EXPECT_EQ(utf8FromLatin1("\x7f\x80\xff"sv), "\x7f\xc2\x80\xc3\xbf");
}

TEST(TextEncoding, RemovesZerosAtTheEnd) {
    EXPECT_EQ(utf8Of(viewOf("a\0b\0\0"sv)), "a\0b"sv);
    EXPECT_EQ(utf8Of(viewOf("\0\0"sv)), "");
}

TEST(TextEncoding, ConvertsUtf16OfBothByteOrders) {
    EXPECT_EQ(utf8FromUtf16(viewOf("a\0\xe4\0\xac\x20\x3d\xd8\x00\xde"sv), ByteOrder::LittleEndian),
              "a\xc3\xa4\xe2\x82\xac\xf0\x9f\x98\x80");
    EXPECT_EQ(utf8FromUtf16(viewOf("\0a\0\xe4\x20\xac\xd8\x3d\xde\x00"sv), ByteOrder::BigEndian),
              "a\xc3\xa4\xe2\x82\xac\xf0\x9f\x98\x80");
    EXPECT_EQ(utf8FromUtf16(viewOf("\0a\0"sv), ByteOrder::BigEndian), "a") << "half a unit";
}

TEST(TextEncoding, ReplacesUnpairedSurrogates) {
    const std::string replacement = "\xef\xbf\xbd";
    EXPECT_EQ(utf8FromUtf16(viewOf("\xd8\x3d\0a"sv), ByteOrder::BigEndian), replacement + "a");
    EXPECT_EQ(utf8FromUtf16(viewOf("\xde\x00\0a"sv), ByteOrder::BigEndian), replacement + "a");
    EXPECT_EQ(utf8FromUtf16(viewOf("\0a\xd8\x3d"sv), ByteOrder::BigEndian), "a" + replacement);
}

} // namespace

} // namespace complexion
