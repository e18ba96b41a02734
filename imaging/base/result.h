// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <utility>
#include <variant>

namespace complexion {

/// Why an operation on a file or a picture gave no value, in words for a log line.
struct Error {
    std::string message;
};

/// A value, or the error that stands in its place.
template <class T>
class [[nodiscard]] Result {
public:
    Result(T value) : m_state(std::in_place_index<0>, std::move(value)) {}
    Result(Error error) : m_state(std::in_place_index<1>, std::move(error)) {}

    explicit operator bool() const { return m_state.index() == 0; }
    T& operator*() & { return std::get<0>(m_state); }
    T&& operator*() && { return std::get<0>(std::move(m_state)); }
    const T& operator*() const& { return std::get<0>(m_state); }
    T* operator->() { return &std::get<0>(m_state); }
    const T* operator->() const { return &std::get<0>(m_state); }
    const Error& error() const { return std::get<1>(m_state); }

private:
    std::variant<T, Error> m_state;
};

} // namespace complexion
