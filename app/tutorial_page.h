// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <string>

namespace complexion {

/// The address of the tutorial's page that was installed with the program, in the user's language where there
/// is one, else in English; empty when there is none. `programFolder` is the folder that the program lies in.
std::string tutorialPageAddress(const QString& programFolder, const QString& language);

} // namespace complexion
