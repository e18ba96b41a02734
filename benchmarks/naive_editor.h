// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QPoint>
#include <QStringList>

namespace complexion::bench {

/// The same editor in its most straightforward form, on QImage: each click makes a luminance map and a copy
/// of the whole picture and writes the whole picture to a file; each undo reads one.
///
/// This is a reference of the table. Its code must not change, or the results are no longer comparable.
class NaiveEditor {
public:
    /// Opens a photo. States are written to `folder`.
    NaiveEditor(const QString& photo, const QString& folder);
    ~NaiveEditor();

    /// Replaces the pixels that are darker or lighter than the disc's mean by the mean of the others.
    void click(QPoint place, int radius, int threshold);
    void undo();

private:
    void push();

    QImage m_image;
    QString m_folder;
    QStringList m_states;
};

} // namespace complexion::bench
