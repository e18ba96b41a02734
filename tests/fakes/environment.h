// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace complexion {

/// Sets an environment variable, or removes it, and restores it on destruction.
class Environment {
public:
    /// Removes the variable if `value` is nothing.
    Environment(const char* name, const std::optional<std::string>& value) : m_name(name) {
        if (const char* before = std::getenv(name))
            m_before = before;
        set(value);
    }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;
    ~Environment() { set(m_before); }

private:
    void set(const std::optional<std::string>& value) {
        if (value)
            ::setenv(m_name, value->c_str(), 1);
        else
            ::unsetenv(m_name);
    }

    const char* m_name;
    std::optional<std::string> m_before;
};

} // namespace complexion
