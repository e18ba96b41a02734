// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"

#include <memory>
#include <string_view>

namespace complexion {

/// The photo effect with a name ("Chrome", "Fade", "Instant", "Mono", "Noir", "Process", "Tonal",
/// "Transfer"); null for any other text. Each effect is one object for the whole run, so that images can be
/// compared by it.
std::shared_ptr<const PixelTransform> photoEffect(std::string_view name);

} // namespace complexion
