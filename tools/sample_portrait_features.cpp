// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/procedural_noise.h"
#include "tools/sample_portrait_curves.h"
#include "tools/sample_portrait_layers.h"

#include <QPainter>
#include <QPainterPath>

#include <cmath>
#include <numbers>

namespace complexion {

namespace {

constexpr double kEyeLine = 604;
constexpr double kEyeDistance = 94; // of each eye from the axis

QPainterPath eyeOutline() {
    QPainterPath path(QPointF(-50, 9));
    path.cubicTo(QPointF(-34, -19), QPointF(16, -31), QPointF(50, -3));
    path.cubicTo(QPointF(30, 21), QPointF(-18, 23), QPointF(-50, 9));
    return path;
}

void paintIris(QPainter& painter, QPointF centre, HashedNumbers& numbers) {
    constexpr double kRadius = 23;
    QRadialGradient iris(centre + QPointF(2, 6), kRadius + 4);
    iris.setColorAt(0.30, QColor(132, 104, 62));
    iris.setColorAt(0.65, QColor(96, 92, 66));
    iris.setColorAt(0.92, QColor(44, 50, 46));
    iris.setColorAt(1, QColor(26, 30, 30));
    painter.setPen(Qt::NoPen);
    painter.setBrush(iris);
    painter.drawEllipse(centre, kRadius, kRadius);
    for (int ray = 0; ray < 130; ++ray) {
        const double angle = numbers.between(0, 2 * std::numbers::pi);
        const QPointF direction(std::cos(angle), std::sin(angle));
        const bool isBright = numbers.next() < 0.55;
        painter.setPen(QPen(isBright ? QColor(190, 166, 112, 60) : QColor(20, 22, 16, 70), 0.9));
        painter.drawLine(centre + direction * 9, centre + direction * numbers.between(14, kRadius - 2));
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(10, 9, 9));
    painter.drawEllipse(centre, 8.6, 8.6);
    painter.setBrush(QColor(255, 255, 255, 225));
    painter.drawEllipse(centre + QPointF(-7, -8), 5.2, 4.4);
    painter.setBrush(QColor(255, 255, 255, 60));
    painter.drawEllipse(centre + QPointF(8, 9), 5, 3.4);
}

void paintLashes(QPainter& painter, HashedNumbers& numbers) {
    const Curve lid{{-50, 9}, {-34, -19}, {16, -31}, {50, -3}};
    for (int lash = 0; lash < 46; ++lash) {
        const double along = lash / 45.0;
        const QPointF root = lid.path().pointAtPercent(along);
        const double lean = -0.9 + 2.1 * along;
        const double length = numbers.between(5, 9) * (0.6 + 0.7 * along);
        const QPointF tip = root + QPointF(lean * length * 0.75, -length);
        QPainterPath path(root);
        path.quadTo(root + QPointF(lean * length * 0.15, -length * 0.35), tip);
        painter.setPen(QPen(QColor(22, 14, 12, 190), numbers.between(0.8, 1.5), Qt::SolidLine, Qt::RoundCap));
        painter.drawPath(path);
    }
}

/// Paints an eye at the origin, with its inner corner at the left.
void paintEye(QPainter& painter, bool isMirrored, HashedNumbers& numbers) {
    const QPainterPath outline = eyeOutline();
    QLinearGradient white(0, -24, 0, 20);
    white.setColorAt(0, QColor(150, 134, 128));
    white.setColorAt(0.45, QColor(214, 204, 197));
    white.setColorAt(1, QColor(196, 174, 165));
    painter.fillPath(outline, white);
    painter.save();
    painter.setClipPath(outline);
    painter.save();
    if (isMirrored)
        painter.scale(-1, 1); // the highlight is not mirrored
    paintIris(painter, QPointF(isMirrored ? -2 : 2, -5), numbers);
    painter.restore();
    QLinearGradient lidShadow(0, -30, 0, -4);
    lidShadow.setColorAt(0, QColor(20, 10, 8, 170));
    lidShadow.setColorAt(1, QColor(20, 10, 8, 0));
    painter.fillPath(outline, lidShadow);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(206, 134, 122, 190));
    painter.drawEllipse(QPointF(-47, 8), 9, 7);
    painter.restore();

    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor(34, 20, 17, 225), 4.2, Qt::SolidLine, Qt::RoundCap));
    painter.drawPath(Curve{{-48, 7}, {-33, -19}, {16, -31}, {51, -4}}.path());
    painter.setPen(QPen(QColor(110, 66, 56, 130), 2.2, Qt::SolidLine, Qt::RoundCap));
    painter.drawPath(Curve{{50, -2}, {30, 22}, {-18, 24}, {-48, 10}}.path());
    for (const double width : {9.0, 5.0, 2.2}) {
        painter.setPen(QPen(QColor(120, 66, 52, 42), width, Qt::SolidLine, Qt::RoundCap));
        painter.drawPath(Curve{{-46, -8}, {-32, -34}, {16, -46}, {54, -18}}.path());
        painter.drawPath(Curve{{-44, 26}, {-20, 38}, {12, 38}, {36, 28}}.path());
    }
    paintLashes(painter, numbers);
}

