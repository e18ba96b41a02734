// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/orientation.h"
#include "imaging/base/row_receiver.h"
#include "imaging/reading/answer_channel.h"

#include <cstdint>
#include <mutex>
#include <optional>
#include <vector>

namespace complexion {

/// Sends the rows that decoders set. Short rows that are set one at a time, near each other in any order, are
/// sent together: a picture may have a million of them.
class RowSender : public RowReceiver {
public:
    explicit RowSender(AnswerSender& answer) : m_answer(answer) {}

    void begin(PixelSize size, std::optional<DeepAlpha> deepAlpha) override;
    void setRows(int firstRow, int count, const RGBA32* rows, const RGBA64* deepRows) override;
    RGBA32* memoryForRows(int count) override;
    void turnUpright(Orientation orientation) override { m_orientation = orientation; }

    /// Sends what is left. After the last row.
    void finish();

    Orientation orientation() const { return m_orientation; }

private:
    std::size_t bytesOf(int count) const;
    void keep(int row, const RGBA32* pixels, const RGBA64* deepPixels);
    void sendKept();

    AnswerSender& m_answer;
    int m_width = 0;
    Orientation m_orientation = Orientation::TopLeft;
    std::optional<std::uint32_t> m_slot; // for the rows that memoryForRows was called for

    // The kept rows: those from m_window * m_isKept.size() on, as far as m_isKept says.
    std::mutex m_mutex; // guards the members below
    int m_window = 0;
    std::vector<bool> m_isKept;
    std::vector<RGBA32> m_pixels;
    std::vector<RGBA64> m_deepPixels; // empty for 8 bits
};

} // namespace complexion
