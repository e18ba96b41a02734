// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/jpeg_scan.h"

#include <cstring>

namespace complexion::jpeg {

namespace {

constexpr std::uint8_t kMarkerPrefix = 0xFF;
constexpr std::uint8_t kStuffed = 0x00; // after 0xFF: the 0xFF is entropy-coded data (ITU-T T.81 F.1.2.3)
constexpr std::uint8_t kFirstRestart = 0xD0; // RST0 (ITU-T T.81 table B.1)
constexpr std::size_t kRestartNumbers = 8;
constexpr std::size_t kMarkerLength = 2;

} // namespace

RestartIntervals splitAtRestartMarkers(ByteView bytes) {
    RestartIntervals split;
    std::size_t start = 0;
    std::size_t position = 0;
    std::size_t end = bytes.size();
    while (position < bytes.size()) {
        const void* found = std::memchr(bytes.data() + position, kMarkerPrefix, bytes.size() - position);
        if (found == nullptr)
            break;
        position = static_cast<std::size_t>(static_cast<const std::uint8_t*>(found) - bytes.data());
        const std::uint8_t code = position + 1 < bytes.size() ? bytes[position + 1] : kMarkerPrefix;
        if (code == kStuffed) {
            position += kMarkerLength;
            continue;
        }
        const auto number = static_cast<std::size_t>(code - kFirstRestart);
        if (code < kFirstRestart || number >= kRestartNumbers) {
            end = position;
            split.rest = bytes.subspan(position);
            break;
        }
        split.inSequence = split.inSequence && number == split.intervals.size() % kRestartNumbers;
        split.intervals.push_back(bytes.subspan(start, position - start));
        position += kMarkerLength;
        start = position;
    }
    split.intervals.push_back(bytes.subspan(start, end - start));
    return split;
}

void appendRestartMarker(Bytes& bytes, std::size_t index) {
    bytes.push_back(kMarkerPrefix);
    bytes.push_back(static_cast<std::uint8_t>(kFirstRestart + (index - 1) % kRestartNumbers));
}

} // namespace complexion::jpeg