void paintBrow(QPainter& painter, HashedNumbers& numbers) {
    const Curve lower{{-62, -42}, {-24, -62}, {26, -74}, {72, -46}};
    const Curve upper{{-60, -60}, {-22, -78}, {30, -86}, {72, -47}};
    for (int hair = 0; hair < 620; ++hair) {
        const double along = std::pow(numbers.next(), 0.85);
        const double across = numbers.next();
        const QPointF root = between(lower, upper, across).path().pointAtPercent(along);
        const double lean = 0.25 + 1.5 * along;
        const double length = numbers.between(9, 17) * (1 - 0.35 * along);
        const QPointF tip = root + QPointF(std::sin(lean) * length, -std::cos(lean) * length * 0.8);
        painter.setPen(QPen(QColor(58, 36, 26, static_cast<int>(numbers.between(40, 120))),
                            numbers.between(0.7, 1.5), Qt::SolidLine, Qt::RoundCap));
        painter.drawLine(root, tip);
    }
}

void paintLips(QPainter& painter) {
    QPainterPath upper(QPointF(-86, -5));
    upper.cubicTo(QPointF(-50, -12), QPointF(-26, -28), QPointF(-12, -26));
    upper.cubicTo(QPointF(-6, -25), QPointF(-4, -21), QPointF(0, -20));
    upper.cubicTo(QPointF(4, -21), QPointF(6, -25), QPointF(12, -26));
    upper.cubicTo(QPointF(26, -28), QPointF(50, -12), QPointF(86, -5));
    upper.cubicTo(QPointF(44, 4), QPointF(18, 1), QPointF(0, 4));
    upper.cubicTo(QPointF(-18, 1), QPointF(-44, 4), QPointF(-86, -5));
    QPainterPath lower(QPointF(-86, -5));
    lower.cubicTo(QPointF(-44, 4), QPointF(-18, 1), QPointF(0, 4));
    lower.cubicTo(QPointF(18, 1), QPointF(44, 4), QPointF(86, -5));
    lower.cubicTo(QPointF(56, 26), QPointF(30, 37), QPointF(0, 37));
    lower.cubicTo(QPointF(-30, 37), QPointF(-56, 26), QPointF(-86, -5));

    // Several nested faint outlines make a soft edge.
    for (int layer = 0; layer < 5; ++layer) {
        const double size = 1.03 - 0.015 * layer;
        painter.save();
        painter.scale(size, size);
        painter.setOpacity(0.30);
        QLinearGradient above(0, -28, 0, 6);
        above.setColorAt(0, QColor(188, 108, 102));
        above.setColorAt(1, QColor(140, 66, 66));
        painter.fillPath(upper, above);
        QLinearGradient below(0, 0, 0, 38);
        below.setColorAt(0, QColor(160, 78, 76));
        below.setColorAt(0.45, QColor(206, 120, 114));
        below.setColorAt(1, QColor(168, 92, 86));
        painter.fillPath(lower, below);
        painter.restore();
    }
}

void paintLinesAndGloss(QPainter& painter) {
    HashedNumbers numbers(301);
    for (int line = 0; line < 90; ++line) {
        const double x = numbers.between(-58, 58);
        const double reach = 1 - std::pow(x / 70, 2);
        painter.setPen(QPen(QColor(110, 44, 46, static_cast<int>(numbers.between(12, 40))), 0.9));
        painter.drawLine(QPointF(x, 5), QPointF(x * 1.05, 5 + 24 * reach * numbers.between(0.5, 1)));
    }
    painter.setPen(Qt::NoPen);
    QRadialGradient gloss(QPointF(-14, 17), 26);
    gloss.setColorAt(0, QColor(255, 226, 216, 100));
    gloss.setColorAt(1, QColor(255, 226, 216, 0));
    painter.setBrush(gloss);
    painter.drawEllipse(QPointF(-14, 17), 30, 9);
}

