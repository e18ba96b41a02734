// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <mutex>

namespace complexion {

/// A place beside immutable pixels for something computed from them, so that it is computed once.
/// Holds one value of the owner's own kind; safe to use from any thread.
class Memo {
public:
    /// Kinds of values have names of their own across all files: some compilers tell types of unnamed
    /// namespaces apart by their names alone.
    struct Value {
        Value() = default;
        Value(const Value&) = delete;
        Value& operator=(const Value&) = delete;
        virtual ~Value() = default;
    };

    /// The value kept, if it is of type T; otherwise null.
    template <class T>
    std::shared_ptr<const T> get() const {
        const std::scoped_lock lock(m_mutex);
        return std::dynamic_pointer_cast<const T>(m_value);
    }

    /// Whatever was outdated goes.
    void set(std::shared_ptr<const Value> value) {
        const std::scoped_lock lock(m_mutex);
        m_value = std::move(value);
        m_outdated = nullptr;
    }

    /// The value of what these pixels were made from by an edit, if it is of type T and nothing has been set
    /// since; otherwise null. The value itself has to know what pixels it speaks of.
    template <class T>
    std::shared_ptr<const T> getOutdated() const {
        const std::scoped_lock lock(m_mutex);
        return std::dynamic_pointer_cast<const T>(m_outdated);
    }

    /// Takes over what is kept beside the pixels that these were made from.
    void setOutdated(const Memo& before) {
        const std::scoped_lock lock(m_mutex, before.m_mutex);
        m_outdated = before.m_value ? before.m_value : before.m_outdated;
    }

private:
    mutable std::mutex m_mutex;
    std::shared_ptr<const Value> m_value;
    std::shared_ptr<const Value> m_outdated;
};

} // namespace complexion
