// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "view/custom_image_view.h"

#include <QWidget>

namespace complexion {

/// A widget that covers the image view and draws over the photo. Transparent to mouse events, without focus.
class PhotoOverlay : public QWidget {
    Q_OBJECT

public:
    explicit PhotoOverlay(CustomImageView* view);

protected:
    /// Keeps the size of the view.
    bool eventFilter(QObject* watched, QEvent* event) override;

    CustomImageView* m_view;
};

} // namespace complexion
