// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoreApplication>
#include <QLocale>

namespace complexion {

/// Installs the translations of the program's and of Qt's texts for `locale`. Texts without a translation
/// appear in English.
void installTranslations(QCoreApplication& application, const QLocale& locale);

} // namespace complexion
