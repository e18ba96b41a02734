// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/codecs/jpeg_transform.h"

#include <bitset>

namespace complexion {

using JpegSampleMask = std::bitset<kJpegBlockArea>;

/// The coefficients of a block to which `change` is added, sample by sample: of those that make exactly the
/// samples of `source` wherever `held` says so, the best that are found. `source` itself where there is
/// nothing to change, or where no such coefficients are found. The same arguments give the same block.
JpegBlock fittedBlock(const JpegBlock& source, const JpegFloats& change, const JpegSampleMask& held);

} // namespace complexion
