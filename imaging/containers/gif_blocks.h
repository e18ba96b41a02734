// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/geometry.h"
#include "imaging/base/result.h"

#include <optional>
#include <string_view>
#include <vector>

namespace complexion::gif {

// The blocks of a GIF file (GIF89a): a header and a colour table, then extensions and frames. Their data is
// stored in sub-blocks, each of which begins with its length (section 15).

/// Size in bytes of the header (GIF89a section 17) and the logical screen descriptor (section 18).
inline constexpr std::size_t kHeaderLength = 13;
/// Offset of the pixel aspect ratio (GIF89a section 18).
inline constexpr std::size_t kAspectRatioOffset = 12;

/// Extension labels (GIF89a sections 24 and 26).
inline constexpr std::uint8_t kCommentLabel = 0xfe;
inline constexpr std::uint8_t kApplicationLabel = 0xff;

/// Size of an application extension before its data (GIF89a section 26): introducer, label, block size,
/// identifier and authentication code.
inline constexpr std::size_t kApplicationHeaderLength = 14;

/// The application extension that holds an ICC profile (ICC.1, annex B).
inline constexpr std::string_view kProfileApplication = "ICCRGBG1012";

struct Extension {
    std::uint8_t label = 0;
    /// The whole block, from the introducer to the block terminator.
    ByteView whole;

    /// The identifier and authentication code of an application extension.
    std::string_view application() const;
    bool isApplication(std::string_view name) const;
};

/// One picture of the file.
struct Frame {
    /// Its position on the logical screen.
    PixelRect rect;
    /// Offset of its compressed data: the LZW minimum code size, then sub-blocks. May be beyond the end of
    /// the file.
    std::size_t dataOffset = 0;
};

/// A GIF file's blocks up to the first damage.
struct Blocks {
    /// The header, logical screen descriptor and global colour table.
    ByteView start;
    /// Size of the logical screen; 0 by 0 if the file gives none.
    PixelSize screen;
    std::vector<Extension> extensions;
    std::vector<Frame> frames;
};

/// Splits a file into its blocks. Nothing for files shorter than a header.
std::optional<Blocks> split(ByteView file);

/// The data of an extension's sub-blocks, the first of which is at offset `position`.
Bytes joinedSubBlocks(ByteView extension, std::size_t position);

/// Appends `data` as sub-blocks, with a block terminator.
void appendSubBlocks(Bytes& to, ByteView data);

/// Appends an application extension up to its data.
void appendApplicationHeader(Bytes& to, std::string_view name);
/// Appends a comment extension.
void appendComment(Bytes& to, std::string_view text);

/// The file's ICC profile; empty if there is none.
Bytes profile(ByteView file);

/// Adds an ICC profile to `written`, a GIF file without one. Fails if the file is damaged.
Result<FileContents> withProfile(ByteView icc, ByteView written);

/// Inserts `extensions` before the first frame of the GIF file `written` and removes those of its own that
/// `isReplaced`. `aspect`, if given, becomes the header's pixel aspect ratio field. Fails if the file is
/// damaged.
Result<FileContents> withExtensions(ByteView written, ByteView extensions, std::optional<std::uint8_t> aspect,
                                    bool (*isReplaced)(const Extension&));

} // namespace complexion::gif
