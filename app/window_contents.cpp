// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/window_contents.h"

#include "app/cards.h"
#include "app/font_loading.h"
#include "app/rail.h"

#include <QAbstractButton>
#include <QEvent>
#include <QLayout>

#include <algorithm>

namespace complexion {

namespace {

using namespace Qt::StringLiterals;

constexpr int kEdge = 16; // distance from the root view's edge
constexpr int kGap = 8;
/// Lengths of the rail, in points.
struct RailSizes {
    int box = 0;
    int gap = 0;      // between boxes of a group
    int groupGap = 0; // between groups
};
constexpr RailSizes kUsualRail{.box = kRailBoxSize, .gap = kGap, .groupGap = 24};
constexpr RailSizes kLowRail{.box = kMinRailBoxHeight, .gap = 2, .groupGap = 6};

/// The space left of the settings and the cards: the rail with its margins.
constexpr int kRailSpace = kEdge + kRailBoxSize + kEdge;

/// The left edge of a box of width `length`: centred in the window, but not overlapping the rail.
int centredBesideRail(int length, int width) {
    return std::max((width - length) / 2, std::min(kRailSpace, width - kEdge - length));
}

/// Even an unchanged geometry would have the toolkit paint the widget again.
void place(QWidget& widget, const QRect& geometry) {
    if (widget.geometry() != geometry)
        widget.setGeometry(geometry);
}

} // namespace

WindowContents::WindowContents(RootView* root, const Actions& actions)
    : QObject(root), m_root(root), m_railBackground(new QWidget(root)) {
    m_railBackground->setAttribute(Qt::WA_NoMousePropagation);
    boxSelectImage = makeRailBox(root, actions.selectImage, u"boxSelectImage"_s, tr("Select image"));
    boxResetImage = makeRailBox(root, actions.resetImage, u"boxResetImage"_s, tr("Reload image"));
    boxSaveImage = makeRailBox(root, actions.saveImage, u"boxSaveImage"_s, tr("Save image"));
    boxUndo = makeRailBox(root, actions.undo, u"boxUndo"_s, tr("Undo"));
    boxRedo = makeRailBox(root, actions.redo, u"boxRedo"_s, tr("Redo"));
    boxZoomIn = makeRailBox(root, actions.zoomIn, u"boxZoomIn"_s, tr("Zoom in"));
    boxZoomOut = makeRailBox(root, actions.zoomOut, u"boxZoomOut"_s, tr("Zoom out"));
    boxResetZoom = makeRailBox(root, actions.resetZoom, u"boxResetZoom"_s, tr("Reset zoom"));
    zoom = new ZoomButton(actions);
    boxZoom = makeRailBox(root, zoom, u"boxZoom"_s);
    boxZoom->setAlpha(Box::kAlphaOverPhoto);
    boxCompare = makeRailBox(root, actions.compare, u"boxCompare"_s, tr("Show the original"));
    boxCompare->setAlpha(Box::kAlphaOverPhoto); // the controller sets that of the others
    compare = new HeldCommand(actions.compare, boxCompare->findChild<QAbstractButton*>());
    prepareRail();
    waitForFonts();
    boxEditSettings = new SettingsBar(root);
    boxEditSettings->setObjectName(u"boxEditSettings"_s);
    boxContinue = new ContinueCard(root);
    boxContinue->setAlpha(Box::kAlphaOverPhoto);
    boxHint = makeHintCard(root, actions.selectImage);
    boxHelp = makeHelpCard(root, actions.videoTutorial);
    notice = new NoticeLine(root);
    root->installEventFilter(this);
    arrange();
}

bool WindowContents::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize || event->type() == QEvent::LayoutRequest)
        arrange();
    return QObject::eventFilter(watched, event);
}

std::array<std::vector<Box*>, 3> WindowContents::railGroups() const {
    return {{{boxSelectImage, boxResetImage, boxSaveImage},
             {boxUndo, boxRedo},
             {boxZoomIn, boxZoomOut, boxResetZoom, boxZoom, boxCompare}}};
}

void WindowContents::prepareRail() const {
    for (const std::vector<Box*>& group : railGroups()) {
        for (const Box* box : group) {
            const auto* const button = box->findChild<QAbstractButton*>();
            button->ensurePolished();
            (void)button->icon().pixmap(button->iconSize(), button->devicePixelRatioF(),
                                        button->isEnabled() ? QIcon::Normal : QIcon::Disabled);
        }
    }
}

