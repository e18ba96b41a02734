// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QComboBox;

namespace complexion {

/// Describes a pop-up to assistive technology by its accessible name, with its current entry as the
/// value and the description. By
/// default, the entry is the name.
void nameAccessibly(QComboBox& popUp);

} // namespace complexion
