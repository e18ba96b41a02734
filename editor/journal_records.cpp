// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/journal_records.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstring>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>

namespace complexion {

namespace {

constexpr std::string_view kSignature = "CMPLXJNL";
constexpr std::size_t kHeadSize = kSignature.size() + sizeof(std::uint32_t);
constexpr std::size_t kRecordStart = 3; // the payload's length and the kind
constexpr std::size_t kChecksumSize = 4;
constexpr std::int64_t kMaxRadius = 1 << 20;
constexpr std::int64_t kMaxThreshold = 1 << 20;

enum class RecordKind : std::uint8_t {
    Photo = 1,
    Hash = 2,
    Repair = 3,
    StateLost = 4,
    Move = 5,
    Effect = 6,
    Stroke = 7
};

/// Appends numbers to a payload.
class Writer {
public:
    template <class Number>
    void put(Number number) {
        std::array<std::uint8_t, sizeof(Number)> raw;
        std::memcpy(raw.data(), &number, sizeof(Number));
        m_bytes.insert(m_bytes.end(), raw.begin(), raw.end());
    }
    void put(ByteView bytes) { m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end()); }
    void put(std::string_view text) { m_bytes.insert(m_bytes.end(), text.begin(), text.end()); }
    const Bytes& bytes() const { return m_bytes; }

private:
    static_assert(std::endian::native == std::endian::little);
    Bytes m_bytes;
};

/// Reads numbers from a payload. Reading past its end returns 0 and marks it as failed.
class Reader {
public:
    explicit Reader(ByteView bytes) : m_rest(bytes) {}

    template <class Number>
    Number take() {
        Number number = 0;
        if (m_rest.size() < sizeof(Number)) {
            m_hasFailed = true;
            return number;
        }
        std::memcpy(&number, m_rest.data(), sizeof(Number));
        m_rest = m_rest.subspan(sizeof(Number));
        return number;
    }
    ByteView takeRest() { return std::exchange(m_rest, {}); }
    /// Whether the payload was read completely and nothing beyond it.
    bool isDone() const { return !m_hasFailed && m_rest.empty(); }

private:
    ByteView m_rest;
    bool m_hasFailed = false;
};

std::uint32_t checksum(ByteView bytes) {
    return static_cast<std::uint32_t>(crc32_z(0, bytes.data(), bytes.size()));
}

Bytes record(RecordKind kind, const Writer& payload) {
    Writer record;
    record.put(static_cast<std::uint16_t>(payload.bytes().size()));
    record.put(static_cast<std::uint8_t>(kind));
    record.put(ByteView(payload.bytes()));
    record.put(checksum(record.bytes()));
    return record.bytes();
}

void putPoint(Point point, Writer& payload) {
    payload.put(point.x);
    payload.put(point.y);
}

Bytes recordOf(const RepairStep& step) {
    Writer payload;
    putPoint(step.place, payload);
    payload.put(step.repair.radius);
    payload.put(step.repair.threshold);
    payload.put(static_cast<std::uint8_t>(step.repair.style));
    payload.put(static_cast<std::uint8_t>(step.repair.colorType));
    payload.put(step.repair.customColor.red);
    payload.put(step.repair.customColor.green);
    payload.put(step.repair.customColor.blue);
    payload.put(step.changesBack);
    payload.put(step.stateMilliseconds);
    for (const Point& point : step.stroke)
        putPoint(point, payload);
    return record(step.stroke.empty() ? RecordKind::Repair : RecordKind::Stroke, payload);
}

Bytes recordOf(const StateLostStep& step) {
    Writer payload;
    payload.put(step.position);
    return record(RecordKind::StateLost, payload);
}

Bytes recordOf(const MoveStep& step) {
    Writer payload;
    payload.put(step.position);
    return record(RecordKind::Move, payload);
}

Bytes recordOf(const EffectStep& step) {
    Writer payload;
    payload.put(step.effect);
    return record(RecordKind::Effect, payload);
}

bool isSane(const RepairStep& step) {
    const double numbers[] = {step.place.x, step.place.y, step.repair.customColor.red,
                              step.repair.customColor.green, step.repair.customColor.blue};
    const auto isFinite = [](double number) { return std::isfinite(number); };
    return std::ranges::all_of(numbers, isFinite) &&
           std::ranges::all_of(step.stroke,
                               [&](Point point) { return isFinite(point.x) && isFinite(point.y); }) &&
           step.repair.radius > 0 && step.repair.radius <= kMaxRadius &&
           std::abs(step.repair.threshold) <= kMaxThreshold && step.changesBack >= 0 &&
           step.repair.style <= RepairStyle::Natural && step.repair.colorType <= 1;
}

Point takePoint(Reader& payload) {
    const auto x = payload.take<double>();
    return {x, payload.take<double>()};
}

/// A click, or a stroke, whose further points follow.
std::optional<RepairStep> takeRepair(Reader& payload, bool isStroke) {
    RepairStep step;
    step.place = takePoint(payload);
    step.repair.radius = payload.take<std::int64_t>();
    step.repair.threshold = payload.take<std::int64_t>();
    step.repair.style = static_cast<RepairStyle>(payload.take<std::uint8_t>());
    step.repair.colorType = payload.take<std::uint8_t>();
    step.repair.customColor.red = payload.take<double>();
    step.repair.customColor.green = payload.take<double>();
    step.repair.customColor.blue = payload.take<double>();
    step.changesBack = payload.take<std::int64_t>();
    step.stateMilliseconds = payload.take<std::int64_t>();
    while (isStroke && !payload.isDone() && step.stroke.size() < kMaxStrokePoints)
        step.stroke.push_back(takePoint(payload));
    return isSane(step) ? std::optional(step) : std::nullopt;
}

std::optional<JournaledPhoto> takePhoto(Reader& payload) {
    JournaledPhoto photo;
    photo.size = payload.take<std::int64_t>();
    photo.modifiedNanoseconds = payload.take<std::int64_t>();
    const ByteView path = payload.takeRest();
    photo.path = std::string(path.begin(), path.end());
    return photo.path.is_absolute() ? std::optional(photo) : std::nullopt;
}

std::optional<EditStep> takeStep(RecordKind kind, Reader& payload) {
    switch (kind) {
    case RecordKind::Repair:
        return takeRepair(payload, /*isStroke*/ false);
    case RecordKind::Stroke:
        return takeRepair(payload, /*isStroke*/ true);
    case RecordKind::StateLost:
        return StateLostStep{payload.take<std::int64_t>()};
    case RecordKind::Move:
        return MoveStep{payload.take<std::int64_t>()};
    case RecordKind::Effect:
        return EffectStep{payload.take<std::int64_t>()};
    default:
        return std::nullopt;
    }
}

struct Record {
    RecordKind kind;
    ByteView payload;
    std::size_t size; // of the whole record, bytes
};

/// The record at the start of `bytes`; nullopt if it is truncated or damaged.
std::optional<Record> takeRecord(ByteView bytes) {
    Reader reader(bytes);
    const std::size_t length = reader.take<std::uint16_t>();
    const auto kind = static_cast<RecordKind>(reader.take<std::uint8_t>());
    const std::size_t size = kRecordStart + length + kChecksumSize;
    if (bytes.size() < size)
        return std::nullopt;
    const ByteView checked = bytes.first(kRecordStart + length);
    if (Reader(bytes.subspan(checked.size())).take<std::uint32_t>() != checksum(checked))
        return std::nullopt;
    return Record{.kind = kind, .payload = checked.subspan(kRecordStart), .size = size};
}

/// Adds a record to `contents`; false if it is invalid at this position.
bool add(const Record& record, JournalContents& contents) {
    Reader payload(record.payload);
    if (record.kind == RecordKind::Hash) {
        const ByteView bytes = payload.takeRest();
        if (bytes.size() != std::tuple_size_v<PhotoHash>)
            return false;
        std::ranges::copy(bytes, contents.photo.hash.emplace().begin());
        return true;
    }
    const std::optional<EditStep> step = takeStep(record.kind, payload);
    if (!step || !payload.isDone())
        return false;
    contents.steps.push_back(*step);
    return true;
}

} // namespace

