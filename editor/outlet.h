// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/fatal.h"

#include <QPointer>

namespace complexion {

/// The control that an outlet refers to; fatal when it is gone.
template <class Control>
Control& reach(const QPointer<Control>& outlet) {
    if (!outlet)
        fatal("a control is reached after its view is gone");
    return *outlet;
}

} // namespace complexion
