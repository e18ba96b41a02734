// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "view/disc_ring.h"
#include "view/photo_overlay.h"

#include <QRegion>
#include <QWidget>

#include <vector>

namespace complexion {

/// Soft rings over the photo around the blemishes found on it, the first the clearest. Transparent to mouse
/// events.
class BlemishMarks : public PhotoOverlay {
    Q_OBJECT

public:
    explicit BlemishMarks(CustomImageView* view);

    /// What is marked, in descending order of strength. The radii are those of the blemishes.
    const std::vector<DiscRing>& marked() const { return m_marked; }
    void setMarked(std::vector<DiscRing> blemishes);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    double shownRadius(const DiscRing& blemish) const;
    /// Repaints what the marks cover now and what they covered before.
    void refresh();

    std::vector<DiscRing> m_marked;
    QRegion m_painted; // covered by the marks at the last repaint
};

} // namespace complexion
