// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/codecs/codec.h"
#include "imaging/containers/exif_basics.h"

#include <tiffio.h>

#include <memory>

namespace complexion::tiff {

/// A TIFF file in memory, opened for reading at its first page. What the library complains of is not printed.
class File {
public:
    /// The library refuses to take more memory than this at once.
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

/// What a page's tags say.
struct Page {
    PixelSize size; // as stored
    int bits = 1;   // of each sample
    int samples = 1;
    int colorSamples = 1; // the first of the samples
    Alpha alpha = Alpha::None;
    int alphaSample = 0;
    std::uint16_t sampleFormat = SAMPLEFORMAT_UINT;
    std::uint16_t photometric = PHOTOMETRIC_MINISBLACK;
    std::uint16_t compression = COMPRESSION_NONE;
    bool planar = false; // each sample in blocks of its own
    Orientation orientation = Orientation::TopLeft;
    Resolution resolution;
    ByteView icc; // lives as long as the file
};

/// The size of the page that `file` stands at, turned upright.
PixelSize uprightPageSize(const File& file);

/// Whether the page that `file` stands at has a size that can be decoded and that the file is long enough
/// for.
bool isPlausiblePage(const File& file);

/// Reads the tags of the page that `file` stands at. Its size is decodable and plausible for the file's
/// length. JPEG data in YCbCr are announced, and will be read, as RGB.
Result<Page> readPage(const File& file);

} // namespace complexion::tiff
