// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/rail.h"

#include <QAction>
#include <QToolButton>
#include <QVBoxLayout>

namespace complexion {

namespace {

constexpr int kIconSize = 20;

} // namespace

Box* makeRailBox(QWidget* parent, QAction* action, const QString& objectName, const QString& accessibleName) {
    auto* button = new QToolButton;
    button->setDefaultAction(action);
    button->setToolButtonStyle(Qt::ToolButtonIconOnly);
    button->setIconSize({kIconSize, kIconSize});
    button->setAccessibleName(accessibleName);
    return makeRailBox(parent, button, objectName);
}

Box* makeRailBox(QWidget* parent, QToolButton* button, const QString& objectName) {
    auto* box = new Box(parent);
    box->setObjectName(objectName);
    box->resize(kRailBoxSize, kRailBoxSize);
    button->setMinimumSize(1, 1);
    button->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    button->setAutoRaise(true);
    auto* layout = new QVBoxLayout(box);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(button);
    return box;
}

} // namespace complexion
