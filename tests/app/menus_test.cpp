// SPDX-License-Identifier: GPL-3.0-or-later

// The menus have every command, and the items act as the controls do.
#include "app/menus.h"

#include "tests/app/window_fixture.h"
#include "tests/fakes/active_window.h"

#include <QAccessible>
#include <QMenu>
#include <QMenuBar>
#include <QTest>
#include <QToolButton>

#include <gmock/gmock.h>

#include <cmath>
#include <functional>
#include <map>
#include <set>

namespace complexion {
namespace {

using namespace Qt::StringLiterals;

class MenusTest : public WindowTest {
protected:
    /// Calls `visit` for every item of the menus and their submenus.
    static void forEachItem(const QList<QAction*>& items, const std::function<void(QAction*)>& visit) {
        for (QAction* item : items) {
            visit(item);
            if (item->menu())
                forEachItem(item->menu()->actions(), visit);
        }
    }

    QAction* item(const QString& text) const {
        QAction* found = nullptr;
        forEachItem(window.menuBar()->actions(), [&](QAction* each) {
            if (each->text() == text)
                found = each;
        });
        EXPECT_TRUE(found) << text.toStdString();
        return found;
    }

    QStringList recentPhotos() const {
        QStringList names;
        for (const QAction* each : item(u"Open again"_s)->menu()->actions())
            names << each->text();
        return names;
    }