std::int64_t JournalContents::repairCount() const {
    return std::ranges::count_if(
        steps, [](const EditStep& step) { return std::holds_alternative<RepairStep>(step); });
}

Bytes journalHead(const JournaledPhoto& photo) {
    Writer payload;
    payload.put(photo.size);
    payload.put(photo.modifiedNanoseconds);
    payload.put(std::string_view(photo.path.native()));
    Writer head;
    head.put(kSignature);
    head.put(kJournalVersion);
    head.put(ByteView(record(RecordKind::Photo, payload)));
    return head.bytes();
}

Bytes journalRecord(const PhotoHash& hash) {
    Writer payload;
    payload.put(ByteView(hash));
    return record(RecordKind::Hash, payload);
}

Bytes journalRecord(const EditStep& step) {
    return std::visit([](const auto& one) { return recordOf(one); }, step);
}

ParsedJournal parseJournal(ByteView bytes) {
    const std::size_t compared = std::min(bytes.size(), kSignature.size());
    if (!std::equal(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(compared), kSignature.begin()))
        return {};
    if (bytes.size() < kHeadSize)
        return {.kind = JournalKind::Unfinished, .contents = {}};
    if (Reader(bytes.subspan(kSignature.size())).take<std::uint32_t>() != kJournalVersion)
        return {};

    const std::optional<Record> head = takeRecord(bytes.subspan(kHeadSize));
    if (!head)
        return {.kind = JournalKind::Unfinished, .contents = {}};
    Reader payload(head->payload);
    const std::optional<JournaledPhoto> photo = takePhoto(payload);
    if (head->kind != RecordKind::Photo || !photo || !payload.isDone())
        return {};

    ParsedJournal parsed{.kind = JournalKind::Journal,
                         .contents = {.photo = *photo, .steps = {}, .length = kHeadSize + head->size}};
    JournalContents& contents = parsed.contents;
    while (const std::optional<Record> next = takeRecord(bytes.subspan(contents.length))) {
        if (!add(*next, contents))
            break;
        contents.length += next->size;
    }
    return parsed;
}

} // namespace complexion
