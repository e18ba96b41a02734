// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/window_contents.h"

#include "app/cards.h"
#include "app/rail.h"

#include <QAbstractButton>
#include <QEvent>
#include <QLayout>

#include <algorithm>

namespace complexion {

namespace {

using namespace Qt::StringLiterals;

constexpr int kEdge = 16;     // distance from the root view's edge
constexpr int kGap = 8;       // between boxes of a group
constexpr int kGroupGap = 24; // between groups
/// The space left of the settings and the cards: the rail with its margins.
constexpr int kRailSpace = kEdge + kRailBoxSize + kEdge;

/// The left edge of a box of width `length`: centred in the window, but not overlapping the rail.
int centredBesideRail(int length, int width) {
    return std::max((width - length) / 2, std::min(kRailSpace, width - kEdge - length));
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
    boxCompare = makeRailBox(root, actions.compare, u"boxCompare"_s, tr("Show the original"));
    boxCompare->setAlpha(Box::kAlphaOverPhoto); // the controller sets that of the others
    compare = new HeldCommand(actions.compare, boxCompare->findChild<QAbstractButton*>());
    zoom = new ZoomButton(actions);
    boxZoom = makeRailBox(root, zoom, u"boxZoom"_s);
    boxZoom->setAlpha(Box::kAlphaOverPhoto);
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

int WindowContents::railHeight() const {
    int height = -kGroupGap;
    for (const std::vector<Box*>& group : railGroups())
        height += kGroupGap - kGap + static_cast<int>(group.size()) * (kRailBoxSize + kGap);
    return height;
}

void WindowContents::setBarsVisible(bool visible) {
    for (const std::vector<Box*>& group : railGroups())
        for (Box* box : group)
            box->setVisible(visible);
    m_railBackground->setVisible(visible);
    boxEditSettings->setVisible(visible);
}

QSize WindowContents::smallestSize() {
    const QSize hint = boxHint->sizeHint();
    const QSize help = boxHelp->sizeHint();
    const QSize bar = boxEditSettings->arrange(0); // the narrower layout, in two rows
    const int width = std::max({hint.width(), help.width(), bar.width()});
    const int height = hint.height() + kEdge + help.height() + kEdge + bar.height();
    return {kRailSpace + width + kEdge, kEdge + std::max(railHeight(), height) + kEdge};
}

void WindowContents::arrange() {
    const int width = m_root->width();
    const int height = m_root->height();

    const QSize bar = boxEditSettings->arrange(width - kRailSpace - kEdge);
    boxEditSettings->setGeometry(centredBesideRail(bar.width(), width), height - kEdge - bar.height(),
                                 bar.width(), bar.height());

    const QSize line = notice->sizeFor(width - kRailSpace - kEdge);
    notice->setGeometry(centredBesideRail(line.width(), width), boxEditSettings->y() - kGap - line.height(),
                        line.width(), line.height());

    int y = std::max(kEdge, (height - railHeight()) / 2);
    m_railBackground->setGeometry(kEdge, y, kRailBoxSize, railHeight());
    for (const std::vector<Box*>& group : railGroups()) {
        for (Box* box : group) {
            box->setGeometry(kEdge, y, kRailBoxSize, kRailBoxSize);
            y += kRailBoxSize + kGap;
        }
        y += kGroupGap - kGap;
    }

    // All cards have the same width. They are slightly above the middle of the space over the settings.
    std::vector<Box*> cards = {boxHint, boxHelp};
    if (!boxContinue->isHidden())
        cards.insert(cards.begin(), boxContinue);
    int cardWidth = 0;
    int cardHeights = -kEdge;
    for (const Box* card : cards) {
        cardWidth = std::max(cardWidth, card->sizeHint().width());
        cardHeights += kEdge + card->sizeHint().height();
    }
    const int left = centredBesideRail(cardWidth, width);
    int top = std::max(kEdge, (height - kEdge - bar.height() - cardHeights) * 9 / 20);
    for (Box* card : cards) {
        const int cardHeight = card->sizeHint().height();
        card->setGeometry(left, top, cardWidth, cardHeight);
        top += cardHeight + kEdge;
    }
}

} // namespace complexion
