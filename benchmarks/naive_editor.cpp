// SPDX-License-Identifier: GPL-3.0-or-later
#include "benchmarks/naive_editor.h"

#include "benchmarks/editor.h"
#include "benchmarks/portraits.h"
#include "benchmarks/stopwatch.h"
#include "benchmarks/table.h"

#include <QFile>

#include <array>

namespace complexion::bench {

namespace {

constexpr int kQuality = 100;

bool isInside(QPoint offset, int radius) {
    return QPoint::dotProduct(offset, offset) < radius * radius;
}

} // namespace

NaiveEditor::NaiveEditor(const QString& photo, const QString& folder) : m_image(photo), m_folder(folder) {
    m_image.convertTo(QImage::Format_RGB32);
    push();
}

NaiveEditor::~NaiveEditor() {
    for (const QString& state : m_states)
        QFile::remove(state);
}

void NaiveEditor::click(QPoint place, int radius, int threshold) {
    const QImage grey = m_image.convertToFormat(QImage::Format_Grayscale8);
    QImage copy = m_image.copy();
    std::vector<QPoint> disc;
    qint64 sum = 0;
    for (int y = -radius; y < radius; ++y)
        for (int x = -radius; x < radius; ++x)
            if (isInside({x, y}, radius)) {
                disc.push_back(place + QPoint(x, y));
                sum += qGray(grey.pixel(disc.back()));
            }
    const int mean = static_cast<int>(sum / static_cast<qint64>(disc.size()));
    std::array<qint64, 3> color = {};
    qint64 skin = 0;
    std::vector<QPoint> spots;
    for (const QPoint point : disc) {
        if (qGray(grey.pixel(point)) < mean - threshold) {
            spots.push_back(point);
            continue;
        }
        const QRgb pixel = m_image.pixel(point);
        color[0] += qRed(pixel);
        color[1] += qGreen(pixel);
        color[2] += qBlue(pixel);
        ++skin;
    }
    const QRgb paint = qRgb(static_cast<int>(color[0] / skin), static_cast<int>(color[1] / skin),
                            static_cast<int>(color[2] / skin));
    for (const QPoint spot : spots)
        copy.setPixel(spot, paint);
    m_image = copy;
    push();
}

void NaiveEditor::undo() {
    QFile::remove(m_states.takeLast());
    m_image = QImage(m_states.last());
    m_image.convertTo(QImage::Format_RGB32);
}

void NaiveEditor::push() {
    m_states.append(QStringLiteral("%1/naive-%2.jpg").arg(m_folder).arg(m_states.size()));
    m_image.save(m_states.last(), "JPEG", kQuality);
}

void addNaiveRow() {
    addRow({.name = rowName("vs_naive", 24), .goal = atLeast(10), .rounds = 2, .prepare = []() -> Round {
                constexpr int kTimes = 10;
                constexpr int kRadius = 20;
                const std::filesystem::path photo = portraitFile(24, Kind::Jpeg);
                auto naive = std::make_shared<NaiveEditor>(QString::fromStdString(photo.string()),
                                                           QString::fromStdString(folder().string()));
                auto editor = std::make_shared<Editor>();
                editor->open(photo);
                editor->setRadius(kRadius);
                return [naive, editor](Samples& samples) {
                    const double plain = secondsOf([&] {
                        for (int i = 0; i < kTimes; ++i)
                            naive->click({2000 + 50 * i, 3000}, kRadius, 1);
                        for (int i = 0; i < kTimes; ++i)
                            naive->undo();
                    });
                    const double own = secondsOf([&] {
                        for (int i = 0; i < kTimes; ++i)
                            editor->clickOnSkin({17, 40});
                        for (int i = 0; i < kTimes; ++i)
                            editor->undo();
                    });
                    samples.add(plain, own);
                };
            }});
}

} // namespace complexion::bench
