// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/repair_words.h"

#include <QCoreApplication>

namespace complexion {

namespace {

class RepairWords {
    Q_DECLARE_TR_FUNCTIONS(RepairWords)
};

} // namespace

QString describe(const RepairReport& report, bool isDone) {
    const std::int64_t count = report.repainted.count();
    switch (report.outcome) {
    case RepairOutcome::Repaired:
        if (count == 1)
            return isDone ? RepairWords::tr("Repaired one pixel.")
                          : RepairWords::tr("One pixel would be repaired.");
        return (isDone ? RepairWords::tr("Repaired %1 pixels.")
                       : RepairWords::tr("%1 pixels would be repaired."))
            .arg(count);
    case RepairOutcome::NothingToRepair:
        return RepairWords::tr("Nothing to repair here.");
    case RepairOutcome::NotUniform:
        return RepairWords::tr("Left as it is: the skin differs too much across the disc.");
    case RepairOutcome::ComesFromOutside:
        return RepairWords::tr("Left as it is: what differs here goes on outside the disc.");
    case RepairOutcome::FillsDisc:
        return RepairWords::tr("Left as it is: there is too little clean skin in the disc.");
    case RepairOutcome::NoSkin:
        return RepairWords::tr("Left as it is: there is no skin around to go by.");
    case RepairOutcome::TooCloseToBorder:
        return RepairWords::tr("Left as it is: too close to the edge of the photo.");
    case RepairOutcome::NoMemory:
        return RepairWords::tr("Left as it is: there is not enough memory.");
    }
    return {};
}

} // namespace complexion
