// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/codecs/jpeg_coded_rows.h"
#include "imaging/reading/answer_channel.h"

#include <condition_variable>
#include <future>
#include <mutex>
#include <optional>
#include <vector>

namespace complexion {

/// A child's part of transcoding: another core does it while the picture is decoded and sent; then its rows
/// are sent, each as soon as it is there.
class ChildTranscoding final : public jpeg::TranscodingListener {
public:
    /// Begins.
    explicit ChildTranscoding(ByteView file);

    /// Sends the whole answer.
    void send(AnswerSender& answer);

private:
    using Row = std::shared_ptr<const Bytes>;

    void began(const jpeg::TranscodedFile& file) override;
    void rowsDone(std::span<Row> rows, std::size_t first) override;
    void transcode(ByteView file);
    Result<const jpeg::TranscodedFile*> head();
    /// Row `index`; null if it cannot be made.
    Row takeRow(std::size_t index);

    std::mutex m_mutex; // guards the members below
    std::condition_variable m_changed;
    std::optional<jpeg::TranscodedFile> m_head;
    std::vector<Row> m_rows;
    std::optional<Error> m_failure;
    std::future<void> m_work; // last, so that its destructor waits for it first
};

} // namespace complexion
