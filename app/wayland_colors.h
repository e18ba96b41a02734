// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace complexion {

/// Whether the Wayland compositor converts windows, as sRGB, to the colours of the monitor. Asks it over a
/// connection of its own and waits for the answer. True if it cannot be asked.
bool compositorConvertsColors();

} // namespace complexion
