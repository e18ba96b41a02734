// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QString;
class QWidget;

namespace complexion {

/// Sets a control's accessible description. From Qt 6.8 on, a screen reader also speaks it at once; with
/// older versions it is spoken when the user asks for it.
void announceDescription(QWidget& control, const QString& description);

} // namespace complexion
