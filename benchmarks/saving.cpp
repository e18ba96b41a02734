// SPDX-License-Identifier: GPL-3.0-or-later

// The time to save, with metadata and fsync, if no band of the picture is coded yet.
#include "benchmarks/editor.h"
#include "benchmarks/references.h"
#include "benchmarks/stopwatch.h"
#include "benchmarks/table.h"

#include <unistd.h>

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

    double save() {
        m_editor.controller().originalImage().dropCachesUnlessShared(Image());
        const std::filesystem::path target = folder() / "saved.jpg";
        const double seconds = secondsOf([&] { m_editor.save(target); });
        std::filesystem::remove(target);
        return seconds;
    }

private:
    Editor m_editor;
};

Row saveAgainstLibrary(const std::string& name, int megapixels, Kind kind) {
    return {.name = rowName(name, megapixels), .goal = atMost(1), .rounds = 5, .prepare = [=]() -> Round {
                const auto picture = std::make_shared<PlainPicture>(portrait(megapixels));
                return [picture, bytes = encodeWithLibjpeg(*picture),
                        saving = std::make_shared<Saving>(megapixels, kind)](Samples& samples) {
                    ::sync(); // writes the pending data of other rows first
                    const double reference =
                        0.65 * encodeJpegSeconds(*picture) + 2.2 * writeSeconds(bytes, Flush::Yes);
                    samples.add(saving->save(), reference);
                };
            }};
}

Row saveWithEffect(int megapixels) {
    return {.name = rowName("save_effect", megapixels),
            .goal = atMost(1.5),
            .rounds = 5,
            .prepare = [=]() -> Round {
                return [saving = std::make_shared<Saving>(megapixels, Kind::Jpeg)](Samples& samples) {
                    ::sync();
                    saving->setEffect(0);
                    const double reference = saving->save();
                    saving->setEffect(1);
                    samples.add(saving->save(), reference);
                };
            }};
}

} // namespace

void addSavingRows() {
    for (const int megapixels : kMegapixels) {
        addRow(saveAgainstLibrary("save_jpeg", megapixels, Kind::Jpeg));
        addRow(saveAgainstLibrary("save_jpeg_turned", megapixels, Kind::JpegTurned));
        addRow(saveWithEffect(megapixels));
    }
}

} // namespace complexion::bench
