// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace complexion {

/// Whether bounds of time and memory hold for this build.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__) || !defined(__OPTIMIZE__)
inline constexpr bool kIsMeasured = false; // sanitizers multiply both, unoptimised code takes more time
#else
inline constexpr bool kIsMeasured = true;
#endif

} // namespace complexion
