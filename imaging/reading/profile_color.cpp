// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/reading/profile_color.h"

#include "imaging/base/no_throw.h"
#include "imaging/reading/flat_bytes.h"
#include "imaging/reading/flat_error.h"
#include "imaging/reading/limits_for_file.h"
#include "imaging/reading/operations.h"
#include "imaging/reading/reader_process.h"
#include "imaging/reading/whole_answer.h"

namespace complexion {

namespace {

/// A profile takes milliseconds. Meanwhile the window may wait.
constexpr std::uint64_t kMaxSeconds = 2;

void write(FlatWriter& writer, RgbColor color) {
    writer.number(color.red);
    writer.number(color.green);
    writer.number(color.blue);
}

RgbColor readColor(FlatReader& reader) {
    RgbColor color;
    color.red = reader.number<double>();
    color.green = reader.number<double>();
    color.blue = reader.number<double>();
    return color;
}

bool isColor(RgbColor color) {
    const auto isComponent = [](double value) { return value >= 0 && value <= 1; };
    return isComponent(color.red) && isComponent(color.green) && isComponent(color.blue);
}

} // namespace

RgbColor colorFromChild(ByteView icc, RgbColor color) {
    const Result<RgbColor> converted = withoutThrowing([&]() -> Result<RgbColor> {
        const std::shared_ptr<ReaderProcess> process = ReaderProcess::installed();
        if (!process)
            return Error{"no reader process"};
        FlatWriter writer;
        write(writer, color);
        writer.bytes(icc);
        COMPLEXION_TRY(const OpenFile input, fileInMemory(writer.written()));
        ReaderLimits limits = limitsForFile(input.length);
        limits.cpuSeconds = kMaxSeconds;
        COMPLEXION_TRY(Reading reading, process->begin(kColor, input, limits));
        COMPLEXION_TRY(const Bytes answer, receiveWholeAnswer(reading.answer(), deadlineFor(limits)));
        FlatReader reader(answer);
        const RgbColor result = readColor(reader);
        return reader.isWhole() && isColor(result) ? Result<RgbColor>(result) : answerIsNonsense();
    });
    return converted ? *converted : color;
}

Bytes answeredColor(ByteView input) {
    FlatReader reader(input);
    const RgbColor color = readColor(reader);
    FlatWriter writer;
    write(writer, ColorProfile::fromIcc(reader.bytes()).fromSrgb(color));
    return writer.written();
}

} // namespace complexion
