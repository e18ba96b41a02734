// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <string>

namespace complexion {

/// `text` with its ASCII letters in lower case, independent of the locale. Other bytes stay as they are.
inline std::string lowerCase(std::string text) {
    std::ranges::transform(text, text.begin(), [](char c) {
        return 'A' <= c && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    return text;
}

} // namespace complexion
