// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/reading/file_measuring.h"

#include "imaging/base/no_throw.h"
#include "imaging/base/picture_limits.h"
#include "imaging/codecs/opening.h"
#include "imaging/reading/flat_bytes.h"
#include "imaging/reading/flat_error.h"
#include "imaging/reading/limits_for_file.h"
#include "imaging/reading/operations.h"
#include "imaging/reading/whole_answer.h"

namespace complexion {

Result<PixelSize> measuredByChild(ReaderProcess& process, const OpenFile& file) {
    const ReaderLimits limits = limitsForFile(file.length);
    COMPLEXION_TRY(Reading reading, process.begin(kMeasure, file, limits));
    COMPLEXION_TRY(const Bytes answer, receiveWholeAnswer(reading.answer(), deadlineFor(limits)));
    FlatReader reader(answer);
    if (reader.number<std::uint8_t>() == 0)
        return readLastError(reader);
    PixelSize size;
    size.width = reader.number<std::int32_t>();
    size.height = reader.number<std::int32_t>();
    // A file without pictures is 0 by 0.
    const bool isPossible = size == PixelSize() || isDecodableSize(size.width, size.height);
    return reader.isWhole() && isPossible ? Result<PixelSize>(size) : answerIsNonsense();
}

Bytes answeredSize(ByteView file) {
    const Result<PixelSize> size = withoutThrowing([&] { return actualSizeOf(file); });
    FlatWriter writer;
    writer.number(static_cast<std::uint8_t>(size ? 1 : 0));
    if (size) {
        writer.number(std::int32_t{size->width});
        writer.number(std::int32_t{size->height});
    } else {
        writeError(writer, size.error());
    }
    return writer.written();
}

} // namespace complexion
