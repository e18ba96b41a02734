// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/step_name.h"

#include <QAction>
#include <QObject>

namespace complexion {

/// The state that decides which commands are enabled, and the window's title.
struct WindowState {
    bool hasImage = false;
    bool canUndo = false;
    bool canRedo = false;
    StepName undoStep = StepName::Unnamed;
    StepName redoStep = StepName::Unnamed;
    bool hasTutorial = false;
    QString fileName; // of the photo, empty without one
    bool hasUnsavedWork = false;
    bool isShowingOriginal = false; // in place of the working image
};

/// The window's commands. The menu and the buttons share one QAction per command.
class Actions : public QObject {
    Q_OBJECT

public:
    explicit Actions(QObject* parent = nullptr);

    QAction* selectImage;
    QAction* resetImage;
    QAction* saveImage;
    QAction* close;
    QAction* quit;
    QAction* undo;
    QAction* redo;
    QAction* zoomIn;
    QAction* zoomOut;
    QAction* resetZoom;
    QAction* halfPixels;
    QAction* actualPixels;
    QAction* doublePixels;
    QAction* compare;      // active while held down, see HeldCommand
    QAction* showOriginal; // the same as a checkable menu item
    QAction* showPreview;  // checkable
    QAction* largerArea;
    QAction* smallerArea;
    QAction* fitArea;
    QAction* higherThreshold;
    QAction* lowerThreshold;
    QAction* nextBlemish;
    QAction* previousBlemish;
    QAction* showBlemishes; // checkable
    QAction* onlyStrongest; // of them; checkable
    QAction* showBars;      // checkable
    QAction* fullScreen;    // checkable
    QAction* videoTutorial;
    QAction* about;

    /// Enables the commands that are possible, and names undo and redo after their steps. The tooltips of the
    /// others explain why they are disabled.
    void showState(const WindowState& state);
};

} // namespace complexion
