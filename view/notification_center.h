// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace complexion {

/// What a notification tells, text by text.
using UserInfo = std::map<std::string, std::string>;

struct Notification {
    std::string name;
    std::optional<UserInfo> userInfo;
};

/// Posted when a file was dropped on the image view and accepted; its user information has the one key
/// "path".
inline constexpr const char* kDragPerformed = "DragPerformed";
inline constexpr const char* kPathKey = "path";

/// Delivers notifications by name, synchronously, on the thread that posts. For the main thread only.
class NotificationCenter {
public:
    using Observer = std::function<void(const Notification&)>;

    /// Ends its registration when it goes.
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

    /// The one of this process.
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
