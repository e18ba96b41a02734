// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/state_image_files.h"

#include "imaging/base/diagnostics.h"
#include "imaging/image_tools.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string>

namespace complexion {

namespace {

std::int64_t nanoseconds(const timespec& time) {
    return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

} // namespace

bool StateImageFiles::write(const Image& image, const std::filesystem::path& path, std::string_view format) {
    m_written.erase(path);
    const std::optional<Identity> earlier = identify(path);
    if (!ImageTools::SaveImage(image, path, format))
        return false;
    // A picture that its format cannot hold counts as saved and leaves whatever stood there before.
    if (identify(path) == earlier)
        return true;
    // The pictures of a history are nobody else's to see.
    ::chmod(path.c_str(), S_IRUSR | S_IWUSR);
    if (const std::optional<Identity> now = identify(path))
        m_written.insert_or_assign(path, Written{image, *now});
    return true;
}

std::optional<Image> StateImageFiles::read(const std::filesystem::path& path) const {
    const auto written = m_written.find(path);
    if (written != m_written.end() && identify(path) == written->second.identity)
        return written->second.image;
    return ImageTools::DecodeImage(path);
}

void StateImageFiles::remove(const std::filesystem::path& path) {
    m_written.erase(path);
    removeFile(path);
}

std::optional<StateImageFiles::Identity> StateImageFiles::identify(const std::filesystem::path& path) {
    struct stat status = {};
    if (::stat(path.c_str(), &status) != 0)
        return std::nullopt;
    return Identity{.device = status.st_dev,
                    .inode = status.st_ino,
                    .size = status.st_size,
                    .modifiedNanoseconds = nanoseconds(status.st_mtim),
                    .changedNanoseconds = nanoseconds(status.st_ctim)};
}

void removeFile(const std::filesystem::path& path) {
    // Not std::filesystem::remove: that would also take an empty folder away.
    if (::unlink(path.c_str()) != 0)
        printLine(std::string("Remove failed: ") + std::strerror(errno));
}

} // namespace complexion
