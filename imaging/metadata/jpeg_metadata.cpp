// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/metadata/jpeg_metadata.h"

#include "imaging/containers/exif_basics.h"
#include "imaging/containers/jpeg_segments.h"
#include "imaging/containers/tiff_structure.h"
#include "imaging/metadata/exif_block.h"
#include "imaging/metadata/exif_thumbnail.h"
#include "imaging/metadata/jpeg_xmp.h"
#include "imaging/metadata/photoshop_resources.h"
#include "imaging/metadata/text_encoding.h"
#include "imaging/metadata/xmp_packet.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace complexion::jpeg {

namespace {

using namespace std::string_view_literals;

// Payload identifiers. Sources: EXIF 2.32, Photoshop File Formats Specification, JFIF 1.02.
constexpr std::string_view kExifStart = "Exif\0\0"sv;
constexpr std::string_view kPhotoshopStart = "Photoshop 3.0\0"sv;
constexpr std::string_view kJfifStart = "JFIF\0"sv;
constexpr std::string_view kGainMapStart = "urn:iso:std:iso:ts:21496:-1\0"sv; // ISO 21496-1

// Offsets in a JFIF payload: the density's unit, the densities, then the size of a thumbnail and its pixels.
constexpr std::size_t kJfifUnit = 7;
constexpr std::size_t kJfifAcross = 8;
constexpr std::size_t kJfifDown = 10;
constexpr std::size_t kJfifLength = 14;
constexpr std::size_t kJfifThumbnail = 12;

// Maximum size of an EXIF block in one segment.
constexpr std::size_t kMaxExifBytes = kMaxSegmentBytes - kExifStart.size();

bool isSegment(const Segment& segment, std::uint8_t code, std::string_view start) {
    return segment.marker == code && startsWith(segment.payload, start);
}

bool isExif(const Segment& segment) {
    return isSegment(segment, marker::app(1), kExifStart);
}

bool isPhotoshop(const Segment& segment) {
    return isSegment(segment, marker::app(13), kPhotoshopStart);
}

bool isJfif(const Segment& segment) {
    return isSegment(segment, marker::kApp0, kJfifStart) && segment.payload.size() >= kJfifLength;
}

/// Whether an APP2 to APP5 segment begins a preview: some cameras store a JPEG file there, after a short
/// identifier at most, and continue it in the next segments.
bool isPreviewStart(const Segment& segment) {
    constexpr std::size_t kMaxName = 5;
    return segment.marker >= marker::app(2) && segment.marker <= marker::app(5) &&
           textOf(segment.payload).substr(0, kMaxName + 3).find("\xff\xd8\xff"sv) != std::string_view::npos;
}

struct SegmentKind {
    int app;
    std::string_view start;
};

/// Application segments that are not carried: the new file has its own, or they describe the coding or other
/// pictures in the file.
constexpr std::array kLeftBehind = {
    SegmentKind{0, "JFIF\0"sv},        // copied field by field
    SegmentKind{0, "JFXX\0"sv},        // a thumbnail
    SegmentKind{0, "AVI1"sv},          // video field order
    SegmentKind{2, "ICC_PROFILE\0"sv}, // the encoder wrote the pixels' own profile
    SegmentKind{2, "MPF\0"sv},         // offsets of further pictures
    SegmentKind{2, kGainMapStart},     // a gain map, unless that is kept
    SegmentKind{3, "_JPSJPS_"sv},      // stereo layout
    SegmentKind{8, "SPIFF\0"sv},       // size and coding of the source of the source
    SegmentKind{11, ""sv},             // residual images, and signatures over the source's bytes
    SegmentKind{14, "Adobe"sv},        // colour transform of the source's coding
    SegmentKind{15, "Q "sv},           // quality of the source's coding
};

bool isMetadata(const Segment& segment) {
    if (segment.marker == marker::kComment)
        return true;
    if (segment.marker < marker::app(0) || segment.marker > marker::app(15))
        return false;
    return std::ranges::none_of(kLeftBehind, [&segment](const SegmentKind& kind) {
        return isSegment(segment, marker::app(kind.app), kind.start);
    });
}

/// The end of the run of segments that continue the block begun in segment `first`.
template <class Continues>
std::size_t blockEnd(const std::vector<Segment>& segments, std::size_t first, Continues continues) {
    std::size_t end = first + 1;
    while (end < segments.size() && continues(segments[end]))
        ++end;
    return end;
}

/// The concatenated payloads of the segments [first, end), without their identifiers.
Bytes joined(const std::vector<Segment>& segments, std::size_t first, std::size_t end,
             std::size_t startLength) {
    Bytes block;
    for (std::size_t i = first; i < end; ++i)
        append(block, segments[i].payload.subspan(startLength));
    return block;
}

std::size_t exifEnd(const std::vector<Segment>& segments, std::size_t first) {
    return blockEnd(segments, first, [](const Segment& next) {
        return isExif(next) && !tiff::readHeader(next.payload.subspan(kExifStart.size()));
    });
}

std::size_t photoshopEnd(const std::vector<Segment>& segments, std::size_t first) {
    return blockEnd(segments, first, [](const Segment& next) {
        return isPhotoshop(next) && !startsWith(next.payload.subspan(kPhotoshopStart.size()), "8BIM");
    });
}

/// Appends `block` split into segments that each begin with `start`.
void appendBlock(Bytes& to, std::uint8_t code, std::string_view start, ByteView block) {
    const std::size_t most = kMaxSegmentBytes - start.size();
    for (std::size_t position = 0; position < block.size(); position += most) {
        Bytes payload(start.begin(), start.end());
        append(payload, slice(block, position, most));
        append(to, jpeg::segment(code, payload));
    }
}

/// Whether the file is coded in RGB, which only an Adobe segment can declare. Such a file must not have a
/// JFIF segment, which would declare YCbCr.
bool isCodedInRgb(const std::vector<Segment>& segments) {
    constexpr std::size_t kTransform = 11; // offset in an Adobe segment; 0: no transform
    return std::ranges::any_of(segments, [](const Segment& segment) {
        return isSegment(segment, marker::app(14), "Adobe"sv) && segment.payload.size() > kTransform &&
               segment.payload[kTransform] == 0;
    });
}

const Segment* findJfif(const std::vector<Segment>& segments) {
    const auto found = std::ranges::find_if(segments, isJfif);
    return found == segments.end() ? nullptr : &*found;
}

Bytes jfifWithoutThumbnail(ByteView payload) {
    const ByteView fields = payload.first(kJfifThumbnail);
    Bytes bare(fields.begin(), fields.end());
    appendNumber(bare, 2, ByteOrder::BigEndian, 0);
    return bare;
}

std::optional<Resolution> jfifResolution(const Segment& jfif) {
    const auto number = [&jfif](std::size_t offset, std::size_t length) {
        return numberAt(jfif.payload, offset, length, ByteOrder::BigEndian);
    };
    const std::uint64_t unit = number(kJfifUnit, 1);
    Resolution resolution{static_cast<double>(number(kJfifAcross, 2)),
                          static_cast<double>(number(kJfifDown, 2)), Resolution::Unit::None};
    if (unit > static_cast<std::uint64_t>(Resolution::Unit::Centimetre) || resolution.across == 0 ||
        resolution.down == 0)
        return std::nullopt;
    resolution.unit = static_cast<Resolution::Unit>(unit);
    return resolution;
}

/// The density to record in EXIF if there is no JFIF segment; none if it is only the default of 72 dpi.
std::optional<Resolution> resolutionForExif(const std::optional<Resolution>& resolution) {
    constexpr Resolution kUsual = {72, 72, Resolution::Unit::Inch};
    const bool isStated = resolution && resolution->unit != Resolution::Unit::None && *resolution != kUsual;
    return isStated ? resolution : std::nullopt;
}

/// Adds the density to an EXIF block that has none. Bytes that are not a valid EXIF block stay unchanged.
Bytes exifStatingResolution(Bytes exif, const std::optional<Resolution>& resolution) {
    const bool isValid = exif.empty() || tiff::readHeader(exif);
    return resolution && isValid && !exif::readBasics(exif).resolution
               ? exif::withResolution(exif, *resolution)
               : std::move(exif);
}

/// The attachments of the source that its segments declare.
struct Attached {
    std::optional<MultiPictureIndex> index;
    const KeptAttachments& kept;

