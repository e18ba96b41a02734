// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"
#include "imaging/base/result.h"

#include <optional>

namespace complexion {

/// A file's first picture.
struct DecodedPicture {
    Image image;
    /// Why part of the picture could not be decoded; nothing for a complete picture.
    std::optional<Error> damage;
};

} // namespace complexion
