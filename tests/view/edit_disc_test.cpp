// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/edit_disc.h"

#include "tests/fakes/pictures.h"

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QPalette>

#include <gtest/gtest.h>

#include <cmath>
#include <functional>

namespace complexion {
namespace {

constexpr QSize kArea(400, 300);
constexpr PixelSize kPhoto{80, 60}; // five points per pixel
constexpr PixelPosition kPlace{30, 40};
constexpr QPointF kCentre(202.5, 152.5); // of that pixel on the screen

class EditDiscTest : public testing::Test {
protected:
    EditDiscTest() {
        view.resize(kArea);
        view.setFrame({0, 0, 400, 300});
        view.setImage(filled(kPhoto, kSkin));
        QPalette palette;
        palette.setColor(QPalette::Highlight, QColor(0xF0, 0xA5, 0x8C));
        view.setPalette(palette);
        disc = new EditDisc(&view);
    }

    QImage shown(double ratio = 1) {
        QImage screen((QSizeF(kArea) * ratio).toSize(), QImage::Format_RGB32);
        screen.setDevicePixelRatio(ratio);
        screen.fill(Qt::black);
        view.render(&screen, {}, {}, QWidget::DrawChildren);
        return screen;
    }

    static QColor colorAt(const QImage& screen, QPointF point) {
        const double ratio = screen.devicePixelRatio();
        return screen.pixelColor(static_cast<int>(std::floor(point.x() * ratio)),
                                 static_cast<int>(std::floor(point.y() * ratio)));
    }

    /// How much the screen differs at a point from one without a disc.
    int differenceAt(const QImage& screen, QPointF point) {
        const QColor color = colorAt(screen, point);
        return std::abs(color.red() - kSkin.red()) + std::abs(color.green() - kSkin.green()) +
               std::abs(color.blue() - kSkin.blue());
    }

    /// The share of a circle around the disc's centre on which something is drawn.
    double drawnShare(const QImage& screen, double radius) {
        constexpr int kPlaces = 360;
        int drawn = 0;
        for (int i = 0; i < kPlaces; ++i) {
            const double angle = 2 * M_PI * i / kPlaces;
            drawn += differenceAt(screen, kCentre + radius * QPointF(std::cos(angle), std::sin(angle))) > 60;
        }
        return static_cast<double>(drawn) / kPlaces;
    }

