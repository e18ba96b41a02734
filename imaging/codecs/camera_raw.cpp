// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/camera_raw.h"

#include "imaging/containers/byte_order.h"
#include "imaging/containers/tiff_structure.h"

#include <algorithm>
#include <vector>

namespace complexion {

namespace {

constexpr unsigned kSubIfds = 330;      // TIFF Technical Note 1
constexpr unsigned kDngVersion = 50706; // DNG 1.4

// PhotometricInterpretation: colour filter array (TIFF/EP, ISO 12234-2) and linear raw (DNG 1.4).
constexpr std::uint64_t kColorFilterArray = 32803;
constexpr std::uint64_t kLinearRaw = 34892;

// Raw files have a handful of directories. The limit ends the cyclic chain of a damaged file.
constexpr std::size_t kMaxDirectories = 32;

/// Scans a TIFF file's directories for the tags that identify raw files. Reads no other values, so
/// implausible entries of a damaged file cost nothing.
class DirectoryScanner {
public:
    DirectoryScanner(ByteView file, const tiff::Header& header) : m_file(file), m_header(header) {}

    bool findsRaw() {
        m_pending = {m_header.firstDirectory};
        for (std::size_t i = 0; i < m_pending.size() && i < kMaxDirectories; ++i)
            if (scan(m_pending[i]))
                return true;
        return false;
    }

private:
    std::uint64_t number(std::uint64_t offset, std::size_t length) const {
        return numberAt(m_file, offset, length, m_header.order);
    }

    /// Scans the directory at `offset` and queues the directories it refers to. True if it identifies a raw
    /// file.
    bool scan(std::uint64_t offset) {
        if (offset == 0 || offset >= m_file.size())
            return false;
        const std::uint64_t count = number(offset, m_header.countLength());
        const std::uint64_t first = offset + m_header.countLength();
        if (count > (m_file.size() - offset) / m_header.entryLength())
            return false;
        for (std::uint64_t i = 0; i < count; ++i)
            if (identifiesRaw(first + i * m_header.entryLength()))
                return true;
        m_pending.push_back(number(first + count * m_header.entryLength(), m_header.offsetLength()));
        return false;
    }

    /// Whether the entry at `position` identifies a raw file. Queues the sub-directories of a SubIFDs entry.
    bool identifiesRaw(std::uint64_t position) {
        const auto tag = static_cast<unsigned>(number(position, 2));
        if (tag == kDngVersion)
            return true;
        if (tag != tiff::tag::kPhotometricInterpretation && tag != kSubIfds)
            return false;
        const std::size_t unit = tiff::typeLength(static_cast<unsigned>(number(position + 2, 2)));
        const std::uint64_t count = number(position + 4, m_header.offsetLength());
        const std::uint64_t field = position + 4 + m_header.offsetLength();
        if (unit == 0 || unit > m_header.offsetLength())
            return false;
        if (tag == tiff::tag::kPhotometricInterpretation) {
            const std::uint64_t photometric = number(field, unit);
            return photometric == kColorFilterArray || photometric == kLinearRaw;
        }
        const bool isInline = count <= m_header.offsetLength() / unit;
        const std::uint64_t values = isInline ? field : number(field, m_header.offsetLength());
        for (std::uint64_t i = 0; i < std::min<std::uint64_t>(count, kMaxDirectories); ++i)
            m_pending.push_back(number(values + i * unit, unit));
        return false;
    }

    ByteView m_file;
    tiff::Header m_header;
    std::vector<std::uint64_t> m_pending;
};

/// CR2 files have the marker "CR" and the version 2 after the TIFF header.
bool hasCr2Marker(ByteView file) {
    constexpr std::size_t kMarkerOffset = 8;
    return startsWith(slice(file, kMarkerOffset), "CR\x02");
}

} // namespace

bool isCameraRaw(ByteView file) {
    const std::optional<tiff::Header> header = tiff::readHeader(file);
    return header && ((!header->isBig && hasCr2Marker(file)) || DirectoryScanner(file, *header).findsRaw());
}

} // namespace complexion
