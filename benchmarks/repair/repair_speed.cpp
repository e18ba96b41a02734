// SPDX-License-Identifier: GPL-3.0-or-later

// Usage: repair_speed
//
// Measures the repairs of a synthetic blemish at several radii, in milliseconds, and OpenCV's seamless
// cloning of the same box if OpenCV is installed. They run alternately, so that load on the machine affects
// all of them. Then measures strokes along a hair.
#include "imaging/image_tools.h"
#include "imaging/repairs.h"

#ifdef COMPLEXION_HAS_OPENCV
#include <opencv2/photo.hpp>
#endif

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <functional>
#include <random>

namespace complexion {
namespace {

constexpr int kRuns = 41;
constexpr PixelSize kPictureSize{2400, 1600};
constexpr int kCenterX = 1210;
constexpr int kCenterY = 830;

/// Uneven, shaded skin with a blemish of the size for which a user would choose that radius.
Image skinWithBlemish(int radius) {
    std::minstd_rand random(7);
    std::vector<RGBA32> pixels(static_cast<std::size_t>(kPictureSize.area()));
    std::size_t index = 0;
    const double blemish = (radius - 2) / 1.5;
    for (int y = 0; y < kPictureSize.height; ++y)
        for (int x = 0; x < kPictureSize.width; ++x) {
            const double distance = std::hypot(x - kCenterX, y - kCenterY) / blemish;
            const double stain = std::clamp((1.15 - distance) / 0.6, 0.0, 1.0);
            const double grain = static_cast<double>(random() % 13) - 6;
            const double shade = 8 * std::sin(x * 0.01) + 8 * std::cos(y * 0.013) + grain;
            pixels[index++] = {static_cast<std::uint8_t>((200 + shade) * (1 - 0.3 * stain)),
                               static_cast<std::uint8_t>((150 + shade) * (1 - 0.5 * stain)),
                               static_cast<std::uint8_t>((125 + shade) * (1 - 0.5 * stain)), 255};
        }
    return Image::fromPixels(kPictureSize, pixels);
}

double median(std::vector<double> values) {
    std::ranges::sort(values);
    return values[values.size() / 2];
}

/// The times of one kind of repair, in milliseconds.
class Times {
public:
    void measure(const std::function<void()>& work) {
        const std::clock_t processor = std::clock();
        const auto wall = std::chrono::steady_clock::now();
        work();
        m_wall.push_back(
            std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - wall).count());
        m_processor.push_back(1000.0 * static_cast<double>(std::clock() - processor) / CLOCKS_PER_SEC);
    }
    void print() const {
        if (m_wall.empty())
            std::printf("       -        -  ");
        else
            std::printf("%8.2f %8.2f  ", median(m_wall), median(m_processor));
    }

private:
    std::vector<double> m_wall;
    std::vector<double> m_processor;
};

#ifdef COMPLEXION_HAS_OPENCV
/// Clones the box beside the disc over the disc's box.
class Cloning {
public:
    Cloning(const Image& image, int radius)
        : m_side(2 * radius + 1),
          m_picture(2 * m_side, 3 * m_side, CV_8UC3),
          m_mask(m_side, m_side, CV_8UC1, cv::Scalar(255)) {
        for (int y = 0; y < m_picture.rows; ++y)
            for (int x = 0; x < m_picture.cols; ++x) {
                const RGBA32 pixel = image.pixel(kCenterY - m_side + y, kCenterX - m_side - m_side / 2 + x);
                m_picture.at<cv::Vec3b>(y, x) = {pixel.blue(), pixel.green(), pixel.red()};
            }
    }
    void run() {
        const cv::Mat source = m_picture(cv::Rect(0, m_side / 2, m_side, m_side));
        cv::seamlessClone(source, m_picture, m_mask, {m_side + m_side / 2, m_side}, m_result,
                          cv::NORMAL_CLONE);
    }

private:
    int m_side;
    cv::Mat m_picture;
    cv::Mat m_mask;
    cv::Mat m_result;
};
#endif

void measure(int radius) {
    const Image image = skinWithBlemish(radius);
    const Point point{kCenterX + 0.5, kPictureSize.height - kCenterY - 0.5};
    Times natural;
    Times flat;
    Times cloning;
    bool repairs = true;
#ifdef COMPLEXION_HAS_OPENCV
    Cloning clone(image, radius);
#endif
    for (int i = 0; i < kRuns; ++i) {
        natural.measure([&] {
            const auto result = ImageTools::HealPimpleInImage(image, point, radius, 10);
            repairs =
                repairs && result && result->pixel(kCenterY, kCenterX) != image.pixel(kCenterY, kCenterX);
        });
        flat.measure([&] {
            const auto result =
                ImageTools::RemovePimpleFromImage(image, point, radius, kAutodetectColor, {}, 10);
            repairs = repairs && result;
        });
#ifdef COMPLEXION_HAS_OPENCV
        cloning.measure([&] { clone.run(); });
#endif
    }
    std::printf("%6d  ", radius);
    natural.print();
    flat.print();
    cloning.print();
    std::printf("%s\n", repairs ? "" : "   NOT REPAIRED");
}

/// A stroke of 100 pixels and one of 1000 along a hair.
void measureStrokes() {
    constexpr int kRadius = 10;
    const Image skin = skinWithBlemish(kRadius);
    std::vector<RGBA32> pixels(static_cast<std::size_t>(kPictureSize.area()));
    skin.read({0, 0, kPictureSize.width, kPictureSize.height}, pixels.data(), kPictureSize.width);
    constexpr int kRow = 400;
    for (int x = 0; x < kPictureSize.width; ++x)
        pixels[static_cast<std::size_t>(kRow + x / 4) * kPictureSize.width + static_cast<std::size_t>(x)] = {
            60, 45, 40, 255};
    const Image image = Image::fromPixels(kPictureSize, pixels);
    std::printf("\nstroke, radius %d\nlength      wall     processor\n", kRadius);
    for (const int length : {100, 1000}) {
        std::vector<Point> path;
        for (int x = 700; x <= 700 + length; x += 4)
            path.push_back({x + 0.5, kPictureSize.height - kRow - x / 4.0 - 0.5});
        Times times;
        bool repairs = true;
        for (int i = 0; i < kRuns; ++i)
            times.measure([&] {
                const auto result = repairAlong(image, path, kRadius, 10);
                repairs = repairs && result && result->outcome == RepairOutcome::Repaired;
            });
        std::printf("%6d  ", length);
        times.print();
        std::printf("%s\n", repairs ? "" : "   NOT REPAIRED");
    }
}

} // namespace
} // namespace complexion

int main() {
    std::printf("medians of %d, ms    natural              flat              cloning\n"
                "radius      wall     processor    wall     processor    wall     processor\n",
                complexion::kRuns);
    for (const int radius : {10, 20, 32, 50, 100, 150})
        complexion::measure(radius);
    complexion::measureStrokes();
}
