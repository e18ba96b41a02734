// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"
#include "imaging/base/orientation.h"
#include "imaging/base/result.h"
#include "imaging/base/screen_tables.h"
#include "imaging/codecs/decoded_picture.h"
#include "imaging/containers/container.h"
#include "imaging/metadata/saving_losses.h"
#include "imaging/reading/answer_channel.h"

#include <memory>
#include <optional>
#include <vector>

namespace complexion {

/// A child's answer about a picture, apart from its pixels. A new field needs a line in each of the two
/// functions below, and a check.
struct PictureAnswer {
    Container container = Container::Jpeg;
    /// Whether the rows are a reduced picture, a pixel for each block of 8 by 8, and the answer about the
    /// picture itself follows.
    bool isPreview = false;
    /// Of the rows that were sent.
    Orientation orientation = Orientation::TopLeft;
    /// Of the upright picture.
    PointSize points;
    /// The largest width and the largest height of all pictures in the file, in pixels.
    PixelSize actualSize;
    /// See savingLosses; not determined for a look.
    std::vector<SavingLoss> losses = {};
    /// Of an RGB profile that the colour library can use; empty for sRGB.
    Bytes icc;
    /// Of that profile.
    std::shared_ptr<const ScreenTables> screenTables;
    /// See DecodedPicture.
    std::optional<Error> damage;
    /// Whether edits of the picture can be coded into its JPEG file (see JpegOriginal), stored with this
    /// orientation.
    std::optional<Orientation> jpegOrientation;

    /// Also computes the tables.
    void setProfile(const ColorProfile& profile);
};

Bytes flattened(const Result<PictureAnswer>& answer);

/// The answer, or the error, in bytes from a child. Bytes that no child of ours sends are an error too: all
/// values of an answer are in their ranges.
Result<PictureAnswer> parsedPictureAnswer(ByteView bytes);

/// Builds a picture of a child's messages.
class PictureAssembler {
public:
    /// How many bytes a message says are in its slot; nothing if none can be.
    std::optional<std::int64_t> contentLength(const AnswerMessage& message) const;

    /// Takes a message with the contents of its slot; false when no child of ours would send it.
    bool take(const AnswerMessage& message, ByteView contents);

    /// The part of the picture's rows that were sent, 0 to 1.
    double part() const;

    /// Whether nothing is missing.
    bool isComplete() const { return m_isComplete; }

    struct Picture {
        DecodedPicture decoded;
        PictureAnswer answer;
    };
    /// The picture, once it is complete.
    Result<Picture> finish();

private:
    bool begin(PixelSize size, PixelDepth depth);
    bool setRows(const AnswerMessage& message, ByteView contents);

    int m_beginnings = 0;
    PixelSize m_size;
    PixelDepth m_depth = PixelDepth::Eight;
    int m_rowCount = 0;          // of those that were sent
    std::vector<bool> m_rowsSet; // no row is set twice
    std::optional<ImageBuilder> m_builder;
    Bytes m_answer;
    bool m_isComplete = false;
};

} // namespace complexion
