// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/aim.h"
#include "view/stroke_outline.h"

#include <QObject>
#include <QPointer>

#include <vector>

namespace complexion {

/// A stroke while it is drawn on the photo with the mouse or the keys. It is repaired at its end.
class StrokeDrawing : public QObject {
    Q_OBJECT

public:
    /// `controller` and `aim` must outlive this object; the outline is owned by its view.
    StrokeDrawing(ViewController& controller, Aim& aim, StrokeOutline* outline, QObject* parent = nullptr);

    bool isDrawing() const { return !m_path.empty(); }

    /// Begins the stroke at a point of the root view, or continues it to there.
    void drawTo(Point inRootView);
    /// Ends the stroke, and repairs along it.
    void finish();
    void cancel();
    /// Begins a stroke at the aim's place, which then leads it; ends it if there is one.
    void toggleByKeys();

Q_SIGNALS:
    /// A text for assistive technology to speak.
    void announced(const QString& text);

private:
    bool begin();
    void addPlace();
    void add(Point inImage);
    void showOutline();

    ViewController& m_controller;
    Aim& m_aim;
    QPointer<StrokeOutline> m_outline;
    std::vector<Point> m_path; // in the image
    bool m_isByKeys = false;
    bool m_isRefused = false; // until the mouse button is released
};

} // namespace complexion
