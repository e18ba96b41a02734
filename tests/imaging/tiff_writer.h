// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "tests/fakes/pictures.h"

#include <tiffio.h>

#include <algorithm>
#include <cstring>

namespace complexion::test {

/// Writes a TIFF file to memory with the library.
class TiffWriter {
public:
    explicit TiffWriter(const char* mode = "w")
        : m_handle(TIFFClientOpen("memory", mode, this, read, write, seek, close, size, nullptr, nullptr)) {}
    TiffWriter(const TiffWriter&) = delete;
    TiffWriter& operator=(const TiffWriter&) = delete;
    ~TiffWriter() {
        if (m_handle)
            TIFFClose(m_handle);
    }

    TIFF* handle() const { return m_handle; }

    /// Sets the tags that every page needs.
    void begin(PixelSize pixels, int samples, int bits, int photometric, int compression = COMPRESSION_NONE) {
        TIFFSetField(m_handle, TIFFTAG_IMAGEWIDTH, pixels.width);
        TIFFSetField(m_handle, TIFFTAG_IMAGELENGTH, pixels.height);
        TIFFSetField(m_handle, TIFFTAG_SAMPLESPERPIXEL, samples);
        TIFFSetField(m_handle, TIFFTAG_BITSPERSAMPLE, bits);
        TIFFSetField(m_handle, TIFFTAG_PHOTOMETRIC, photometric);
        TIFFSetField(m_handle, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
        TIFFSetField(m_handle, TIFFTAG_COMPRESSION, compression);
    }
    void extraSample(std::uint16_t kind) { TIFFSetField(m_handle, TIFFTAG_EXTRASAMPLES, 1, &kind); }

    /// Writes the whole picture as one strip.
    void strip(const void* samples, std::size_t bytes) {
        TIFFWriteEncodedStrip(m_handle, 0, const_cast<void*>(samples), static_cast<tmsize_t>(bytes));
    }

    Bytes finish() {
        TIFFClose(m_handle);
        m_handle = nullptr;
        return std::move(m_bytes);
    }

private:
    static tmsize_t read(thandle_t handle, void* out, tmsize_t count) {
        auto& self = *static_cast<TiffWriter*>(handle);
        const std::size_t there = self.m_bytes.size() - std::min(self.m_position, self.m_bytes.size());
        const std::size_t taken = std::min(there, static_cast<std::size_t>(count));
        std::memcpy(out, self.m_bytes.data() + self.m_position, taken);
        self.m_position += taken;
        return static_cast<tmsize_t>(taken);
    }
    static tmsize_t write(thandle_t handle, void* data, tmsize_t count) {
        auto& self = *static_cast<TiffWriter*>(handle);
        const auto end = self.m_position + static_cast<std::size_t>(count);
        if (self.m_bytes.size() < end)
            self.m_bytes.resize(end);
        std::memcpy(self.m_bytes.data() + self.m_position, data, static_cast<std::size_t>(count));
        self.m_position = end;
        return count;
    }
    static toff_t seek(thandle_t handle, toff_t offset, int whence) {
        auto& self = *static_cast<TiffWriter*>(handle);
        self.m_position = static_cast<std::size_t>(
            offset + (whence == SEEK_SET ? 0 : (whence == SEEK_CUR ? self.m_position : self.m_bytes.size())));
        return self.m_position;
    }
    static int close(thandle_t /*handle*/) { return 0; }
    static toff_t size(thandle_t handle) { return static_cast<TiffWriter*>(handle)->m_bytes.size(); }

    Bytes m_bytes;
    std::size_t m_position = 0;
    TIFF* m_handle;
};

/// An RGB file in one strip; `change` sets further tags.
template <class Change>
Bytes rgbTiff(const Image& image, Change change, const char* mode = "w", int compression = COMPRESSION_NONE) {
    TiffWriter writer(mode);
    writer.begin(image.pixelSize(), 3, 8, PHOTOMETRIC_RGB, compression);
    change(writer.handle());
    const Bytes samples = rgbSamples(image);
    writer.strip(samples.data(), samples.size());
    return writer.finish();
}

} // namespace complexion::test
