// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/finding/surroundings.h"
#include "imaging/healing/blemish_place.h"

#include <optional>
#include <span>
#include <variant>

namespace complexion {

/// What a suggested blemish looks like.
enum class SpotKind {
    Dark,
    Red,
    Light,
};

/// A spot that may be worth repairing.
struct SuggestedBlemish {
    PixelPosition middle;
    double radius = 0; // of a disc that covers it and its soft rim, in pixels
    SpotKind kind = SpotKind::Dark;
    float score = 0; // how conspicuous it is and how likely to be a blemish
    bool operator==(const SuggestedBlemish&) const = default;
};

/// Finds blemishes on the skin in a photo: small spots, darker, redder or lighter than even skin on all
/// sides, that the natural repair can repair. Ignores facial features, hair, cloth, background and groups of
/// similar spots, such as freckles and stubble. Deterministic, and independent of anything but the photo.
class BlemishFinder {
public:
    static constexpr int kMaxSuggestions = 60;

    /// Searches all of `image`, whose mipmap levels must exist.
    explicit BlemishFinder(const Image& image);

    /// Repeats the search around an edit: `edited` differs from the image searched before only in `changed`,
    /// in pixels. The skin map is not updated.
    void update(const Image& edited, PixelRect changed);

    /// In descending order of score, at most kMaxSuggestions.
    const std::vector<SuggestedBlemish>& suggestions() const { return m_suggestions; }

private:
    /// A spot and its properties.
    struct Candidate {
        finding::Spot spot;
        SpotKind kind = SpotKind::Dark;
        float score = 0;     // regardless of other spots
        float variation = 0; // of the skin around it, in tones; 0 if not measured
        /// The result of the natural repair's search there; empty until searched.
        std::optional<std::variant<BlemishPlace, BlemishRefusal>> repair;
    };
    struct Ranked {
        std::size_t candidate;
        float score; // lowered by similar spots nearby
    };

    void judge(const Image& image, const std::vector<finding::Spot>& spots);
    static float medianVariation(std::span<const Candidate> of);
    float scoreAmongOthers(const Candidate& candidate) const;
    std::vector<Ranked> ranked() const;
    void tryRepair(const Image& image, std::span<const Ranked> of);
    bool isRepairable(const Candidate& candidate) const;
    void suggest(const Image& image);

    finding::SkinMap m_map;
    float m_extent = 0;         // from the map, or assumed if skin fills the picture
    float m_usualVariation = 0; // in the whole picture
    std::vector<Candidate> m_candidates;
    std::vector<SuggestedBlemish> m_suggestions;
};

} // namespace complexion
