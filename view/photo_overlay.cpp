// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/photo_overlay.h"

#include <QEvent>

namespace complexion {

PhotoOverlay::PhotoOverlay(CustomImageView* view) : QWidget(view), m_view(view) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    setGeometry(view->rect());
    view->installEventFilter(this);
}

bool PhotoOverlay::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize)
        setGeometry(m_view->rect());
    return QWidget::eventFilter(watched, event);
}

} // namespace complexion
