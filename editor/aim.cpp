// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/aim.h"

#include "editor/picked_color.h"
#include "editor/repair_words.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace complexion {

namespace {

constexpr int kRestMilliseconds = 350;
constexpr double kOfferedFit = 1.2; // times the radius, or its inverse: a fit beyond these is offered
/// Points that the mouse may move without taking the disc from where it was fitted.
constexpr double kHoldDistance = 4;
constexpr double kRevealMargin = 48; // points kept visible around the place when the keys move it

DiscLook lookOf(const Result<Repaired>& repair) {
    if (!repair)
        return DiscLook::Plain;
    switch (repair->outcome) {
    case RepairOutcome::NothingToRepair:
        return DiscLook::Idle;
    case RepairOutcome::NotUniform:
    case RepairOutcome::ExtendsOutside:
    case RepairOutcome::FillsDisc:
    case RepairOutcome::NoSkin:
        return DiscLook::Uneven;
    case RepairOutcome::TooCloseToBorder:
        return DiscLook::OverBorder;
    case RepairOutcome::Repaired:
        return DiscLook::Repairs;
    }
    return DiscLook::Plain;
}

QString fitHint() {
    return Aim::tr("F fits the ring");
}

/// Two texts of a caption, either of which may be empty.
QString joined(const QString& one, const QString& other) {
    if (one.isEmpty() || other.isEmpty())
        return one + other;
    return one + QStringLiteral(" · ") + other;
}

} // namespace

Aim::Aim(ViewController& controller, Suggestions& suggestions, EditDisc* disc, Queues& queues,
         QObject* parent)
    : QObject(parent), m_controller(controller), m_disc(disc), m_preview(queues), m_suggestions(suggestions) {
    m_restTimer.setSingleShot(true);
    m_restTimer.setInterval(kRestMilliseconds);
    connect(&m_restTimer, &QTimer::timeout, this, &Aim::showResult);
    m_fitTimer.setSingleShot(true);
    m_fitTimer.setInterval(kRestMilliseconds);
    connect(&m_fitTimer, &QTimer::timeout, this, &Aim::offerFit);
    connect(&m_preview, &RepairPreview::answered, this, &Aim::showAnswer);
    connect(&suggestions, &Suggestions::found, this, &Aim::showSuggestion);
    connect(&controller, &ViewController::stateChanged, this, [this] {
        updatePlace();
        refreshResult(); // the effect may have changed
    });
    connect(&controller, &ViewController::settingsChanged, this, &Aim::refresh);
    connect(&controller, &ViewController::repairFinished, this, &Aim::announceRepair);
    connect(&*controller.imageView, &CustomImageView::frameChanged, this, &Aim::updatePlace);
}

void Aim::pointAt(std::optional<Point> inRootView) {
    if (inRootView && isHeld(*inRootView))
        return;
    m_heldPointer.reset();
    m_pointer = inRootView;
    m_hasKeys = m_hasKeys && !inRootView;
    updatePlace();
}

void Aim::updatePlace() {
    std::optional<PixelPosition> place = m_hasKeys ? m_place : std::nullopt;
    if (m_pointer && !m_hasKeys && m_controller.hasImage()) {
        const PointSize image = m_controller.originalImage().size();
        const Point point = imagePointAt(*m_pointer, image, m_controller.imageView->frame());
        if (point.x >= 0 && point.y > 0)
            place = pixelAt(point, image);
    }
    setPlace(place && isInPhoto(*place) ? place : std::nullopt);
}

bool Aim::isInPhoto(PixelPosition place) const {
    const PixelSize size = m_controller.originalImage().pixelSize();
    return place.row >= 0 && place.row < size.height && place.column >= 0 && place.column < size.width;
}

void Aim::takeKeys() {
    if (m_hasKeys || !m_controller.hasImage())
        return;
    std::optional<PixelPosition> place = m_place;
    if (!place) {
        const QSize area = m_controller.view->size();
        const PointSize image = m_controller.originalImage().size();
        place = pixelAt(
            imagePointAt({area.width() / 2.0, area.height() / 2.0}, image, m_controller.imageView->frame()),
            image);
    }
    m_hasKeys = true;
    setPlace(place);
}

