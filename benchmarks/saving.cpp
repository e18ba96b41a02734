// SPDX-License-Identifier: GPL-3.0-or-later

// The time to save, with metadata and fsync, if no band of the picture is coded yet; and the size of the
// result.
#include "benchmarks/editor.h"
#include "benchmarks/references.h"
#include "benchmarks/stopwatch.h"
#include "benchmarks/table.h"
#include "benchmarks/written.h"
#include "imaging/image_tools.h"

#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>

namespace complexion::bench {

namespace {

/// An editor that saves a picture without cached coded bands.
class Saving {
public:
    Saving(int megapixels, Kind kind) { m_editor.open(portraitFile(megapixels, kind)); }

    void setEffect(int index) {
        QComboBox& effects = *m_editor.controller().comboEffect;
        effects.setCurrentIndex(index);
        m_editor.controller().OnEffectSelected(&effects);
    }

    struct Saved {
        double seconds = 0;
        double bytes = 0; ///< of the file
    };
    Saved save() {
        m_editor.controller().originalImage().dropCachesUnlessShared(Image());
        const std::filesystem::path target = folder() / "saved.jpg";
        Saved saved;
        saved.seconds = secondsOf([&] { m_editor.save(target); });
        saved.bytes = static_cast<double>(std::filesystem::file_size(target));
        std::filesystem::remove(target);
        return saved;
    }

private:
    Editor m_editor;
};

/// Seconds that a plain program needs to save the picture, with its file's bytes flushed.
double plainSaveSeconds(const PlainPicture& picture, const Bytes& file) {
    return 0.65 * encodeJpegSeconds(picture) + 2.2 * writeSeconds(file, Flush::Yes);
}

/// The time, for information: most of it depends on the disk.
Row saveAgainstLibrary(const std::string& name, int megapixels, Kind kind) {
    return {.name = rowName(name, megapixels), .goal = noGoal(), .rounds = 5, .prepare = [=]() -> Round {
                const auto picture = std::make_shared<PlainPicture>(portrait(megapixels));
                return [picture, bytes = encodeWithLibjpeg(*picture),
                        saving = std::make_shared<Saving>(megapixels, kind)](Samples& samples) {
                    ::sync(); // writes the pending data of other rows first
                    const double reference = plainSaveSeconds(*picture, bytes);
                    samples.add(saving->save().seconds, reference);
                };
            }};
}

/// The bytes written in order to save, by those of the file.
Row writtenBytes(int megapixels) {
    return {.name = rowName("save_jpeg_written", megapixels),
            .goal = atMost(1.01),
            .rounds = 3,
            .prepare = [=]() -> Round {
                return [saving = std::make_shared<Saving>(megapixels, Kind::Jpeg)](Samples& samples) {
                    const double before = written().bytes;
                    const Saving::Saved saved = saving->save();
                    samples.add(written().bytes - before, saved.bytes);
                };
            }};
}

/// How often saving flushes a file or folder to the disk: the new file, and the folder with its name.
Row flushes() {
    return {.name = "save_jpeg_flushes", .goal = atMost(2), .rounds = 3, .prepare = []() -> Round {
                return [saving = std::make_shared<Saving>(12, Kind::Jpeg)](Samples& samples) {
                    const double before = written().flushes;
                    (void)saving->save();
                    samples.add(written().flushes - before, 1);
                };
            }};
}

/// The processor time, on all cores, against that of plain encoding alone.
Row saveProcessorTime(int megapixels) {
    return {.name = rowName("save_jpeg_processor", megapixels),
            .goal = atMost(0.5),
            .rounds = 5,
            .prepare = [=]() -> Round {
                const auto picture = std::make_shared<PlainPicture>(portrait(megapixels));
                return
                    [picture, saving = std::make_shared<Saving>(megapixels, Kind::Jpeg)](Samples& samples) {
                        ::sync();
                        const double start = processorTime();
                        (void)encodeJpegSeconds(*picture);
                        const double middle = processorTime();
                        (void)saving->save();
                        samples.add(processorTime() - middle, middle - start);
                    };
            }};
}

/// The JPEG photos of COMPLEXION_TEST_PHOTOS in whose size headers and tables weigh little; none without that
/// folder.
std::vector<std::filesystem::path> realPhotos() {
    constexpr std::uintmax_t kMinBytes = 100'000;
    std::vector<std::filesystem::path> photos;
    const char* const folder = std::getenv("COMPLEXION_TEST_PHOTOS");
    for (const char* const part : {"portraits", "exif"}) {
        const std::filesystem::path place = std::filesystem::path(folder != nullptr ? folder : "") / part;
        if (folder == nullptr || !std::filesystem::is_directory(place))
            continue;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(place)) {
            std::string extension = entry.path().extension();
            std::ranges::transform(extension, extension.begin(),
                                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
            if (entry.is_regular_file() && extension == ".jpg" && entry.file_size() >= kMinBytes)
                photos.push_back(entry.path());
        }
    }
    std::ranges::sort(photos);
    return photos;
}

/// The bytes of a result after one repair by those of its photo: the median over real photos, or of the
/// painted portrait.
Row fileGrowth() {
    const std::vector<std::filesystem::path> photos = realPhotos();
    return {.name = "file_growth",
            .goal = atMost(1.3),
            .rounds = std::max(1, static_cast<int>(photos.size())),
            .prepare = [photos]() -> Round {
                const auto next = std::make_shared<std::size_t>(0);
                return [photos, next](Samples& samples) {
                    const std::filesystem::path photo =
                        photos.empty() ? portraitFile(12, Kind::Jpeg) : photos[(*next)++ % photos.size()];
                    const std::filesystem::path target = folder() / "grown.jpg";
                    Editor editor;
                    editor.open(photo);
                    const Image image = editor.controller().originalImage();
                    const Point middle = {image.size().width / 2, image.size().height / 2};
                    editor.controller().setOriginalImage(
                        *ImageTools::RemovePimpleFromImage(image, middle, 20, kAutodetectColor, {}, 1));
                    editor.save(target);
                    samples.add(static_cast<double>(std::filesystem::file_size(target)),
                                static_cast<double>(std::filesystem::file_size(photo)));
                    std::filesystem::remove(target);
                };
            }};
}

/// An effect changes every pixel: the file's coefficients cannot be reused.
Row saveWithEffect(int megapixels) {
    return {.name = rowName("save_effect", megapixels),
            .goal = atMost(1.35),
            .rounds = 5,
            .prepare = [=]() -> Round {
                const auto picture = std::make_shared<PlainPicture>(portrait(megapixels));
                const auto saving = std::make_shared<Saving>(megapixels, Kind::Jpeg);
                saving->setEffect(1);
                return [picture, bytes = encodeWithLibjpeg(*picture), saving](Samples& samples) {
                    ::sync();
                    const double reference = plainSaveSeconds(*picture, bytes);
                    samples.add(saving->save().seconds, reference);
                };
            }};
}

} // namespace

void addSavingRows() {
    for (const int megapixels : kMegapixels) {
        addRow(saveAgainstLibrary("save_jpeg", megapixels, Kind::Jpeg));
        addRow(saveAgainstLibrary("save_jpeg_turned", megapixels, Kind::JpegTurned));
        addRow(saveProcessorTime(megapixels));
        addRow(writtenBytes(megapixels));
        addRow(saveWithEffect(megapixels));
    }
    addRow(flushes());
    addRow(fileGrowth());
}

} // namespace complexion::bench
