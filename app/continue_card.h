// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "view/box.h"

#include <QString>

#include <cstdint>
#include <vector>

class QGridLayout;

namespace complexion {

/// Offers to go on with work that ended without being asked to: a row each with a button to continue and one
/// to forget it. Hidden while there is none.
class ContinueCard : public Box {
    Q_OBJECT

public:
    /// At most so many are offered at a time: the smallest window has no room for more.
    static constexpr int kMaxRows = 2;

    struct Work {
        QString fileName;
        std::int64_t repairs = 0;
    };

    explicit ContinueCard(QWidget* parent);

    /// Shows the first kMaxRows of them.
    void setWork(const std::vector<Work>& works);

Q_SIGNALS:
    /// The row's number, from 0.
    void continued(int row);
    void forgotten(int row);

private:
    static QString offer(const QString& fileName, std::int64_t repairs);
    void addRow(int row, const Work& work);

    QGridLayout* m_rows;
};

} // namespace complexion
