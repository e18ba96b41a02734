// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/codecs/decoded_picture.h"
#include "imaging/containers/container.h"
#include "imaging/metadata/saving_losses.h"
#include "imaging/reading/reader_process.h"
#include "imaging/reading/reading_listeners.h"

#include <filesystem>
#include <vector>

namespace complexion {

// Reading an untrusted picture file: in a child of the installed reader process, or in this process if none
// is installed, with the same result.

enum class ReadingPurpose {
    Look, // for its pixels
    Edit, // for editing: its actual size is measured, and what encoding will need is prepared
};

struct FilePicture {
    DecodedPicture decoded;
    Container container = Container::Jpeg;
    /// See actualSizeOf; not measured for a look.
    PixelSize actualSize;
    /// See savingLosses; not determined for a look.
    std::vector<SavingLoss> losses = {};
};

/// The first picture of the file. An error if it cannot be decoded or, for editing, measured; also if its
/// child fails in any way; Cancelled if `progress` ended it. Without a reader process there is no progress
/// and no preview.
Result<FilePicture> readPictureFile(const std::filesystem::path& path, ReadingPurpose purpose,
                                    const ReadingProgress& progress = {},
                                    const PreviewListener& preview = {});

/// The actual size of the file, as actualSizeOf.
Result<PixelSize> measuredFile(const std::filesystem::path& path);

/// The first picture of a file in memory, for a look.
Result<FilePicture> readPictureInMemory(ByteView file);

/// From now on, untrusted files and profiles are read by children of `process`, or by this process if it is
/// null. Call before the first file is read.
void installReader(std::shared_ptr<ReaderProcess> process);

/// Starts and installs the reader process, before this process grows and has other threads. If the system
/// refuses, a line on standard output says so, and files are read in this process. A reader process that is
/// lost later is replaced (serveIfExecutedAsReader); if that fails, files cannot be read.
void startReader();

/// What children of this program's reader process do.
void answerReading(std::uint32_t operation, ByteView input, AnswerSender& answer,
                   const Confinement& confinement);

} // namespace complexion
