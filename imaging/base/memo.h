// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <mutex>

namespace complexion {

/// A cache for one value computed from immutable pixels. Thread-safe.
class Memo {
public:
    /// Base of the value types. Their qualified names must be unique across all files: some compilers compare
    /// types in unnamed namespaces only by name.
    struct Value {
        Value() = default;
        Value(const Value&) = delete;
        Value& operator=(const Value&) = delete;
        virtual ~Value() = default;
    };

    /// The cached value if it is of type T; otherwise null.
    template <class T>
    std::shared_ptr<const T> get() const {
        const std::scoped_lock lock(m_mutex);
        return std::dynamic_pointer_cast<const T>(m_value);
    }

    /// Caches `value` and drops the outdated one.
    void set(std::shared_ptr<const Value> value) {
        const std::scoped_lock lock(m_mutex);
        m_value = std::move(value);
        m_outdated = nullptr;
    }

    /// The value of the pixels that these were derived from by an edit, if it is of type T and nothing has
    /// been set since; otherwise null. The value itself must record which pixels it belongs to.
    template <class T>
    std::shared_ptr<const T> getOutdated() const {
        const std::scoped_lock lock(m_mutex);
        return std::dynamic_pointer_cast<const T>(m_outdated);
    }

    /// Keeps what is cached for the pixels that these were derived from.
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
