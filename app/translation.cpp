// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/translation.h"

#include <QLibraryInfo>
#include <QTranslator>

namespace complexion {

namespace {

void install(QCoreApplication& application, const QLocale& locale, const QString& name,
             const QString& folder) {
    auto* translator = new QTranslator(&application);
    if (translator->load(locale, name, QStringLiteral("_"), folder))
        QCoreApplication::installTranslator(translator);
    else
        delete translator;
}

} // namespace

void installTranslations(QCoreApplication& application, const QLocale& locale) {
    install(application, locale, QStringLiteral("qtbase"),
            QLibraryInfo::path(QLibraryInfo::TranslationsPath));
    install(application, locale, QStringLiteral("complexion"), QStringLiteral(":/i18n"));
}

} // namespace complexion
