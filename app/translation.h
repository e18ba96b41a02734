// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoreApplication>
#include <QLocale>

namespace complexion {

/// Has the program's texts, and the toolkit's, shown in the locale's language where there is a translation.
/// English stands as it is.
void installTranslations(QCoreApplication& application, const QLocale& locale);

} // namespace complexion
