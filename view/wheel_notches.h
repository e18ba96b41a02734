// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace complexion {

/// Accumulates wheel deltas, which touchpads report in fractions of a notch, into whole notches.
class WheelNotches {
public:
    /// Adds a delta in eighths of a degree. Returns the whole notches reached, negative backwards, and keeps
    /// the remainder.
    int add(int turned) {
        m_turned += turned;
        const int whole = m_turned / kNotch;
        m_turned -= whole * kNotch;
        return whole;
    }

    /// Discards the remainder.
    void reset() { m_turned = 0; }

private:
    static constexpr int kNotch = 120; // eighths of a degree

    int m_turned = 0;
};

} // namespace complexion
