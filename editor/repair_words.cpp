// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/repair_words.h"

namespace complexion {

namespace {

using namespace Qt::StringLiterals;

} // namespace

QString describe(const RepairReport& report, bool isDone) {
    const std::int64_t count = report.repainted.count();
    switch (report.outcome) {
    case RepairOutcome::Repaired:
        if (count == 1)
            return isDone ? u"Repaired one pixel."_s : u"One pixel would be repaired."_s;
        return (isDone ? u"Repaired %1 pixels."_s : u"%1 pixels would be repaired."_s).arg(count);
    case RepairOutcome::NothingToRepair:
        return u"Nothing to repair here."_s;
    case RepairOutcome::NotUniform:
        return u"Left as it is: the skin differs too much across the disc."_s;
    case RepairOutcome::TooCloseToBorder:
        return u"Left as it is: too close to the edge of the photo."_s;
    case RepairOutcome::NoMemory:
        return u"Left as it is: there is not enough memory."_s;
    }
    return {};
}

} // namespace complexion
