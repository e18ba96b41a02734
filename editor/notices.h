// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/result.h"
#include "imaging/photo_files.h"

#include <QString>

#include <filesystem>
#include <string>

namespace complexion {

/// What the user should know about a photo that has just been opened: that its file is damaged, and what a
/// copy saved as a file of type `format` will not have. Empty if there is nothing to say.
QString noticeAbout(const OpenedPhoto& photo, const std::string& format);

/// That no file of type `format` can hold the photo, so that it cannot be saved.
QString noticeOfSize(const std::string& format);

/// Why the file at `path` could not be opened, and what helps.
QString noticeOfFailure(const std::filesystem::path& path, const Error& error);

/// Why the file at `path` was not opened when it was dropped on the window: only names with an extension of
/// an accepted type are.
QString noticeOfRefusal(const std::filesystem::path& path, bool hasAcceptedExtension);

} // namespace complexion
