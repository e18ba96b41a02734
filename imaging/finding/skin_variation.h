// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/finding/spot_detector.h"

#include <optional>

namespace complexion::finding {

/// How unusual a spot's colour is on the skin around it: the Mahalanobis distance (1936) of its difference
/// from the ring around it to the same differences at places nearby, which vary with the skin's texture,
/// grain and tint. Empty if there is too little skin nearby. A spot on skin reaches 5 and more.
std::optional<float> differenceFromSkin(const Image& image, const SkinMap& map, const Spot& spot);

} // namespace complexion::finding
