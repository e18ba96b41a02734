// SPDX-License-Identifier: GPL-3.0-or-later

// The edit settings and the effect that the photo is shown through.
#include "editor/outlet.h"
#include "editor/view_controller.h"
#include "imaging/image_tools.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace complexion {

namespace {

/// One step of the edit area size is the size divided by this.
constexpr int kStepPart = 10;

} // namespace

void ViewController::ApplyEffectsOnPreview() {
    const int index = reach(comboEffect).currentIndex();
    if (index >= 0 && index < std::ssize(kEffectTitles))
        reach(imageView).setImage(throughEffect(originalImage()));
    if (m_isShowingSource)
        reach(imageView).showReplacement(m_session.source());
    Q_EMIT stateChanged();
}

Image ViewController::throughEffect(const Image& image) const {
    const int index = reach(comboEffect).currentIndex();
    if (index <= 0 || index >= std::ssize(kEffectTitles))
        return image;
    return ImageTools::ApplyEffectOnImage(image, kEffectTitles[static_cast<std::size_t>(index)]);
}

void ViewController::ShowSource(bool on) {
    m_isShowingSource = on && hasImage();
    reach(imageView).showReplacement(m_isShowingSource ? std::optional(m_session.source()) : std::nullopt);
    Q_EMIT stateChanged();
}

void ViewController::OnEffectSelected(QObject*) {
    // Before a photo is open there is nothing to show through an effect.
    if (!hasImage())
        return;
    m_session.noteEffect(reach(comboEffect).currentIndex());
    ApplyEffectsOnPreview();
}

void ViewController::OnEditAreaSizeChanged(QObject* sender) {
    Stepper& stepper = reach(stepperEditAreaSize);
    QLineEdit& field = reach(textFieldEditAreaSize);
    if (sender == &field) {
        bool isNumber = false;
        // A fraction is rounded, whichever of the two decimal separators it has.
        const double typed = field.text().replace(u',', u'.').toDouble(&isNumber);
        if (isNumber && std::isfinite(typed))
            stepper.setIntegerValue(static_cast<int>(
                std::clamp<double>(std::round(typed), stepper.minimum(), stepper.maximum())));
    }
    // What was typed may have been no number, or out of bounds: the field shows what counts.
    field.setText(QString::number(stepper.integerValue()));
}

void ViewController::StepEditAreaSize(int steps) {
    Stepper& stepper = reach(stepperEditAreaSize);
    const int direction = steps < 0 ? -1 : 1;
    for (int i = 0; i < std::abs(steps); ++i)
        stepper.setIntegerValue(stepper.integerValue() +
                                direction * std::max(1, stepper.integerValue() / kStepPart));
    OnEditAreaSizeChanged(&stepper);
}

void ViewController::StepThreshold(int steps) {
    Slider& slider = reach(sliderThreshold);
    slider.setFloatValue(slider.floatValue() + static_cast<float>(steps));
}

void ViewController::followSettings() {
    const auto read = [this] {
        const bool allThere = stepperEditAreaSize && checkAutodetectColor && colorWellCustomColor &&
                              sliderThreshold && comboRepair;
        if (!allThere)
            return;
        const QColor color = colorWellCustomColor->color();
        m_session.setSettings(EditSettings{
            .radius = stepperEditAreaSize->integerValue(),
            .colorType = checkAutodetectColor->isChecked() ? 1 : 0,
            .customColor = {color.redF(), color.greenF(), color.blueF()},
            .threshold = sliderThreshold->floatValue(),
            .style = static_cast<RepairStyle>(comboRepair->currentIndex()),
        });
        Q_EMIT settingsChanged();
    };
    const auto follow = [this, read](const auto& control, auto changed, const char* name) {
        connect(&reach(control), changed, this, read);
        // A repair that needs the settings is then fatal.
        connect(&reach(control), &QObject::destroyed, this, [this, name] { m_session.loseSettings(name); });
    };
    follow(stepperEditAreaSize, &Stepper::valueChanged, "stepperEditAreaSize");
    follow(checkAutodetectColor, &QCheckBox::toggled, "checkAutodetectColor");
    follow(colorWellCustomColor, &ColorWell::colorChanged, "colorWellCustomColor");
    follow(sliderThreshold, &Slider::floatValueChanged, "sliderThreshold");
    follow(comboRepair, &QComboBox::currentIndexChanged, "comboRepair");
    read();
}

} // namespace complexion