void WindowContents::setBarsVisible(bool visible) {
    for (const std::vector<Box*>& group : railGroups())
        for (Box* box : group)
            box->setVisible(visible);
    m_railBackground->setVisible(visible);
    boxEditSettings->setVisible(visible);
}

void WindowContents::arrange() {
    const int width = m_root->width();
    const int height = m_root->height();
    const QSize bar = boxEditSettings->arrange({width - kRailSpace - kEdge, height});
    place(*boxEditSettings,
          {QPoint(centredBesideRail(bar.width(), width), height - kEdge - bar.height()), bar});
    const QSize line = notice->sizeFor(width - kRailSpace - kEdge);
    place(
        *notice,
        {QPoint(centredBesideRail(line.width(), width), boxEditSettings->y() - kGap - line.height()), line});
    arrangeRail();
    arrangeCards(
        QRect(QPoint(kRailSpace, kEdge), QPoint(width - kEdge - 1, boxEditSettings->y() - kEdge - 1)));
}

void WindowContents::arrangeRail() {
    const auto groups = railGroups();
    const auto heightOf = [&groups](const RailSizes& sizes) {
        int height = -sizes.groupGap;
        for (const std::vector<Box*>& group : groups)
            height += sizes.groupGap - sizes.gap + static_cast<int>(group.size()) * (sizes.box + sizes.gap);
        return height;
    };
    const int usual = heightOf(kUsualRail);
    const int low = heightOf(kLowRail);
    const int available = m_root->height() - 2 * kEdge;
    const double share = std::clamp(static_cast<double>(available - low) / (usual - low), 0.0, 1.0);
    const auto between = [share](int least, int most) {
        return least + static_cast<int>(share * (most - least));
    };
    const RailSizes sizes{.box = between(kLowRail.box, kUsualRail.box),
                          .gap = between(kLowRail.gap, kUsualRail.gap),
                          .groupGap = between(kLowRail.groupGap, kUsualRail.groupGap)};
    const int height = heightOf(sizes);
    int y = std::max(kEdge, (m_root->height() - height) / 2);
    place(*m_railBackground, {kEdge, y, kRailBoxSize, height});
    for (const std::vector<Box*>& group : groups) {
        for (Box* box : group) {
            place(*box, {kEdge, y, kRailBoxSize, sizes.box});
            y += sizes.box + sizes.gap;
        }
        y += sizes.groupGap - sizes.gap;
    }
}

void WindowContents::arrangeCards(QRect area) {
    // All cards have the same width. Where there is no room for all of them, the help gives way: the menu has
    // its button too. The controller hides both the hint and the help once a photo is open.
    std::vector<Box*> cards;
    if (!boxContinue->isHidden())
        cards.push_back(boxContinue);
    cards.push_back(boxHint);
    if (!boxHint->isHidden() || !boxHelp->isHidden())
        cards.push_back(boxHelp);
    std::vector<QSize> sizes;
    const auto heightOf = [&sizes](std::size_t count) {
        int height = -kEdge;
        for (std::size_t i = 0; i < count; ++i)
            height += kEdge + sizes[i].height();
        return height;
    };
    int cardWidth = 0;
    for (Box* card : cards) {
        sizes.push_back(sizeOfCard(*card, area.width()));
        cardWidth = std::max(cardWidth, sizes.back().width());
    }
    if (!boxHint->isHidden() && cards.back() == boxHelp) {
        const bool fits = heightOf(cards.size()) <= area.height();
        if (boxHelp->isHidden() == fits)
            boxHelp->setVisible(fits);
        if (!fits)
            cards.pop_back();
    }
    const int left = centredBesideRail(cardWidth, m_root->width());
    // Slightly above the middle.
    int top = area.top() + std::max(0, (area.height() - heightOf(cards.size())) * 9 / 20);
    for (std::size_t i = 0; i < cards.size(); ++i) {
        place(*cards[i], {left, top, cardWidth, sizes[i].height()});
        cards[i]->layout()->activate(); // its labels may have changed within the same size
        top += sizes[i].height() + kEdge;
    }
}

} // namespace complexion
