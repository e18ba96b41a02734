// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace complexion {

/// Describes the custom controls to assistive technology: the photo, whose press action repairs at the disc's
/// position, and the stepper, a bounded number. Both call this from their constructors; repeated calls are
/// harmless.
void installAccessibility();

} // namespace complexion
