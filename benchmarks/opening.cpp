// SPDX-License-Identifier: GPL-3.0-or-later

// The time to open a photo: until it is painted, and until it can be edited.
#include "benchmarks/editor.h"
#include "benchmarks/references.h"
#include "benchmarks/stopwatch.h"
#include "benchmarks/table.h"
#include "imaging/reading/picture_reading.h"

namespace complexion::bench {

namespace {

/// The seconds until a photo, opened in a new editor, is painted, and until its first state is written.
struct Opening {
    double first = 0;
    double ready = 0;
};

Opening openInNewEditor(const std::filesystem::path& photo) {
    Editor editor;
    Opening opening;
    opening.ready = secondsOf([&] { opening.first = editor.open(photo); });
    return opening;
}

Row openFirst(int megapixels) {
    return {.name = rowName("open_first", megapixels),
            .goal = atMost(megapixels < 24 ? 1.15 : 0.6),
            .rounds = 5,
            .prepare = [=]() -> Round {
                return [photo = portraitFile(megapixels, Kind::Jpeg)](Samples& samples) {
                    const double reference = decodeJpegSeconds(photo);
                    samples.add(openInNewEditor(photo).first, reference);
                };
            }};
}

/// The time until the first scan is painted.
Row openProgressive() {
    return {
        .name = rowName("open_progressive", 24), .goal = atMost(0.6), .rounds = 5, .prepare = []() -> Round {
            return [photo = portraitFile(24, Kind::JpegProgressive)](Samples& samples) {
                const double reference = decodeJpegSeconds(photo);
                samples.add(openInNewEditor(photo).first, reference);
            };
        }};
}

/// The reference is the sum that the goal names, as divided between two cores.
Row openReady(int megapixels) {
    return {
        .name = rowName("open_ready", megapixels), .goal = atMost(1), .rounds = 5, .prepare = [=]() -> Round {
            const auto picture = std::make_shared<PlainPicture>(portrait(megapixels));
            return [picture, bytes = encodeWithLibjpeg(*picture),
                    photo = portraitFile(megapixels, Kind::Jpeg)](Samples& samples) {
                const double reference = 1.15 * decodeJpegSeconds(photo) + 0.6 * encodeJpegSeconds(*picture) +
                                         1.2 * writeSeconds(bytes, Flush::No);
                samples.add(openInNewEditor(photo).ready, reference);
            };
        }};
}

/// How much longer it takes to have the photo read by a confined child than to read it in this process.
Row confined(const std::string& name, double Opening::* seconds, int megapixels) {
    return {.name = rowName(name, megapixels), .goal = atMost(1.02), .rounds = 7, .prepare = [=]() -> Round {
                return [=, photo = portraitFile(megapixels, Kind::Jpeg)](Samples& samples) {
                    const double inChild = openInNewEditor(photo).*seconds;
                    const std::shared_ptr<ReaderProcess> reader = ReaderProcess::installed();
                    installReader(nullptr);
                    const double here = openInNewEditor(photo).*seconds;
                    installReader(reader);
                    samples.add(inChild, here);
                };
            }};
}

Row openPng() {
    return {.name = rowName("open_png", 24), .goal = atMost(1.1), .rounds = 5, .prepare = []() -> Round {
                return [photo = portraitFile(24, Kind::Png)](Samples& samples) {
                    const double reference = decodePngSeconds(photo);
                    samples.add(openInNewEditor(photo).first, reference);
                };
            }};
}

/// The speed relative to libpng at its default compression level.
Row firstPngState() {
    return {
        .name = rowName("state_png_first", 24), .goal = atLeast(20), .rounds = 3, .prepare = []() -> Round {
            const auto picture = std::make_shared<PlainPicture>(portrait(24));
            return [picture, photo = portraitFile(24, Kind::Png)](Samples& samples) {
                const double plain = secondsOf([&] { (void)encodeWithLibpng(*picture, -1); });
                const Opening opening = openInNewEditor(photo);
                samples.add(plain, opening.ready - opening.first);
            };
        }};
}

} // namespace

void addOpeningRows() {
    for (const int megapixels : kMegapixels) {
        addRow(openFirst(megapixels));
        addRow(openReady(megapixels));
        addRow(confined("confined_first", &Opening::first, megapixels));
        addRow(confined("confined_ready", &Opening::ready, megapixels));
    }
    addRow(openProgressive());
    addRow(openPng());
    addRow(firstPngState());
}

} // namespace complexion::bench
