// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/actions.h"
#include "app/busy_sign.h"
#include "app/menus.h"
#include "app/photo_input.h"
#include "app/root_view.h"
#include "app/sign.h"
#include "app/stylus_input.h"
#include "app/touch_input.h"
#include "app/window_contents.h"
#include "view/blemish_marks.h"
#include "view/edit_disc.h"
#include "view/stroke_outline.h"

#include <QMainWindow>

#include <optional>

namespace complexion {

/// The application's only window: a menu bar and the root view below it.
class MainWindow : public QMainWindow {
    Q_OBJECT

public:
    MainWindow();

    Actions& actions() const { return *m_actions; }
    RootView& rootView() const { return *m_root; }
    WindowContents& contents() const { return *m_contents; }
    BusySign& busySign() const { return *m_busySign; }
    Sign& originalSign() const { return *m_originalSign; }
    BlemishMarks& blemishMarks() const { return *m_blemishMarks; }
    StrokeOutline& strokeOutline() const { return *m_strokeOutline; }
    EditDisc& editDisc() const { return *m_editDisc; }
    PhotoInput& photoInput() const { return *m_photoInput; }
    TouchInput& touchInput() const { return *m_touchInput; }
    StylusInput& stylusInput() const { return *m_stylusInput; }
    const Menus& menus() const { return *m_menus; }

    /// Updates the title, which names the photo, and the commands.
    void showState(const WindowState& state);

Q_SIGNALS:
    /// The window has been painted for the first time.
    void appeared();

protected:
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    Actions* m_actions;
    RootView* m_root;
    WindowContents* m_contents;
    BusySign* m_busySign;
    Sign* m_originalSign;
    BlemishMarks* m_blemishMarks;
    StrokeOutline* m_strokeOutline;
    EditDisc* m_editDisc; // above the marks and the stroke
    PhotoInput* m_photoInput;
    TouchInput* m_touchInput;
    StylusInput* m_stylusInput;
    std::optional<Menus> m_menus;
    bool m_hasAppeared = false;
};

} // namespace complexion
