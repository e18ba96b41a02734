// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/menus.h"

#include "app/settings_bar.h"

#include <QActionGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QMenu>
#include <QMenuBar>
#include <QToolButton>

namespace complexion {

namespace {

class MenuTexts {
    Q_DECLARE_TR_FUNCTIONS(Menus)
};

} // namespace

Menus::Menus(QMenuBar& bar, const Actions& actions, const SettingsBar& settings) {
    QMenu* const file = bar.addMenu(MenuTexts::tr("&File"));
    file->addAction(actions.selectImage);
    recentPhotos = new RecentPhotos(file->addMenu(MenuTexts::tr("Open again")));
    file->addActions({actions.resetImage, actions.saveImage});
    file->addSeparator();
    file->addActions({actions.close, actions.quit});

    QMenu* const edit = bar.addMenu(MenuTexts::tr("&Edit"));
    edit->addActions({actions.undo, actions.redo});
    edit->addSeparator();
    edit->addActions({actions.largerArea, actions.smallerArea, actions.fitArea});
    edit->addActions({actions.higherThreshold, actions.lowerThreshold});
    edit->addSeparator();
    repair = edit->addMenu(MenuTexts::tr("Repair"));
    addSwitch(*edit, MenuTexts::tr("Autodetect color"), settings.checkAutodetectColor);
    addSwitch(*edit, MenuTexts::tr("Pick a color from the photo"), settings.pipette);
    effect = edit->addMenu(MenuTexts::tr("Effect"));

    QMenu* const view = bar.addMenu(MenuTexts::tr("&View"));
    view->addActions({actions.zoomIn, actions.zoomOut, actions.resetZoom, actions.halfPixels,
                      actions.actualPixels, actions.doublePixels});
    view->addSeparator();
    view->addActions({actions.showOriginal, actions.showPreview});
    view->addSeparator();
    view->addActions(
        {actions.nextBlemish, actions.previousBlemish, actions.showBlemishes, actions.onlyStrongest});
    view->addSeparator();
    view->addActions({actions.showBars, actions.fullScreen});

    QMenu* const help = bar.addMenu(MenuTexts::tr("&Help"));
    help->addActions({actions.videoTutorial, actions.about});
}

void addChoices(QMenu& menu, QComboBox* popUp) {
    auto* const choices = new QActionGroup(&menu);
    for (int i = 0; i < popUp->count(); ++i) {
        QAction* const choice = choices->addAction(popUp->itemText(i));
        choice->setCheckable(true);
        QObject::connect(choice, &QAction::triggered, popUp, [popUp, i] {
            popUp->setCurrentIndex(i);
            Q_EMIT popUp->activated(i);
        });
    }
    menu.addActions(choices->actions());
    const auto follow = [choices](int index) {
        if (index >= 0 && index < choices->actions().size())
            choices->actions().at(index)->setChecked(true);
    };
    QObject::connect(popUp, &QComboBox::currentIndexChanged, choices, follow);
    follow(popUp->currentIndex());
}

void addSwitch(QMenu& menu, const QString& text, QAbstractButton* control) {
    QAction* const item = menu.addAction(text);
    item->setCheckable(true);
    const auto follow = [item, control] {
        item->setChecked(control->isChecked());
        item->setEnabled(control->isEnabled());
    };
    QObject::connect(item, &QAction::triggered, control, [follow, control] {
        control->click();
        follow();
    });
    QObject::connect(&menu, &QMenu::aboutToShow, item, follow);
    follow();
}

} // namespace complexion
