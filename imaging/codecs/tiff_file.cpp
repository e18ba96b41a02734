// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/tiff_file.h"

#include "imaging/base/picture_limits.h"

#include <algorithm>
#include <cstring>

namespace complexion::tiff {

struct File::Source {
    ByteView bytes;
    std::uint64_t position = 0;
};

void File::SourceDeleter::operator()(Source* source) const {
    delete source;
}

/// The library's I/O callbacks. The file is memory-mapped, so strips are read without copying.
struct File::Procedures {
    static tmsize_t read(thandle_t handle, void* out, tmsize_t count) {
        auto& source = *static_cast<Source*>(handle);
        if (count <= 0 || source.position >= source.bytes.size())
            return 0;
        const std::size_t taken =
            std::min(static_cast<std::size_t>(count), source.bytes.size() - source.position);
        std::memcpy(out, source.bytes.data() + source.position, taken);
        source.position += taken;
        return static_cast<tmsize_t>(taken);
    }
    static tmsize_t write(thandle_t /*handle*/, void* /*data*/, tmsize_t /*count*/) { return 0; }
    static toff_t seek(thandle_t handle, toff_t offset, int whence) {
        auto& source = *static_cast<Source*>(handle);
        const std::uint64_t base =
            whence == SEEK_SET ? 0 : (whence == SEEK_CUR ? source.position : source.bytes.size());
        source.position = base + offset;
        return source.position;
    }
    static int close(thandle_t /*handle*/) { return 0; }
    static toff_t size(thandle_t handle) { return static_cast<Source*>(handle)->bytes.size(); }
    static int map(thandle_t handle, void** base, toff_t* size) {
        const ByteView bytes = static_cast<Source*>(handle)->bytes;
        *base = const_cast<std::uint8_t*>(bytes.data()); // opened read-only: the library does not write to it
        *size = bytes.size();
        return 1;
    }
    static void unmap(thandle_t /*handle*/, void* /*base*/, toff_t /*size*/) {}
    static int silence(TIFF* /*handle*/, void* /*user*/, const char* /*module*/, const char* /*format*/,
                       va_list /*arguments*/) {
        return 1; // handled: the process-wide handler is not called
    }
};

File::File(std::unique_ptr<Source> source, TIFF* handle) : m_source(source.release()), m_handle(handle) {}

ByteView File::bytes() const {
    return m_source->bytes;
}

Result<File> File::open(ByteView bytes) {
    struct OptionsDeleter {
        void operator()(TIFFOpenOptions* options) const { TIFFOpenOptionsFree(options); }
    };
    const std::unique_ptr<TIFFOpenOptions, OptionsDeleter> options(TIFFOpenOptionsAlloc());
    TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(), kMaxAllocation);
    TIFFOpenOptionsSetErrorHandlerExtR(options.get(), Procedures::silence, nullptr);
    TIFFOpenOptionsSetWarningHandlerExtR(options.get(), Procedures::silence, nullptr);
    auto source = std::make_unique<Source>(Source{bytes});
    TIFF* handle = TIFFClientOpenExt("memory", "r", source.get(), Procedures::read, Procedures::write,
                                     Procedures::seek, Procedures::close, Procedures::size, Procedures::map,
                                     Procedures::unmap, options.get());
    if (!handle)
        return Error{"damaged TIFF directory"};
    return File(std::move(source), handle);
}