    bool hasGainMap() const {
        return std::ranges::any_of(
            kept, [](const KeptAttachment& one) { return one.source.kind == Attachment::Kind::GainMap; });
    }
};

bool isGainMapVersion(const Segment& segment) {
    return isSegment(segment, marker::app(2), kGainMapStart);
}

/// The metadata segments for the new file; `withJfif` is false if that must not have a JFIF segment.
Bytes carriedSegments(const std::vector<Segment>& segments, bool withJfif, ThumbnailMaker& maker,
                      const Attached& attached) {
    Bytes carried;
    const Segment* jfif = findJfif(segments);
    const std::optional<Resolution> forExif =
        withJfif || !jfif ? std::nullopt : resolutionForExif(jfifResolution(*jfif));
    if (forExif && std::ranges::none_of(segments, isExif))
        appendBlock(carried, marker::app(1), kExifStart, exif::withResolution({}, *forExif));
    const CarriedXmp xmp(segments,
                         [&](std::string_view packet) { return xmpWithAttachments(attached.kept, packet); });
    bool hasExif = false;
    for (std::size_t i = 0, end = 0; i < segments.size(); i = end) {
        const Segment& segment = segments[i];
        end = i + 1;
        if (isPreviewStart(segment)) {
            end = blockEnd(segments, i, [&segment](const Segment& next) {
                return next.marker >= segment.marker && next.marker <= marker::app(5);
            });
        } else if (&segment == jfif) {
            if (withJfif)
                append(carried, jpeg::segment(segment.marker, jfifWithoutThumbnail(segment.payload)));
        } else if (isExif(segment)) {
            end = exifEnd(segments, i);
            Bytes exif = exifStatingResolution(joined(segments, i, end, kExifStart.size()), forExif);
            // Only the first EXIF block gets a new thumbnail: rendering costs time.
            if (hasExif)
                exif::removeThumbnail(exif);
            else
                exif::renewThumbnail(exif, maker, std::max(kMaxExifBytes, exif.size()));
            hasExif = true;
            appendBlock(carried, segment.marker, kExifStart, exif);
        } else if (const auto xmpSegments = xmp.carried(segment)) {
            append(carried, *xmpSegments);
        } else if (isPhotoshop(segment)) {
            end = photoshopEnd(segments, i);
            appendBlock(carried, segment.marker, kPhotoshopStart,
                        photoshop::resourcesToCarry(joined(segments, i, end, kPhotoshopStart.size())));
        } else if (attached.index && segment.whole.data() == attached.index->segment.data()) {
            append(carried, multiPictureSegment(*attached.index, attached.kept));
        } else if (isMetadata(segment) || (isGainMapVersion(segment) && attached.hasGainMap())) {
            append(carried, segment.whole);
        }
    }
    return carried;
}

/// A JFIF payload with this density and without a thumbnail.
Bytes jfifWithDensity(const Resolution& resolution) {
    static constexpr double kMax = UINT16_MAX;
    const auto whole = [](double value) {
        return static_cast<std::uint64_t>(std::lround(std::clamp(value, 1.0, kMax)));
    };
    Bytes payload(kJfifStart.begin(), kJfifStart.end());
    appendNumber(payload, 2, ByteOrder::BigEndian, 0x0101);
    appendNumber(payload, 1, ByteOrder::BigEndian, static_cast<std::uint64_t>(resolution.unit));
    appendNumber(payload, 2, ByteOrder::BigEndian, whole(resolution.across));
    appendNumber(payload, 2, ByteOrder::BigEndian, whole(resolution.down));
    appendNumber(payload, 2, ByteOrder::BigEndian, 0);
    return payload;
}

/// How the new file's own JFIF segment is treated.
struct Jfif {
    enum Fate { Kept, Replaced, Removed } fate = Kept;
    Bytes payload;
};

/// The file `jpeg` with its metadata segments replaced by `metadata`.
Result<FileContents> withSegments(const Segments& jpeg, const Jfif& jfif, ByteView metadata) {
    if (jpeg.rest.size() < 2 || jpeg.rest[0] != 0xff || jpeg.rest[1] != marker::kStartOfScan)
        return Error{"the JPEG file to give metadata to is damaged"};
    Bytes file = {0xff, marker::kStartOfImage};
    file.reserve(jpeg.rest.size() + metadata.size() + 2 * kMaxSegmentBytes);
    Bytes others;
    if (jfif.fate == Jfif::Replaced)
        append(file, jpeg::segment(marker::kApp0, jfif.payload));
    for (const Segment& segment : jpeg.segments) {
        if (!isJfif(segment) && !isMetadata(segment))
            append(others, segment.whole);
        else if (isJfif(segment) && jfif.fate == Jfif::Kept)
            append(file, segment.whole);
    }
    append(file, metadata);
    append(file, others);
    append(file, jpeg.rest);
    FileContents contents;
    contents.append(std::move(file));
    return contents;
}

/// Whether the source decides about the JFIF segment: it has one, or, like camera files, has EXIF without
/// one. EXIF must be the first segment then, records the density itself, and may have maker notes that depend
/// on its position.
bool determinesJfif(const std::vector<Segment>& segments) {
    return std::ranges::any_of(segments,
                               [](const Segment& segment) { return isJfif(segment) || isExif(segment); });
}

} // namespace

