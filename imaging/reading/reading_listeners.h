// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

namespace complexion {

class Image;

/// Called ten times a second, on the thread that requested the file, with the fraction of the picture that
/// has been decoded, 0 to 1. Returning false cancels the reading.
using ReadingProgress = std::function<bool(double part)>;

/// Called on the same thread with a reduced picture of the same size in points, before the picture itself is
/// known. Only for files that begin with one.
using PreviewListener = std::function<void(const Image& preview)>;

} // namespace complexion
