// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/actions.h"

#include "app/icons.h"

#include <QCoreApplication>

namespace complexion {

namespace {

using namespace Qt::StringLiterals;

QAction* makeAction(QObject* parent, const QString& text, const QString& icon,
                    const QList<QKeySequence>& shortcuts) {
    auto* action = new QAction(text, parent);
    if (!icon.isEmpty())
        action->setIcon(lineIcon(icon));
    action->setIconVisibleInMenu(false);
    action->setShortcuts(shortcuts);
    return action;
}

/// Enables or disables `action`. Its tooltip is `name`, the reason if it is disabled, and its shortcut.
void setAvailable(QAction* action, bool isAvailable, const QString& name, const QString& reason = {}) {
    action->setEnabled(isAvailable);
    const QString shortcut = action->shortcut().toString(QKeySequence::NativeText);
    const QString text = isAvailable || reason.isEmpty() ? name : u"%1: %2"_s.arg(name, reason);
    action->setToolTip(shortcut.isEmpty() ? text : u"%1 (%2)"_s.arg(text, shortcut));
}

/// `plain`, or `withStep` with the step's name if it has one.
QString commandName(StepName step, const QString& plain, const QString& withStep) {
    if (step == StepName::Unnamed)
        return plain;
    return withStep.arg(QCoreApplication::translate("Steps", titleOf(step)));
}

} // namespace

Actions::Actions(QObject* parent) : QObject(parent) {
    using Keys = QList<QKeySequence>;
    selectImage = makeAction(this, tr("Select image…"), u"select"_s, {QKeySequence::Open});
    resetImage = makeAction(this, tr("Reload image"), u"reload"_s, Keys{Qt::CTRL | Qt::Key_R, Qt::Key_F5});
    saveImage = makeAction(this, tr("Save image…"), u"save"_s, {QKeySequence::Save});
    close = makeAction(this, tr("Close"), {}, Keys{Qt::CTRL | Qt::Key_W});
    quit = makeAction(this, tr("Quit"), {}, Keys{Qt::CTRL | Qt::Key_Q});
    undo = makeAction(this, tr("Undo"), u"undo"_s, Keys{Qt::CTRL | Qt::Key_Z});
    redo =
        makeAction(this, tr("Redo"), u"redo"_s, Keys{Qt::CTRL | Qt::SHIFT | Qt::Key_Z, Qt::CTRL | Qt::Key_Y});
    zoomIn = makeAction(this, tr("Zoom in"), u"zoom-in"_s,
                        Keys{Qt::CTRL | Qt::Key_Plus, Qt::CTRL | Qt::Key_Equal});
    zoomOut = makeAction(this, tr("Zoom out"), u"zoom-out"_s, Keys{Qt::CTRL | Qt::Key_Minus});
    resetZoom = makeAction(this, tr("Reset zoom"), u"zoom-reset"_s, Keys{Qt::CTRL | Qt::Key_0});
    halfPixels = makeAction(this, tr("50 %"), {}, {});
    actualPixels = makeAction(this, tr("Actual pixels"), {}, Keys{Qt::CTRL | Qt::Key_1});
    doublePixels = makeAction(this, tr("200 %"), {}, Keys{Qt::CTRL | Qt::Key_2});
    compare = makeAction(this, tr("Show the original"), u"compare"_s, Keys{Qt::Key_B});
    showOriginal = makeAction(this, tr("Show the original"), {}, {});
    showOriginal->setCheckable(true);
    showPreview = makeAction(this, tr("Preview the repair"), {}, {});
    showPreview->setCheckable(true);
    showPreview->setChecked(true);
    largerArea = makeAction(this, tr("Larger edit area"), {}, Keys{Qt::Key_BracketRight});
    smallerArea = makeAction(this, tr("Smaller edit area"), {}, Keys{Qt::Key_BracketLeft});
    fitArea = makeAction(this, tr("Fit the edit area"), u"fit"_s, Keys{Qt::Key_F});
    higherThreshold = makeAction(this, tr("Higher threshold"), {}, Keys{Qt::Key_Period});
    lowerThreshold = makeAction(this, tr("Lower threshold"), {}, Keys{Qt::Key_Comma});
    fitArea->setIconText(tr("Fit"));
    fitArea->setObjectName(u"Fit"_s);
    nextBlemish = makeAction(this, tr("Next blemish"), {}, Keys{Qt::Key_N});
    previousBlemish = makeAction(this, tr("Previous blemish"), {}, Keys{Qt::SHIFT | Qt::Key_N});
    showBlemishes = makeAction(this, tr("Show blemishes"), {}, Keys{Qt::Key_M});
    showBlemishes->setCheckable(true);
    onlyStrongest = makeAction(this, tr("Only the ten strongest"), {}, Keys{Qt::SHIFT | Qt::Key_M});
    onlyStrongest->setCheckable(true);
    showBars = makeAction(this, tr("Show the controls"), {}, Keys{Qt::Key_H});
    showBars->setCheckable(true);
    showBars->setChecked(true);
    fullScreen = makeAction(this, tr("Full screen"), {}, Keys{Qt::Key_F11});
    fullScreen->setCheckable(true);
    videoTutorial = makeAction(this, tr("Video tutorial"), u"play"_s, {QKeySequence::HelpContents});
    about = makeAction(this, tr("About Complexion"), {}, {});

    quit->setMenuRole(QAction::QuitRole);
    about->setMenuRole(QAction::AboutRole);
    showState({});
}

void Actions::showState(const WindowState& state) {
    const QString noPhoto = tr("no photo is open");
    setAvailable(selectImage, true, tr("Select image"));
    setAvailable(resetImage, state.hasImage, tr("Reload image"), noPhoto);
    setAvailable(saveImage, state.hasImage, tr("Save image"), noPhoto);
    undo->setText(commandName(state.canUndo ? state.undoStep : StepName::Unnamed, tr("Undo"), tr("Undo %1")));
    redo->setText(commandName(state.canRedo ? state.redoStep : StepName::Unnamed, tr("Redo"), tr("Redo %1")));
    setAvailable(undo, state.canUndo, undo->text(), state.hasImage ? tr("nothing to undo") : noPhoto);
    setAvailable(redo, state.canRedo, redo->text(), state.hasImage ? tr("nothing to redo") : noPhoto);
    setAvailable(zoomIn, state.hasImage, tr("Zoom in"), noPhoto);
    setAvailable(zoomOut, state.hasImage, tr("Zoom out"), noPhoto);
    setAvailable(resetZoom, state.hasImage, tr("Reset zoom"), noPhoto);
    setAvailable(halfPixels, state.hasImage, tr("50 %"), noPhoto);
    setAvailable(actualPixels, state.hasImage, tr("Actual pixels"), noPhoto);
    setAvailable(doublePixels, state.hasImage, tr("200 %"), noPhoto);
    setAvailable(fitArea, state.hasImage, tr("Fit the edit area to the blemish under it"), noPhoto);
    setAvailable(nextBlemish, state.hasImage, tr("Next blemish"), noPhoto);
    setAvailable(previousBlemish, state.hasImage, tr("Previous blemish"), noPhoto);
    setAvailable(compare, state.hasImage, tr("Hold to see the original"), noPhoto);
    setAvailable(showOriginal, state.hasImage, tr("Show the original"), noPhoto);
    showOriginal->setChecked(state.isShowingOriginal);
    setAvailable(videoTutorial, state.hasTutorial, tr("Video tutorial"), tr("not included in this build"));
}

} // namespace complexion
