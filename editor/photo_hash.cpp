// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/photo_hash.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace complexion {

namespace {

constexpr std::size_t kChunkSize = 1 << 20;

} // namespace

PhotoHasher::PhotoHasher(const std::filesystem::path& path)
    : m_file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)), m_hasFailed(!m_file) {
    if (m_file)
        m_identity = identify(m_file.get());
}

bool PhotoHasher::readOn() {
    if (m_hasFailed)
        return false;
    m_chunk.resize(kChunkSize);
    const ssize_t count = ::read(m_file.get(), m_chunk.data(), m_chunk.size());
    if (count < 0 && errno == EINTR)
        return true;
    m_hasFailed = count < 0;
    if (count > 0)
        m_hash.addData(QByteArrayView(m_chunk.data(), count));
    return count > 0;
}

std::optional<PhotoHash> PhotoHasher::result() const {
    if (m_hasFailed || identify(m_file.get()) != m_identity)
        return std::nullopt;
    const QByteArray bytes = m_hash.result();
    PhotoHash hash = {};
    std::copy_n(bytes.begin(), hash.size(), hash.begin());
    return hash;
}

} // namespace complexion
