// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/procedural_noise.h"
#include "tools/sample_portrait_curves.h"
#include "tools/sample_portrait_layers.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <array>
#include <cmath>

namespace complexion {

namespace {

/// A lock of hair between two curves: its strands, and its brightness where it is lit.
struct Lock {
    Curve inner;
    Curve outer;
    int strands = 0;
    double shine = 1;
    bool fadesIn = false; // if it continues another lock
};

QColor hairColor(double brightness) {
    const double part = std::clamp(brightness, 0.0, 1.0);
    return QColor::fromRgbF(static_cast<float>(0.10 + 0.42 * part), static_cast<float>(0.062 + 0.27 * part),
                            static_cast<float>(0.045 + 0.155 * part));
}

void paintLockBody(QPainter& painter, const Lock& lock) {
    QPainterPath body = lock.inner.path();
    body.lineTo(lock.outer.to);
    body.connectPath(lock.outer.path().toReversed());
    painter.fillPath(body, hairColor(0.06));
}

void paintStrands(QPainter& painter, const Lock& lock, HashedNumbers& numbers) {
    for (int strand = 0; strand < lock.strands; ++strand) {
        const double part = numbers.next();
        Curve curve = between(lock.inner, lock.outer, part);
        const auto jitter = [&](QPointF& point, double by) {
            point += QPointF(numbers.between(-by, by), numbers.between(-by, by));
        };
        jitter(curve.from, 3);
        jitter(curve.bend, 9);
        jitter(curve.secondBend, 12);
        jitter(curve.to, 10);
        curve.to.ry() += numbers.between(-70, 22);
        const double tone = numbers.between(0.05, 0.42) * (0.7 + 0.5 * std::sin(part * 21));
        const double shine = lock.shine * numbers.between(0.4, 1.0);
        QLinearGradient gradient(curve.from, curve.to);
        const auto stop = [&](double at, double brightness, float opacity = 1) {
            QColor color = hairColor(brightness);
            color.setAlphaF(opacity);
            gradient.setColorAt(at, color);
        };
        stop(0, tone * 0.6, lock.fadesIn ? 0 : 1);
        stop(0.22, tone + 0.30 * shine);
        stop(0.36, tone + 0.42 * shine);
        stop(0.55, tone * 0.9);
        stop(0.78, tone + 0.16 * shine);
        stop(0.9, tone * 0.8, 0.8F);
        stop(1, tone * 0.7, 0);
        painter.setOpacity(numbers.between(0.35, 0.85));
        painter.setPen(QPen(gradient, numbers.between(1.0, 3.2), Qt::SolidLine, Qt::RoundCap));
        painter.drawPath(curve.path());
    }
    painter.setOpacity(1);
}

} // namespace

void paintHairBehind(QImage& picture) {
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    HashedNumbers numbers(501);
    const Lock left{{{600, 300}, {430, 420}, {420, 800}, {450, 1130}},
                    {{596, 226}, {290, 240}, {318, 800}, {322, 1170}},
                    700,
                    0.5};
    const Lock right{mirrored(left.inner), mirrored(left.outer), 700, 0.4};
    const Lock nape{left.inner, right.inner, 500, 0.2};
    for (const Lock& lock : {left, right, nape}) {
        paintLockBody(painter, lock);
        paintStrands(painter, lock, numbers);
    }
}

void paintHairInFront(QImage& picture) {
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    HashedNumbers numbers(502);
    // From a parting right of the centre, over the temples, down to the shoulders.
    const Lock left{{{640, 306}, {470, 350}, {372, 520}, {388, 780}},
                    {{644, 222}, {330, 190}, {318, 520}, {316, 820}},
                    700,
                    1.0};
    const Lock right{{{640, 306}, {760, 350}, {826, 500}, {812, 760}},
                     {{640, 222}, {850, 200}, {888, 520}, {886, 820}},
                     700,
                     0.75};
    const Lock leftFall{{{388, 560}, {372, 800}, {430, 980}, {432, 1190}},
                        {{331, 545}, {308, 800}, {304, 1000}, {330, 1216}},
                        700,
                        0.6,
                        true};
    const Lock rightFall{{{812, 560}, {828, 800}, {776, 980}, {780, 1190}},
                         {{873, 545}, {896, 800}, {898, 1000}, {876, 1216}},
                         700,
                         0.45,
                         true};
    const std::array locks{leftFall, rightFall, left, right};
    for (const Lock& lock : locks)
        paintLockBody(painter, lock);
    for (const Lock& lock : locks)
        paintStrands(painter, lock, numbers);
}

} // namespace complexion
