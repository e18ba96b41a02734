// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <array>
#include <csetjmp>
#include <string>
#include <string_view>

namespace complexion {

/// The one place that a C library's error handler jumps back to. libjpeg and libpng expect their error
/// handlers not to return; a jump over C++ frames is sound only while no object with a destructor lives in
/// them.
class JumpGuard {
public:
    JumpGuard() = default;
    JumpGuard(const JumpGuard&) = delete;
    JumpGuard& operator=(const JumpGuard&) = delete;

    /// Calls `step`; false when `fail` was called inside it. `step` calls the library and nothing that
    /// throws, and makes no object with a destructor.
    template <class Step>
    [[nodiscard]] bool run(const Step& step) {
        if (setjmp(m_place) != 0) // NOLINT(modernize-*,cert-err52-cpp): see the class
            return false;
        step();
        return true;
    }

    /// Ends the running `step`. For the library's error handler.
    [[noreturn]] void fail(std::string_view message) {
        m_message = {};
        std::copy_n(message.data(), std::min(message.size(), m_message.size() - 1), m_message.data());
        std::longjmp(m_place, 1); // NOLINT(modernize-*,cert-err52-cpp): see the class
    }

    /// What the last `fail` said.
    std::string message() const { return m_message.data(); }

private:
    std::jmp_buf m_place = {};
    std::array<char, 256> m_message = {};
};

} // namespace complexion
