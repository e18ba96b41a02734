// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"
#include "imaging/base/result.h"

#include <optional>

namespace complexion {

/// A file's first picture.
struct DecodedPicture {
    Image image;
    /// What is wrong with the file where not all of the picture could be decoded (the image shows what could
    /// be); nothing for a whole picture.
    std::optional<Error> damage;
};

} // namespace complexion
