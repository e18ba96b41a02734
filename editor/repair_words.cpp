// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/repair_words.h"

#include <QCoreApplication>

namespace complexion {

namespace {

class RepairWords {
    Q_DECLARE_TR_FUNCTIONS(RepairWords)
};

} // namespace

QString describe(const Result<Repaired>& repair, bool isDone) {
    if (!repair)
        return RepairWords::tr("Not repaired: not enough memory.");
    const std::int64_t count = repair->repainted.count();
    switch (repair->outcome) {
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
        return RepairWords::tr("Not repaired: the skin varies too much across the disc.");
    case RepairOutcome::ExtendsOutside:
        return RepairWords::tr("Not repaired: what differs here extends beyond the disc.");
    case RepairOutcome::FillsDisc:
        return RepairWords::tr("Not repaired: there is too little clean skin in the disc.");
    case RepairOutcome::NoSkin:
        return RepairWords::tr("Not repaired: there is no skin nearby to match.");
    case RepairOutcome::TooCloseToBorder:
        return RepairWords::tr("Not repaired: too close to the edge of the photo.");
    }
    return {};
}

} // namespace complexion
