// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/actions.h"

#include "app/icons.h"

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

/// `whatOrWhyNot` with the action's shortcut.
void offer(QAction* action, bool possible, const QString& what, const QString& whyNot = {}) {
    action->setEnabled(possible);
    const QString shortcut = action->shortcut().toString(QKeySequence::NativeText);
    const QString text = possible || whyNot.isEmpty() ? what : u"%1: %2"_s.arg(what, whyNot);
    action->setToolTip(shortcut.isEmpty() ? text : u"%1 (%2)"_s.arg(text, shortcut));
}

} // namespace

Actions::Actions(QObject* parent) : QObject(parent) {
    using Keys = QList<QKeySequence>;
    selectImage = makeAction(this, u"Select image…"_s, u"select"_s, {QKeySequence::Open});
    resetImage = makeAction(this, u"Reload image"_s, u"reload"_s, Keys{Qt::CTRL | Qt::Key_R, Qt::Key_F5});
    saveImage = makeAction(this, u"Save image…"_s, u"save"_s, {QKeySequence::Save});
    quit = makeAction(this, u"Quit"_s, {}, Keys{Qt::CTRL | Qt::Key_Q});
    undo = makeAction(this, u"Undo"_s, u"undo"_s, Keys{Qt::CTRL | Qt::Key_Z});
    redo =
        makeAction(this, u"Redo"_s, u"redo"_s, Keys{Qt::CTRL | Qt::SHIFT | Qt::Key_Z, Qt::CTRL | Qt::Key_Y});
    zoomIn =
        makeAction(this, u"Zoom in"_s, u"zoom-in"_s, Keys{Qt::CTRL | Qt::Key_Plus, Qt::CTRL | Qt::Key_Equal});
    zoomOut = makeAction(this, u"Zoom out"_s, u"zoom-out"_s, Keys{Qt::CTRL | Qt::Key_Minus});
    resetZoom = makeAction(this, u"Reset zoom"_s, u"zoom-reset"_s, Keys{Qt::CTRL | Qt::Key_0});
    actualPixels = makeAction(this, u"Actual pixels"_s, {}, Keys{Qt::CTRL | Qt::Key_1});
    compare = makeAction(this, u"Show the original"_s, u"compare"_s, Keys{Qt::Key_B});
    showPreview = makeAction(this, u"Preview the repair"_s, {}, {});
    showPreview->setCheckable(true);
    showPreview->setChecked(true);
    largerArea = makeAction(this, u"Larger edit area"_s, {}, Keys{Qt::Key_BracketRight});
    smallerArea = makeAction(this, u"Smaller edit area"_s, {}, Keys{Qt::Key_BracketLeft});
    videoTutorial = makeAction(this, u"Video tutorial"_s, u"play"_s, {QKeySequence::HelpContents});
    about = makeAction(this, u"About Complexion"_s, {}, {});

    quit->setMenuRole(QAction::QuitRole);
    about->setMenuRole(QAction::AboutRole);
    showState({});
}

void Actions::showState(const WindowState& state) {
    const QString noPhoto = u"no photo is open"_s;
    offer(selectImage, true, u"Select image"_s);
    offer(resetImage, state.hasImage, u"Reload image"_s, noPhoto);
    offer(saveImage, state.hasImage, u"Save image"_s, noPhoto);
    offer(undo, state.canUndo, u"Undo"_s, state.hasImage ? u"nothing to take back"_s : noPhoto);
    offer(redo, state.canRedo, u"Redo"_s, state.hasImage ? u"nothing to bring back"_s : noPhoto);
    offer(zoomIn, state.hasImage, u"Zoom in"_s, noPhoto);
    offer(zoomOut, state.hasImage, u"Zoom out"_s, noPhoto);
    offer(resetZoom, state.hasImage, u"Reset zoom"_s, noPhoto);
    offer(actualPixels, state.hasImage, u"Actual pixels"_s, noPhoto);
    offer(compare, state.hasImage, u"Hold to see the original"_s, noPhoto);
    offer(videoTutorial, state.hasTutorial, u"Video tutorial"_s, u"none comes with this build"_s);
}

} // namespace complexion
