// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/metadata/creation_date.h"

#include "imaging/containers/byte_order.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <sys/xattr.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <ratio>

namespace complexion {

namespace {

using std::chrono::duration_cast;

// File system types as reported by statfs (linux/magic.h and the drivers' sources).
constexpr std::uint32_t kTypeNtfs = 0x5346544e;
constexpr std::uint32_t kTypeNtfs3 = 0x7366746e;
constexpr std::uint32_t kTypeFuse = 0x65735546; // includes the user-space NTFS driver
constexpr std::uint32_t kTypeCifs = 0xff534d42;
constexpr std::uint32_t kTypeSmb2 = 0xfe534d42;

/// Windows' FILETIME: 100-nanosecond steps since 1601.
using FileTimeSteps = std::chrono::duration<std::int64_t, std::ratio<1, 10'000'000>>;
constexpr FileTimeSteps kUnixEpochAsFileTime{116'444'736'000'000'000};

constexpr std::size_t kDateLength = 8;
constexpr ByteOrder kNativeOrder =
    std::endian::native == std::endian::little ? ByteOrder::LittleEndian : ByteOrder::BigEndian;

/// An extended attribute that holds a creation date in 8 bytes.
struct DateAttribute {
    const char* name;
    ByteOrder order;
    std::int64_t (*fromDate)(CreationDate date);
    CreationDate (*toDate)(std::int64_t value);
};

std::int64_t fileTimeFromDate(CreationDate date) {
    return (duration_cast<FileTimeSteps>(date.time_since_epoch()) + kUnixEpochAsFileTime).count();
}

CreationDate dateFromFileTime(std::int64_t value) {
    // Clamps dates outside the clock's range, about 292 years around 1970, which would overflow.
    const FileTimeSteps sinceEpoch = FileTimeSteps(value < 0 ? 0 : value) - kUnixEpochAsFileTime;
    const auto first = duration_cast<FileTimeSteps>(CreationDate::min().time_since_epoch());
    const auto last = duration_cast<FileTimeSteps>(CreationDate::max().time_since_epoch());
    return CreationDate(duration_cast<CreationDate::duration>(std::clamp(sinceEpoch, first, last)));
}

std::int64_t microsecondsFromDate(CreationDate date) {
    return std::chrono::floor<std::chrono::microseconds>(date.time_since_epoch()).count();
}

CreationDate dateFromMicroseconds(std::int64_t value) {
    using std::chrono::microseconds;
    const auto first = duration_cast<microseconds>(CreationDate::min().time_since_epoch());
    const auto last = duration_cast<microseconds>(CreationDate::max().time_since_epoch());
    return CreationDate(duration_cast<CreationDate::duration>(std::clamp(microseconds(value), first, last)));
}

// The NTFS and SMB drivers use native byte order; the portable attribute is always little-endian.
constexpr DateAttribute kNtfsAttribute{"system.ntfs_crtime", kNativeOrder, fileTimeFromDate,
                                       dateFromFileTime};
constexpr DateAttribute kSmbAttribute{"user.smb3.creationtime", kNativeOrder, fileTimeFromDate,
                                      dateFromFileTime};
constexpr DateAttribute kPortableAttribute{"user.crtime_usec", ByteOrder::LittleEndian, microsecondsFromDate,
                                           dateFromMicroseconds};

/// The file system's own attribute; null if it has none. Decided by the file system's type, since any file
/// system accepts names in "user." without acting on them.
const DateAttribute* nativeAttribute(const std::filesystem::path& path) {
    struct statfs status = {};
    if (::statfs(path.c_str(), &status) != 0)
        return nullptr;
    switch (static_cast<std::uint32_t>(status.f_type)) {
    case kTypeNtfs:
    case kTypeNtfs3:
    case kTypeFuse:
        return &kNtfsAttribute;
    case kTypeCifs:
    case kTypeSmb2:
        return &kSmbAttribute;
    default:
        return nullptr;
    }
}

std::optional<CreationDate> readAttribute(const std::filesystem::path& path, const DateAttribute& attribute) {
    std::array<std::uint8_t, kDateLength> value = {};
    if (::getxattr(path.c_str(), attribute.name, value.data(), value.size()) !=
        static_cast<ssize_t>(value.size()))
        return std::nullopt;
    return attribute.toDate(static_cast<std::int64_t>(numberAt(value, 0, value.size(), attribute.order)));
}

bool writeAttribute(const std::filesystem::path& path, const DateAttribute& attribute, CreationDate date) {
    Bytes value;
    appendNumber(value, kDateLength, attribute.order, static_cast<std::uint64_t>(attribute.fromDate(date)));
    return ::setxattr(path.c_str(), attribute.name, value.data(), value.size(), 0) == 0;
}

CreationDate dateOf(const struct statx_timestamp& time) {
    using std::chrono::seconds;
    // One second of margin at both ends leaves room for the nanoseconds.
    const auto first = duration_cast<seconds>(CreationDate::min().time_since_epoch()) + seconds(1);
    const auto last = duration_cast<seconds>(CreationDate::max().time_since_epoch()) - seconds(1);
    const auto sinceEpoch =
        std::clamp(seconds(time.tv_sec), first, last) + std::chrono::nanoseconds(time.tv_nsec);
    return CreationDate(duration_cast<CreationDate::duration>(sinceEpoch));
}

} // namespace

std::optional<CreationDate> creationDate(const std::filesystem::path& path) {
    struct statx status = {};
    if (::statx(AT_FDCWD, path.c_str(), 0, STATX_BTIME | STATX_MTIME, &status) != 0)
        return std::nullopt;
    const DateAttribute* native = nativeAttribute(path);
    for (const DateAttribute* attribute : {native, &kPortableAttribute})
        if (attribute)
            if (const auto date = readAttribute(path, *attribute))
                return date;
    return dateOf((status.stx_mask & STATX_BTIME) != 0 ? status.stx_btime : status.stx_mtime);
}

bool setCreationDate(const std::filesystem::path& path, CreationDate date) {
    const DateAttribute* native = nativeAttribute(path);
    return (native && writeAttribute(path, *native, date)) || writeAttribute(path, kPortableAttribute, date);
}

} // namespace complexion
