// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "view/box.h"

class QAbstractButton;
class QAction;
class QPainter;

namespace complexion {

/// What is said before a photo is open: drop one, or choose one. The whole card is one button, which triggers
/// `selectImage`.
Box* makeHintCard(QWidget* parent, QAction* selectImage);

/// How it works, in three lines with small drawings, and the video tutorial.
Box* makeHelpCard(QWidget* parent, QAction* videoTutorial);

/// Lightens a button of a card under the mouse, darkens it while it is pressed, and rings it when it has the
/// focus.
void paintCardButtonState(QPainter& painter, const QAbstractButton& button);

} // namespace complexion
