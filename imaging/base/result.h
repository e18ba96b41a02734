// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <utility>
#include <variant>

namespace complexion {

/// What kind of failure an Error is, for those who decide by it.
enum class ErrorKind {
    Damaged,          // the file's content does not decode; what an error is unless it says otherwise
    NotAPicture,      // the file is of none of the formats
    TooLarge,         // the file or the picture exceeds what is accepted
    OutOfMemory,      // memory, or another resource of the process, is lacking
    CannotRead,       // the system does not give the file
    CannotWrite,      // the system does not take the file
    FormatCannotHold, // the format has no way to store the picture
};

/// Why an operation on a file or a picture gave no value; the message is for a log line.
struct Error {
    std::string message;
    ErrorKind kind = ErrorKind::Damaged;
};

/// The value of an operation that has no other result than its success.
struct Done {};

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

#define COMPLEXION_JOINED_AGAIN(a, b) a##b
#define COMPLEXION_JOINED(a, b) COMPLEXION_JOINED_AGAIN(a, b)

/// Declares `declaration` ("const PixelSize size") and gives it the value of a Result; returns the error from
/// the function around it where there is none.
#define COMPLEXION_TRY(declaration, ...)                                                                     \
    auto COMPLEXION_JOINED(tried, __LINE__) = (__VA_ARGS__);                                                 \
    if (!COMPLEXION_JOINED(tried, __LINE__))                                                                 \
        return COMPLEXION_JOINED(tried, __LINE__).error();                                                   \
    declaration = *std::move(COMPLEXION_JOINED(tried, __LINE__))
