// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace complexion {

/// Counts the notches of a wheel out of turns that may be smaller, as touchpads' are.
class WheelNotches {
public:
    /// Adds a turn, in eighths of a degree. Gives the whole notches that have come together, negative
    /// backwards; the rest is kept.
    int add(int turned) {
        m_turned += turned;
        const int whole = m_turned / kNotch;
        m_turned -= whole * kNotch;
        return whole;
    }

    /// Drops what is less than a notch.
    void reset() { m_turned = 0; }

private:
    static constexpr int kNotch = 120; // eighths of a degree

    int m_turned = 0;
};

} // namespace complexion
