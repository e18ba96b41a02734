// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/notification_center.h"

#include <utility>

namespace complexion {

NotificationCenter::Registration::Registration(Registration&& other) noexcept
    : m_center(std::exchange(other.m_center, nullptr)), m_id(other.m_id) {}

NotificationCenter::Registration& NotificationCenter::Registration::operator=(Registration&& other) noexcept {
    if (this != &other) {
        end();
        m_center = std::exchange(other.m_center, nullptr);
        m_id = other.m_id;
    }
    return *this;
}

NotificationCenter::Registration::~Registration() {
    end();
}

void NotificationCenter::Registration::end() {
    if (m_center)
        std::erase_if(m_center->m_entries, [this](const Entry& entry) { return entry.id == m_id; });
    m_center = nullptr;
}

NotificationCenter& NotificationCenter::defaultCenter() {
    static NotificationCenter center;
    return center;
}

NotificationCenter::Registration NotificationCenter::addObserver(std::string name, Observer observer) {
    const int id = m_nextId++;
    m_entries.push_back({id, std::move(name), std::move(observer)});
    return {this, id};
}

void NotificationCenter::post(const Notification& notification) {
    // A copy: observers may add and remove registrations.
    const std::vector<Entry> entries = m_entries;
    for (const Entry& entry : entries)
        if (entry.name == notification.name)
            entry.observer(notification);
}

} // namespace complexion