PictureMetadata readMetadata(ByteView file) {
    PictureMetadata metadata;
    const std::vector<Segment> segments = split(file).segments;
    Bytes resources;
    for (std::size_t i = 0; i < segments.size(); ++i) {
        const Segment& segment = segments[i];
        if (isExif(segment) && metadata.exif.empty()) {
            metadata.exif = joined(segments, i, exifEnd(segments, i), kExifStart.size());
        } else if (isPhotoshop(segment)) {
            append(resources, segment.payload.subspan(kPhotoshopStart.size()));
        } else if (segment.marker == marker::kComment) {
            metadata.notes.push_back({std::string(kCommentKeyword), utf8Of(segment.payload)});
        }
    }
    const Bytes xmp = xmpOf(segments);
    const std::string alone = xmpWithAttachments({}, textOf(xmp)); // other formats keep the picture alone
    metadata.xmp.assign(alone.begin(), alone.end());
    metadata.iptc = photoshop::iptcOf(resources);
    metadata.photoshop = photoshop::withoutIptc(resources);
    if (const Segment* jfif = findJfif(segments))
        metadata.resolution = jfifResolution(*jfif);
    if (!metadata.resolution || metadata.resolution->unit == Resolution::Unit::None)
        if (const auto fromExif = exif::readBasics(metadata.exif).resolution)
            metadata.resolution = fromExif;
    return metadata;
}

