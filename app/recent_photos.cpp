// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/recent_photos.h"

#include "editor/file_names.h"

#include <QMenu>

#include <algorithm>

namespace complexion {

namespace {

using namespace Qt::StringLiterals;

/// A text that a menu shows as it is; "&" would mark a letter.
QString asItem(QString name) {
    return name.replace(u'&', u"&&"_s);
}

} // namespace

RecentPhotos::RecentPhotos(QMenu* menu) : QObject(menu), m_menu(menu) {
    m_menu->setToolTipsVisible(true);
    updateMenu();
}

void RecentPhotos::add(const std::filesystem::path& photo) {
    std::erase(m_photos, photo);
    m_photos.insert(m_photos.begin(), photo);
    m_photos.resize(std::min(m_photos.size(), kMaxPhotos));
    updateMenu();
}

void RecentPhotos::updateMenu() {
    for (QAction* item : m_menu->actions()) {
        m_menu->removeAction(item);
        item->deleteLater(); // it may be the one that was chosen
    }
    for (const std::filesystem::path& photo : m_photos) {
        const auto sameName =
            std::ranges::count(m_photos, photo.filename(), &std::filesystem::path::filename);
        const QString name = elidedName(photo);
        const QString folder = elidedName(photo.parent_path());
        QAction* const item = m_menu->addAction(asItem(sameName > 1 ? u"%1 (%2)"_s.arg(name, folder) : name));
        item->setToolTip(shownName(photo));
        connect(item, &QAction::triggered, this, [this, photo] { Q_EMIT chosen(photo); });
    }
    m_menu->setEnabled(!m_photos.empty());
}

} // namespace complexion
