// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/file_panels.h"

#include <QAbstractItemModel>
#include <QTest>
#include <QTreeView>

#include <gtest/gtest.h>

namespace complexion::test {

inline constexpr int kTimeoutMilliseconds = 20'000;

/// Accepts a panel and waits until it has checked the path.
inline void accept(FilePanel& panel) {
    panel.accept();
    EXPECT_TRUE(QTest::qWaitFor([&panel] { return !panel.isChecking(); }, kTimeoutMilliseconds));
}

inline QTreeView& listOf(FilePanel& panel) {
    return *panel.findChild<QTreeView*>(QStringLiteral("files"));
}

/// The names in the panel's list, in order.
inline QStringList namesIn(FilePanel& panel) {
    const QAbstractItemModel& model = *listOf(panel).model();
    QStringList names;
    for (int row = 0; row < model.rowCount(); ++row)
        names += model.index(row, 0).data().toString();
    return names;
}

inline void waitUntilListed(FilePanel& panel) {
    const auto* const view = panel.findChild<FolderView*>();
    EXPECT_TRUE(QTest::qWaitFor([view] { return !view->isReading(); }, kTimeoutMilliseconds));
}

} // namespace complexion::test
