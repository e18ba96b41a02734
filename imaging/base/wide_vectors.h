// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// Prefix for a function with a hot loop over pixels. Compiles it a second time for processors with 256-bit
/// vectors; the program chooses at its start. Both versions give the same bits: neither fuses multiplications
/// with additions. Disabled with sanitizers, which are not initialised when the choice is made.
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__) && !defined(__SANITIZE_ADDRESS__) &&     \
    !defined(__SANITIZE_THREAD__)
#define COMPLEXION_WIDE_VECTORS __attribute__((target_clones("avx2", "default")))
#else
#define COMPLEXION_WIDE_VECTORS
#endif
