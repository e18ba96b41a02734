// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/codecs/jpeg_transform.h"

#include <bitset>

namespace complexion::jpeg {

using SampleMask = std::bitset<kBlockArea>;

/// Coefficients for the block `source` with `change` added sample by sample. Samples marked in `pinned`
/// decode exactly as in `source`. Returns `source` if nothing changes or no such coefficients are found.
/// Deterministic.
CoefficientBlock fitBlock(const CoefficientBlock& source, const FloatBlock& change, const SampleMask& pinned);

} // namespace complexion::jpeg
