// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/repair_preview.h"
#include "editor/view_controller.h"
#include "view/edit_disc.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <optional>

namespace complexion {

/// Where on the photo the hand is, by the mouse or by the keys, and what is shown there: the edit disc with
/// what a click would do, or, while a colour is picked, that colour.
class Aim : public QObject {
    Q_OBJECT

public:
    /// All of them outlive the aim but the disc, which goes with its view.
    Aim(ViewController& controller, EditDisc* disc, Queues& queues, QObject* parent = nullptr);

    /// The pixel of the photo that is aimed at; none beside the photo.
    std::optional<PixelPosition> place() const { return m_place; }

    /// Where the place is shown in the root view; the middle of that without a place.
    Point shownPoint() const;

    /// The mouse is at a point of the root view; nowhere over the photo's view without one.
    void pointAt(std::optional<Point> inRootView);
    /// The keys take over: where the mouse is, otherwise in the middle of what is seen.
    void takeKeys();
    /// Moves the disc by pixels of the photo, rows downward, and the photo along where it takes that.
    void moveBy(int columns, int rows);
    /// Clicks at the place, or picks the colour there.
    void act();

    /// Whether what a click would do is shown beforehand.
    void setPreviewing(bool on);
    /// Whether a click picks the colour at the place, which is then shown instead of the disc.
    void setPicking(bool on);

Q_SIGNALS:
    /// The place is another one, or none.
    void placeChanged();
    /// A colour was picked from the photo, in sRGB.
    void picked(const QColor& color);
    /// What assistive technology should say.
    void told(const QString& what);

private:
    Point middleOfPlace() const;
    void setPlace(std::optional<PixelPosition> place);
    /// Follows the mouse, the photo and the settings.
    void follow();
    void refresh();
    void ask();
    void showAnswer();
    void showResult();
    /// Shows the result through the effect that is selected now, when it is shown at all.
    void keepResult();
    void hideResult();
    void tellRepair(const RepairReport& report);
    QColor colorAtPlace() const;

    ViewController& m_controller;
    QPointer<EditDisc> m_disc;
    RepairPreview m_preview;
    QTimer m_rest; // runs out when the hand has rested long enough to see the result
    std::optional<Point> m_pointer;
    std::optional<PixelPosition> m_place;
    bool m_hasKeys = false;
    bool m_isPreviewing = true;
    bool m_isPicking = false;
    bool m_isResultShown = false;
};

} // namespace complexion
