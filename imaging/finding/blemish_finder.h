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

/// A place that may be worth a repair.
struct SuggestedBlemish {
    PixelPosition middle;
    double radius = 0; // pixels, of a disc that covers it with its soft rim
    SpotKind kind = SpotKind::Dark;
    float score = 0; // how much it stands out, and how sure it is to be a blemish
    bool operator==(const SuggestedBlemish&) const = default;
};

/// Finds blemishes on the skin that a photo shows: small spots, darker, redder or lighter than even skin on
/// all sides, which the natural repair repairs. Features of the face, hair, cloth, background and groups of
/// like spots, such as freckles and stubble, are left out. Nothing but the photo itself decides; the same
/// photo always gives the same result.
class BlemishFinder {
public:
    static constexpr int kMaxSuggestions = 60;

    /// Searches all of `image`, which has halved levels.
    explicit BlemishFinder(const Image& image);

    /// Searches again what an edit changed: `edited` differs from the image searched before only in
    /// `changed`, in pixels. Where skin is stays as it was.
    void update(const Image& edited, PixelRect changed);

    /// The most conspicuous first, at most kMaxSuggestions.
    const std::vector<SuggestedBlemish>& suggestions() const { return m_suggestions; }

private:
    /// A spot with what is known of it.
    struct Candidate {
        finding::Spot spot;
        SpotKind kind = SpotKind::Dark;
        float score = 0; // by itself
        /// What the natural repair finds there, once it was asked.
        std::optional<std::variant<BlemishPlace, BlemishRefusal>> repair;
    };
    struct Ranked {
        std::size_t candidate;
        float score; // among the others
    };

    void judge(const Image& image, const std::vector<finding::Spot>& spots);
    float scoreAmongOthers(const Candidate& candidate) const;
    std::vector<Ranked> ranked() const;
    void askRepair(const Image& image, std::span<const Ranked> of);
    bool isRepairable(const Candidate& candidate) const;
    void suggest(const Image& image);

    finding::SkinMap m_map;
    float m_extent = 0; // the map's, or what is assumed where the skin fills the picture
    std::vector<Candidate> m_candidates;
    std::vector<SuggestedBlemish> m_suggestions;
};

} // namespace complexion
