// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/reading/child_transcoding.h"

#include "imaging/base/no_throw.h"
#include "imaging/reading/transcoding_answer.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace complexion {

namespace {

/// Fills slots with the bytes that it gets.
class AnswerSink final : public ByteSink {
public:
    explicit AnswerSink(AnswerSender& answer) : m_answer(answer) {}

    void append(ByteView bytes) override {
        while (!bytes.empty()) {
            if (m_length == 0)
                m_slot = m_answer.beginPart();
            const ByteView part = bytes.first(std::min(bytes.size(), SlotMemory::kUsualBytes - m_length));
            std::ranges::copy(part, m_answer.bytesOf(m_slot) + m_length);
            m_length += part.size();
            bytes = bytes.subspan(part.size());
            if (m_length == SlotMemory::kUsualBytes)
                send();
        }
    }
    void finish() {
        if (m_length > 0)
            send();
        m_answer.sendEnd();
    }

private:
    void send() {
        m_answer.sendPart(m_slot, m_length);
        m_length = 0;
    }

    AnswerSender& m_answer;
    std::uint32_t m_slot = 0;
    std::size_t m_length = 0; // of what is in the slot
};

} // namespace

ChildTranscoding::ChildTranscoding(ByteView file) {
    try {
        m_work = std::async(std::launch::async, [this, file] { transcode(file); });
    } catch (const std::system_error&) { // no thread available
        m_work = std::async(std::launch::deferred, [this, file] { transcode(file); });
    }
}

void ChildTranscoding::transcode(ByteView file) {
    const Result<jpeg::TranscodedFile> result = withoutThrowing([&] { return jpeg::transcode(file, this); });
    const std::scoped_lock lock(m_mutex);
    if (!result)
        m_failure = result.error();
    m_changed.notify_all();
}

void ChildTranscoding::began(const jpeg::TranscodedFile& file) {
    const std::scoped_lock lock(m_mutex);
    m_head = file;
    m_rows.resize(file.rows.size());
    m_changed.notify_all();
}

void ChildTranscoding::rowsDone(std::span<Row> rows, std::size_t first) {
    const std::scoped_lock lock(m_mutex);
    std::ranges::move(rows, m_rows.begin() + static_cast<std::ptrdiff_t>(first));
    m_changed.notify_all();
}

Result<const jpeg::TranscodedFile*> ChildTranscoding::head() {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_head || m_failure; });
    return m_head ? Result<const jpeg::TranscodedFile*>(&*m_head) : *m_failure;
}

ChildTranscoding::Row ChildTranscoding::takeRow(std::size_t index) {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [&] { return m_rows[index] || m_failure; });
    return std::exchange(m_rows[index], nullptr);
}

void ChildTranscoding::send(AnswerSender& answer) {
    if (m_work.wait_for(std::chrono::seconds(0)) == std::future_status::deferred)
        m_work.get();
    AnswerSink sink(answer);
    const Result<const jpeg::TranscodedFile*> file = head();
    writeHead(file, sink);
    for (std::size_t index = 0; file && index < m_rows.size(); ++index) {
        const Row row = takeRow(index);
        if (!row) {
            writeFailure(*m_failure, sink);
            break;
        }
        writeRow(*row, sink);
    }
    sink.finish();
}

} // namespace complexion