void Aim::moveBy(int columns, int rows) {
    takeKeys();
    if (!m_place)
        return;
    const PixelSize size = m_controller.originalImage().pixelSize();
    setPlace(PixelPosition{std::clamp<std::int64_t>(m_place->row + rows, 0, size.height - 1),
                           std::clamp<std::int64_t>(m_place->column + columns, 0, size.width - 1)});
    m_controller.Reveal(centreOfPlace(), kRevealMargin);
}

void Aim::act() {
    m_isStatusKept = false;
    takeKeys();
    if (!m_place)
        return;
    if (m_isPicking) {
        Q_EMIT picked(colorAtPlace());
        return;
    }
    m_isSuggestionActedOn = m_place == m_fittedPlace;
    m_controller.BeginRetouch(centreOfPlace());
}

void Aim::fit() {
    if (!m_place)
        returnToLastPlace();
    if (!m_place || m_isPicking)
        return;
    m_isFitKnown = true;
    m_isStatusKept = false;
    const Repair repair = m_controller.currentRepair();
    const Image image = m_controller.originalImage();
    const bool isFitted = m_fitted && m_fitted->middle == *m_place && m_fitted->radius == repair.radius;
    const auto ring = isFitted ? fitNextRing(repair, image, *m_fitted) : fitRing(repair, image, *m_place);
    if (!ring) {
        const QString text = isFitted ? tr("Nothing larger to fit here.") : tr("No blemish to fit here.");
        if (m_disc)
            m_disc->setCaption(text);
        Q_EMIT announced(text);
        return;
    }
    m_fitted = ring;
    m_controller.SetEditAreaSize(ring->radius);
    m_fitted->radius = m_controller.currentRepair().radius;
    if (ring->middle != *m_place) {
        m_heldPointer = m_hasKeys ? std::nullopt : m_pointer;
        m_hasKeys = true;
        setPlace(ring->middle);
    }
    Q_EMIT announced(tr("The edit area fits: %1 pixels.").arg(m_fitted->radius));
}

void Aim::returnToLastPlace() {
    if (!m_lastPlace || !isInPhoto(*m_lastPlace)) {
        takeKeys();
        return;
    }
    m_hasKeys = true;
    setPlace(m_lastPlace);
}

void Aim::offerFit() {
    if (!m_disc || !m_disc->place() || m_isPicking)
        return;
    if (m_isTiny)
        m_disc->setCaption(tr("Zoom in to aim"));
    const Repair repair = m_controller.currentRepair();
    const auto ring = fitRing(repair, m_controller.originalImage(), *m_place);
    if (!ring)
        return;
    const double ratio = static_cast<double>(ring->radius) / static_cast<double>(repair.radius);
    if (ratio <= kOfferedFit && ratio >= 1 / kOfferedFit)
        return;
    m_disc->setSecondRing(DiscRing{.place = ring->middle, .radius = static_cast<double>(ring->radius)});
    if (!m_isFitKnown)
        m_disc->setCaption(joined(m_disc->caption(), fitHint()));
}

bool Aim::isHeld(Point pointer) const {
    return m_heldPointer &&
           std::hypot(pointer.x - m_heldPointer->x, pointer.y - m_heldPointer->y) < kHoldDistance;
}

Point Aim::clickPoint(Point pointer) const {
    return isHeld(pointer) && m_place ? shownPoint() : pointer;
}

Point Aim::centreOfPlace() const {
    return centreOf(*m_place, m_controller.originalImage().size());
}

Point Aim::shownPoint() const {
    const QSize area = m_controller.view->size();
    if (!m_place)
        return {area.width() / 2.0, area.height() / 2.0};
    const QPointF shown = m_controller.imageView->pixelsToWidget().map(
        QPointF(static_cast<double>(m_place->column) + 0.5, static_cast<double>(m_place->row) + 0.5));
    return {shown.x(), area.height() - shown.y()};
}

void Aim::setPlace(std::optional<PixelPosition> place) {
    const bool hasChanged = place != m_place;
    m_isStatusKept = m_isStatusKept && !hasChanged;
    m_place = place;
    if (place)
        m_lastPlace = place;
    refresh();
    if (hasChanged)
        Q_EMIT placeChanged();
}

