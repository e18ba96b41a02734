// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace complexion {

/// An RGB colour with components from 0 to 1, in the colour space that its context names.
struct RgbColor {
    double red = 0;
    double green = 0;
    double blue = 0;
    bool operator==(const RgbColor&) const = default;
};

struct ScreenTables;

/// The RGB colour space of an image's values: sRGB, or that of an ICC profile.
class ColorProfile {
public:
    /// sRGB.
    ColorProfile() = default;

    /// The space of an ICC profile; sRGB if `icc` is not a usable RGB profile.
    static ColorProfile fromIcc(std::span<const std::uint8_t> icc);

    /// The space of a profile that is known to be usable, and that is not opened in this process: `tables`
    /// are its valid ones.
    static ColorProfile ofTables(std::span<const std::uint8_t> icc,
                                 std::shared_ptr<const ScreenTables> tables);

    bool isSrgb() const { return m_icc == nullptr; }

    /// The profile's bytes for embedding in files; empty for sRGB.
    std::span<const std::uint8_t> icc() const;

    /// Null for a profile that is opened in this process.
    const ScreenTables* screenTables() const { return m_tables.get(); }

    /// Converts an sRGB colour to this space (relative colorimetric), clamped to 0 .. 1.
    RgbColor fromSrgb(RgbColor color) const;

    /// Converts for profiles that are not opened in this process. Called from any thread.
    using Converter = RgbColor (*)(std::span<const std::uint8_t> icc, RgbColor color);
    static void installConverter(Converter converter) { s_converter = converter; }

    bool operator==(const ColorProfile& other) const;

private:
    inline static Converter s_converter = nullptr;

    std::shared_ptr<const std::vector<std::uint8_t>> m_icc;
    std::shared_ptr<const ScreenTables> m_tables;
};

} // namespace complexion
