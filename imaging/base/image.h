// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/color_profile.h"
#include "imaging/base/geometry.h"
#include "imaging/base/memo.h"
#include "imaging/base/rgba32.h"
#include "imaging/base/tile.h"

#include <memory>
#include <optional>
#include <span>

namespace complexion {

/// A transformation of single pixels, independent of their position.
class PixelTransform {
public:
    PixelTransform() = default;
    PixelTransform(const PixelTransform&) = delete;
    PixelTransform& operator=(const PixelTransform&) = delete;
    virtual ~PixelTransform() = default;

    /// Transforms `pixels` in place. Called from any thread.
    virtual void apply(std::span<RGBA32> pixels) const = 0;
};

/// Pixels that are computed on demand.
class PixelSource {
public:
    PixelSource() = default;
    PixelSource(const PixelSource&) = delete;
    PixelSource& operator=(const PixelSource&) = delete;
    virtual ~PixelSource() = default;

    /// Copies the pixels of `rect` to `out`, whose rows are `stride` pixels apart. Called from any thread.
    virtual void read(PixelRect rect, RGBA32* out, std::ptrdiff_t stride) const = 0;

    /// How deep pixels have their alpha; nothing for a source of 8-bit pixels.
    virtual std::optional<DeepAlpha> deepAlpha() const { return std::nullopt; }
    /// As `read`, of a source that has deep pixels.
    virtual void readDeep(PixelRect rect, RGBA64* out, std::ptrdiff_t stride) const;
};

/// An immutable picture: copy-on-write tiles of pixels, a size in points, and the colour space of its values.
/// Copying an Image copies a handle to the same object.
class Image {
public:
    /// An empty image: no pixels, size zero.
    Image();

    /// An image of a given size, without pixels.
    static Image empty(PointSize size);

    /// An image of bands that cover `pixels`, at one point per pixel. With `deepAlpha`, its tiles have deep
    /// pixels.
    static Image fromBands(PixelSize pixels, BandList bands, ColorProfile profile = {},
                           std::optional<DeepAlpha> deepAlpha = {});

    /// An image whose pixels are computed on demand, for a single pass: it has no mipmap levels.
    static Image fromSource(PixelSize pixels, std::shared_ptr<const PixelSource> source,
                            ColorProfile profile = {});

    /// An image of packed rows, top row first, at one point per pixel.
    static Image fromPixels(PixelSize size, std::span<const RGBA32> pixels);

    /// Whether both are handles to one object (not merely equal pixels).
    bool isSameObject(const Image& other) const { return m_content == other.m_content; }

    bool hasPixels() const { return pixelSize().area() > 0; }
    PixelSize pixelSize() const;
    PointSize size() const;
    const ColorProfile& profile() const;

    /// New images with the same pixels.
    Image withSize(PointSize size) const;
    Image withProfile(ColorProfile profile) const;
    /// The same picture with other pixels. Keeps the size in points, the profile and the encoder memory.
    Image withBands(BandList bands) const;

    /// A new picture whose pixels are `transform` of this one's, computed on demand. It has an encoder memory
    /// of its own.
    Image transformed(std::shared_ptr<const PixelTransform> transform) const;
    bool isTransformed() const;

    /// Copies the pixels of `rect`, which must be inside the picture, to `out`, whose rows are `stride`
    /// pixels apart.
    void read(PixelRect rect, RGBA32* out, std::ptrdiff_t stride) const;

    /// As `read`, from mipmap level `level` (0 .. Tile::kLastLevel); `rect` is in pixels of that level.
    void readLevel(int level, PixelRect rect, RGBA32* out, std::ptrdiff_t stride) const;

    /// The two steps of `readLevel`, for callers that work between them: reading the stored pixels, and
    /// transforming them.
    void readStoredLevel(int level, PixelRect rect, RGBA32* out, std::ptrdiff_t stride) const;
    void transform(std::span<RGBA32> pixels) const;

    /// The size of mipmap level `level`: each halving rounds up.
    PixelSize levelSize(int level) const;

    RGBA32 pixel(int row, int column) const;

    /// Whether the pixels were rounded from 16 bits a component that are still known, and how those have
    /// their alpha; nothing for an image of 8 bits, and for one that is transformed.
    std::optional<DeepAlpha> deepAlpha() const;
    /// As `read`, the 16-bit pixels of an image that has `deepAlpha`.
    void readDeep(PixelRect rect, RGBA64* out, std::ptrdiff_t stride) const;

    /// A rectangle outside which this image and `other` have the same pixels, found by comparing the tiles'
    /// identity. The whole picture if the images differ in size, profile or transformation.
    PixelRect difference(const Image& other) const;

    int bandCount() const;
    /// The rows of band `index`.
    PixelRect bandRect(int index) const;
    /// The stored band `index`; null if pixels are computed on demand, as values cached beside a band must
    /// match its stored pixels.
    std::shared_ptr<const Band> storedBand(int index) const;
    /// All stored bands. Fatal if pixels are computed on demand; see `materialized`.
    const BandList& bands() const;
    /// The same object if its pixels are stored, otherwise a new image that stores them.
    Image materialized() const;

    /// What an encoder caches for all images derived from one picture, such as its Huffman codes.
    Memo& encoderMemory() const;

    /// Frees the cached values (encoded bands, mipmap levels) of those pixels that `current` does not share.
    void dropCachesUnlessShared(const Image& current) const;

private:
    struct Content;
    explicit Image(std::shared_ptr<const Content> content) : m_content(std::move(content)) {}

    std::shared_ptr<const Content> m_content;
};

class BandMaker;
class RowReceiver;

/// Builds an image row by row, for decoders. Passes the rows on where a RowReceiver is installed.
class ImageBuilder {
public:
    /// With `deepAlpha`, all rows are set with their deep pixels.
    explicit ImageBuilder(PixelSize size, std::optional<DeepAlpha> deepAlpha = {});
    ImageBuilder(ImageBuilder&&) noexcept;
    ~ImageBuilder();

    /// Sets `count` packed rows from `firstRow` on, each once. Different threads may set rows of different
    /// bands.
    void setRows(int firstRow, int count, const RGBA32* rows, const RGBA64* deepRows = nullptr);

    /// The image, at one point per pixel; rows that were never set are transparent.
    Image finish();

private:
    /// A band whose rows come one after the other.
    struct PartBand {
        std::vector<PixelBlock> blocks;
        std::vector<RGBA64> deepRows; // packed, until all are there
        std::uint64_t rowsSet = 0;    // one bit for each row
        std::shared_ptr<const Band> whole;
    };
    void begin(PartBand& part, std::size_t band) const;
    void finish(PartBand& part);

    PixelSize m_size;
    std::optional<DeepAlpha> m_deepAlpha;
    RowReceiver* m_receiver; // null for an image of this process
    std::vector<PartBand> m_bands;
    std::unique_ptr<BandMaker> m_maker; // null with a receiver
};

} // namespace complexion
