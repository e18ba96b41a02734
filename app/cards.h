// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "view/box.h"

#include <QSize>

class QAbstractButton;
class QAction;
class QPainter;

namespace complexion {

/// The card shown while no photo is open: drop a photo, or click to choose one. The whole card is one button,
/// which triggers `selectImage`.
Box* makeHintCard(QWidget* parent, QAction* selectImage);

/// The card with three lines of instructions, each with an icon, and a button for the video tutorial.
Box* makeHelpCard(QWidget* parent, QAction* videoTutorial);

/// Paints a card button's hover and pressed tint and its focus ring.
void paintCardButtonState(QPainter& painter, const QAbstractButton& button);

/// Lets the texts of a card wrap or shrink where it may be no wider than `width`. Returns the card's size.
QSize sizeOfCard(Box& card, int width);

} // namespace complexion
