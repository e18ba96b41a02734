// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"

#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

namespace complexion {

/// A number that is written as the bytes that it has in memory: both ends run on one machine.
template <class T>
concept FlatNumber = std::is_arithmetic_v<T>;

/// Appends values to bytes, one after the other.
class FlatWriter {
public:
    template <FlatNumber T>
    void number(T value) {
        const auto* const first = reinterpret_cast<const std::uint8_t*>(&value);
        m_bytes.insert(m_bytes.end(), first, first + sizeof value);
    }
    /// With its length.
    void bytes(ByteView bytes) {
        number(std::uint64_t{bytes.size()});
        m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end());
    }
    void text(std::string_view text) {
        bytes({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
    }

    const Bytes& written() const { return m_bytes; }

private:
    Bytes m_bytes;
};

/// Reads what a FlatWriter has written, or bytes that only claim to be that: behind their end everything is 0
/// and empty, and `isWhole` is false.
class FlatReader {
public:
    explicit FlatReader(ByteView bytes) : m_rest(bytes) {}

    template <FlatNumber T>
    T number() {
        T value = {};
        const ByteView bytes = take(sizeof value);
        if (!bytes.empty())
            std::memcpy(&value, bytes.data(), sizeof value);
        return value;
    }
    ByteView bytes() { return take(number<std::uint64_t>()); }
    std::string text() {
        const ByteView view = bytes();
        return {reinterpret_cast<const char*>(view.data()), view.size()};
    }

    /// Whether all that was read was there, and nothing is left.
    bool isWhole() const { return !m_isCut && m_rest.empty(); }

private:
    ByteView take(std::uint64_t length) {
        if (length > m_rest.size()) {
            m_isCut = true;
            m_rest = {};
            return {};
        }
        const ByteView taken = m_rest.first(static_cast<std::size_t>(length));
        m_rest = m_rest.subspan(taken.size());
        return taken;
    }

    ByteView m_rest;
    bool m_isCut = false;
};

} // namespace complexion
