// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace complexion {

/// Lets assistive technology know the controls that are our own: the photo, which can be pressed at the
/// disc's place, and the stepper, a number with bounds. Such a control calls it before anybody
/// can ask about it; again does no harm.
void installAccessibility();

} // namespace complexion
