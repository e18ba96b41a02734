// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/state_image_files.h"

#include "imaging/base/diagnostics.h"
#include "imaging/image_tools.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>

namespace complexion {

bool StateImageFiles::write(const Image& image, const std::filesystem::path& path, std::string_view format) {
    m_written.erase(path);
    m_unwritten.erase(path);
    const std::optional<FileIdentity> earlier = identify(path);
    if (!ImageTools::SaveImage(image, path, format))
        return false;
    // If the format cannot hold the picture, SaveImage succeeds without touching the file.
    if (identify(path) == earlier)
        return true;
    // Only the user may read the states.
    ::chmod(path.c_str(), S_IRUSR | S_IWUSR);
    if (const std::optional<FileIdentity> now = identify(path))
        m_written.insert_or_assign(path, Written{image, *now});
    return true;
}

void StateImageFiles::writeLater(const Image& image, const std::filesystem::path& path,
                                 std::string_view format) {
    m_unwritten.insert_or_assign(path, Unwritten{image, std::string(format)});
}

bool StateImageFiles::writeNext() {
    const auto next =
        std::ranges::find_if(m_unwritten, [](const auto& entry) { return !entry.second.isTried; });
    if (next == m_unwritten.end())
        return false;
    const auto [path, unwritten] = *next;
    if (!write(unwritten.image, path, unwritten.format))
        m_unwritten.insert_or_assign(path, Unwritten{unwritten.image, unwritten.format, true});
    return true;
}

std::optional<Image> StateImageFiles::read(const std::filesystem::path& path) const {
    const auto unwritten = m_unwritten.find(path);
    if (unwritten != m_unwritten.end())
        return unwritten->second.image;
    if (isAsWritten(path))
        return m_written.at(path).image;
    return ImageTools::DecodeImage(path);
}

bool StateImageFiles::isAsWritten(const std::filesystem::path& path) const {
    const auto written = m_written.find(path);
    return m_unwritten.contains(path) ||
           (written != m_written.end() && identify(path) == written->second.identity);
}

void StateImageFiles::remove(const std::filesystem::path& path) {
    m_written.erase(path);
    if (m_unwritten.erase(path) == 0)
        removeFile(path);
}

void removeFile(const std::filesystem::path& path) {
    // Unlike std::filesystem::remove, unlink does not delete empty folders.
    if (::unlink(path.c_str()) != 0)
        printLine(std::string("Remove failed: ") + std::strerror(errno));
}

} // namespace complexion
