// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <string>

namespace complexion {

/// The file URL of the installed tutorial page in `language`, or in English if there is no translation; empty
/// if none is installed. `programFolder` contains the executable.
std::string tutorialPageAddress(const QString& programFolder, const QString& language);

} // namespace complexion
