// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/connections.h"
#include "app/look.h"
#include "imaging/image_tools.h"
#include "tests/fakes/active_window.h"
#include "tests/fakes/fake_dialogs.h"
#include "tests/fakes/fake_platform.h"
#include "tests/fakes/manual_queues.h"
#include "tests/fakes/pictures.h"

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QStyleFactory>
#include <QToolButton>

#include <gtest/gtest.h>

#include <cmath>
#include <map>

namespace complexion {
namespace {

/// The minimum contrast of text (WCAG 2.1, success criterion 1.4.3).
constexpr double kMinTextContrast = 4.5;
/// The minimum contrast of controls and the focus (success criterion 1.4.11).
constexpr double kMinControlContrast = 3;

/// Relative luminance, as WCAG 2.1 defines it.
double luminance(const QColor& color) {
    const auto linear = [](double component) {
        return component <= 0.04045 ? component / 12.92 : std::pow((component + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double contrast(const QColor& one, const QColor& other) {
    const auto [dark, light] = std::minmax({luminance(one), luminance(other)});
    return (light + 0.05) / (dark + 0.05);
}

QPalette twoColors(QRgb text, QRgb background) {
    QPalette palette;
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::BrightText,
                            QPalette::HighlightedText, QPalette::ToolTipText, QPalette::PlaceholderText})
        palette.setColor(role, QColor(text));
    for (const auto role :
         {QPalette::Window, QPalette::Base, QPalette::Button, QPalette::ToolTipBase, QPalette::Light,
          QPalette::Midlight, QPalette::Mid, QPalette::Dark, QPalette::Shadow})
        palette.setColor(role, QColor(background));
    return palette;
}

/// The palettes of desktops, which the program overrides.
const std::map<std::string, QPalette>& desktops() {
    static const std::map<std::string, QPalette> all = {
        {"light", twoColors(0xFF2E3436, 0xFFF6F5F4)},
        {"dark", twoColors(0xFFEEEEEC, 0xFF353535)},
        {"high contrast", twoColors(0xFF000000, 0xFFFFFFFF)},
        {"high contrast, inverse", twoColors(0xFFFFFFFF, 0xFF000000)},
    };
    return all;
}

/// The window with a uniform photo behind everything, for a desktop palette and a font scale.
class ReadableWindow {
public:
    ReadableWindow(const QPalette& desktop, double fontScale, int photoLevel) {
        QApplication::setPalette(desktop);
        applyLook(*qApp, fontScale);
        window = std::make_unique<MainWindow>();
        controller = std::make_shared<ViewController>(&window->rootView(), dialogs, platform, queues);
        connectWindow(*window, *controller, dialogs);
        window->resize(1400, 900);
        window->show();
        const std::filesystem::path path = platform.photos() / "plain.png";
        EXPECT_TRUE(ImageTools::SaveImage(filled({1400, 860}, grey(photoLevel)), path, "png"));
        controller->OpenFile(path);
        window->contents().boxEditSettings->checkAutodetectColor->setChecked(false);
        QApplication::processEvents();
        screen = window->grab().toImage();
    }
    ~ReadableWindow() {
        controller->windowWillClose();
        queues.clear();
        controller.reset();
        window.reset();
        applyLook(*qApp, 1);
    }

    /// The most frequent color within a widget on the screen: its background.
    QColor backgroundOf(const QWidget& widget) const {
        std::map<QRgb, int> counts;
        forEachPixel(widget, [&](QRgb pixel) { ++counts[pixel]; });
        const auto maximum =
            std::ranges::max_element(counts, {}, [](const auto& entry) { return entry.second; });
        return maximum == counts.end() ? QColor() : QColor(maximum->first);
    }

    /// The highest contrast of any pixel of the widget to `background`.
    double contrastWithin(const QWidget& widget, const QColor& background) const {
        double maximum = 1;
        forEachPixel(widget,
                     [&](QRgb pixel) { maximum = std::max(maximum, contrast(QColor(pixel), background)); });
        return maximum;
    }

    FakePlatform platform;
    FakeDialogs dialogs;
    ManualQueues queues;
    std::unique_ptr<MainWindow> window;
    std::shared_ptr<ViewController> controller;
    QImage screen;

private:
    template <class Visit>
    void forEachPixel(const QWidget& widget, const Visit& visit) const {
        const QRect area =
            QRect(widget.mapTo(window.get(), QPoint()), widget.size()).intersected(screen.rect());
        for (int y = area.top(); y <= area.bottom(); ++y)
            for (int x = area.left(); x <= area.right(); ++x)
                visit(screen.pixel(x, y));
    }
};

template <class Check>
void forEveryDesktop(const Check& check) {
    for (const auto& [name, palette] : desktops())
        for (const double scale : {1.0, 2.0})
            for (const int photo : {0, 128, 255}) {
                SCOPED_TRACE(testing::Message()
                             << name << " desktop, font scale " << scale << ", photo of grey " << photo);
                const ReadableWindow readable(palette, scale, photo);
                check(readable);
            }
}

TEST(Contrast, OfTextsIsSufficientOnEveryDesktopOverEveryPhoto) {
    forEveryDesktop([](const ReadableWindow& readable) {
        int texts = 0;
        for (const QLabel* label : readable.window->findChildren<QLabel*>()) {
            if (!label->isVisible())
                continue;
            ++texts;
            const QColor background = readable.backgroundOf(*label);
            EXPECT_GE(contrast(label->palette().color(label->foregroundRole()), background), kMinTextContrast)
                << label->text().toStdString() << " on " << background.name().toStdString();
            // The strokes of small text are thinner than a pixel, which lowers their contrast on the screen.
            EXPECT_GE(readable.contrastWithin(*label, background), kMinControlContrast)
                << label->text().toStdString();
        }
        EXPECT_GE(texts, 5);
        const SettingsBar& bar = *readable.window->contents().boxEditSettings;
        for (const QWidget* control :
             {static_cast<QWidget*>(bar.textFieldEditAreaSize), static_cast<QWidget*>(bar.comboEffect),
              static_cast<QWidget*>(bar.checkAutodetectColor)})
            EXPECT_GE(readable.contrastWithin(*control, readable.backgroundOf(*control)), kMinTextContrast)
                << control->objectName().toStdString();
    });
}

TEST(Contrast, OfTheColorSettingsFallsWhereTheRepairDoesNotUseThem) {
    ReadableWindow readable(desktops().at("light"), 1, 128);
    const SettingsBar& bar = *readable.window->contents().boxEditSettings;
    bar.comboRepair->setCurrentIndex(1); // natural
    QApplication::processEvents();
    readable.screen = readable.window->grab().toImage();
    for (const QWidget* control :
         {static_cast<QWidget*>(bar.checkAutodetectColor),
          static_cast<QWidget*>(bar.checkAutodetectColor->parentWidget()->findChild<QLabel*>())}) {
        EXPECT_LT(readable.contrastWithin(*control, readable.backgroundOf(*control)), kMinTextContrast);
    }
}

TEST(Contrast, OfADisabledButtonIsSufficient) {
    applyLook(*qApp, 1);
    QDialog dialog;
    auto* const button = new QPushButton(QStringLiteral("Open"), &dialog);
    button->setDefault(true);
    button->setEnabled(false);
    button->resize(button->sizeHint());
    const QImage image = button->grab().toImage();
    const QColor background = image.pixelColor(image.width() / 2, 4);
    double maximum = 1;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 8; x < image.width() - 8; ++x)
            maximum = std::max(maximum, contrast(image.pixelColor(x, y), background));
    EXPECT_GE(maximum, kMinTextContrast);
}

TEST(Contrast, OfIconsIsSufficient) {
    forEveryDesktop([](const ReadableWindow& readable) {
        for (const QToolButton* button : readable.window->findChildren<QToolButton*>()) {
            if (!button->isVisible() || !button->isEnabled())
                continue;
            EXPECT_GE(readable.contrastWithin(*button, readable.backgroundOf(*button)), kMinTextContrast)
                << button->accessibleName().toStdString();
        }
    });
}

TEST(Contrast, OfTheMenuBarIsSufficient) {
    forEveryDesktop([](const ReadableWindow& readable) {
        const QMenuBar& menu = *readable.window->menuBar();
        EXPECT_GE(readable.contrastWithin(menu, readable.backgroundOf(menu)), kMinTextContrast);
    });
}

TEST(Contrast, OfPaletteColorsIsSufficient) {
    applyLook(*qApp, 1);
    const QPalette palette = QApplication::palette();
    using Role = QPalette::ColorRole;
    for (const auto group : {QPalette::Active, QPalette::Inactive}) {
        for (const auto& [text, background] :
             {std::pair(Role::WindowText, Role::Window), std::pair(Role::Text, Role::Base),
              std::pair(Role::Text, Role::AlternateBase), std::pair(Role::ButtonText, Role::Button),
              std::pair(Role::PlaceholderText, Role::Base), std::pair(Role::PlaceholderText, Role::Window),
              std::pair(Role::HighlightedText, Role::Highlight),
              std::pair(Role::ToolTipText, Role::ToolTipBase), std::pair(Role::Link, Role::Window),
              std::pair(Role::LinkVisited, Role::Window)})
            EXPECT_GE(contrast(palette.color(group, text), palette.color(group, background)),
                      kMinTextContrast)
                << text << " on " << background;
        // The focus ring and the edges of controls.
        for (const auto line : {Role::Highlight, Role::Light})
            EXPECT_GE(contrast(palette.color(group, line), palette.color(group, Role::Base)),
                      kMinControlContrast)
                << line;
    }
}

TEST(Contrast, OfTheFocusIsSufficientOnEveryControl) {
    const ReadableWindow readable(desktops().at("light"), 1, 128);
    test::activate(*readable.window);
    QWidget* const photo = readable.window->rootView().imageView();
    photo->setFocus(Qt::OtherFocusReason);
    QApplication::processEvents();
    int controls = 0;
    for (QWidget* widget = photo->nextInFocusChain(); widget != photo; widget = widget->nextInFocusChain()) {
        if (!widget->isVisible() || !widget->isEnabled() || !(widget->focusPolicy() & Qt::TabFocus))
            continue;
        const QImage without = widget->grab().toImage();
        widget->setFocus(Qt::TabFocusReason);
        QApplication::processEvents();
        ASSERT_TRUE(widget->hasFocus()) << widget->accessibleName().toStdString();
        const QImage with = widget->grab().toImage();
        int changed = 0;
        for (int y = 0; y < with.height(); ++y)
            for (int x = 0; x < with.width(); ++x)
                changed += contrast(with.pixelColor(x, y), without.pixelColor(x, y)) >= kMinControlContrast;
        // At least three quarters of the control's perimeter must change.
        EXPECT_GE(changed, 2 * (with.width() + with.height()) * 3 / 4)
            << widget->accessibleName().toStdString();
        ++controls;
    }
    EXPECT_GE(controls, 11);
}

} // namespace
} // namespace complexion
