// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"

namespace complexion {

// Bytes too many to be held twice: they are passed on piece by piece.

/// Takes bytes, one piece after the other.
class ByteSink {
public:
    ByteSink() = default;
    ByteSink(const ByteSink&) = delete;
    ByteSink& operator=(const ByteSink&) = delete;
    virtual ~ByteSink() = default;

    virtual void append(ByteView bytes) = 0;
};

/// Gives bytes, one piece after the other.
class ByteSource {
public:
    ByteSource() = default;
    ByteSource(const ByteSource&) = delete;
    ByteSource& operator=(const ByteSource&) = delete;
    virtual ~ByteSource() = default;

    /// Appends the next `count` bytes to `out`; false if there are fewer.
    virtual bool read(std::size_t count, Bytes& out) = 0;
    /// Whether no byte is left.
    virtual bool isAtEnd() = 0;
};

class MemorySink final : public ByteSink {
public:
    void append(ByteView bytes) override { m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end()); }
    const Bytes& written() const { return m_bytes; }

private:
    Bytes m_bytes;
};

class MemorySource final : public ByteSource {
public:
    explicit MemorySource(ByteView bytes) : m_rest(bytes) {}
    bool read(std::size_t count, Bytes& out) override {
        if (count > m_rest.size())
            return false;
        out.insert(out.end(), m_rest.begin(), m_rest.begin() + static_cast<std::ptrdiff_t>(count));
        m_rest = m_rest.subspan(count);
        return true;
    }
    bool isAtEnd() override { return m_rest.empty(); }

private:
    ByteView m_rest;
};

} // namespace complexion
