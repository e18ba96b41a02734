// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// Before a function with a hot loop over pixels: it is compiled a second time for processors with vectors of
/// 256 bits, and the program takes at its start what the processor has. Both give the same bits: neither
/// fuses multiplications with additions. The sanitizers do without, as they are not ready when the choice is
/// made.
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__) && !defined(__SANITIZE_ADDRESS__) &&     \
    !defined(__SANITIZE_THREAD__)
#define COMPLEXION_WIDE_VECTORS __attribute__((target_clones("avx2", "default")))
#else
#define COMPLEXION_WIDE_VECTORS
#endif
