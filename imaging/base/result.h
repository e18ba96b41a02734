// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <utility>
#include <variant>

namespace complexion {

/// The kind of a failure, for callers that depend on it.
enum class ErrorKind {
    Damaged,          // the file's content cannot be decoded; the default
    NotAPicture,      // no codec recognises the file
    TooLarge,         // the file or the picture exceeds a limit
    OutOfMemory,      // memory or another resource of the process is exhausted
    CannotRead,       // the system cannot read the file
    CannotWrite,      // the system cannot write the file
    FormatCannotHold, // the format cannot store the picture
    Cancelled,        // at the user's request
};

/// Why an operation on a file or a picture failed. The message is for the log.
struct Error {
    std::string message;
    ErrorKind kind = ErrorKind::Damaged;
};

/// The value of an operation that only succeeds or fails.
struct Done {};

/// A value or an error.
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

#define COMPLEXION_CONCATENATE_EXPANDED(a, b) a##b
#define COMPLEXION_CONCATENATE(a, b) COMPLEXION_CONCATENATE_EXPANDED(a, b)

/// Declares `declaration` ("const PixelSize size") with the value of a Result, or returns its error from the
/// enclosing function.
#define COMPLEXION_TRY(declaration, ...)                                                                     \
    auto COMPLEXION_CONCATENATE(tried, __LINE__) = (__VA_ARGS__);                                            \
    if (!COMPLEXION_CONCATENATE(tried, __LINE__))                                                            \
        return COMPLEXION_CONCATENATE(tried, __LINE__).error();                                              \
    declaration = *std::move(COMPLEXION_CONCATENATE(tried, __LINE__))
