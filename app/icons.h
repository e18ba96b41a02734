// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QIcon>
#include <QPixmap>
#include <QString>

namespace complexion {

/// The icon `name` from app/icons, rendered at any size and device pixel ratio in the palette's text colour
/// for the control's state.
QIcon lineIcon(const QString& name);

/// The same icon in one colour, `size` points wide and high.
QPixmap linePixmap(const QString& name, int size, const QColor& color, double devicePixelRatio);

/// The application's icon.
QIcon applicationIcon();

} // namespace complexion
