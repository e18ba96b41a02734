// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QIcon>
#include <QPixmap>
#include <QString>

namespace complexion {

/// One of the drawings in app/icons by its name, drawn at whatever size and pixel ratio is asked for, in the
/// palette's text colour of the control's state.
QIcon lineIcon(const QString& name);

/// The same drawing in one colour, `size` points wide and high.
QPixmap linePixmap(const QString& name, int size, const QColor& color, double devicePixelRatio);

/// The program's own icon.
QIcon applicationIcon();

} // namespace complexion
