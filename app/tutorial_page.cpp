// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/tutorial_page.h"

#include <QDir>
#include <QFileInfo>
#include <QUrl>

namespace complexion {

std::string tutorialPageAddress(const QString& programFolder, const QString& language) {
    const QDir pages(programFolder + QStringLiteral("/../share/complexion/tutorial"));
    for (const QString& name : {QStringLiteral("index_%1.html").arg(language), QStringLiteral("index.html")})
        if (const QFileInfo page(pages, name); page.isFile())
            return QUrl::fromLocalFile(page.canonicalFilePath()).toString(QUrl::FullyEncoded).toStdString();
    return {};
}

} // namespace complexion
