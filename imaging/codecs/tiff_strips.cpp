// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/tiff_strips.h"

#include "imaging/codecs/deflate.h"
#include "imaging/containers/tiff_structure.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>

#include <tiffio.h>

namespace complexion::tiff {

namespace {

/// A TIFF file that the library writes into memory, for the sake of its one strip.
class StripWriter {
public:
    explicit StripWriter(ByteOrder order)
        : m_handle(TIFFClientOpen("memory", order == ByteOrder::LittleEndian ? "wl" : "wb", this, read, write,
                                  seek, close, size, nullptr, nullptr)) {
        if (!m_handle)
            throw std::bad_alloc();
    }

    Bytes coded(Bytes& samples, PixelSize size, const StripCoding& coding) {
        TIFF* const handle = m_handle.get();
        TIFFSetField(handle, TIFFTAG_IMAGEWIDTH, size.width);
        TIFFSetField(handle, TIFFTAG_IMAGELENGTH, size.height);
        TIFFSetField(handle, TIFFTAG_ROWSPERSTRIP, size.height);
        TIFFSetField(handle, TIFFTAG_BITSPERSAMPLE, coding.bits);
        TIFFSetField(handle, TIFFTAG_SAMPLESPERPIXEL, static_cast<int>(coding.samples));
        TIFFSetField(handle, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
        TIFFSetField(handle, TIFFTAG_COMPRESSION, coding.compression);
        if (coding.predicts())
            TIFFSetField(handle, TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL);
        if (TIFFWriteEncodedStrip(handle, 0, samples.data(), static_cast<tmsize_t>(samples.size())) < 0 ||
            TIFFFlushData(handle) == 0)
            throw std::bad_alloc(); // it writes into memory
        const ByteView strip =
            slice(m_bytes, TIFFGetStrileOffset(handle, 0), TIFFGetStrileByteCount(handle, 0));
        return {strip.begin(), strip.end()};
    }

private:
    static tmsize_t read(thandle_t /*handle*/, void* /*out*/, tmsize_t /*count*/) { return 0; }
    static tmsize_t write(thandle_t handle, void* data, tmsize_t count) {
        auto& self = *static_cast<StripWriter*>(handle);
        try {
            const std::size_t end = self.m_position + static_cast<std::size_t>(count);
            self.m_bytes.resize(std::max(self.m_bytes.size(), end));
            std::memcpy(self.m_bytes.data() + self.m_position, data, static_cast<std::size_t>(count));
            self.m_position = end;
            return count;
        } catch (const std::bad_alloc&) {
            return -1;
        }
    }
    static toff_t seek(thandle_t handle, toff_t offset, int whence) {
        auto& self = *static_cast<StripWriter*>(handle);
        const toff_t base =
            whence == SEEK_SET ? 0 : (whence == SEEK_CUR ? self.m_position : self.m_bytes.size());
        self.m_position = static_cast<std::size_t>(base + offset);
        return self.m_position;
    }
    static int close(thandle_t /*handle*/) { return 0; }
    static toff_t size(thandle_t handle) { return static_cast<StripWriter*>(handle)->m_bytes.size(); }

    struct Closer {
        void operator()(TIFF* handle) const { TIFFCleanup(handle); } // writes no directory
    };
    Bytes m_bytes;
    std::size_t m_position = 0;
    std::unique_ptr<TIFF, Closer> m_handle;
};

/// Each sample less that of the pixel to the left, from a row's end to its start.
template <class Sample>
void differ(Bytes& samples, PixelSize size, std::size_t perPixel) {
    const std::size_t perRow = static_cast<std::size_t>(size.width) * perPixel;
    std::vector<Sample> row(perRow);
    for (std::uint8_t* at = samples.data(); at < samples.data() + samples.size();
         at += perRow * sizeof(Sample)) {
        std::memcpy(row.data(), at, perRow * sizeof(Sample));
        for (std::size_t i = perRow; i-- > perPixel;)
            row[i] = static_cast<Sample>(row[i] - row[i - perPixel]);
        std::memcpy(at, row.data(), perRow * sizeof(Sample));
    }
}

void orderBytes(Bytes& samples, const StripCoding& coding) {
    const bool isNative =
        (std::endian::native == std::endian::little) == (coding.order == ByteOrder::LittleEndian);
    if (coding.bits == 8 || isNative)
        return;
    for (std::size_t i = 0; i + 1 < samples.size(); i += 2)
        std::swap(samples[i], samples[i + 1]);
}

Bytes deflatedStrip(Bytes samples, PixelSize size, const StripCoding& coding) {
    coding.bits == 16 ? differ<std::uint16_t>(samples, size, coding.samples)
                      : differ<std::uint8_t>(samples, size, coding.samples);
    orderBytes(samples, coding);
    Bytes strip(kZlibHeader.begin(), kZlibHeader.end());
    appendDeflated(strip, samples);
    append(strip, kZlibFinalBlock);
    big_endian::append32(strip, adler32Of(samples));
    return strip;
}

/// The number of a tag of the first page; nothing if there is none, or no TIFF file.
std::optional<std::uint64_t> numberOfFirstPage(ByteView photo, unsigned tag) {
    const std::optional<Header> header = readHeader(photo);
    if (!header)
        return std::nullopt;
    const Directory directory = readDirectory(photo, *header, header->firstDirectory);
    const Entry* const entry = directory.find(tag);
    return entry ? std::optional(firstNumber(*entry, header->order)) : std::nullopt;
}

} // namespace

bool StripCoding::predicts() const {
    return compression == COMPRESSION_LZW || compression == COMPRESSION_ADOBE_DEFLATE;
}

std::uint16_t compressionAfter(ByteView photo) {
    switch (const std::uint64_t compression =
                numberOfFirstPage(photo, tag::kCompression).value_or(COMPRESSION_NONE)) {
    case 0: // left empty by some writers
    case COMPRESSION_NONE:
        return COMPRESSION_NONE;
    case COMPRESSION_LZW:
    case COMPRESSION_PACKBITS:
        return static_cast<std::uint16_t>(compression);
    default:
        return COMPRESSION_ADOBE_DEFLATE;
    }
}

bool isGrey(ByteView photo) {
    const std::optional<std::uint64_t> colors = numberOfFirstPage(photo, tag::kPhotometricInterpretation);
    return colors == PHOTOMETRIC_MINISBLACK || colors == PHOTOMETRIC_MINISWHITE;
}

Bytes codedStrip(Bytes samples, PixelSize size, const StripCoding& coding) {
    switch (coding.compression) {
    case COMPRESSION_NONE:
        orderBytes(samples, coding);
        return samples;
    case COMPRESSION_ADOBE_DEFLATE:
        return deflatedStrip(std::move(samples), size, coding);
    default:
        return StripWriter(coding.order).coded(samples, size, coding);
    }
}

} // namespace complexion::tiff
