// SPDX-License-Identifier: GPL-3.0-or-later

// The edit settings and the effect.
#include "editor/view_controller.h"
#include "imaging/image_tools.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace complexion {

namespace {

/// One step of the edit area size is the size divided by this.
constexpr int kStepDivisor = 10;

} // namespace

void ViewController::ApplyEffectsOnPreview() {
    const int index = comboEffect->currentIndex();
    if (index >= 0 && index < std::ssize(kEffectTitles))
        imageView->setImage(withEffect(originalImage()));
    if (m_isShowingSource)
        imageView->showReplacement(m_session.source());
    Q_EMIT stateChanged();
}

Image ViewController::withEffect(const Image& image) const {
    const int index = comboEffect->currentIndex();
    if (index <= 0 || index >= std::ssize(kEffectTitles))
        return image;
    return ImageTools::ApplyEffectOnImage(image, kEffectTitles[static_cast<std::size_t>(index)]);
}

void ViewController::ShowSource(bool on) {
    m_isShowingSource = on && hasImage();
    imageView->showReplacement(m_isShowingSource ? std::optional(m_session.source()) : std::nullopt);
    Q_EMIT stateChanged();
}

void ViewController::OnEffectSelected(QObject*) {
    if (!hasImage())
        return;
    m_session.recordEffect(comboEffect->currentIndex());
    ApplyEffectsOnPreview();
}

void ViewController::OnEditAreaSizeChanged(QObject* sender) {
    Stepper& stepper = *stepperEditAreaSize;
    QLineEdit& field = *textFieldEditAreaSize;
    if (sender == &field) {
        bool isNumber = false;
        // Accepts both decimal separators; fractions are rounded.
        const double typed = field.text().replace(u',', u'.').toDouble(&isNumber);
        if (isNumber && std::isfinite(typed))
            stepper.setIntegerValue(static_cast<int>(
                std::clamp<double>(std::round(typed), stepper.minimum(), stepper.maximum())));
    }
    // The text may be no number or out of range: show the actual value.
    field.setText(QString::number(stepper.integerValue()));
}

void ViewController::SetEditAreaSize(std::int64_t radius) {
    stepperEditAreaSize->setIntegerValue(static_cast<int>(
        std::clamp<std::int64_t>(radius, stepperEditAreaSize->minimum(), stepperEditAreaSize->maximum())));
    OnEditAreaSizeChanged(&*stepperEditAreaSize);
}

void ViewController::StepEditAreaSize(int steps) {
    Stepper& stepper = *stepperEditAreaSize;
    const int direction = steps < 0 ? -1 : 1;
    for (int i = 0; i < std::abs(steps); ++i)
        stepper.setIntegerValue(stepper.integerValue() +
                                direction * std::max(1, stepper.integerValue() / kStepDivisor));
    OnEditAreaSizeChanged(&stepper);
}

void ViewController::StepThreshold(int steps) {
    Slider& slider = *sliderThreshold;
    slider.setFloatValue(slider.floatValue() + static_cast<float>(steps));
}

void ViewController::observeSettings() {
    const auto read = [this] {
        const bool allExist = stepperEditAreaSize && checkAutodetectColor && colorWellCustomColor &&
                              sliderThreshold && comboRepair;
        if (!allExist)
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
        connect(&*control, changed, this, read);
        // Reading the settings is fatal from then on.
        connect(&*control, &QObject::destroyed, this, [this, name] { m_session.clearSettings(name); });
    };
    follow(stepperEditAreaSize, &Stepper::valueChanged, "stepperEditAreaSize");
    follow(checkAutodetectColor, &QCheckBox::toggled, "checkAutodetectColor");
    follow(colorWellCustomColor, &ColorWell::colorChanged, "colorWellCustomColor");
    follow(sliderThreshold, &Slider::floatValueChanged, "sliderThreshold");
    follow(comboRepair, &QComboBox::currentIndexChanged, "comboRepair");
    read();
}

} // namespace complexion
