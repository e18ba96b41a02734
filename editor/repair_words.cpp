// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/repair_words.h"

#include <QCoreApplication>

namespace complexion {

namespace {

class RepairWords {
    Q_DECLARE_TR_FUNCTIONS(RepairWords)
};

QString nameOf(DiscSide side) {
    switch (side) {
    case DiscSide::Top:
        return RepairWords::tr("at the top");
    case DiscSide::TopRight:
        return RepairWords::tr("at the top right");
    case DiscSide::Right:
        return RepairWords::tr("on the right");
    case DiscSide::BottomRight:
        return RepairWords::tr("at the bottom right");
    case DiscSide::Bottom:
        return RepairWords::tr("at the bottom");
    case DiscSide::BottomLeft:
        return RepairWords::tr("at the bottom left");
    case DiscSide::Left:
        return RepairWords::tr("on the left");
    case DiscSide::TopLeft:
        return RepairWords::tr("at the top left");
    }
    return {};
}

/// Why nothing is repaired, as a part of a sentence; empty for a repair that changes the photo.
QString reasonOf(const Result<Repaired>& repair) {
    if (!repair)
        return RepairWords::tr("not enough memory");
    const QString place = repair->side ? nameOf(*repair->side) : QString();
    switch (repair->outcome) {
    case RepairOutcome::Repaired:
        return {};
    case RepairOutcome::NothingToRepair:
        return RepairWords::tr("nothing stands out from the skin");
    case RepairOutcome::NotUniform:
        return RepairWords::tr("the skin differs too much %1").arg(place);
    case RepairOutcome::ExtendsOutside:
        return RepairWords::tr("something larger reaches into the ring %1").arg(place);
    case RepairOutcome::FillsDisc:
        return RepairWords::tr("too little clean skin in the ring");
    case RepairOutcome::NoSkin:
        return RepairWords::tr("no skin nearby to match");
    case RepairOutcome::TooCloseToBorder:
        return RepairWords::tr("too close to the edge of the photo");
    }
    return {};
}

} // namespace

QString captionFor(const Result<Repaired>& repair) {
    const QString reason = reasonOf(repair);
    return reason.left(1).toUpper() + reason.mid(1);
}

QString describe(const Result<Repaired>& repair, bool isDone) {
    if (!repair || repair->outcome != RepairOutcome::Repaired)
        return RepairWords::tr("Not repaired: %1.").arg(reasonOf(repair));
    const std::int64_t count = repair->repainted.count();
    if (count == 1)
        return isDone ? RepairWords::tr("Repaired one pixel.")
                      : RepairWords::tr("One pixel would be repaired.");
    return (isDone ? RepairWords::tr("Repaired %1 pixels.") : RepairWords::tr("%1 pixels would be repaired."))
        .arg(count);
}

} // namespace complexion
