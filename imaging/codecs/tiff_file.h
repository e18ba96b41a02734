// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/codecs/codec.h"
#include "imaging/containers/exif_basics.h"

#include <tiffio.h>

#include <memory>

namespace complexion::tiff {

/// A TIFF file in memory, opened for reading at its first page. The library's messages are suppressed.
class File {
public:
    /// The largest single allocation that the library may make, in bytes.
    static constexpr tmsize_t kMaxAllocation = tmsize_t{512} << 20;

    /// `bytes` must outlive the file.
    static Result<File> open(ByteView bytes);

    TIFF* handle() const { return m_handle.get(); }
    ByteView bytes() const;

private:
    struct Source;
    struct Closer {
        void operator()(TIFF* handle) const { TIFFClose(handle); }
    };
    struct Procedures;

    File(std::unique_ptr<Source> source, TIFF* handle);

    struct SourceDeleter {
        void operator()(Source* source) const;
    };
    std::unique_ptr<Source, SourceDeleter> m_source;
    std::unique_ptr<TIFF, Closer> m_handle;
};

enum class Alpha { None, Associated, Straight };

/// A page's tags.
struct Page {
    PixelSize size; // as stored
    int bits = 1;   // of each sample
    int samples = 1;
    int colorSamples = 1; // the leading samples
    Alpha alpha = Alpha::None;
    int alphaSample = 0;
    std::uint16_t sampleFormat = SAMPLEFORMAT_UINT;
    std::uint16_t photometric = PHOTOMETRIC_MINISBLACK;
    std::uint16_t compression = COMPRESSION_NONE;
    bool planar = false; // each sample in strips or tiles of its own
    Orientation orientation = Orientation::TopLeft;
    Resolution resolution;
    ByteView icc; // valid as long as the File
};

/// The upright size of the current page of `file`.
PixelSize uprightPageSize(const File& file);

/// Whether the current page of `file` has a decodable size that is plausible for the file's length.
bool isPlausiblePage(const File& file);

/// Reads the tags of the current page of `file`. Fails if its size cannot be decoded or is implausible for
/// the file's length. JPEG-compressed YCbCr is reported, and will be decoded, as RGB.
Result<Page> readPage(const File& file);

} // namespace complexion::tiff
