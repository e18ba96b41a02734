// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/camera_raw.h"

#include "imaging/containers/byte_order.h"
#include "imaging/containers/tiff_structure.h"

#include <algorithm>
#include <vector>

namespace complexion {

namespace {

constexpr unsigned kSubDirectories = 330; // TIFF Technical Note 1
constexpr unsigned kDngVersion = 50706;   // DNG 1.4

// PhotometricInterpretation of samples behind a colour filter (TIFF/EP), and of linear ones (DNG).
constexpr std::uint64_t kColorFilterArray = 32803;
constexpr std::uint64_t kLinearRaw = 34892;

// Raw files have a handful of directories; the chain of a damaged file may have no end.
constexpr std::size_t kMaxDirectories = 32;

/// Looks through the directories of a TIFF file for the tags that tell a raw file. Reads no other values:
/// what a damaged file says about them costs nothing.
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

    /// Scans the directory at `offset` and notes those that it names; true when it is of a raw file.
    bool scan(std::uint64_t offset) {
        if (offset == 0 || offset >= m_file.size())
            return false;
        const std::uint64_t count = number(offset, m_header.countLength());
        const std::uint64_t first = offset + m_header.countLength();
        if (count > (m_file.size() - offset) / m_header.entryLength())
            return false;
        for (std::uint64_t i = 0; i < count; ++i)
            if (isOfRaw(first + i * m_header.entryLength()))
                return true;
        m_pending.push_back(number(first + count * m_header.entryLength(), m_header.offsetLength()));
        return false;
    }

    /// Whether the entry at `position` tells a raw file. One that names directories has them scanned.
    bool isOfRaw(std::uint64_t position) {
        const auto name = static_cast<unsigned>(number(position, 2));
        if (name == kDngVersion)
            return true;
        if (name != tiff::tag::kPhotometricInterpretation && name != kSubDirectories)
            return false;
        const std::size_t unit = tiff::typeLength(static_cast<unsigned>(number(position + 2, 2)));
        const std::uint64_t count = number(position + 4, m_header.offsetLength());
        const std::uint64_t field = position + 4 + m_header.offsetLength();
        if (unit == 0 || unit > m_header.offsetLength())
            return false;
        if (name == tiff::tag::kPhotometricInterpretation) {
            const std::uint64_t meaning = number(field, unit);
            return meaning == kColorFilterArray || meaning == kLinearRaw;
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

/// Canon's raw files of the second version have their mark behind the header.
bool hasCanonMark(ByteView file) {
    constexpr std::size_t kMarkOffset = 8;
    return startsWith(slice(file, kMarkOffset), "CR\x02");
}

} // namespace

bool isCameraRaw(ByteView file) {
    const std::optional<tiff::Header> header = tiff::readHeader(file);
    return header && ((!header->isBig && hasCanonMark(file)) || DirectoryScanner(file, *header).findsRaw());
}

} // namespace complexion
