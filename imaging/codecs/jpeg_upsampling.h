// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/geometry.h"
#include "imaging/codecs/jpeg_layout.h"

#include <array>
#include <vector>

namespace complexion::jpeg {

/// A decoder's upsampling in one direction: the samples and weights that make each pixel. Indices are
/// relative to a window's first sample; samples outside the window are dropped.
class UpsamplingTaps {
public:
    /// For `pixels` pixels from `firstPixel` on, and `samples` samples from `firstSample` on, of
    /// `sampleCount`. A sample covers `pixelsPerSample` pixels.
    UpsamplingTaps(int firstPixel, int pixels, int firstSample, int samples, int sampleCount,
                   int pixelsPerSample, bool blends);

    struct Tap {
        std::array<int, 2> sample = {}; // nearest and second nearest; weight 0 outside the window
        std::array<float, 2> weight = {};
    };
    const std::vector<Tap>& taps() const { return m_taps; }
    int samples() const { return m_samples; }

private:
    std::vector<Tap> m_taps;
    int m_samples;
};

/// A decoder's upsampling of a component's window as a linear map, without rounding.
class Upsampling {
public:
    /// The window of `component` that `mcus`, a rectangle in MCUs, covers.
    Upsampling(const Layout& layout, const Component& component, PixelRect mcus);

    PixelRect samples() const { return m_sampleRect; } // of the component
    PixelRect pixels() const { return m_pixelRect; }   // of the picture

    /// Upsamples packed rows of samples to packed rows of pixels.
    std::vector<float> up(const std::vector<float>& samples) const;
    /// The transpose of `up`.
    std::vector<float> down(const std::vector<float>& pixels) const;

    /// The samples whose upsampling is nearest to the pixels `values`, by least squares weighted with
    /// `weights` per pixel. Samples that are not `isFree` are 0.
    std::vector<float> nearestSamples(const std::vector<float>& values, const std::vector<float>& weights,
                                      const std::vector<char>& isFree) const;

    /// For each sample, whether it contributes to a pixel that `isMarked`.
    std::vector<char> contributingSamples(const std::vector<char>& isMarked) const;

private:
    PixelRect m_sampleRect;
    PixelRect m_pixelRect;
    UpsamplingTaps m_across;
    UpsamplingTaps m_down;
};

} // namespace complexion::jpeg
