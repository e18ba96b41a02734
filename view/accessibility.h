// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QString;
class QWidget;

namespace complexion {

/// Describes the custom controls to assistive technology: the photo, whose press action repairs at the disc's
/// position, and the stepper, a bounded number. Both call this from their constructors; repeated calls are
/// harmless.
void installAccessibility();

/// Describes a control anew, and has a screen reader speak the description at once where the toolkit can
/// (from Qt 6.8 on). Elsewhere it is spoken when the user asks for it.
void announceDescription(QWidget& control, const QString& description);

} // namespace complexion
