// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/sample_portrait_layers.h"

#include <QPainterPath>

namespace complexion {

/// A cubic Bézier curve.
struct Curve {
    QPointF from;
    QPointF bend;
    QPointF bendToo;
    QPointF to;

    QPainterPath path() const {
        QPainterPath result(from);
        result.cubicTo(bend, bendToo, to);
        return result;
    }
};

/// The curve that lies at a part of the way from one to another.
inline Curve between(const Curve& one, const Curve& other, double part) {
    const auto point = [part](QPointF a, QPointF b) { return a + (b - a) * part; };
    return {point(one.from, other.from), point(one.bend, other.bend), point(one.bendToo, other.bendToo),
            point(one.to, other.to)};
}

/// The curve on the other side of the face.
inline Curve mirrored(const Curve& curve) {
    const auto point = [](QPointF p) { return QPointF(2 * kFaceAxis - p.x(), p.y()); };
    return {point(curve.from), point(curve.bend), point(curve.bendToo), point(curve.to)};
}

} // namespace complexion
