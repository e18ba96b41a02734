// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/containers/other_formats.h"

#include "imaging/containers/byte_order.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace complexion {

namespace {

using namespace std::string_view_literals;

struct Signature {
    std::size_t offset = 0;
    std::string_view bytes;
    std::string_view format;
};

// A file of the ISO base media format (ISO/IEC 14496-12) begins with the length of its first box, the box's
// type "ftyp" and the brand. The brands of still pictures are listed; the others are of movies.
constexpr std::size_t kBox = 4;
constexpr std::size_t kBrand = 8;

constexpr auto kSignatures = std::to_array<Signature>({
    {kBrand, "heic"sv, "HEIC"sv}, // ISO/IEC 23008-12
    {kBrand, "heix"sv, "HEIC"sv},
    {kBrand, "hevc"sv, "HEIC"sv},
    {kBrand, "heim"sv, "HEIC"sv},
    {kBrand, "heis"sv, "HEIC"sv},
    {kBrand, "mif1"sv, "HEIF"sv},
    {kBrand, "msf1"sv, "HEIF"sv},
    {kBrand, "avif"sv, "AVIF"sv},
    {kBrand, "avis"sv, "AVIF"sv},
    {kBrand, "crx "sv, kCameraRaw},
    {kBox, "ftyp"sv, kMovie},
    {kBrand, "WEBP"sv, "WebP"sv}, // behind "RIFF" and the length
    {0, "8BPS"sv, "Photoshop"sv},
    {0, "%PDF-"sv, "PDF"sv},
    {0, "\xff\x0a"sv, "JPEG XL"sv}, // ISO/IEC 18181-2: a bare codestream, a container
    {0, "\0\0\0\x0cJXL \r\n\x87\n"sv, "JPEG XL"sv},
    {0, "\0\0\0\x0cjP  \r\n\x87\n"sv, "JPEG 2000"sv}, // ISO/IEC 15444-1
    {0, "\xff\x4f\xff\x51"sv, "JPEG 2000"sv},
    {0, "gimp xcf "sv, "XCF"sv},
    {0, "FUJIFILMCCD-RAW"sv, kCameraRaw},
    {0, "IIRO"sv, kCameraRaw}, // a TIFF structure with another number in its header
    {0, "IIRS"sv, kCameraRaw},
    {0, "MMOR"sv, kCameraRaw},
    {0, "IIU\0"sv, kCameraRaw},
    {0, "FOVb"sv, kCameraRaw},
    {0, "\0MRM"sv, kCameraRaw},
});

bool has(ByteView file, const Signature& signature) {
    return file.size() >= signature.offset && startsWith(file.subspan(signature.offset), signature.bytes);
}

} // namespace

std::optional<std::string_view> otherFormatOf(ByteView start) {
    const bool isMedia = has(start, {kBox, "ftyp"sv, {}});
    const bool isRiff = startsWith(start, "RIFF"sv);
    for (const Signature& signature : kSignatures) {
        if (signature.offset == kBrand && !isMedia && !isRiff)
            continue;
        if (has(start, signature))
            return signature.format;
    }
    return std::nullopt;
}

std::optional<std::string_view> otherFormatOf(const Error& error) {
    const auto named = std::ranges::find(kSignatures, std::string_view(error.message), &Signature::format);
    return error.kind == ErrorKind::NotAPicture && named != kSignatures.end() ? std::optional(named->format)
                                                                              : std::nullopt;
}

} // namespace complexion