void paintMouthLine(QPainter& painter) {
    painter.setBrush(Qt::NoBrush);
    for (const double width : {4.4, 2.8, 1.4}) {
        painter.setPen(QPen(QColor(92, 34, 36, 90), width, Qt::SolidLine, Qt::RoundCap));
        QPainterPath line(QPointF(-88, -6));
        line.cubicTo(QPointF(-44, 5), QPointF(-18, 1), QPointF(0, 4));
        line.cubicTo(QPointF(18, 1), QPointF(44, 5), QPointF(88, -6));
        painter.drawPath(line);
    }
}

void paintNostrils(QPainter& painter) {
    for (const double side : {-1.0, 1.0})
        for (const double size : {1.0, 0.75, 0.5}) {
            painter.save();
            painter.translate(side * 22, -85);
            painter.rotate(side * -14);
            painter.setPen(Qt::NoPen);
            painter.setBrush(QColor(70, 24, 20, 90));
            painter.drawEllipse(QPointF(0, 0), 11 * size, 4.5 * size);
            painter.restore();
        }
}

} // namespace

void paintEyes(QImage& picture) {
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    for (const bool isMirrored : {false, true}) {
        HashedNumbers numbers(isMirrored ? 201 : 202);
        painter.save();
        painter.translate(kFaceAxis + (isMirrored ? -kEyeDistance : kEyeDistance), kEyeLine);
        if (isMirrored)
            painter.scale(-1, 1);
        paintEye(painter, isMirrored, numbers);
        paintBrow(painter, numbers);
        painter.restore();
    }
}

void paintMouthAndNostrils(QImage& picture) {
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(kFaceAxis, 852);
    paintLips(painter);
    paintLinesAndGloss(painter);
    paintMouthLine(painter);
    paintNostrils(painter);
}

void paintSweater(QImage& picture) {
    QPainterPath body(QPointF(-20, 1520));
    body.lineTo(QPointF(-20, 1400));
    body.cubicTo(QPointF(60, 1270), QPointF(250, 1220), QPointF(400, 1168));
    body.cubicTo(QPointF(450, 1275), QPointF(540, 1300), QPointF(600, 1300));
    body.cubicTo(QPointF(660, 1300), QPointF(750, 1275), QPointF(800, 1168));
    body.cubicTo(QPointF(950, 1220), QPointF(1140, 1270), QPointF(1220, 1400));
    body.lineTo(QPointF(1220, 1520));
    body.closeSubpath();
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    QLinearGradient cloth(200, 1180, 1050, 1500);
    cloth.setColorAt(0, QColor(70, 98, 104));
    cloth.setColorAt(0.5, QColor(48, 72, 80));
    cloth.setColorAt(1, QColor(26, 40, 48));
    painter.fillPath(body, cloth);

    painter.setClipPath(body);
    HashedNumbers numbers(401);
    for (int stitch = 0; stitch < 16000; ++stitch) {
        const QPointF at(std::floor(numbers.between(0, 150)) * 8 + 4, numbers.between(1160, 1500));
        const bool isBright = numbers.next() < 0.5;
        painter.setPen(QPen(isBright ? QColor(150, 180, 182, 34) : QColor(8, 14, 18, 46), 2.2, Qt::SolidLine,
                            Qt::RoundCap));
        const double side = isBright ? -2.6 : 2.6;
        painter.drawLine(at + QPointF(side, -3), at + QPointF(0, 3));
    }
    const Curve left{{400, 1168}, {450, 1275}, {540, 1300}, {600, 1300}};
    QPainterPath collar = left.path();
    const Curve right = mirrored(left);
    collar.connectPath(right.path().toReversed());
    painter.setClipping(false);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor(34, 52, 58), 26, Qt::SolidLine, Qt::RoundCap));
    painter.drawPath(collar);
    constexpr int kRibs = 112;
    for (int rib = 0; rib < kRibs; ++rib) {
        const double along = 0.009 * rib;
        const QPointF at = collar.pointAtPercent(along);
        const double angle = collar.angleAtPercent(along) * std::numbers::pi / 180;
        const QPointF across(std::sin(angle) * 11, std::cos(angle) * 11);
        painter.setPen(QPen(QColor(120, 150, 154, 60), 2.4, Qt::SolidLine, Qt::RoundCap));
        painter.drawLine(at - across, at + across);
    }
}

} // namespace complexion
