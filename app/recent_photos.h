// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

#include <filesystem>
#include <vector>

class QMenu;

namespace complexion {

/// A menu of the photos that were opened in this run of the program, the latest first. They are recorded
/// nowhere else.
class RecentPhotos : public QObject {
    Q_OBJECT

public:
    static constexpr std::size_t kMaxPhotos = 8;

    /// Keeps `menu` up to date; it is disabled while there are none.
    explicit RecentPhotos(QMenu* menu);

    /// Puts a photo first.
    void add(const std::filesystem::path& photo);

Q_SIGNALS:
    void chosen(const std::filesystem::path& photo);

private:
    void updateMenu();

    QMenu* m_menu;
    std::vector<std::filesystem::path> m_photos;
};

} // namespace complexion
