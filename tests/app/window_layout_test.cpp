// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/look.h"
#include "app/main_window.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QToolButton>
#include <QTranslator>

#include <gmock/gmock.h>

#include <map>

namespace complexion {
namespace {

constexpr double kFontScales[] = {1, 1.5, 2};

const std::vector<QSize>& windowSizes() {
    static const std::vector<QSize> sizes = {
        {640, 480},  {641, 620},  {700, 480},  {640, 900},   {800, 600},  {900, 600},  {960, 540},
        {1024, 768}, {1150, 640}, {1280, 800}, {1920, 1200}, {900, 1600}, {2560, 600}, {3840, 2160},
    };
    return sizes;
}

/// The translations of the program's texts; the first one is English.
std::vector<QString> languages() {
    std::vector<QString> all = {QString()};
    for (const QString& file : QDir(QStringLiteral(":/i18n")).entryList())
        all.push_back(file);
    return all;
}

std::string describe(const QWidget& widget) {
    const QString name = widget.objectName().isEmpty() ? widget.accessibleName() : widget.objectName();
    return std::string(widget.metaObject()->className()) + " " + name.toStdString();
}

/// One control of each group of settings.
std::vector<QWidget*> groupsOf(const SettingsBar& bar) {
    return {bar.textFieldEditAreaSize, bar.sliderThreshold, bar.comboRepair, bar.checkAutodetectColor,
            bar.comboEffect};
}

/// Calls `check` for the window at every size, font scale and language, with every page of the settings.
template <class Check>
void forEveryWindow(const Check& check) {
    for (const QString& language : languages())
        for (const double scale : kFontScales) {
            QTranslator translator;
            ASSERT_TRUE(language.isEmpty() || translator.load(QStringLiteral(":/i18n/") + language));
            QApplication::installTranslator(&translator);
            applyLook(*qApp, scale);
            MainWindow window;
            SettingsBar& bar = *window.contents().boxEditSettings;
            for (const char* title : kEffectTitles)
                bar.comboEffect->addItem(QCoreApplication::translate("Effects", title));
            for (const char* title : kRepairTitles)
                bar.comboRepair->addItem(QCoreApplication::translate("Repairs", title));
            window.show();
            for (const QSize& size : windowSizes()) {
                window.resize(size);
                QApplication::sendPostedEvents();
                ASSERT_EQ(window.size(), size);
                SCOPED_TRACE(testing::Message() << size.width() << "x" << size.height() << ", font scale "
                                                << scale << ", " << language.toStdString());
                for (std::size_t page = 0; page < groupsOf(bar).size(); ++page) {
                    check(window);
                    if (bar.moreSettings->isHidden())
                        break;
                    bar.moreSettings->click();
                    QApplication::sendPostedEvents();
                }
            }
        }
    applyLook(*qApp, 1);
}

/// The boxes that are shown.
std::vector<Box*> boxes(const MainWindow& window) {
    std::vector<Box*> found;
    for (Box* box : window.findChildren<Box*>())
        if (!box->isHidden())
            found.push_back(box);
    return found;
}

TEST(WindowLayout, BoxesDoNotOverlap) {
    forEveryWindow([](MainWindow& window) {
        const std::vector<Box*> all = boxes(window);
        ASSERT_EQ(all.size(), window.contents().boxHelp->isHidden() ? 12U : 13U);
        for (std::size_t i = 0; i < all.size(); ++i)
            for (std::size_t j = i + 1; j < all.size(); ++j)
                EXPECT_FALSE(all[i]->geometry().intersects(all[j]->geometry()))
                    << describe(*all[i]) << " and " << describe(*all[j]);
    });
}

TEST(WindowLayout, BoxesAreInsideTheRootView) {
    forEveryWindow([](MainWindow& window) {
        for (const Box* box : boxes(window))
            EXPECT_TRUE(window.rootView().rect().contains(box->geometry())) << describe(*box);
    });
}

TEST(WindowLayout, ControlsAreInsideTheirParents) {
    forEveryWindow([](MainWindow& window) {
        for (const Box* box : boxes(window))
            for (const QWidget* widget : box->findChildren<QWidget*>())
                EXPECT_TRUE(!widget->isVisible() ||
                            widget->parentWidget()->rect().contains(widget->geometry()))
                    << describe(*widget) << " in " << describe(*widget->parentWidget()) << " "
                    << testing::PrintToString(widget->geometry().bottomRight().x()) << " "
                    << widget->geometry().bottom() << " of " << widget->parentWidget()->width() << " "
                    << widget->parentWidget()->height();
    });
}

TEST(WindowLayout, NoTextIsClipped) {
    forEveryWindow([](MainWindow& window) {
        for (const Box* box : boxes(window)) {
            for (const QLabel* label : box->findChildren<QLabel*>()) {
                if (!label->isVisible())
                    continue;
                const QRect wide(0, 0, label->wordWrap() ? label->contentsRect().width() : QWIDGETSIZE_MAX,
                                 QWIDGETSIZE_MAX);
                const QSize text =
                    label->fontMetrics().boundingRect(wide, Qt::TextWordWrap, label->text()).size();
                EXPECT_GE(label->contentsRect().width(), text.width()) << label->text().toStdString();
                EXPECT_GE(label->contentsRect().height(), text.height()) << label->text().toStdString();
            }
            for (const QAbstractButton* button : box->findChildren<QAbstractButton*>()) {
                if (!button->isVisible())
                    continue;
                EXPECT_GE(button->width(), button->sizeHint().width()) << describe(*button);
                EXPECT_GE(button->height(), button->sizeHint().height()) << describe(*button);
            }
        }
        const SettingsBar& bar = *window.contents().boxEditSettings;
        for (const QComboBox* popUp : {bar.comboEffect, bar.comboRepair})
            EXPECT_TRUE(!popUp->isVisible() || popUp->width() >= popUp->sizeHint().width())
                << describe(*popUp);
        for (const QWidget* field :
             {static_cast<QWidget*>(bar.comboEffect), static_cast<QWidget*>(bar.textFieldEditAreaSize)})
            EXPECT_GE(field->height(), field->fontMetrics().height() + 4) << describe(*field);
        const int digits = bar.textFieldEditAreaSize->fontMetrics().horizontalAdvance(QStringLiteral("500"));
        EXPECT_GE(bar.textFieldEditAreaSize->width(), digits + 20);
    });
}

TEST(WindowLayout, TheButtonForMoreSettingsIsShownOnlyIfTheyDoNotFit) {
    MainWindow window;
    window.show();
    SettingsBar& bar = *window.contents().boxEditSettings;
    window.resize(1400, 900);
    QApplication::sendPostedEvents();
    EXPECT_TRUE(bar.moreSettings->isHidden());

    applyLook(*qApp, 2);
    MainWindow large;
    large.show();
    large.resize(640, 480);
    QApplication::sendPostedEvents();
    SettingsBar& pages = *large.contents().boxEditSettings;
    EXPECT_FALSE(pages.moreSettings->isHidden());
    std::map<QWidget*, int> shown;
    for (int page = 0; page < 5; ++page) {
        for (QWidget* control : groupsOf(pages))
            shown[control] += control->isVisible() ? 1 : 0;
        pages.moreSettings->click();
        QApplication::sendPostedEvents();
    }
    for (const auto& [control, count] : shown)
        EXPECT_GT(count, 0) << describe(*control);
    applyLook(*qApp, 1);
}

TEST(WindowLayout, TheSmallestWindowIs640By480) {
    for (const double scale : kFontScales) {
        applyLook(*qApp, scale);
        const MainWindow window;
        EXPECT_EQ(window.minimumSize(), QSize(640, 480)) << scale;
    }
    applyLook(*qApp, 1);
}

TEST(WindowLayout, ThePhotoFillsTheRootView) {
    forEveryWindow([](MainWindow& window) {
        const RootView& root = window.rootView();
        EXPECT_EQ(root.imageView()->geometry(), root.rect());
        EXPECT_EQ(root.size(), QSize(window.width(), window.height() - window.menuBar()->height()));
    });
}

TEST(WindowLayout, BoxesAreAboveThePhoto) {
    const MainWindow window;
    const QObjectList& children = window.contents().boxHint->parentWidget()->children();
    for (Box* box : boxes(window))
        EXPECT_GT(children.indexOf(box), children.indexOf(window.rootView().imageView())) << describe(*box);
}

TEST(WindowLayout, EveryControlHasItsAccessibleName) {
    const MainWindow window;
    std::vector<std::string> names;
    for (const QWidget* widget : window.findChildren<QWidget*>())
        names.push_back(widget->accessibleName().toStdString());
    for (const char* name :
         {"Select image", "Reload image", "Save image", "Undo", "Redo", "Zoom in", "Zoom out", "Reset zoom",
          "Show the original", "Zoom", "Edit area size", "Pick a color from the photo", "Threshold",
          "Autodetect Color", "Custom color", "Repair", "Effect", "Photo", "Video tutorial"})
        EXPECT_THAT(names, testing::Contains(name).Times(1));
}

TEST(WindowLayout, AMenuBarThatIsTooNarrowShowsTheButtonForTheOtherMenus) {
    MainWindow window;
    window.menuBar()->setMaximumWidth(100);
    window.show();
    const auto* const button = window.menuBar()->findChild<QToolButton*>();
    ASSERT_TRUE(button && button->isVisible());
    const QImage icon = button->icon().pixmap(20, 20).toImage();
    QImage blank(icon.size(), icon.format());
    blank.fill(Qt::transparent);
    EXPECT_NE(icon, blank);
}

TEST(WindowLayout, EveryOutletIsFoundByItsName) {
    const MainWindow window;
    for (const char* name :
         {"imageView", "boxHint", "boxHelp", "boxSelectImage", "boxResetImage", "boxSaveImage", "boxZoomIn",
          "boxZoomOut", "boxResetZoom", "boxUndo", "boxRedo", "boxEditSettings", "checkAutodetectColor",
          "colorWellCustomColor", "textFieldEditAreaSize", "stepperEditAreaSize", "sliderThreshold",
          "comboRepair", "comboEffect"})
        EXPECT_EQ(window.findChildren<QWidget*>(QString::fromLatin1(name)).size(), 1) << name;
}

} // namespace
} // namespace complexion
