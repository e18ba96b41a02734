// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/metadata/saving_losses.h"

#include "imaging/containers/container.h"
#include "imaging/containers/gif_blocks.h"
#include "imaging/containers/jpeg_segments.h"
#include "imaging/containers/png_chunks.h"
#include "imaging/containers/tiff_structure.h"
#include "imaging/metadata/jpeg_attachments.h"

#include <algorithm>
#include <string_view>

namespace complexion {

namespace {

using namespace std::string_view_literals;
using Kind = SavingLoss::Kind;

constexpr int kKeptBits = 8;

std::vector<SavingLoss> lossesOfJpeg(ByteView file) {
    constexpr std::size_t kComponentCount = 5; // offset in a frame header (ITU-T T.81 B.2.2)
    constexpr int kInks = 4;
    std::vector<SavingLoss> losses;
    if (std::ranges::any_of(jpeg::split(file).segments, [](const jpeg::Segment& segment) {
            return jpeg::isFrameHeader(segment.marker) && segment.payload.size() > kComponentCount &&
                   segment.payload[kComponentCount] == kInks;
        }))
        losses.push_back({Kind::Cmyk});
    const std::vector<jpeg::Attachment> attachments = jpeg::attachments(file);
    const auto add = [&](jpeg::Attachment::Kind attached, Kind kind) {
        if (std::ranges::any_of(attachments, [&](const auto& found) { return found.kind == attached; }))
            losses.push_back({kind});
    };
    add(jpeg::Attachment::Kind::Movie, Kind::Movie);
    add(jpeg::Attachment::Kind::Preview, Kind::Preview);
    return losses;
}

std::vector<SavingLoss> lossesOfPng(ByteView file, bool isDeep) {
    constexpr std::size_t kDepth = 8; // offset in the header chunk
    std::vector<SavingLoss> losses;
    if (const auto header = png::findChunk(file, "IHDR"); header && header->size() > kDepth)
        if (const int bits = (*header)[kDepth]; bits > kKeptBits && !isDeep)
            losses.push_back({Kind::Depth, bits});
    if (const auto control = png::findChunk(file, "acTL"))
        if (const auto frames = static_cast<int>(numberAt(*control, 0, 4, ByteOrder::BigEndian)); frames > 1)
            losses.push_back({Kind::Frames, frames});
    return losses;
}

std::vector<SavingLoss> lossesOfGif(ByteView file) {
    const std::optional<gif::Blocks> blocks = gif::split(file);
    const auto frames = blocks ? static_cast<int>(blocks->frames.size()) : 0;
    return frames > 1 ? std::vector<SavingLoss>{{Kind::Frames, frames}} : std::vector<SavingLoss>();
}

/// The first page's tags, and the number of pages without reduced images and masks.
struct TiffPages {
    tiff::Header header;
    tiff::Directory first;
    int count = 0;

    std::uint64_t number(unsigned tag) const {
        const tiff::Entry* const entry = first.find(tag);
        return entry ? tiff::firstNumber(*entry, header.order) : 0;
    }
};

TiffPages pagesOf(ByteView file, const tiff::Header& header) {
    constexpr unsigned kSubfileType = 254; // bit 0: a smaller copy, bit 2: a mask
    constexpr std::uint64_t kNoPage = 5;
    constexpr int kMaxPages = 4096;
    TiffPages pages{.header = header, .first = tiff::readDirectory(file, header, header.firstDirectory)};
    std::uint64_t next = pages.first.next;
    pages.count = 1;
    for (int visited = 1; next != 0 && next < file.size() && visited < kMaxPages; ++visited) {
        const tiff::Directory page = tiff::readDirectory(file, header, next);
        const tiff::Entry* const type = page.find(kSubfileType);
        const bool isPage = page.find(tiff::tag::kImageWidth) &&
                            ((type ? tiff::firstNumber(*type, header.order) : 0) & kNoPage) == 0;
        pages.count += isPage ? 1 : 0;
        next = page.next;
    }
    return pages;
}

std::vector<SavingLoss> lossesOfTiff(ByteView file, bool isDeep) {
    constexpr unsigned kLayers = 37724;
    constexpr std::uint64_t kSeparated = 5; // photometric interpretations
    constexpr std::uint64_t kCieLab = 8;
    constexpr std::uint64_t kItuLab = 10;
    const std::optional<tiff::Header> header = tiff::readHeader(file);
    if (!header)
        return {};
    std::vector<SavingLoss> losses;
    const TiffPages pages = pagesOf(file, *header);
    if (const auto bits = static_cast<int>(pages.number(tiff::tag::kBitsPerSample));
        bits > kKeptBits && !isDeep)
        losses.push_back({Kind::Depth, bits});
    const std::uint64_t colors = pages.number(tiff::tag::kPhotometricInterpretation);
    if (colors == kSeparated)
        losses.push_back({Kind::Cmyk});
    if (colors >= kCieLab && colors <= kItuLab)
        losses.push_back({Kind::Lab});
    if (pages.count > 1)
        losses.push_back({Kind::Pages, pages.count});
    if (pages.first.find(kLayers))
        losses.push_back({Kind::Layers});
    return losses;
}

} // namespace

std::vector<SavingLoss> savingLosses(ByteView file, const Image& image) {
    const bool isDeep = image.deepAlpha().has_value();
    switch (containerOf(file).value_or(Container::Bmp)) {
    case Container::Jpeg:
        return lossesOfJpeg(file);
    case Container::Png:
        return lossesOfPng(file, isDeep);
    case Container::Tiff:
        return lossesOfTiff(file, isDeep);
    case Container::Gif:
        return lossesOfGif(file);
    case Container::Bmp:
        return {};
    }
    return {};
}

} // namespace complexion
