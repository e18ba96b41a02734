// SPDX-License-Identifier: GPL-3.0-or-later

// The time from choosing an effect until it is painted.
#include "benchmarks/editor.h"
#include "benchmarks/references.h"
#include "benchmarks/table.h"

namespace complexion::bench {

namespace {

/// Chooses one effect after the other, as the pop-up button does.
class Choosing {
public:
    explicit Choosing(const Image& image) { m_editor.show(image); }

    double next() {
        QComboBox& effects = *m_editor.controller().comboEffect;
        return m_editor.paintedAfter([&] {
            effects.setCurrentIndex(effects.currentIndex() % (effects.count() - 1) + 1);
            m_editor.controller().OnEffectSelected(&effects);
        });
    }

    /// Clears everything that was cached for painting, as if the photo had never been shown.
    void clearCaches() { m_editor.controller().originalImage().dropCachesUnlessShared(Image()); }

private:
    Editor m_editor;
};

} // namespace

void addEffectRows() {
    addRow({.name = rowName("effect", 100), .goal = atMost(24), .prepare = []() -> Round {
                return [choosing = std::make_shared<Choosing>(portraitImage(100)),
                        frame = std::make_shared<FrameReference>()](Samples& samples) {
                    const double reference = (*frame)();
                    samples.add(choosing->next(), reference);
                };
            }});
    for (const int megapixels : kMegapixels)
        addRow({.name = rowName("effect_first", megapixels),
                .goal = atMost(0.5),
                .rounds = 5,
                .prepare = [=]() -> Round {
                    return [choosing = std::make_shared<Choosing>(portraitImage(megapixels)),
                            file = portraitFile(megapixels, Kind::Jpeg)](Samples& samples) {
                        const double reference = decodeJpegSeconds(file);
                        choosing->clearCaches();
                        samples.add(choosing->next(), reference);
                    };
                }});
}

} // namespace complexion::bench
