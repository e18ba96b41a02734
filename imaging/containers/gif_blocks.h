// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/geometry.h"
#include "imaging/base/result.h"

#include <optional>
#include <string_view>
#include <vector>

namespace complexion::gif {

// The blocks of a GIF file (GIF89a): a header and a colour table, then extensions and frames, whose data are
// in sub-blocks that each begin with their length.

/// Signature, version and the logical screen's descriptor, in bytes.
inline constexpr std::size_t kHeaderLength = 13;
/// Where the header has the pixels' aspect ratio.
inline constexpr std::size_t kAspectOffset = 12;

/// Labels of extensions.
inline constexpr std::uint8_t kCommentLabel = 0xfe;
inline constexpr std::uint8_t kApplicationLabel = 0xff;

/// An application extension before its data: introducer, label, length, name and code.
inline constexpr std::size_t kApplicationHeaderLength = 14;

/// The application extension that holds an ICC profile (ICC.1, annex B).
inline constexpr std::string_view kProfileApplication = "ICCRGBG1012";

struct Extension {
    std::uint8_t label = 0;
    /// With the introducer and all sub-blocks.
    ByteView whole;

    /// The name and code of an application extension.
    std::string_view application() const;
    bool isApplication(std::string_view name) const;
};

/// One picture of the file.
struct Frame {
    /// Its place on the logical screen.
    PixelRect rect;
    /// Where its compressed data begin: a byte with the code size, then sub-blocks. May be beyond the file's
    /// end.
    std::size_t dataOffset = 0;
};

/// A GIF file's blocks as far as it is sound.
struct Blocks {
    /// The header and its colour table.
    ByteView start;
    /// The logical screen; 0 by 0 where the file states none.
    PixelSize screen;
    std::vector<Extension> extensions;
    std::vector<Frame> frames;
};

/// Nothing for files shorter than a header.
std::optional<Blocks> split(ByteView file);

/// The data of an extension's sub-blocks, the first of which begins at `position` in it.
Bytes joinedSubBlocks(ByteView extension, std::size_t position);

/// Appends `data` in sub-blocks, and the zero that closes them.
void appendSubBlocks(Bytes& to, ByteView data);

/// Appends an application extension up to its data.
void appendApplicationHeader(Bytes& to, std::string_view name);
/// Appends a comment extension.
void appendComment(Bytes& to, std::string_view text);

/// The ICC profile of the file's colours; empty without one.
Bytes profile(ByteView file);

/// `written`, a GIF file without one, with an ICC profile for its colours; an error when it is damaged.
Result<FileContents> withProfile(ByteView icc, ByteView written);

/// `written`, a GIF file, with `extensions` before its first frame, instead of those of its own that
/// `isReplaced`; `aspect`, unless nothing, is its pixels' aspect ratio in the header's coding. An error when
/// it is damaged.
Result<FileContents> withExtensions(ByteView written, ByteView extensions, std::optional<std::uint8_t> aspect,
                                    bool (*isReplaced)(const Extension&));

} // namespace complexion::gif