void Aim::setStroke(const std::vector<Point>& path) {
    if (m_stroke == path)
        return;
    m_stroke = path;
    refresh();
}

void Aim::setPreviewing(bool on) {
    m_isPreviewing = on;
    refresh();
}

void Aim::setPicking(bool on) {
    m_isPicking = on;
    refresh();
}

void Aim::refresh() {
    if (!m_disc)
        return;
    const bool isShown = m_place && !m_controller.isShowingSource();
    m_disc->setPlace(isShown ? m_place : std::nullopt,
                     static_cast<double>(m_controller.currentRepair().radius));
    m_disc->setSwatch(isShown && m_isPicking ? std::optional(colorAtPlace()) : std::nullopt);
    std::optional<RepairPreview::Question> question;
    if (isShown && !m_isPicking)
        question = RepairPreview::Question{m_controller.originalImage(), m_controller.currentRepair(),
                                           m_stroke.empty() ? std::vector{centreOfPlace()} : m_stroke};
    waitToOfferFit(m_stroke.empty() ? question : std::nullopt);
    m_preview.ask(m_isPreviewing ? question : std::nullopt);
    if (m_preview.answer())
        return;
    hideResult();
    m_disc->setLook(DiscLook::Plain);
    m_disc->setOutlined({});
}

void Aim::waitToOfferFit(const std::optional<RepairPreview::Question>& question) {
    const bool isTiny = m_disc->isTiny();
    if (question && m_fitQuestion && question->isSameAs(*m_fitQuestion) && isTiny == m_isTiny)
        return;
    m_fitQuestion = question;
    m_isTiny = isTiny;
    m_disc->setSecondRing(std::nullopt);
    m_disc->setCaption({});
    if (question)
        m_fitTimer.start();
    else
        m_fitTimer.stop();
    if (m_preview.answer())
        m_restTimer.start(); // its caption has gone
}

void Aim::showAnswer() {
    if (!m_disc)
        return;
    const Result<Repaired>& repair = *m_preview.answer();
    m_disc->setLook(lookOf(repair));
    m_disc->setOutlined(repair ? repair->repainted : PixelMask{});
    m_restTimer.start();
}

void Aim::showResult() {
    const Result<Repaired>* repair = m_preview.answer();
    if (!repair)
        return;
    showReason(captionFor(*repair));
    if (m_hasKeys && !m_isStatusKept)
        Q_EMIT announced(tr("Column %1, row %2. %3")
                             .arg(m_place->column + 1)
                             .arg(m_place->row + 1)
                             .arg(describe(*repair, /*isDone*/ false)));
    if (!*repair || (*repair)->outcome != RepairOutcome::Repaired)
        return;
    m_isResultShown = true;
    refreshResult();
    m_disc->setOutlined({});
}

void Aim::showReason(const QString& reason) {
    // Other captions answer a command of the user.
    if (m_disc && (m_disc->caption().isEmpty() || m_disc->caption() == fitHint()))
        m_disc->setCaption(joined(reason, m_disc->caption()));
}

void Aim::refreshResult() {
    if (m_isResultShown && m_preview.answer())
        m_controller.imageView->showReplacement(m_controller.withEffect((*m_preview.answer())->image));
}

void Aim::hideResult() {
    m_restTimer.stop();
    if (!std::exchange(m_isResultShown, false) || m_controller.isShowingSource())
        return;
    m_controller.imageView->showReplacement(std::nullopt);
}

void Aim::announceRepair(const Result<Repaired>& repair) {
    Q_EMIT announced(describe(repair, /*isDone*/ true));
    if (std::exchange(m_isSuggestionActedOn, false) && repair && repair->outcome == RepairOutcome::Repaired)
        goToSuggestion(1);
}

QColor Aim::colorAtPlace() const {
    const double pixelsPerPoint = 1 / m_controller.imageView->pixelsToWidget().m11();
    return pickedColor(m_controller.originalImage(), *m_place, pixelsPerPoint);
}

} // namespace complexion
