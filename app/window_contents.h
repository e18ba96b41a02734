// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/actions.h"
#include "app/continue_card.h"
#include "app/held_command.h"
#include "app/notice_line.h"
#include "app/root_view.h"
#include "app/settings_bar.h"
#include "app/zoom_button.h"

#include <array>
#include <vector>

namespace complexion {

/// The boxes over the photo and their layout: a rail of buttons at the left, the settings at the bottom, and
/// the cards in the middle while no photo is open. No box covers another. Now and
/// then, a notice above the settings.
class WindowContents : public QObject {
    Q_OBJECT

public:
    /// Creates the boxes in `root` and rearranges them when its size changes.
    WindowContents(RootView* root, const Actions& actions);

    Box* boxSelectImage;
    Box* boxResetImage;
    Box* boxSaveImage;
    Box* boxUndo;
    Box* boxRedo;
    Box* boxZoomIn;
    Box* boxZoomOut;
    Box* boxResetZoom;
    Box* boxCompare;
    Box* boxZoom;
    HeldCommand* compare;
    ZoomButton* zoom;
    SettingsBar* boxEditSettings;
    ContinueCard* boxContinue;
    Box* boxHint;
    Box* boxHelp;
    NoticeLine* notice;

    /// Shows or hides the rail and the settings.
    void setBarsVisible(bool visible);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    /// The rail's boxes from top to bottom, group by group.
    std::array<std::vector<Box*>, 3> railGroups() const;
    /// Styles the rail's buttons and draws their icons ahead: work without text, done while the fonts load.
    void prepareRail() const;
    void arrange();
    void arrangeRail();
    /// Arranges the cards in the part of `root` that is not covered by the rail and the settings.
    void arrangeCards(QRect area);

    RootView* m_root;
    QWidget* m_railBackground; // catches presses between two rail boxes, which would hit the photo
};

} // namespace complexion
