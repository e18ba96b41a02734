// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/geometry.h"
#include "imaging/codecs/jpeg_layout.h"

#include <array>
#include <vector>

namespace complexion {

/// Which samples make the pixels of one direction, and with what weights: a decoder's upsampling. Indices
/// count from the first sample of a window; those outside it are left out.
class JpegSpread {
public:
    /// For `pixels` pixels from `firstPixel` on, and `samples` samples from `firstSample` on, of
    /// `allSamples`; each is as wide as `pixelsOfSample` pixels.
    JpegSpread(int firstPixel, int pixels, int firstSample, int samples, int allSamples, int pixelsOfSample,
               bool blends);

    struct Tap {
        std::array<int, 2> sample = {}; // the nearest and the next; where one lies outside, its weight is 0
        std::array<float, 2> weight = {};
    };
    const std::vector<Tap>& taps() const { return m_taps; }
    int samples() const { return m_samples; }

private:
    std::vector<Tap> m_taps;
    int m_samples;
};

/// A decoder's upsampling of a window of a component: linear, but for rounding.
class JpegUpsampling {
public:
    /// The window of `component` that the MCUs of `mcus` (a rectangle in MCUs) hold.
    JpegUpsampling(const JpegLayout& layout, const JpegComponent& component, PixelRect mcus);

    PixelRect samples() const { return m_sampleRect; } // of the component
    PixelRect pixels() const { return m_pixelRect; }   // of the picture

    /// The pixels' values of those of the samples; rows packed, both.
    std::vector<float> up(const std::vector<float>& samples) const;
    /// The transpose of `up`.
    std::vector<float> down(const std::vector<float>& pixels) const;

    /// The samples nearest to `values`, one for each pixel, that upsampling can make: 0 but where `isFree`,
    /// and by least squares, in which each pixel counts as `weights` says.
    std::vector<float> nearestSamples(const std::vector<float>& values, const std::vector<float>& weights,
                                      const std::vector<char>& isFree) const;

    /// Whether each sample has a part in a pixel that `isMarked`.
    std::vector<char> samplesOf(const std::vector<char>& isMarked) const;

private:
    PixelRect m_sampleRect;
    PixelRect m_pixelRect;
    JpegSpread m_across;
    JpegSpread m_down;
};

} // namespace complexion
