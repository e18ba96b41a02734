// SPDX-License-Identifier: GPL-3.0-or-later

// The edit settings and the effect that the photo is shown through.
#include "editor/outlet.h"
#include "editor/view_controller.h"
#include "imaging/image_tools.h"

#include <algorithm>

namespace complexion {

void ViewController::ApplyEffectsOnPreview() {
    const int index = reach(comboEffect).currentIndex();
    if (index == 0)
        reach(imageView).setImage(originalImage());
    else if (index > 0 && index < std::ssize(kEffectTitles))
        reach(imageView).setImage(
            ImageTools::ApplyEffectOnImage(originalImage(), kEffectTitles[static_cast<std::size_t>(index)]));
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

void ViewController::mirrorSettings() {
    const Stepper& stepper = reach(stepperEditAreaSize);
    m_settings.setRadius(stepper.integerValue());
    connect(&stepper, &Stepper::valueChanged, this, [this](int value) { m_settings.setRadius(value); });
    connect(&stepper, &QObject::destroyed, this, [this] { m_settings.setRadius(std::nullopt); });

    const QCheckBox& autodetect = reach(checkAutodetectColor);
    m_settings.setColorType(autodetect.isChecked() ? 1 : 0);
    connect(&autodetect, &QCheckBox::toggled, this, [this](bool on) { m_settings.setColorType(on ? 1 : 0); });
    connect(&autodetect, &QObject::destroyed, this, [this] { m_settings.setColorType(std::nullopt); });

    const ColorWell& well = reach(colorWellCustomColor);
    const auto mirrorColor = [this](const QColor& color) {
        m_settings.setCustomColor(RgbColor{color.redF(), color.greenF(), color.blueF()});
    };
    mirrorColor(well.color());
    connect(&well, &ColorWell::colorChanged, this, mirrorColor);
    connect(&well, &QObject::destroyed, this, [this] { m_settings.setCustomColor(std::nullopt); });

    const Slider& threshold = reach(sliderThreshold);
    m_settings.setThreshold(threshold.floatValue());
    connect(&threshold, &Slider::floatValueChanged, this,
            [this](float value) { m_settings.setThreshold(value); });
    connect(&threshold, &QObject::destroyed, this, [this] { m_settings.setThreshold(std::nullopt); });

    const QComboBox& repair = reach(comboRepair);
    const auto mirrorStyle = [this](int index) { m_settings.setStyle(static_cast<RepairStyle>(index)); };
    mirrorStyle(repair.currentIndex());
    connect(&repair, &QComboBox::currentIndexChanged, this, mirrorStyle);
    connect(&repair, &QObject::destroyed, this, [this] { m_settings.setStyle(std::nullopt); });
}

} // namespace complexion
