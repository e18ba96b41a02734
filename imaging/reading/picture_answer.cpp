// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/reading/picture_answer.h"

#include "imaging/reading/flat_error.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

namespace complexion {

namespace {

/// The answer's bytes without pixels: what remains is mostly the profile.
constexpr std::size_t kMaxAnswer = std::size_t{64} << 20;
/// A decoder that gives up begins anew with a more patient one, once.
constexpr int kMaxBeginnings = 4;
/// The longest side at the lowest density that a file can state, a pixel on 2^32 inches or centimetres.
constexpr double kMaxPoints = 1e18;

bool isOrientation(int tag) {
    return tag >= static_cast<int>(Orientation::TopLeft) && tag <= static_cast<int>(Orientation::LeftBottom);
}

bool isLength(double points) {
    return std::isfinite(points) && points > 0 && points < kMaxPoints;
}

/// Also the one that was not measured.
bool isActualSize(PixelSize size) {
    return size == PixelSize{} || isDecodableSize(size.width, size.height);
}

void writeLosses(FlatWriter& writer, const std::vector<SavingLoss>& losses) {
    writer.number(static_cast<std::uint8_t>(losses.size()));
    for (const SavingLoss& loss : losses) {
        writer.number(static_cast<std::uint8_t>(loss.kind));
        writer.number(loss.count);
    }
}

void writeLight(FlatWriter& writer, const std::vector<Light>& colors) {
    writer.bytes({reinterpret_cast<const std::uint8_t*>(colors.data()), colors.size() * sizeof(colors[0])});
}

std::vector<Light> readLight(FlatReader& reader) {
    const ByteView bytes = reader.bytes();
    std::vector<Light> colors(bytes.size() / sizeof(Light));
    if (!colors.empty())
        std::memcpy(colors.data(), bytes.data(), colors.size() * sizeof(colors[0]));
    return colors;
}

void writeProfile(FlatWriter& writer, const PictureAnswer& answer) {
    writer.bytes(answer.icc);
    if (answer.icc.empty())
        return;
    writeLight(writer, answer.screenTables->light);
    writeLight(writer, answer.screenTables->nodes);
}

/// False if there are no valid tables for a profile.
bool readProfile(FlatReader& reader, PictureAnswer& answer) {
    const ByteView icc = reader.bytes();
    answer.icc.assign(icc.begin(), icc.end());
    if (icc.empty())
        return true;
    ScreenTables tables{.light = readLight(reader), .nodes = {}};
    tables.nodes = readLight(reader);
    answer.screenTables = std::make_shared<const ScreenTables>(std::move(tables));
    return answer.screenTables->isValid();
}

/// The losses; nothing if they are not each at most once, in order, and with a plausible count.
std::optional<std::vector<SavingLoss>> readLosses(FlatReader& reader) {
    std::vector<SavingLoss> losses;
    for (int left = reader.number<std::uint8_t>(); left > 0; --left) {
        const auto kind = reader.number<std::uint8_t>();
        const auto count = reader.number<int>();
        if (kind > static_cast<std::uint8_t>(SavingLoss::Kind::Preview) || count < 0 ||
            (!losses.empty() && kind <= static_cast<std::uint8_t>(losses.back().kind)))
            return std::nullopt;
        losses.push_back({static_cast<SavingLoss::Kind>(kind), count});
    }
    return losses;
}

} // namespace

void PictureAnswer::setProfile(const ColorProfile& profile) {
    icc.assign(profile.icc().begin(), profile.icc().end());
    if (!icc.empty())
        screenTables = std::make_shared<const ScreenTables>(screenTablesOf(icc));
}

Bytes flattened(const Result<PictureAnswer>& answer) {
    FlatWriter writer;
    writer.number(static_cast<std::uint8_t>(answer ? 1 : 0));
    if (!answer) {
        writeError(writer, answer.error());
        return writer.written();
    }
    writer.number(static_cast<std::uint8_t>(answer->container));
    writer.number(static_cast<std::uint8_t>(answer->isPreview ? 1 : 0));
    writer.number(static_cast<std::uint8_t>(answer->orientation));
    writer.number(answer->points.width);
    writer.number(answer->points.height);
    writer.number(answer->actualSize.width);
    writer.number(answer->actualSize.height);
    writeLosses(writer, answer->losses);
    writeProfile(writer, *answer);
    writer.number(static_cast<std::uint8_t>(answer->damage ? 1 : 0));
    if (answer->damage)
        writeError(writer, *answer->damage);
    writer.number(static_cast<std::uint8_t>(answer->jpegOrientation.value_or(Orientation{})));
    return writer.written();
}

Result<PictureAnswer> parsedPictureAnswer(ByteView bytes) {
    FlatReader reader(bytes);
    if (reader.number<std::uint8_t>() == 0)
        return readLastError(reader);
    const auto container = reader.number<std::uint8_t>();
    const auto preview = reader.number<std::uint8_t>();
    const auto orientation = reader.number<std::uint8_t>();
    PictureAnswer answer;
    answer.points.width = reader.number<double>();
    answer.points.height = reader.number<double>();
    answer.actualSize.width = reader.number<int>();
    answer.actualSize.height = reader.number<int>();
    std::optional<std::vector<SavingLoss>> losses = readLosses(reader);
    const bool hasProfile = readProfile(reader, answer);
    const bool isDamaged = reader.number<std::uint8_t>() != 0;
    if (isDamaged)
        answer.damage = readError(reader);
    const auto jpegOrientation = reader.number<std::uint8_t>();
    if (!reader.isWhole() || container > static_cast<std::uint8_t>(Container::Bmp) || preview > 1 ||
        !isOrientation(orientation) || !isLength(answer.points.width) || !isLength(answer.points.height) ||
        !isActualSize(answer.actualSize) || !losses || !hasProfile || (isDamaged && !answer.damage) ||
        (jpegOrientation != 0 && !isOrientation(jpegOrientation)))
        return answerIsNonsense();
    answer.container = static_cast<Container>(container);
    answer.isPreview = preview != 0;
    answer.losses = *std::move(losses);
    answer.orientation = static_cast<Orientation>(orientation);
    if (jpegOrientation != 0)
        answer.jpegOrientation = static_cast<Orientation>(jpegOrientation);
    return answer;
}

std::optional<std::int64_t> PictureAssembler::contentLength(const AnswerMessage& message) const {
    std::int64_t length = 0;
    if (message.kind == AnswerMessage::Kind::Rows)
        length = std::int64_t{message.count} * m_size.width * static_cast<std::int64_t>(pixelBytes(m_depth));
    if (message.kind == AnswerMessage::Kind::Part)
        length = message.count;
    if (length < 0 || length > static_cast<std::int64_t>(SlotMemory::kSlotBytes))
        return std::nullopt;
    return length;
}

bool PictureAssembler::take(const AnswerMessage& message, ByteView contents) {
    if (m_isComplete)
        return false;
    switch (message.kind) {
    case AnswerMessage::Kind::Picture:
        return begin({message.first, message.count}, message.depth);
    case AnswerMessage::Kind::Rows:
        return setRows(message, contents);
    case AnswerMessage::Kind::Part:
        if (contents.size() > kMaxAnswer - m_answer.size())
            return false;
        m_answer.insert(m_answer.end(), contents.begin(), contents.end());
        return true;
    case AnswerMessage::Kind::End:
        m_isComplete = true;
        return true;
    }
    return false;
}

bool PictureAssembler::begin(PixelSize size, PixelDepth depth) {
    if (!isDecodableSize(size.width, size.height) || ++m_beginnings > kMaxBeginnings)
        return false;
    m_size = size;
    m_depth = depth;
    m_rowCount = 0;
    if (depth == PixelDepth::Eight)
        m_builder.emplace(size);
    else
        m_builder.emplace(size, depth == PixelDepth::SixteenStraight ? DeepAlpha::Straight
                                                                     : DeepAlpha::Premultiplied);
    m_rowsSet.assign(static_cast<std::size_t>(size.height), false);
    return true;
}

bool PictureAssembler::setRows(const AnswerMessage& message, ByteView contents) {
    if (!m_builder || message.first < 0 || message.count <= 0 ||
        message.first > m_size.height - message.count)
        return false;
    const auto first = m_rowsSet.begin() + message.first;
    if (std::find(first, first + message.count, true) != first + message.count)
        return false;
    std::fill_n(first, message.count, true);
    m_rowCount += message.count;
    // Any bytes are pixels. Slots begin at pages.
    const auto* const rows = reinterpret_cast<const RGBA32*>(contents.data());
    if (m_depth == PixelDepth::Eight) {
        m_builder->setRows(message.first, message.count, rows);
        return true;
    }
    const std::size_t pixels =
        static_cast<std::size_t>(message.count) * static_cast<std::size_t>(m_size.width);
    // Behind an odd number of pixels, the deep ones are not aligned.
    std::vector<RGBA64> deepRows(pixels);
    std::memcpy(deepRows.data(), contents.data() + pixels * sizeof(RGBA32), pixels * sizeof(RGBA64));
    m_builder->setRows(message.first, message.count, rows, deepRows.data());
    return true;
}

double PictureAssembler::part() const {
    return m_size.height == 0 ? 0 : static_cast<double>(m_rowCount) / m_size.height;
}

Result<PictureAssembler::Picture> PictureAssembler::finish() {
    COMPLEXION_TRY(PictureAnswer answer, parsedPictureAnswer(m_answer));
    if (!m_builder)
        return answerIsNonsense();
    const ColorProfile profile =
        answer.icc.empty() ? ColorProfile() : ColorProfile::ofTables(answer.icc, answer.screenTables);
    const Image stored = m_builder->finish().withProfile(profile);
    m_builder.reset();
    DecodedPicture decoded{.image = turnedUpright(stored, answer.orientation).withSize(answer.points),
                           .damage = answer.damage};
    return Picture{.decoded = std::move(decoded), .answer = std::move(answer)};
}

} // namespace complexion
