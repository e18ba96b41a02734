// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/edit_settings.h"
#include "imaging/image.h"

#include <optional>

namespace complexion {

/// What a click at `point`, in the image's own coordinates, makes of `image` under `settings`: the one place
/// that says which repair the settings ask for. Depends on its arguments only; runs on any thread. No image
/// when memory for the pixels is lacking.
std::optional<Image> repaired(const Image& image, Point point, const EditSettings& settings);

} // namespace complexion
