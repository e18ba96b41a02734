// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QLineEdit;

namespace complexion {

class Stepper;

/// Makes assistive technology see a field and its stepper as one spin box: the field with the stepper's value
/// and range. Must be called before the field gets any other property, because Qt asks for its accessible
/// interface only once. The stepper must live as long as the field.
void joinAccessibly(QLineEdit& field, Stepper& stepper);

} // namespace complexion
