// SPDX-License-Identifier: GPL-3.0-or-later

// The edit settings and the effect that the photo is shown through.
#include "editor/outlet.h"
#include "editor/view_controller.h"
#include "imaging/image_tools.h"

#include <algorithm>
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
        reach(imageView).showReplacement(m_source);
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
    reach(imageView).showReplacement(m_isShowingSource ? std::optional(m_source) : std::nullopt);
    Q_EMIT stateChanged();
}

void ViewController::OnEffectSelected(QObject*) {
    // Before a photo is open there is nothing to show through an effect.
    if (hasImage())
        ApplyEffectsOnPreview();
}

void ViewController::OnEditAreaSizeChanged(QObject* sender) {
    Stepper& stepper = reach(stepperEditAreaSize);
    QLineEdit& field = reach(textFieldEditAreaSize);
    if (sender == &field) {
        bool isNumber = false;
        const qlonglong typed = field.text().toLongLong(&isNumber);
        if (isNumber)
            stepper.setIntegerValue(
                static_cast<int>(std::clamp<qlonglong>(typed, stepper.minimum(), stepper.maximum())));
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

void ViewController::mirrorSettings() {
    const Stepper& stepper = reach(stepperEditAreaSize);
    m_settings.setRadius(stepper.integerValue());
    connect(&stepper, &Stepper::valueChanged, this, [this](int value) {
        m_settings.setRadius(value);
        Q_EMIT settingsChanged();
    });
    connect(&stepper, &QObject::destroyed, this, [this] { m_settings.setRadius(std::nullopt); });

    const QCheckBox& autodetect = reach(checkAutodetectColor);
    m_settings.setColorType(autodetect.isChecked() ? 1 : 0);
    connect(&autodetect, &QCheckBox::toggled, this, [this](bool on) {
        m_settings.setColorType(on ? 1 : 0);
        Q_EMIT settingsChanged();
    });
    connect(&autodetect, &QObject::destroyed, this, [this] { m_settings.setColorType(std::nullopt); });

    const ColorWell& well = reach(colorWellCustomColor);
    const auto mirrorColor = [this](const QColor& color) {
        m_settings.setCustomColor(RgbColor{color.redF(), color.greenF(), color.blueF()});
        Q_EMIT settingsChanged();
    };
    mirrorColor(well.color());
    connect(&well, &ColorWell::colorChanged, this, mirrorColor);
    connect(&well, &QObject::destroyed, this, [this] { m_settings.setCustomColor(std::nullopt); });

    const Slider& threshold = reach(sliderThreshold);
    m_settings.setThreshold(threshold.floatValue());
    connect(&threshold, &Slider::floatValueChanged, this, [this](float value) {
        m_settings.setThreshold(value);
        Q_EMIT settingsChanged();
    });
    connect(&threshold, &QObject::destroyed, this, [this] { m_settings.setThreshold(std::nullopt); });

    const QComboBox& repair = reach(comboRepair);
    const auto mirrorStyle = [this](int index) {
        m_settings.setStyle(static_cast<RepairStyle>(index));
        Q_EMIT settingsChanged();
    };
    mirrorStyle(repair.currentIndex());
    connect(&repair, &QComboBox::currentIndexChanged, this, mirrorStyle);
    connect(&repair, &QObject::destroyed, this, [this] { m_settings.setStyle(std::nullopt); });
}

} // namespace complexion
