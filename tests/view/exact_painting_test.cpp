// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/base/pixel_buffer.h"
#include "tests/fakes/pictures.h"
#include "view/custom_image_view.h"

#include <QTest>

#include <gtest/gtest.h>

#include <cmath>

namespace complexion {
namespace {

class Inverted : public PixelTransform {
public:
    void apply(std::span<RGBA32> pixels) const override {
        for (RGBA32& pixel : pixels)
            pixel = RGBA32(static_cast<std::uint8_t>(255 - pixel.red()),
                           static_cast<std::uint8_t>(255 - pixel.green()),
                           static_cast<std::uint8_t>(255 - pixel.blue()), 255);
    }
};

/// A view that is large enough to show scaled pixels at first after a zoom. Whatever it has shown before, it
/// paints the same pixels as a new view.
class ExactPainting : public testing::Test {
protected:
    ExactPainting() {
        view.setBackground(background);
        view.resize(1600, 1000);
        view.setFrame({-100, -80, 1800, 1200});
        view.setImage(photo);
        view.show();
        expectExact("first");
    }

    static RGBA32 wave(int row, int column) {
        return {static_cast<std::uint8_t>(128 + 100 * std::sin(row * 0.11)),
                static_cast<std::uint8_t>(128 + 100 * std::sin(column * 0.07)),
                static_cast<std::uint8_t>(100 + 90 * std::sin((row + column) * 0.05)), 255};
    }

    /// Like a repair, shares all tiles but those that it touches.
    static Image withRedSpot(const Image& image) {
        const std::vector<RGBA32> red(80, RGBA32(250, 0, 0, 255));
        Result<PixelBuffer> buffer = PixelBuffer::open(image);
        for (int row = 700; row < 760; ++row)
            buffer->paintRow({row, 1100}, red);
        return std::move(*buffer).close();
    }

    void expectExact(const char* after) {
        EXPECT_TRUE(QTest::qWaitFor([this] {
            QCoreApplication::processEvents();
            return !view.isProvisional();
        }));
        const QImage kept = view.grab().toImage();
        CustomImageView fresh;
        fresh.setBackground(background);
        fresh.resize(view.size());
        fresh.setFrame(view.frame());
        fresh.setImage(shown);
        EXPECT_EQ(kept, fresh.grab().toImage()) << after;
    }

    void setFrame(double x, double y, double scale) {
        view.setFrame({x, y, 1800 * scale, 1200 * scale});
        QCoreApplication::processEvents();
    }

    void setImage(const Image& image) {
        shown = image;
        view.setImage(image);
    }

    const QColor background{30, 31, 32};
    const Image photo = painted({2400, 1600}, wave);
    const Image repaired = withRedSpot(photo);
    Image shown = photo;
    CustomImageView view;
};

TEST_F(ExactPainting, AfterPans) {
    for (const auto& [x, y] : {std::pair(-113, -71), std::pair(-97, -80), std::pair(300, 200),
                               std::pair(-1500, -900), std::pair(-100, -80)}) {
        setFrame(x, y, 1);
        expectExact("a pan");
    }
}

TEST_F(ExactPainting, AfterZooms) {
    for (const double scale : {1.1, 1.21, 1.6, 0.9, 0.5}) {
        setFrame(-100, -80, scale);
        setFrame(-105, -76, scale);
        expectExact("a zoom");
    }
}

TEST_F(ExactPainting, AfterEditsAndUndo) {
    setImage(repaired);
    expectExact("an edit");
    setFrame(-130, -60, 1);
    expectExact("an edit and a pan");
    setImage(photo);
    expectExact("undo");
    setFrame(-100, -80, 1);
    expectExact("undo and a pan back");
}

TEST_F(ExactPainting, AfterEffects) {
    setImage(photo.transformed(std::make_shared<Inverted>()));
    expectExact("an effect");
    setFrame(-130, -60, 1);
    setImage(photo);
    expectExact("a pan and no effect");
}

TEST_F(ExactPainting, AfterPreviewsAndComparisons) {
    for (int i = 0; i < 2; ++i) {
        view.showReplacement(shown = repaired);
        expectExact("a preview");
        setFrame(-130 - i, -60, 1);
        expectExact("a preview and a pan");
        view.showReplacement(std::nullopt);
        shown = photo;
        expectExact("the end of a preview");
    }
}

TEST_F(ExactPainting, AfterResizes) {
    for (const QSize size : {QSize(1640, 1000), QSize(1500, 1080), QSize(1600, 1000)}) {
        view.resize(size);
        expectExact("a resize");
        setFrame(-90, -85, 1);
        expectExact("a resize and a pan");
    }
}

TEST_F(ExactPainting, AfterAnEditDuringAZoom) {
    setFrame(-100, -80, 1.2);
    setImage(repaired);
    expectExact("an edit during a zoom");
}

} // namespace
} // namespace complexion
