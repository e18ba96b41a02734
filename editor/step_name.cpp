// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/step_name.h"

#include <QtGlobal>

namespace complexion {

StepName stepNameOf(RepairStyle style) {
    return style == RepairStyle::Natural ? StepName::NaturalRepair : StepName::Repair;
}

const char* titleOf(StepName step) {
    switch (step) {
    case StepName::Unnamed:
        return "";
    case StepName::Repair:
        return QT_TRANSLATE_NOOP("Steps", "repair");
    case StepName::NaturalRepair:
        return QT_TRANSLATE_NOOP("Steps", "natural repair");
    }
    return "";
}

} // namespace complexion
