// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/jpeg_upsampling.h"

#include "imaging/base/wide_vectors.h"

#include <algorithm>

namespace complexion::jpeg {

namespace {

// Fancy upsampling: a pixel is 3/4 of the sample it falls in plus 1/4 of the nearest neighbour.
constexpr float kNearWeight = 0.75F;
constexpr float kFarWeight = 0.25F;

/// Conjugate gradients converge in about twenty steps here.
constexpr int kMaxSteps = 60;
/// The squared residual at which the iteration stops, relative to the initial one.
constexpr double kConverged = 1e-7;

PixelRect scaled(PixelRect mcus, int width, int height, PixelSize whole) {
    return PixelRect{mcus.x * width, mcus.y * height, mcus.width * width, mcus.height * height}.intersected(
        {0, 0, whole.width, whole.height});
}

double dot(const std::vector<float>& a, const std::vector<float>& b) {
    double sum = 0;
    for (std::size_t i = 0; i < a.size(); ++i)
        sum += double{a[i]} * double{b[i]};
    return sum;
}

/// to += scale * from
void addScaled(std::vector<float>& to, float scale, const std::vector<float>& from) {
    for (std::size_t i = 0; i < to.size(); ++i)
        to[i] += scale * from[i];
}

/// Adds `weight` times a row to another.
void addRow(const float* from, float weight, float* to, int count) {
    for (int i = 0; i < count; ++i)
        to[i] += weight * from[i];
}

float* rowOf(std::vector<float>& values, int row, int width) {
    return values.data() + std::ptrdiff_t{row} * width;
}

const float* rowOf(const std::vector<float>& values, int row, int width) {
    return values.data() + std::ptrdiff_t{row} * width;
}

std::vector<float> zeros(int width, int height) {
    return std::vector<float>(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
}

} // namespace

UpsamplingTaps::UpsamplingTaps(int firstPixel, int pixels, int firstSample, int samples, int sampleCount,
                               int pixelsPerSample, bool blends)
    : m_samples(samples) {
    m_taps.reserve(static_cast<std::size_t>(pixels));
    for (int pixel = firstPixel; pixel < firstPixel + pixels; ++pixel) {
        const int near = pixel / pixelsPerSample;
        const int far = std::clamp(pixel % 2 == 0 ? near - 1 : near + 1, 0, sampleCount - 1);
        Tap tap;
        const auto set = [&](std::size_t i, int sample, float weight) {
            const int index = sample - firstSample;
            if (index >= 0 && index < samples) {
                tap.sample[i] = index;
                tap.weight[i] = weight;
            }
        };
        set(0, near, blends ? kNearWeight : 1);
        set(1, far, blends ? kFarWeight : 0);
        m_taps.push_back(tap);
    }
}

Upsampling::Upsampling(const Layout& layout, const Component& component, PixelRect mcus)
    : m_sampleRect(scaled(mcus, component.blocksAcross * kBlockSide, component.blocksDown * kBlockSide,
                          component.samples)),
      m_pixelRect(scaled(mcus, layout.mcu.width, layout.mcu.height, layout.size)),
      m_across(m_pixelRect.x, m_pixelRect.width, m_sampleRect.x, m_sampleRect.width, component.samples.width,
               component.pixelsAcross, component.blendsAcross()),
      m_down(m_pixelRect.y, m_pixelRect.height, m_sampleRect.y, m_sampleRect.height, component.samples.height,
             component.pixelsDown, component.blendsDown()) {}

COMPLEXION_WIDE_VECTORS
std::vector<float> Upsampling::up(const std::vector<float>& samples) const {
    // Vertically first: this adds whole rows, while they are still narrow.
    std::vector<float> tall = zeros(m_sampleRect.width, m_pixelRect.height);
    for (int y = 0; y < m_pixelRect.height; ++y) {
        const UpsamplingTaps::Tap& tap = m_down.taps()[static_cast<std::size_t>(y)];
        for (std::size_t i = 0; i < 2; ++i)
            addRow(rowOf(samples, tap.sample[i], m_sampleRect.width), tap.weight[i],
                   rowOf(tall, y, m_sampleRect.width), m_sampleRect.width);
    }
    std::vector<float> pixels = zeros(m_pixelRect.width, m_pixelRect.height);
    for (int y = 0; y < m_pixelRect.height; ++y) {
        const float* const from = rowOf(tall, y, m_sampleRect.width);
        float* const to = rowOf(pixels, y, m_pixelRect.width);
        for (int x = 0; x < m_pixelRect.width; ++x) {
            const UpsamplingTaps::Tap& tap = m_across.taps()[static_cast<std::size_t>(x)];
            to[x] = tap.weight[0] * from[tap.sample[0]] + tap.weight[1] * from[tap.sample[1]];
        }
    }
    return pixels;
}

COMPLEXION_WIDE_VECTORS
std::vector<float> Upsampling::down(const std::vector<float>& pixels) const {
    std::vector<float> tall = zeros(m_sampleRect.width, m_pixelRect.height);
    for (int y = 0; y < m_pixelRect.height; ++y) {
        const float* const from = rowOf(pixels, y, m_pixelRect.width);
        float* const to = rowOf(tall, y, m_sampleRect.width);
        for (int x = 0; x < m_pixelRect.width; ++x) {
            const UpsamplingTaps::Tap& tap = m_across.taps()[static_cast<std::size_t>(x)];
            to[tap.sample[0]] += tap.weight[0] * from[x];
            to[tap.sample[1]] += tap.weight[1] * from[x];
        }
    }
    std::vector<float> samples = zeros(m_sampleRect.width, m_sampleRect.height);
    for (int y = 0; y < m_pixelRect.height; ++y) {
        const UpsamplingTaps::Tap& tap = m_down.taps()[static_cast<std::size_t>(y)];
        for (std::size_t i = 0; i < 2; ++i)
            addRow(rowOf(tall, y, m_sampleRect.width), tap.weight[i],
                   rowOf(samples, tap.sample[i], m_sampleRect.width), m_sampleRect.width);
    }
    return samples;
}

std::vector<float> Upsampling::nearestSamples(const std::vector<float>& values,
                                              const std::vector<float>& weights,
                                              const std::vector<char>& isFree) const {
    // Conjugate gradients on the normal equations.
    const auto gradientOf = [&](std::vector<float> pixels) {
        for (std::size_t i = 0; i < pixels.size(); ++i)
            pixels[i] *= weights[i];
        std::vector<float> samples = down(pixels);
        for (std::size_t i = 0; i < samples.size(); ++i)
            if (!isFree[i])
                samples[i] = 0;
        return samples;
    };
    std::vector<float> residual = gradientOf(values);
    std::vector<float> samples(residual.size());
    std::vector<float> direction = residual;
    double error = dot(residual, residual);
    const double enough = error * kConverged;
    for (int step = 0; step < kMaxSteps && error > enough; ++step) {
        const std::vector<float> product = gradientOf(up(direction));
        const double curvature = dot(direction, product);
        if (curvature <= 0)
            break;
        const auto alpha = static_cast<float>(error / curvature);
        addScaled(samples, alpha, direction);
        addScaled(residual, -alpha, product);
        const double next = dot(residual, residual);
        const auto beta = static_cast<float>(next / error);
        for (std::size_t i = 0; i < direction.size(); ++i)
            direction[i] = residual[i] + beta * direction[i];
        error = next;
    }
    return samples;
}

std::vector<char> Upsampling::contributingSamples(const std::vector<char>& isMarked) const {
    std::vector<float> pixels(isMarked.begin(), isMarked.end());
    const std::vector<float> parts = down(pixels);
    std::vector<char> result(parts.size());
    std::ranges::transform(parts, result.begin(), [](float part) { return part > 0 ? 1 : 0; });
    return result;
}

} // namespace complexion::jpeg
