// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QPoint>
#include <QStringList>

namespace complexion::bench {

/// The same editor as one would write it first, on the toolkit's image class: each click makes a grey map of
/// the whole picture and a copy of it, and writes the whole as a file; each undo reads one.
///
/// What the table compares with must stay what it is: this code is not to be changed.
class NaiveEditor {
public:
    /// Opens a photo; states go to `folder`.
    NaiveEditor(const QString& photo, const QString& folder);
    ~NaiveEditor();

    /// Paints what is darker or lighter than the disc's mean in the mean of the rest.
    void click(QPoint place, int radius, int threshold);
    void undo();

private:
    void push();

    QImage m_image;
    QString m_folder;
    QStringList m_states;
};

} // namespace complexion::bench
