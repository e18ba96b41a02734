// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/zoom_frame.h"

namespace complexion {

/// Accumulates the scale of a pinch into whole zoom steps.
class PinchSteps {
public:
    /// Discards the remainder of the last pinch.
    void begin() { m_scale = 1; }

    /// Adds a change of scale, a positive factor. Returns the steps reached, negative to zoom out, and keeps
    /// the remainder.
    int add(double factor) {
        if (factor <= 0)
            return 0;
        m_scale *= factor;
        int steps = 0;
        for (; m_scale >= kZoomInFactor; ++steps)
            m_scale /= kZoomInFactor;
        for (; m_scale <= kZoomOutFactor; --steps)
            m_scale /= kZoomOutFactor;
        return steps;
    }

private:
    double m_scale = 1; // less than a zoom step
};

} // namespace complexion
