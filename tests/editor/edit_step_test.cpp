// SPDX-License-Identifier: GPL-3.0-or-later

// What makes two repairs, steps or files different. A step that were taken for another would not be replayed.
#include "editor/edit_step.h"

#include "editor/file_identity.h"

#include <gtest/gtest.h>

#include <cstddef>

namespace complexion {

namespace {

template <class Value>
using Change = void (*)(Value& value);

/// Expects that a value equals its copy, and no copy with one of these changes.
template <class Value>
void expectDifferentAfter(const std::vector<Change<Value>>& changes) {
    const Value value;
    EXPECT_EQ(value, Value(value));
    for (std::size_t i = 0; i < changes.size(); ++i) {
        Value changed = value;
        changes[i](changed);
        EXPECT_FALSE(changed == value) << "change " << i;
        EXPECT_TRUE(changed != value) << "change " << i;
    }
}

TEST(RepairSteps, AreDifferentInEachProperty) {
    expectDifferentAfter<RepairStep>(
        {[](RepairStep& step) { step.place.x = 1; }, [](RepairStep& step) { step.place.y = 1; },
         [](RepairStep& step) { step.stroke = {{1, 2}}; }, [](RepairStep& step) { step.repair.radius = 1; },
         [](RepairStep& step) { step.repair.colorType = 1; },
         [](RepairStep& step) { step.repair.customColor.red = 0.5; },
         [](RepairStep& step) { step.repair.style = RepairStyle::Natural; },
         [](RepairStep& step) { step.repair.threshold = 1; }, [](RepairStep& step) { step.changesBack = 1; },
         [](RepairStep& step) { step.stateMilliseconds = 1; }});
}

TEST(EditSteps, AreDifferentInTheirKindAndPosition) {
    expectDifferentAfter<MoveStep>({[](MoveStep& step) { step.position = 1; }});
    expectDifferentAfter<StateLostStep>({[](StateLostStep& step) { step.position = 1; }});
    expectDifferentAfter<EffectStep>({[](EffectStep& step) { step.effect = 1; }});
    EXPECT_NE(EditStep(MoveStep{1}), EditStep(EffectStep{1}));
}

TEST(FileIdentities, AreDifferentInEachProperty) {
    expectDifferentAfter<FileIdentity>(
        {[](FileIdentity& file) { file.device = 1; }, [](FileIdentity& file) { file.inode = 1; },
         [](FileIdentity& file) { file.size = 1; }, [](FileIdentity& file) { file.modifiedNanoseconds = 1; },
         [](FileIdentity& file) { file.changedNanoseconds = 1; }});
}

} // namespace

} // namespace complexion
