// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/metadata/text_encoding.h"

#include "imaging/metadata/byte_order.h"

namespace complexion {

bool isUtf8(std::string_view text) {
    for (std::size_t i = 0; i < text.size();) {
        const auto first = static_cast<unsigned char>(text[i]);
        // RFC 3629: the first byte tells how many follow; C0, C1 and F5 up never occur.
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
    for (const char character : text) {
        const auto code = static_cast<unsigned char>(character);
        if (code < 0x80) {
            result += character;
        } else {
            result += static_cast<char>(0xc0 | code >> 6);
            result += static_cast<char>(0x80 | (code & 0x3f));
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
