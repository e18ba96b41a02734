// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/look.h"
#include "app/main_window.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>

#include <gmock/gmock.h>

namespace complexion {
namespace {

constexpr double kFontScales[] = {1, 1.5};

const std::vector<QSize>& windowSizes() {
    static const std::vector<QSize> sizes = {{900, 600},  {901, 617},  {960, 600},   {1024, 768},
                                             {1150, 640}, {1280, 800}, {1920, 1200}, {900, 1600},
                                             {2560, 600}, {3840, 2160}};
    return sizes;
}

std::string describe(const QWidget& widget) {
    const QString name = widget.objectName().isEmpty() ? widget.accessibleName() : widget.objectName();
    return std::string(widget.metaObject()->className()) + " " + name.toStdString();
}

/// Calls `check` for the window at every size and font scale.
template <class Check>
void forEveryWindow(const Check& check) {
    for (const double scale : kFontScales) {
        applyLook(*qApp, scale);
        MainWindow window;
        window.contents().boxEditSettings->comboEffect->addItems({QStringLiteral("Transfer")});
        window.contents().boxEditSettings->comboRepair->addItems({QStringLiteral("Flat color")});
        window.show();
        for (const QSize& size : windowSizes()) {
            window.resize(size);
            QApplication::sendPostedEvents();
            ASSERT_EQ(window.size(), size);
            SCOPED_TRACE(testing::Message()
                         << size.width() << "x" << size.height() << ", font scale " << scale);
            check(window);
        }
    }
    applyLook(*qApp, 1);
}

/// All boxes, without the card for unfinished work if it is hidden.
std::vector<Box*> boxes(const MainWindow& window) {
    std::vector<Box*> found;
    for (Box* box : window.findChildren<Box*>())
        if (box != window.contents().boxContinue || !box->isHidden())
            found.push_back(box);
    return found;
}

TEST(WindowLayout, BoxesDoNotOverlap) {
    forEveryWindow([](MainWindow& window) {
        const std::vector<Box*> all = boxes(window);
        ASSERT_EQ(all.size(), 12U);
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
                    << describe(*widget);
    });
}

TEST(WindowLayout, NoTextIsClipped) {
    forEveryWindow([](MainWindow& window) {
        for (const Box* box : boxes(window)) {
            for (const QLabel* label : box->findChildren<QLabel*>()) {
                const QSize text = label->fontMetrics().size(0, label->text());
                EXPECT_GE(label->contentsRect().width(), text.width()) << label->text().toStdString();
                EXPECT_GE(label->contentsRect().height(), text.height()) << label->text().toStdString();
            }
            for (const QAbstractButton* button : box->findChildren<QAbstractButton*>()) {
                EXPECT_GE(button->width(), button->sizeHint().width()) << describe(*button);
                EXPECT_GE(button->height(), button->sizeHint().height()) << describe(*button);
            }
        }
        const SettingsBar& bar = *window.contents().boxEditSettings;
        EXPECT_GE(bar.comboEffect->width(), bar.comboEffect->sizeHint().width());
        for (const QWidget* field :
             {static_cast<QWidget*>(bar.comboEffect), static_cast<QWidget*>(bar.textFieldEditAreaSize)})
            EXPECT_GE(field->height(), field->fontMetrics().height() + 4) << describe(*field);
        const int digits = bar.textFieldEditAreaSize->fontMetrics().horizontalAdvance(QStringLiteral("500"));
        EXPECT_GE(bar.textFieldEditAreaSize->width(), digits + 20);
    });
}

TEST(WindowLayout, TheSmallestWindowIs900By600) {
    for (const double scale : kFontScales) {
        applyLook(*qApp, scale);
        const MainWindow window;
        EXPECT_EQ(window.minimumSize(), QSize(900, 600)) << scale;
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
          "Show the original", "Edit area size", "Edit area size in steps", "Pick a color from the photo",
          "Threshold", "Autodetect Color", "Custom color", "Repair", "Effect", "Photo", "Video tutorial"})
        EXPECT_THAT(names, testing::Contains(name).Times(1));
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
