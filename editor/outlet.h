// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/fatal.h"

#include <QPointer>

namespace complexion {

/// A pointer to a control that the window owns. Dereferencing it is fatal once the control is destroyed.
template <class Control>
class Outlet : public QPointer<Control> {
public:
    using QPointer<Control>::QPointer;
    using QPointer<Control>::operator=;

    Control& operator*() const {
        if (!this->data())
            fatal("an outlet is used after its control is gone");
        return *this->data();
    }
    Control* operator->() const { return &**this; }
};

} // namespace complexion
