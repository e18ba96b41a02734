// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/look.h"

#include "app/icons.h"
#include "view/text_font.h"

#include <QApplication>
#include <QFile>
#include <QPalette>
#include <QProxyStyle>
#include <QScreen>

#include <algorithm>

// Q_INIT_RESOURCE must be called outside of any namespace. It is needed because the resources are in a static
// library.
// NOLINTNEXTLINE(misc-use-anonymous-namespace)
static void loadResources() {
    Q_INIT_RESOURCE(app);
}

namespace complexion {

namespace {

using namespace Qt::StringLiterals;

/// Pixels of a desktop's default text size, 10 points at 96 dpi.
constexpr double kUsualSystemTextSize = 40.0 / 3;
constexpr double kPointsPerInch = 72;

constexpr QRgb kText = 0xFFF2F2F2;
constexpr QRgb kSecondaryText = 0xFFB4B4BA;
constexpr QRgb kDisabledText = 0x66F2F2F2; // 40 %
constexpr QRgb kPanel = 0xFF141416;
constexpr QRgb kDialog = 0xFF1E1E21;
constexpr QRgb kButton = 0xFF2C2C31;
constexpr QRgb kEdge = 0xFF707078; // 3:1 against the panel
constexpr QRgb kAccent = 0xFFF0A58C;

QPalette darkRoom() {
    QPalette palette;
    const auto set = [&palette](QPalette::ColorRole role, QRgb color) {
        palette.setColor(role, QColor::fromRgba(color));
    };
    set(QPalette::Window, kDialog);
    set(QPalette::WindowText, kText);
    set(QPalette::Base, kPanel);
    set(QPalette::AlternateBase, kDialog);
    set(QPalette::Text, kText);
    set(QPalette::PlaceholderText, kSecondaryText);
    set(QPalette::Button, kButton);
    set(QPalette::ButtonText, kText);
    set(QPalette::BrightText, kText);
    set(QPalette::Light, kEdge);
    set(QPalette::Midlight, 0xFF3A3A40);
    set(QPalette::Mid, 0xFF3A3A40);
    set(QPalette::Dark, 0xFF0E0E10);
    set(QPalette::Shadow, 0xFF000000);
    set(QPalette::Highlight, kAccent);
    set(QPalette::HighlightedText, kPanel);
    set(QPalette::Link, kAccent);
    set(QPalette::LinkVisited, kAccent);
    set(QPalette::ToolTipBase, kButton);
    set(QPalette::ToolTipText, kText);
    for (const auto role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::PlaceholderText})
        palette.setColor(QPalette::Disabled, role, QColor::fromRgba(kDisabledText));
    return palette;
}

/// Fusion, with the behaviour that other desktop toolkits agree on.
class DarkRoomStyle : public QProxyStyle {
public:
    DarkRoomStyle() : QProxyStyle(u"Fusion"_s) {}

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* data) const override {
        switch (hint) {
        case SH_Slider_AbsoluteSetButtons: // a click on the groove moves the handle there
            return Qt::LeftButton;
        case SH_ComboBox_Popup: // a plain list below the box, not centred on the current item
        case SH_DialogButtonBox_ButtonsHaveIcons:
        case SH_EtchDisabledText:
            return 0;
        default:
            return QProxyStyle::styleHint(hint, option, widget, data);
        }
    }

    /// Every menu bar has a button for the menus that it has no room for. Fusion reads its icon from a file,
    /// for which all plug-ins for picture files are loaded.
    QIcon standardIcon(StandardPixmap kind, const QStyleOption* option,
                       const QWidget* widget) const override {
        if (kind == SP_ToolBarHorizontalExtensionButton)
            return lineIcon(u"more"_s);
        return QProxyStyle::standardIcon(kind, option, widget);
    }
};

} // namespace

double systemFontScale() {
    // QFontInfo would load a font that is never painted.
    const QFont font = QApplication::font();
    const double dotsPerPoint = QGuiApplication::primaryScreen()->logicalDotsPerInchY() / kPointsPerInch;
    const double size = font.pixelSize() > 0 ? font.pixelSize() : font.pointSizeF() * dotsPerPoint;
    return std::clamp(size / kUsualSystemTextSize, 1.0, 2.0);
}

void applyLook(QApplication& application, double fontScale) {
    loadResources();
    QApplication::setStyle(new DarkRoomStyle); // takes ownership
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks): reported for the line above
    QApplication::setPalette(darkRoom());
    QApplication::setFont(applicationFont(fontScale));
    QFile sheet(u":/look.qss"_s);
    if (sheet.open(QIODevice::ReadOnly))
        application.setStyleSheet(QString::fromUtf8(sheet.readAll()));
}

} // namespace complexion
