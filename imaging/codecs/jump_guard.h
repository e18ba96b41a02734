// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <array>
#include <csetjmp>
#include <string>
#include <string_view>

namespace complexion {

/// The setjmp point that a C library's error handler returns to. libjpeg and libpng require error handlers
/// that do not return. Jumping over C++ frames is sound only if no object in them has a destructor.
class JumpGuard {
public:
    JumpGuard() = default;
    JumpGuard(const JumpGuard&) = delete;
    JumpGuard& operator=(const JumpGuard&) = delete;

    /// Calls `step`. False if `fail` was called during it. `step` may call only the library, must not throw
    /// and must not create objects with destructors.
    template <class Step>
    [[nodiscard]] bool run(const Step& step) {
        if (setjmp(m_place) != 0) // NOLINT(modernize-*,cert-err52-cpp): see the class
            return false;
        step();
        return true;
    }

    /// Aborts the running `step`. Called by the library's error handler.
    [[noreturn]] void fail(std::string_view message) {
        m_message = {};
        std::copy_n(message.data(), std::min(message.size(), m_message.size() - 1), m_message.data());
        std::longjmp(m_place, 1); // NOLINT(modernize-*,cert-err52-cpp): see the class
    }

    /// The message of the last `fail`.
    std::string message() const { return m_message.data(); }

private:
    std::jmp_buf m_place = {};
    std::array<char, 256> m_message = {};
};

} // namespace complexion
