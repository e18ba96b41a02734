// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/font_loading.h"

#include <fontconfig/fontconfig.h>

#include <system_error>

namespace complexion {

std::future<void> beginLoadingFonts() {
    try {
        return std::async(std::launch::async, [] { FcInit(); });
    } catch (const std::system_error&) {
        return {};
    }
}

} // namespace complexion
