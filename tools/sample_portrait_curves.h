// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/sample_portrait_layers.h"

#include <QPainterPath>

namespace complexion {

/// A cubic Bézier curve.
struct Curve {
    QPointF from;
    QPointF bend;
    QPointF secondBend;
    QPointF to;

    QPainterPath path() const {
        QPainterPath result(from);
        result.cubicTo(bend, secondBend, to);
        return result;
    }
};

/// Interpolates linearly between two curves; `part` runs from 0 to 1.
inline Curve between(const Curve& one, const Curve& other, double part) {
    const auto point = [part](QPointF a, QPointF b) { return a + (b - a) * part; };
    return {point(one.from, other.from), point(one.bend, other.bend), point(one.secondBend, other.secondBend),
            point(one.to, other.to)};
}

/// The curve, reflected in the axis of the face.
inline Curve mirrored(const Curve& curve) {
    const auto point = [](QPointF p) { return QPointF(2 * kFaceAxis - p.x(), p.y()); };
    return {point(curve.from), point(curve.bend), point(curve.secondBend), point(curve.to)};
}

} // namespace complexion
