// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAction>
#include <QObject>

namespace complexion {

/// What the commands' look and the window's title depend on.
struct WindowState {
    bool hasImage = false;
    bool canUndo = false;
    bool canRedo = false;
    bool hasTutorial = false;
    QString fileName; // of the photo, empty without one
};

/// The window's commands. Each stands once; the menu and the buttons show the same one.
class Actions : public QObject {
    Q_OBJECT

public:
    explicit Actions(QObject* parent = nullptr);

    QAction* selectImage;
    QAction* resetImage;
    QAction* saveImage;
    QAction* quit;
    QAction* undo;
    QAction* redo;
    QAction* zoomIn;
    QAction* zoomOut;
    QAction* resetZoom;
    QAction* actualPixels;
    QAction* compare;     // lasts as long as it is held: see HeldCommand
    QAction* showPreview; // checkable
    QAction* largerArea;
    QAction* smallerArea;
    QAction* videoTutorial;
    QAction* about;

    /// Offers what is possible, and tells in the tooltips why the rest is not.
    void showState(const WindowState& state);
};

} // namespace complexion