namespace {

template <class Value>
Value field(TIFF* handle, std::uint32_t number, Value absent) {
    Value value{};
    return TIFFGetFieldDefaulted(handle, number, &value) == 1 ? value : absent;
}

std::int64_t storedSide(TIFF* handle, std::uint32_t number) {
    return field<std::uint32_t>(handle, number, 0);
}

Orientation orientationOf(TIFF* handle) {
    return orientationFromTag(field<std::uint16_t>(handle, TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT));
}

/// The default for unknown units.
Resolution resolutionOf(TIFF* handle) {
    const auto unit = field<std::uint16_t>(handle, TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH);
    if (unit != RESUNIT_INCH && unit != RESUNIT_CENTIMETER)
        return {};
    return {field<float>(handle, TIFFTAG_XRESOLUTION, 0), field<float>(handle, TIFFTAG_YRESOLUTION, 0),
            unit == RESUNIT_CENTIMETER ? Resolution::Unit::Centimetre : Resolution::Unit::Inch};
}

ByteView iccOf(TIFF* handle) {
    std::uint32_t length = 0;
    void* data = nullptr;
    if (TIFFGetField(handle, TIFFTAG_ICCPROFILE, &length, &data) != 1)
        return {};
    return {static_cast<const std::uint8_t*>(data), length};
}

int colorSamplesOf(std::uint16_t photometric) {
    switch (photometric) {
    case PHOTOMETRIC_RGB:
    case PHOTOMETRIC_YCBCR:
    case PHOTOMETRIC_CIELAB:
    case PHOTOMETRIC_ICCLAB:
    case PHOTOMETRIC_LOGLUV:
        return 3;
    case PHOTOMETRIC_SEPARATED:
        return 4;
    default:
        return 1;
    }
}

/// Finds the alpha sample among the extra samples (TIFF 6.0 section 18).
void findAlpha(TIFF* handle, Page& page) {
    std::uint16_t count = 0;
    const std::uint16_t* kinds = nullptr;
    TIFFGetFieldDefaulted(handle, TIFFTAG_EXTRASAMPLES, &count, &kinds);
    for (int i = 0; i < count; ++i) {
        const int sample = page.samples - count + i;
        if (sample < page.colorSamples ||
            (kinds[i] != EXTRASAMPLE_ASSOCALPHA && kinds[i] != EXTRASAMPLE_UNASSALPHA))
            continue;
        page.alpha = kinds[i] == EXTRASAMPLE_ASSOCALPHA ? Alpha::Associated : Alpha::Straight;
        page.alphaSample = sample;
        return;
    }
    // Some writers omit ExtraSamples; a single extra sample is alpha then.
    if (count == 0 && page.samples == page.colorSamples + 1) {
        page.alpha = Alpha::Straight;
        page.alphaSample = page.colorSamples;
    }
}

/// The largest number of sample bytes that a byte of compressed data can expand to; kMaxArea if the
/// compression has no bound.
std::int64_t maxExpansion(std::uint16_t compression) {
    constexpr std::int64_t kTruncatedFile = 64; // a truncated file may have lost nearly everything
    constexpr std::int64_t kCompressed = 4096;
    switch (compression) {
    case COMPRESSION_NONE:
        return kTruncatedFile;
    case COMPRESSION_LZW:
    case COMPRESSION_PACKBITS:
    case COMPRESSION_DEFLATE:
    case COMPRESSION_ADOBE_DEFLATE:
    case COMPRESSION_JPEG:
    case COMPRESSION_OJPEG:
        return kCompressed;
    default:
        return kMaxArea;
    }
}

/// A page with only the tags that describe how samples are coded.
Page pageCoding(TIFF* handle) {
    Page page;
    page.bits = field<std::uint16_t>(handle, TIFFTAG_BITSPERSAMPLE, 1);
    page.samples = field<std::uint16_t>(handle, TIFFTAG_SAMPLESPERPIXEL, 1);
    page.compression = field<std::uint16_t>(handle, TIFFTAG_COMPRESSION, COMPRESSION_NONE);
    return page;
}

bool hasPossibleSamples(const Page& page) {
    constexpr int kMaxBits = 64;
    constexpr int kMaxSamples = 256; // more than any instrument has channels; each costs memory per pixel
    return page.bits >= 1 && page.bits <= kMaxBits && page.samples >= 1 && page.samples <= kMaxSamples;
}

bool isPlausible(const File& file, const Page& page, std::int64_t width, std::int64_t height) {
    const std::int64_t bitsPerPixel = std::int64_t{page.bits} * page.samples;
    const std::int64_t perByte = std::max<std::int64_t>(1, maxExpansion(page.compression) * 8 / bitsPerPixel);
    return isPlausibleArea(width, height, file.bytes().size(), perByte);
}

} // namespace

PixelSize uprightPageSize(const File& file) {
    const auto side = [&](std::uint32_t number) {
        return static_cast<int>(std::min<std::int64_t>(storedSide(file.handle(), number), INT32_MAX));
    };
    return uprightSize({side(TIFFTAG_IMAGEWIDTH), side(TIFFTAG_IMAGELENGTH)}, orientationOf(file.handle()));
}

bool isPlausiblePage(const File& file) {
    const Page page = pageCoding(file.handle());
    return hasPossibleSamples(page) && isPlausible(file, page, storedSide(file.handle(), TIFFTAG_IMAGEWIDTH),
                                                   storedSide(file.handle(), TIFFTAG_IMAGELENGTH));
}

Result<Page> readPage(const File& file) {
    TIFF* handle = file.handle();
    Page page = pageCoding(handle);
    if (!hasPossibleSamples(page))
        return Error{"TIFF samples of an impossible size"};
    const std::int64_t width = storedSide(handle, TIFFTAG_IMAGEWIDTH);
    const std::int64_t height = storedSide(handle, TIFFTAG_IMAGELENGTH);
    if (!isPlausible(file, page, width, height))
        return Error{"TIFF picture of an impossible size"};
    if (TIFFIsCODECConfigured(page.compression) == 0)
        return Error{"TIFF compression that is not known"};
    page.size = {static_cast<int>(width), static_cast<int>(height)};
    page.planar =
        field<std::uint16_t>(handle, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG) == PLANARCONFIG_SEPARATE &&
        page.samples > 1;
    page.sampleFormat = field<std::uint16_t>(handle, TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_UINT);
    if (page.sampleFormat == SAMPLEFORMAT_VOID)
        page.sampleFormat = SAMPLEFORMAT_UINT;

    // Without PhotometricInterpretation the number of samples decides.
    page.photometric = page.samples >= 3 ? PHOTOMETRIC_RGB : PHOTOMETRIC_MINISBLACK;
    TIFFGetField(handle, TIFFTAG_PHOTOMETRIC, &page.photometric);
    if (page.photometric == PHOTOMETRIC_YCBCR && page.compression == COMPRESSION_JPEG && !page.planar) {
        TIFFSetField(handle, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
        page.photometric = PHOTOMETRIC_RGB;
    }
    page.colorSamples = colorSamplesOf(page.photometric);
    if (page.samples < page.colorSamples)
        return Error{"TIFF pixels without all their colours"};
    findAlpha(handle, page);
    page.orientation = orientationOf(handle);
    page.resolution = resolutionOf(handle);
    page.icc = iccOf(handle);
    return page;
}

} // namespace complexion::tiff
