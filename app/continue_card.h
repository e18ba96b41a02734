// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "view/box.h"

#include <QString>

#include <cstdint>
#include <vector>

class QGridLayout;

namespace complexion {

/// Offers to resume work that a crash or the system interrupted: one row per photo, with a button to continue
/// and one to forget the work. Hidden if there is none.
class ContinueCard : public Box {
    Q_OBJECT

public:
    /// The number of rows that fit into the smallest window.
    static constexpr int kMaxRows = 2;

    struct Work {
        QString fileName;
        std::int64_t repairs = 0;
    };

    explicit ContinueCard(QWidget* parent);

    /// Shows the first kMaxRows entries of `works`.
    void setWork(const std::vector<Work>& works);

Q_SIGNALS:
    /// A button of row `row` was pressed, counted from 0.
    void continued(int row);
    void forgotten(int row);

private:
    static QString offer(const QString& fileName, std::int64_t repairs);
    void addRow(int row, const Work& work);

    QGridLayout* m_rows;
};

} // namespace complexion
