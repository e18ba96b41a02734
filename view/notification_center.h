// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace complexion {

/// A notification's payload: text values by key.
using UserInfo = std::map<std::string, std::string>;

struct Notification {
    std::string name;
    std::optional<UserInfo> userInfo;
};

/// Posted when the image view has accepted a dropped file. The user information has the single key "path".
inline constexpr const char* kDragPerformed = "DragPerformed";
inline constexpr const char* kPathKey = "path";

/// Delivers notifications by name, synchronously. For the main thread only.
class NotificationCenter {
public:
    using Observer = std::function<void(const Notification&)>;

    /// Removes its observer when destroyed.
    class Registration {
    public:
        Registration() = default;
        Registration(Registration&& other) noexcept;
        Registration& operator=(Registration&& other) noexcept;
        Registration(const Registration&) = delete;
        Registration& operator=(const Registration&) = delete;
        ~Registration();

    private:
        friend class NotificationCenter;
        Registration(NotificationCenter* center, int id) : m_center(center), m_id(id) {}
        void end();

        NotificationCenter* m_center = nullptr;
        int m_id = 0;
    };

    /// The instance of this process.
    static NotificationCenter& defaultCenter();

    [[nodiscard]] Registration addObserver(std::string name, Observer observer);
    void post(const Notification& notification);

private:
    struct Entry {
        int id = 0;
        std::string name;
        Observer observer;
    };
    std::vector<Entry> m_entries;
    int m_nextId = 1;
};

} // namespace complexion
