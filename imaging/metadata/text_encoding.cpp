// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/metadata/text_encoding.h"

namespace complexion {

namespace {

void appendUtf8(std::string& text, std::uint32_t code) {
    const auto append = [&text](std::uint32_t byte) { text += static_cast<char>(byte); };
    const auto appendSixBits = [&](int shift) { append(0x80 | (code >> shift & 0x3f)); };
    if (code < 0x80) {
        append(code);
    } else if (code < 0x800) {
        append(0xc0 | code >> 6);
        appendSixBits(0);
    } else if (code < 0x10000) {
        append(0xe0 | code >> 12);
        appendSixBits(6);
        appendSixBits(0);
    } else {
        append(0xf0 | code >> 18);
        appendSixBits(12);
        appendSixBits(6);
        appendSixBits(0);
    }
}

} // namespace

bool isUtf8(std::string_view text) {
    for (std::size_t i = 0; i < text.size();) {
        const auto first = static_cast<unsigned char>(text[i]);
        // RFC 3629: the first byte determines the length; C0, C1 and F5 to FF never occur.
        const std::size_t more = first < 0x80                    ? 0
                                 : first >= 0xc2 && first < 0xe0 ? 1
                                 : first >= 0xe0 && first < 0xf0 ? 2
                                 : first >= 0xf0 && first < 0xf5 ? 3
                                                                 : text.size();
        if (more >= text.size() - i)
            return false;
        for (std::size_t k = 1; k <= more; ++k)
            if ((static_cast<unsigned char>(text[i + k]) & 0xc0) != 0x80)
                return false;
        i += more + 1;
    }
    return true;
}

std::string utf8FromLatin1(std::string_view text) {
    std::string result;
    for (const char character : text)
        appendUtf8(result, static_cast<unsigned char>(character));
    return result;
}

std::string utf8FromUtf16(ByteView text, ByteOrder order) {
    constexpr std::uint32_t kReplacement = 0xfffd;
    const auto isHigh = [](std::uint64_t unit) { return unit >= 0xd800 && unit < 0xdc00; };
    const auto isLow = [](std::uint64_t unit) { return unit >= 0xdc00 && unit < 0xe000; };
    std::string result;
    for (std::size_t i = 0; i + 1 < text.size(); i += 2) {
        const std::uint64_t unit = numberAt(text, i, 2, order);
        const std::uint64_t next = numberAt(text, i + 2, 2, order);
        if (isHigh(unit) && isLow(next)) {
            appendUtf8(result,
                       static_cast<std::uint32_t>(0x10000 + ((unit - 0xd800) << 10) + (next - 0xdc00)));
            i += 2;
        } else {
            appendUtf8(result, isHigh(unit) || isLow(unit) ? kReplacement : static_cast<std::uint32_t>(unit));
        }
    }
    return result;
}

std::string utf8Of(ByteView text) {
    std::string_view plain = textOf(text);
    while (!plain.empty() && plain.back() == '\0')
        plain.remove_suffix(1);
    return isUtf8(plain) ? std::string(plain) : utf8FromLatin1(plain);
}

} // namespace complexion