    std::filesystem::path photoNamed(const std::string& name) {
        const std::filesystem::path path = platform.photos() / name;
        std::filesystem::create_directories(path.parent_path());
        EXPECT_TRUE(ImageTools::SaveImage(filled({40, 30}, kSkin), path, "png"));
        return path;
    }
};

TEST_F(MenusTest, EveryCommandIsInAMenuOnce) {
    std::multiset<const QAction*> items;
    forEachItem(window.menuBar()->actions(), [&](QAction* each) { items.insert(each); });
    int commands = 0;
    for (const QAction* action : window.actions().findChildren<QAction*>()) {
        if (action == window.actions().compare) // showOriginal is its menu item
            continue;
        EXPECT_EQ(items.count(action), 1U) << action->text().toStdString();
        ++commands;
    }
    EXPECT_GE(commands, 25);
}

TEST_F(MenusTest, NoShortcutIsUsedTwice) {
    std::map<QString, int> counts;
    forEachItem(window.menuBar()->actions(), [&](QAction* each) {
        for (const QKeySequence& keys : each->shortcuts())
            ++counts[keys.toString()];
    });
    EXPECT_GE(counts.size(), 20U);
    for (const auto& [keys, count] : counts)
        EXPECT_EQ(count, 1) << keys.toStdString();
}

TEST_F(MenusTest, EffectsAndRepairsAreChosenAsInThePopUps) {
    open();
    item(u"Noir"_s)->trigger();
    EXPECT_EQ(bar().comboEffect->currentText(), u"Noir"_s);
    EXPECT_TRUE(window.isWindowModified());
    EXPECT_TRUE(item(u"Noir"_s)->isChecked());
    bar().comboEffect->setCurrentIndex(0);
    EXPECT_TRUE(item(u"Normal"_s)->isChecked());
    EXPECT_FALSE(item(u"Noir"_s)->isChecked());
    item(u"Natural"_s)->trigger();
    EXPECT_EQ(controller->editSettings().style, RepairStyle::Natural);
}

TEST_F(MenusTest, SettingsThatAreSwitchedFollowTheirControls) {
    QMenu* const edit = window.menuBar()->actions().at(1)->menu();
    item(u"Autodetect color"_s)->trigger();
    EXPECT_FALSE(bar().checkAutodetectColor->isChecked());
    bar().checkAutodetectColor->setChecked(true);
    Q_EMIT edit->aboutToShow();
    EXPECT_TRUE(item(u"Autodetect color"_s)->isChecked());
    EXPECT_FALSE(item(u"Pick a color from the photo"_s)->isEnabled());
}

TEST_F(MenusTest, ThresholdItemsStepTheThreshold) {
    item(u"Higher threshold"_s)->trigger();
    EXPECT_EQ(bar().sliderThreshold->floatValue(), 11.0F);
    item(u"Lower threshold"_s)->trigger();
    item(u"Lower threshold"_s)->trigger();
    EXPECT_EQ(bar().sliderThreshold->floatValue(), 9.0F);
}

TEST_F(MenusTest, TheOriginalCanBeShownWithoutHoldingAKey) {
    open();
    QAction* const original = item(u"Show the original"_s);
    original->trigger();
    EXPECT_TRUE(controller->isShowingSource());
    EXPECT_TRUE(original->isChecked());
    original->trigger();
    EXPECT_FALSE(controller->isShowingSource());
}

TEST_F(MenusTest, TheHeldKeyPressesItsButton) {
    open();
    test::activate(window);
    auto* const button = window.contents().boxCompare->findChild<QToolButton*>();
    const auto isPressed = [button] {
        return QAccessible::queryAccessibleInterface(button)->state().pressed != 0;
    };
    EXPECT_FALSE(isPressed());
    QTest::keyPress(&photo(), Qt::Key_B);
    EXPECT_TRUE(controller->isShowingSource());
    EXPECT_TRUE(isPressed());
    QTest::keyRelease(&photo(), Qt::Key_B);
    EXPECT_FALSE(controller->isShowingSource());
    EXPECT_FALSE(isPressed());
}

TEST_F(MenusTest, PhotosOfThisRunCanBeOpenedAgain) {
    EXPECT_FALSE(item(u"Open again"_s)->isEnabled());
    const std::filesystem::path one = photoNamed("one.png");
    const std::filesystem::path two = photoNamed("a & b.png");
    controller->OpenFile(one);
    controller->OpenFile(two);
    EXPECT_TRUE(item(u"Open again"_s)->isEnabled());
    EXPECT_EQ(recentPhotos(), QStringList({u"a && b.png"_s, u"one.png"_s}));

    dialogs.expectQuestion(kSelectQuestion, kSecondButton);
    item(u"one.png"_s)->trigger();
    EXPECT_EQ(controller->originalImagePath, two);
    dialogs.expectQuestion(kSelectQuestion, kFirstButton);
    item(u"one.png"_s)->trigger();
    EXPECT_EQ(controller->originalImagePath, one);
    EXPECT_EQ(recentPhotos(), QStringList({u"one.png"_s, u"a && b.png"_s}));
}

TEST_F(MenusTest, RecentPhotosOfOneNameAreToldApartAndTheOldestAreDropped) {
    controller->OpenFile(photoNamed("first/face.png"));
    controller->OpenFile(photoNamed("second/face.png"));
    EXPECT_EQ(recentPhotos(), QStringList({u"face.png (second)"_s, u"face.png (first)"_s}));
    for (std::size_t i = 0; i < RecentPhotos::kMaxPhotos; ++i)
        controller->OpenFile(photoNamed(std::to_string(i) + ".png"));
    EXPECT_EQ(recentPhotos().size(), static_cast<qsizetype>(RecentPhotos::kMaxPhotos));
    EXPECT_FALSE(recentPhotos().contains(u"face.png (first)"_s));
}

TEST_F(MenusTest, CloseClosesTheWindow) {
    item(u"Close"_s)->trigger();
    EXPECT_FALSE(window.isVisible());
}

TEST_F(MenusTest, FullScreenIsEnteredAndLeft) {
    item(u"Full screen"_s)->trigger();
    EXPECT_TRUE(window.isFullScreen());
    item(u"Full screen"_s)->trigger();
    EXPECT_FALSE(window.isFullScreen());
    window.showFullScreen(); // as a window manager does
    EXPECT_TRUE(item(u"Full screen"_s)->isChecked());
}

TEST_F(MenusTest, TheControlsCanBeHiddenAndTheVisibleAreaStays) {
    open();
    const Frame frame = photo().frame();
    item(u"Show the controls"_s)->trigger();
    EXPECT_FALSE(bar().isVisible());
    EXPECT_FALSE(window.contents().boxUndo->isVisible());
    EXPECT_FALSE(window.contents().boxZoom->isVisible());
    EXPECT_EQ(photo().frame(), frame);
    EXPECT_EQ(photo().geometry(), window.rootView().rect());
    window.resize(900, 650);
    EXPECT_FALSE(bar().isVisible());
    item(u"Show the controls"_s)->trigger();
    EXPECT_TRUE(bar().isVisible());
    EXPECT_TRUE(window.contents().boxUndo->isVisible());
}

TEST_F(MenusTest, TheRailShowsTheZoomAndOpensAMenuOfOthers) {
    const auto& zoom = *window.contents().zoom;
    EXPECT_FALSE(zoom.isEnabled());
    open();
    EXPECT_TRUE(zoom.isEnabled());
    QStringList scales;
    for (const QAction* each : zoom.menu()->actions())
        scales << each->text();
    EXPECT_EQ(scales, QStringList({u"Reset zoom"_s, u"50 %"_s, u"Actual pixels"_s, u"200 %"_s}));

    const double fitted = *controller->shownScale();
    EXPECT_EQ(zoom.text(), u"%1 %"_s.arg(std::lround(fitted * 100)));
    EXPECT_EQ(zoom.accessibleDescription(), zoom.text());
    ASSERT_GT(fitted, 2); // so that 100 and 200 % are smaller than a fitted photo, which is the least
    window.actions().doublePixels->trigger();
    EXPECT_EQ(*controller->shownScale(), fitted);

    const std::filesystem::path large = platform.photos() / "large.png";
    ASSERT_TRUE(ImageTools::SaveImage(filled({4000, 3000}, kSkin), large, "png"));
    controller->OpenFile(large);
    for (const auto& [action, text] : {std::pair(window.actions().halfPixels, u"50 %"_s),
                                       {window.actions().actualPixels, u"100 %"_s},
                                       {window.actions().doublePixels, u"200 %"_s}}) {
        action->trigger();
        EXPECT_EQ(zoom.text(), text);
    }
}

} // namespace
} // namespace complexion