Bytes exifFor(const PictureMetadata& metadata) {
    return exif::within(metadata.exif, kMaxExifBytes);
}

Result<FileContents> withSegmentsOf(ByteView source, ByteView written, ThumbnailMaker& maker,
                                    const KeptAttachments& kept) {
    const std::vector<Segment> segments = split(source).segments;
    const Segments jpeg = split(written);
    return withSegments(jpeg, {determinesJfif(segments) ? Jfif::Removed : Jfif::Kept, {}},
                        carriedSegments(segments, !isCodedInRgb(jpeg.segments), maker,
                                        {.index = multiPictureIndex(source), .kept = kept}));
}

Result<FileContents> withMetadata(const PictureMetadata& metadata, ByteView written, ThumbnailMaker& maker) {
    const Segments jpeg = split(written);
    const bool withJfif = !isCodedInRgb(jpeg.segments);
    Bytes segments;
    Bytes exif = exifFor(metadata);
    if (!withJfif)
        exif = exifStatingResolution(std::move(exif), resolutionForExif(metadata.resolution));
    if (!exif.empty()) {
        exif::renewThumbnail(exif, maker, kMaxExifBytes);
        appendBlock(segments, marker::app(1), kExifStart, exif);
    }
    append(segments, segmentsOfXmp(xmp::withoutExtension(xmp::toCarry(metadata.xmp))));
    appendBlock(segments, marker::app(13), kPhotoshopStart,
                photoshop::resourcesToCarry(photoshop::withIptc(metadata.photoshop, metadata.iptc)));
    for (const TextNote& note : metadata.notes)
        appendBlock(segments, marker::kComment, {}, bytesOf(noteAsComment(note)));
    Jfif jfif;
    if (metadata.resolution && withJfif)
        jfif = {Jfif::Replaced, jfifWithDensity(*metadata.resolution)};
    return withSegments(jpeg, jfif, segments);
}

} // namespace complexion::jpeg
