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

/// A change of single pixels, the same at every place of the picture.
class PixelTransform {
public:
    PixelTransform() = default;
    PixelTransform(const PixelTransform&) = delete;
    PixelTransform& operator=(const PixelTransform&) = delete;
    virtual ~PixelTransform() = default;

    /// Replaces each of `pixels` in place. Called from any thread.
    virtual void apply(std::span<RGBA32> pixels) const = 0;
};

/// Pixels that are made when they are read.
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

/// An immutable picture: tiles of pixels shared with other images, a size in points, and the colour space
/// its values are in. Copying an Image copies a handle; the copy is the same object.
class Image {
public:
    /// An empty image: no pixels, size zero.
    Image();

    /// An empty image, without pixels, of a given size.
    static Image empty(PointSize size);

    /// The image of a list of bands that cover `pixels`, at one point per pixel. With `deepAlpha`, its tiles
    /// have deep pixels.
    static Image fromBands(PixelSize pixels, BandList bands, ColorProfile profile = {},
                           std::optional<DeepAlpha> deepAlpha = {});

    /// The image of pixels that are made when they are read, for going through it once: it has no halved
    /// levels.
    static Image fromSource(PixelSize pixels, std::shared_ptr<const PixelSource> source,
                            ColorProfile profile = {});

    /// The image of packed rows, top row first, at one point per pixel.
    static Image fromPixels(PixelSize size, std::span<const RGBA32> pixels);

    /// Whether both are handles of one object (not merely equal pixels).
    bool isSameObject(const Image& other) const { return m_content == other.m_content; }

    bool hasPixels() const { return pixelSize().area() > 0; }
    PixelSize pixelSize() const;
    PointSize size() const;
    const ColorProfile& profile() const;

    /// New images of the same pixels.
    Image withSize(PointSize size) const;
    Image withProfile(ColorProfile profile) const;
    /// The same picture with other pixels; keeps the size in points, the profile and the encoders' memory.
    Image withBands(BandList bands) const;

    /// The image whose pixels are `transform` of this one's, computed where and when they are read. Another
    /// picture: its encoders' memory is its own.
    Image transformed(std::shared_ptr<const PixelTransform> transform) const;
    bool isTransformed() const;

    /// Copies the pixels of `rect`, which lies inside the picture, to `out`, whose rows are `stride` pixels
    /// apart.
    void read(PixelRect rect, RGBA32* out, std::ptrdiff_t stride) const;

    /// As `read`, from the picture halved `level` times (0 .. Tile::kLastLevel); `rect` counts that level's
    /// pixels.
    void readLevel(int level, PixelRect rect, RGBA32* out, std::ptrdiff_t stride) const;

    /// The two halves of `readLevel`, for who has something to do between them: the pixels as they are
    /// stored, and what they are transformed into when they are read.
    void readStoredLevel(int level, PixelRect rect, RGBA32* out, std::ptrdiff_t stride) const;
    void transform(std::span<RGBA32> pixels) const;

    /// The size of the picture halved `level` times: each halving rounds up.
    PixelSize levelSize(int level) const;

    RGBA32 pixel(int row, int column) const;

    /// Whether the pixels were rounded from 16 bits a component that are still known, and how those have
    /// their alpha; nothing for an image of 8 bits, and for one that is transformed.
    std::optional<DeepAlpha> deepAlpha() const;
    /// As `read`, the 16-bit pixels of an image that has `deepAlpha`.
    void readDeep(PixelRect rect, RGBA64* out, std::ptrdiff_t stride) const;

    /// A rectangle outside which this image and `other` have the same pixels, found by comparing tiles'
    /// identity. The whole picture when they differ in size or kind.
    PixelRect difference(const Image& other) const;

    int bandCount() const;
    /// The rows of band `index`.
    PixelRect bandRect(int index) const;
    /// Band `index` as it is stored, null when the pixels are computed when read: whatever is kept beside a
    /// stored band speaks of its very pixels.
    std::shared_ptr<const Band> storedBand(int index) const;
    /// All stored bands. Not for an image whose pixels are computed when read: see `materialized`.
    const BandList& bands() const;
    /// The same object when the pixels are stored, otherwise a new image that stores them.
    Image materialized() const;

    /// What an encoder wants to keep for all images made from one picture (its code tables, say).
    Memo& encoderMemory() const;

    /// Gives back what can be computed again from those of this image's pixels that `current` does not share.
    void forgetComputedUnlessShared(const Image& current) const;

private:
    struct Content;
    explicit Image(std::shared_ptr<const Content> content) : m_content(std::move(content)) {}

    std::shared_ptr<const Content> m_content;
};

/// Builds an image row by row, for decoders.
class ImageBuilder {
public:
    /// With `deepAlpha`, all rows are set with their deep pixels.
    explicit ImageBuilder(PixelSize size, std::optional<DeepAlpha> deepAlpha = {});

    /// Sets `count` rows from `firstRow` on, packed. Rows of different bands may be set from different
    /// threads.
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
    void finish(PartBand& part) const;

    PixelSize m_size;
    std::optional<DeepAlpha> m_deepAlpha;
    std::vector<PartBand> m_bands;
};

} // namespace complexion
