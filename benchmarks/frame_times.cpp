// SPDX-License-Identifier: GPL-3.0-or-later

// The times of a gesture's frames, as a picture.
#include "benchmarks/frame_times.h"

#include "benchmarks/color_spaces.h"
#include "benchmarks/editor.h"
#include "benchmarks/portraits.h"

#include <QImage>
#include <QPainter>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace complexion::bench {

namespace {

using namespace Qt::StringLiterals;

constexpr QSize kScreen(3840, 2160);
constexpr int kPhoto = 50; // megapixels
constexpr double kZoom = 2;
constexpr int kPanSteps = 120;
constexpr int kZoomSteps = 24;
constexpr QPointF kPanStep(-13, 9);
constexpr double kMillisecondsPerSecond = 1000;
constexpr double kFrameMilliseconds = 1000.0 / 60;

constexpr QSize kPlot(1200, 360); // one gesture
constexpr QMargins kAround(70, 60, 30, 50);
constexpr double kMaxMilliseconds = 40; // longer frames are cut off
constexpr QRgb kPaper = 0xFFFFFFFF;
constexpr QRgb kInk = 0xFF202024;
constexpr QRgb kGrid = 0xFFD8D8DC;
constexpr QRgb kFirst = 0xFF3E7CB1;   // a frame of the gesture itself
constexpr QRgb kRefined = 0xFFE08E45; // a part of the final pixels after a zoom
constexpr QRgb kLimit = 0xFFC0392B;

struct FrameTime {
    double milliseconds = 0;
    bool isRefinement = false;
};

using FrameTimes = std::vector<FrameTime>;

FrameTimes timesOfPan(Editor& editor) {
    editor.zoomTo(kZoom);
    FrameTimes times;
    for (int step = 0; step < kPanSteps; ++step) {
        const bool isOutward = step / (kPanSteps / 4) % 2 == 0;
        times.push_back({editor.drag(isOutward ? kPanStep : -kPanStep) * kMillisecondsPerSecond});
    }
    return times;
}

/// Zooms in and out again; each rest shows the final pixels.
FrameTimes timesOfZoom(Editor& editor) {
    editor.zoomTo(1);
    FrameTimes times;
    ViewController& controller = editor.controller();
    // A step beyond the fitted size would change nothing.
    const auto isFitted = [&view = *controller.imageView] { return view.frame().width <= view.width(); };
    for (const bool in : {true, false}) {
        for (int step = 0; step < kZoomSteps && (in || !isFitted()); ++step) {
            const double seconds = editor.paintedAfter([&] {
                if (in)
                    controller.OnZoomIn(nullptr);
                else
                    controller.OnZoomOut(nullptr);
            });
            times.push_back({seconds * kMillisecondsPerSecond});
        }
        editor.rest([&times](double seconds) { times.push_back({seconds * kMillisecondsPerSecond, true}); });
    }
    return times;
}

/// "median 1.2 ms, longest 3.4 ms, 0 of 120 over 16.7 ms".
QString summary(const FrameTimes& times) {
    std::vector<double> sorted;
    for (const FrameTime& frame : times)
        sorted.push_back(frame.milliseconds);
    std::ranges::sort(sorted);
    const auto late = std::ranges::count_if(sorted, [](double time) { return time > kFrameMilliseconds; });
    return u"median %1 ms, longest %2 ms, %3 of %4 over %5 ms"_s.arg(sorted[sorted.size() / 2], 0, 'f', 1)
        .arg(sorted.back(), 0, 'f', 1)
        .arg(late)
        .arg(sorted.size())
        .arg(kFrameMilliseconds, 0, 'f', 1);
}

void draw(QPainter& painter, const QString& title, const FrameTimes& times) {
    const QRectF area = QRect(QPoint(), kPlot).marginsRemoved(kAround);
    const auto heightOf = [&area](double milliseconds) {
        return area.height() * std::min(milliseconds, kMaxMilliseconds) / kMaxMilliseconds;
    };
    painter.setPen(QColor(kInk));
    painter.drawText(QPointF(area.left(), area.top() - 30), title + u": "_s + summary(times));
    for (int tick = 0; tick <= kMaxMilliseconds; tick += 10) {
        const double y = area.bottom() - heightOf(tick);
        painter.setPen(QColor(kGrid));
        painter.drawLine(QPointF(area.left(), y), QPointF(area.right(), y));
        painter.setPen(QColor(kInk));
        painter.drawText(QPointF(12, y + 5), u"%1 ms"_s.arg(tick));
    }
    const double width = area.width() / static_cast<double>(times.size());
    double x = area.left();
    for (const FrameTime& frame : times) {
        const double height = heightOf(frame.milliseconds);
        painter.fillRect(QRectF(x, area.bottom() - height, std::max(1.0, width - 1), height),
                         QColor(frame.isRefinement ? kRefined : kFirst));
        x += width;
    }
    painter.setPen(QPen(QColor(kLimit), 1, Qt::DashLine));
    const double limit = area.bottom() - heightOf(kFrameMilliseconds);
    painter.drawLine(QPointF(area.left(), limit), QPointF(area.right(), limit));
    painter.setPen(QColor(kInk));
    painter.drawText(QPointF(area.left(), area.bottom() + 25), u"frames in order"_s);
}

} // namespace

int plotFrameTimes(const std::string& path) {
    Editor editor(kScreen);
    editor.show(portraitImage(kPhoto).withProfile(displayP3()));
    ViewController& controller = editor.controller();
    controller.comboEffect->setCurrentIndex(1);
    editor.paintedAfter([&] { controller.OnEffectSelected(controller.comboEffect); });
    editor.rest();
    const FrameTimes pan = timesOfPan(editor);
    const FrameTimes zoom = timesOfZoom(editor);

    QImage plot(kPlot.width(), 2 * kPlot.height(), QImage::Format_RGB32);
    plot.fill(kPaper);
    QPainter painter(&plot);
    draw(painter, u"Pan by 16 points at 3840 × 2160, Display P3, effect Chrome"_s, pan);
    painter.translate(0, kPlot.height());
    draw(painter, u"Zoom in and out (blue), final pixels (orange)"_s, zoom);
    painter.end();
    std::printf("pan:  %s\nzoom: %s\n", qPrintable(summary(pan)), qPrintable(summary(zoom)));
    if (plot.save(QString::fromStdString(path), "PNG"))
        return 0;
    std::fprintf(stderr, "cannot write %s\n", path.c_str());
    return 1;
}

} // namespace complexion::bench