    CustomImageView view;
    EditDisc* disc = nullptr;
};

TEST_F(EditDiscTest, FollowsTheZoom) {
    disc->setPlace(kPlace, 8);
    EXPECT_EQ(disc->shownCentre(), kCentre);
    EXPECT_EQ(disc->shownRadius(), 40);
    view.setFrame({-400, -300, 1200, 900});
    EXPECT_EQ(disc->shownRadius(), 120);
    EXPECT_EQ(disc->shownCentre(), QPointF(-400 + 40.5 * 15, -300 + 30.5 * 15));
}

TEST_F(EditDiscTest, DrawsARingOfExactlyItsRadius) {
    for (const double ratio : {1.0, 2.0}) {
        disc->setPlace(kPlace, 8);
        const QImage screen = shown(ratio);
        // A dark line outside the radius and a light one inside, each 1.5 points wide.
        EXPECT_EQ(drawnShare(screen, 40.75), 1) << ratio;
        EXPECT_EQ(drawnShare(screen, 39.25), 1) << ratio;
        EXPECT_EQ(drawnShare(screen, 44), 0) << ratio;
        EXPECT_EQ(drawnShare(screen, 36), 0) << ratio;
        EXPECT_LT(colorAt(screen, kCentre + QPointF(40.75, 0)).lightness(), 110);
        EXPECT_GT(colorAt(screen, kCentre - QPointF(39.25, 0)).lightness(), 160);
    }
}

TEST_F(EditDiscTest, IsVisibleOnEverySkin) {
    for (const int level : {0, 30, 80, 128, 180, 230, 255}) {
        view.setImage(filled(kPhoto, grey(level)));
        disc->setPlace(std::nullopt, 8);
        disc->setPlace(kPlace, 8);
        const QImage screen = shown();
        int low = 255;
        int high = 0;
        for (int x = 240; x < 246; ++x) {
            low = std::min(low, qGray(screen.pixel(x, 152)));
            high = std::max(high, qGray(screen.pixel(x, 152)));
        }
        EXPECT_GT(high - low, 80) << level;
    }
}

TEST_F(EditDiscTest, ShowsACrosshairIfTheRingIsTiny) {
    disc->setPlace(kPlace, 1);
    const QImage tiny = shown();
    EXPECT_GT(differenceAt(tiny, kCentre + QPointF(12, 0)), 60);
    EXPECT_GT(differenceAt(tiny, kCentre - QPointF(0, 12)), 60);
    EXPECT_EQ(differenceAt(tiny, kCentre), 0);
    disc->setPlace(kPlace, 2);
    EXPECT_EQ(differenceAt(shown(), kCentre + QPointF(16, 0)), 0);
}

TEST_F(EditDiscTest, EveryRefusalHasItsOwnLook) {
    const auto with = [this](DiscLook look) {
        disc->setPlace(kPlace, 8);
        disc->setLook(look);
        return shown();
    };
    const QImage repairs = with(DiscLook::Repairs);
    const QImage idle = with(DiscLook::Idle);
    const QImage uneven = with(DiscLook::Uneven);
    const QImage overBorder = with(DiscLook::OverBorder);
    const auto lightAt = [](const QImage& screen, QPointF point) {
        return colorAt(screen, point).lightness() > 190;
    };
    const auto lightShare = [&](const QImage& screen, double fromDegrees, double toDegrees) {
        int light = 0;
        int all = 0;
        for (double degrees = fromDegrees; degrees < toDegrees; ++degrees, ++all) {
            const double angle = degrees * M_PI / 180;
            light += lightAt(screen, kCentre + 39.25 * QPointF(std::cos(angle), std::sin(angle)));
        }
        return static_cast<double>(light) / all;
    };
    EXPECT_LT(lightShare(idle, 0, 360), 0.8);
    EXPECT_GT(lightShare(idle, 0, 360), 0.2);
    EXPECT_GT(lightShare(uneven, 100, 260), 0.9); // solid on the left
    EXPECT_LT(lightShare(uneven, -80, 80), 0.8);
    EXPECT_GT(differenceAt(overBorder, kCentre + QPointF(15, -15)), 60); // struck through
    for (const QImage& other : {repairs, idle, uneven})
        EXPECT_EQ(differenceAt(other, kCentre + QPointF(15, -15)), 0);
}

TEST_F(EditDiscTest, DoesNotCoverTheBlemish) {
    disc->setPlace(kPlace, 8);
    disc->setLook(DiscLook::Repairs);
    const QImage screen = shown();
    for (int y = -25; y <= 25; ++y)
        for (int x = -25; x <= 25; ++x)
            ASSERT_EQ(differenceAt(screen, kCentre + QPointF(x, y)), 0);
}

TEST_F(EditDiscTest, OutlinesThePixelsThatWouldBeRepainted) {
    disc->setPlace(kPlace, 8);
    disc->setLook(DiscLook::Repairs);
    // 2 by 2 pixels, 10 by 10 points: the light line is just inside, the dark one just outside.
    disc->setOutlined({.area = {40, 30, 2, 2}, .bytes = {1, 1, 1, 1}});
    const QImage screen = shown();
    for (const QPointF inside : {QPointF(200, 155), QPointF(209, 155), QPointF(205, 150), QPointF(205, 159)})
        EXPECT_GT(differenceAt(screen, inside), 60) << inside.x() << ", " << inside.y();
    for (const QPointF outside : {QPointF(199, 155), QPointF(210, 155), QPointF(205, 149), QPointF(205, 160)})
        EXPECT_GT(differenceAt(screen, outside), 60) << outside.x() << ", " << outside.y();
    EXPECT_EQ(differenceAt(screen, {204, 154}), 0);
    EXPECT_EQ(differenceAt(screen, {197, 155}), 0);
}

TEST_F(EditDiscTest, MovingResetsTheOutlineAndTheLook) {
    disc->setPlace(kPlace, 8);
    disc->setLook(DiscLook::Idle);
    disc->setOutlined({.area = {40, 30, 1, 1}, .bytes = {1}});
    disc->setPlace(PixelPosition{30, 41}, 8);
    EXPECT_EQ(disc->look(), DiscLook::Plain);
    EXPECT_EQ(disc->outlined(), PixelMask{});
}

TEST_F(EditDiscTest, WithoutAPlaceNothingIsDrawn) {
    const QImage without = shown();
    disc->setPlace(kPlace, 8);
    EXPECT_NE(shown(), without);
    disc->setPlace(std::nullopt, 8);
    EXPECT_EQ(shown(), without);
}

TEST_F(EditDiscTest, IsTransparentForTheMouseAndCoversTheView) {
    EXPECT_TRUE(disc->testAttribute(Qt::WA_TransparentForMouseEvents));
    view.resize(500, 200);
    QApplication::sendPostedEvents();
    view.show();
    EXPECT_EQ(disc->geometry(), view.rect());
}

TEST_F(EditDiscTest, ThePickedColorIsShownAroundThePlace) {
    disc->setPlace(kPlace, 8);
    disc->setSwatch(QColor(10, 200, 30));
    const QImage screen = shown();
    EXPECT_EQ(colorAt(screen, kCentre + QPointF(19, 0)), QColor(10, 200, 30));
    EXPECT_EQ(differenceAt(screen, kCentre + QPointF(8, 3)), 0);
}

TEST_F(EditDiscTest, ASecondRingIsFainterThanTheDisc) {
    disc->setPlace(kPlace, 10);
    disc->setSecondRing(DiscRing{.place = kPlace, .radius = 20});
    const QImage screen = shown();
    EXPECT_GT(drawnShare(screen, 100.75), 0.8);
    EXPECT_LT(differenceAt(screen, kCentre + QPointF(100.75, 0)),
              differenceAt(screen, kCentre + QPointF(50.75, 0)));
    disc->setPlace(kPlace, 11);
    EXPECT_LT(drawnShare(shown(), 100.75), 0.05);
}

TEST_F(EditDiscTest, ACaptionIsUnderTheRingsOrAboveThemAndInsideTheView) {
    disc->setPlace(kPlace, 10);
    disc->setCaption(QStringLiteral("F fits the ring"));
    EXPECT_GT(differenceAt(shown(), kCentre + QPointF(0, 50 + 8 + 6)), 100);
    disc->setPlace(PixelPosition{52, 40}, 5);
    EXPECT_EQ(disc->caption(), QString());
    disc->setCaption(QStringLiteral("F fits the ring"));
    EXPECT_GT(differenceAt(shown(), disc->shownCentre() - QPointF(0, 25 + 8 + 6)), 100);
    disc->setPlace(PixelPosition{30, 0}, 5);
    disc->setCaption(QStringLiteral("F fits the ring"));
    EXPECT_GT(differenceAt(shown(), QPointF(3, disc->shownCentre().y() + 25 + 8 + 8)), 100);
}

} // namespace
} // namespace complexion
