// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/fit.h"
#include "editor/repair_preview.h"
#include "editor/suggestions.h"
#include "editor/view_controller.h"
#include "view/edit_disc.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <optional>

namespace complexion {

/// The place on the photo that a click would act on, controlled by the mouse or the keys, and what is shown
/// there: the edit disc with a preview of the repair, or the colour that would be picked.
class Aim : public QObject {
    Q_OBJECT

public:
    /// `controller`, `suggestions` and `queues` must outlive `Aim`; the disc is owned by its view.
    Aim(ViewController& controller, Suggestions& suggestions, EditDisc* disc, Queues& queues,
        QObject* parent = nullptr);

    /// The pixel of the photo aimed at; nothing outside the photo.
    std::optional<PixelPosition> place() const { return m_place; }

    /// The place in the root view's coordinates; the root view's centre if there is none.
    Point shownPoint() const;

    /// Sets the mouse position in the root view; nothing if the mouse is not over the image view.
    void pointAt(std::optional<Point> inRootView);
    /// Switches to control by the keys, starting at the mouse position or else at the centre of the view.
    void takeKeys();
    /// Moves the disc by pixels of the photo, rows downward. Scrolls the photo if needed to keep it visible.
    void moveBy(int columns, int rows);
    /// Repairs at the place, or picks the colour there.
    void act();

    /// Fits the disc to the blemish under it: its size, and its place where that is off; fitted again, to the
    /// next larger thing. Announces the result.
    void fit();

    /// Moves the disc to the next suggested blemish, or to the one before if `step` is -1, fits its size and
    /// brings it into view; announces it. The blemishes are searched for first, in the background. After
    /// `act` has repaired one, the disc moves on.
    void goToSuggestion(int step);

    /// The point of the root view that a click of the mouse at `pointer` acts on: the disc's centre if
    /// fitting has moved the disc and the mouse has hardly moved since.
    Point clickPoint(Point pointer) const;

    /// Sets the points of the stroke that is being drawn, in the image. It is previewed instead of a click at
    /// the place; none ends it.
    void setStroke(const std::vector<Point>& path);

    /// Turns the preview of the repair on or off.
    void setPreviewing(bool on);
    /// While on, a click picks the colour at the place, which is shown instead of the disc.
    void setPicking(bool on);

Q_SIGNALS:
    /// The place has changed.
    void placeChanged();
    /// A colour was picked from the photo, in sRGB.
    void picked(const QColor& color);
    /// A text for assistive technology to speak.
    void announced(const QString& text);

private:
    Point centreOfPlace() const;
    bool isInPhoto(PixelPosition place) const;
    bool isHeld(Point pointer) const;
    void returnToLastPlace();
    void waitToOfferFit(const std::optional<RepairPreview::Question>& question);
    /// Shows the ring that fits, if it clearly differs.
    void offerFit();
    void setPlace(std::optional<PixelPosition> place);
    /// Recomputes the place from the mouse position and the photo.
    void updatePlace();
    void showSuggestion();
    /// Updates the disc and requests a preview for it.
    void refresh();
    void showAnswer();
    void showResult();
    /// Shows at the ring why a click would do nothing.
    void showReason(const QString& reason);
    /// Repaints the result with the selected effect, if it is shown.
    void refreshResult();
    void hideResult();
    void announceRepair(const Result<Repaired>& repair);
    QColor colorAtPlace() const;

    ViewController& m_controller;
    QPointer<EditDisc> m_disc;
    RepairPreview m_preview;
    QTimer m_restTimer; // the result is shown when the place has not changed for this long
    std::optional<Point> m_pointer;
    std::optional<PixelPosition> m_place;
    std::vector<Point> m_stroke;
    bool m_hasKeys = false;
    bool m_isPreviewing = true;
    bool m_isPicking = false;
    bool m_isResultShown = false;
    /// Whether an announcement about the whole photo must not be replaced by one about the place.
    bool m_isStatusKept = false;

    // Fitting the disc to a blemish.
    std::optional<FittedRing> m_fitted;       // what the disc was last fitted to
    std::optional<PixelPosition> m_lastPlace; // where the disc was last shown
    std::optional<Point> m_heldPointer;       // the mouse position when fitting moved the disc away from it
    std::optional<RepairPreview::Question> m_fitQuestion; // the click that m_fitTimer was started for
    bool m_isTiny = false;                                // and whether the ring was too small then
    QTimer m_fitTimer;
    bool m_isFitKnown = false; // whether the disc was fitted before in this run

    // Going through the suggested blemishes.
    Suggestions& m_suggestions;
    int m_suggestionStep = 0;                      // to be taken once they are found
    std::ptrdiff_t m_suggestion = -1;              // index of the one shown last
    std::optional<PixelPosition> m_suggestedPlace; // where its suggestion is
    std::optional<PixelPosition> m_fittedPlace;    // where the disc was moved for it
    bool m_isSuggestionActedOn = false;
};

} // namespace complexion
