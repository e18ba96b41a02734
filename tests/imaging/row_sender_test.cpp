// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/reading/row_sender.h"

#include "imaging/reading/fork_server.h"
#include "imaging/reading/picture_answer.h"
#include "tests/fakes/pictures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <numeric>
#include <thread>

#include <sys/socket.h>

namespace complexion {
namespace {

/// The messages about a picture of this size, and whether they had its pixels.
struct Sent {
    int messages = 0;
    bool hasAllRows = false;
};

/// What is sent of a picture whose rows `set` sets.
Sent sentBy(const Image& image, const std::function<void(RowSender&)>& set) {
    const PixelSize size = image.pixelSize();
    Result<SocketPair> sockets = SocketPair::create();
    const Result<Descriptor> memory = SlotMemory::create();
    std::thread child([&, socket = std::move(sockets->theirs)] {
        AnswerSender answer(socket.get(), SlotMemory(*memory, SlotMemory::Access::Write));
        RowSender sender(answer);
        sender.begin(size, {});
        set(sender);
        sender.finish();
        PictureAnswer rest;
        rest.points = image.size();
        answer.sendAnswer(flattened(rest));
    });
    AnswerReceiver receiver(std::move(sockets->ours), SlotMemory(*memory, SlotMemory::Access::Read));
    PictureAssembler assembler;
    Sent sent;
    bool isGood = true;
    while (isGood && !assembler.isComplete()) {
        const Result<AnswerMessage> message =
            receiver.receive(AnswerReceiver::Clock::now() + std::chrono::minutes(1));
        const auto length = message ? assembler.contentLength(*message) : std::nullopt;
        isGood = length && assembler.take(*message, receiver.contents(*message, *length));
        if (isGood && *length > 0)
            receiver.release(*message);
        ++sent.messages;
    }
    child.join();
    EXPECT_TRUE(isGood);
    const Result<PictureAssembler::Picture> picture = assembler.finish();
    sent.hasAllRows = picture && samePixels(picture->decoded.image, image);
    return sent;
}

/// The same, one row at a time in this order.
Sent sentRows(PixelSize size, const std::vector<int>& order) {
    const Image image = noise(size);
    return sentBy(image, [&](RowSender& sender) {
        std::vector<RGBA32> row(static_cast<std::size_t>(size.width));
        for (const int y : order) {
            image.read({0, y, size.width, 1}, row.data(), size.width);
            sender.setRows(y, 1, row.data(), nullptr);
        }
    });
}

std::vector<int> ascending(int count) {
    std::vector<int> order(static_cast<std::size_t>(count));
    std::iota(order.begin(), order.end(), 0);
    return order;
}

TEST(RowSender, SendsShortRowsTogether) {
    std::vector<int> order = ascending(60'000);
    const Sent sent = sentRows({1, 60'000}, order);
    EXPECT_TRUE(sent.hasAllRows);
    EXPECT_LT(sent.messages, 30);
    std::ranges::reverse(order); // as in files that are stored bottom up
    const Sent reversed = sentRows({1, 60'000}, order);
    EXPECT_TRUE(reversed.hasAllRows);
    EXPECT_EQ(reversed.messages, sent.messages);
}

TEST(AnswerSender, TakesASlotThatCameBackBeforeAnUnusedOne) {
    const Result<SocketPair> sockets = SocketPair::create();
    const Result<Descriptor> memory = SlotMemory::create();
    AnswerSender answer(sockets->theirs.get(), SlotMemory(*memory, SlotMemory::Access::Write));
    const std::uint32_t first = answer.beginPart();
    const std::uint32_t second = answer.beginPart();
    EXPECT_NE(first, second);
    for (const std::uint32_t slot : {second, first})
        EXPECT_EQ(::send(sockets->ours.get(), &slot, sizeof slot, 0), ssize_t{sizeof slot});
    EXPECT_EQ(answer.beginPart(), first); // the latest
    EXPECT_EQ(answer.beginPart(), second);
    EXPECT_NE(answer.beginPart(), first);
}

TEST(RowSender, SendsRowsFromTheMemoryThatItGave) {
    constexpr PixelSize kPicture = {700, 500};
    constexpr int kAtOnce = 32;
    const Image image = noise(kPicture);
    const Sent sent = sentBy(image, [&](RowSender& sender) {
        for (int y = 0; y < kPicture.height; y += kAtOnce) {
            const int count = std::min(kAtOnce, kPicture.height - y);
            RGBA32* const memory = sender.memoryForRows(count);
            ASSERT_TRUE(memory);
            EXPECT_EQ(sender.memoryForRows(count), memory) << "nothing was set yet";
            image.read({0, y, kPicture.width, count}, memory, kPicture.width);
            sender.setRows(y, count, memory, nullptr);
        }
    });
    EXPECT_TRUE(sent.hasAllRows);
    EXPECT_EQ(sent.messages, 1 + (kPicture.height + kAtOnce - 1) / kAtOnce + 2) << "one for each";
}

TEST(RowSender, HasNoMemoryForRowsThatAreTooShortOrTooMany) {
    const Image image = noise({700, 10});
    (void)sentBy(image, [&](RowSender& sender) {
        EXPECT_FALSE(sender.memoryForRows(5)); // 14 kB
        EXPECT_FALSE(sender.memoryForRows(5000));
        std::vector<RGBA32> rows(static_cast<std::size_t>(image.pixelSize().area()));
        image.read({0, 0, 700, 10}, rows.data(), 700);
        sender.setRows(0, 10, rows.data(), nullptr);
    });
}

TEST(RowSender, SendsRowsInAnyOrder) {
    std::vector<int> order = ascending(2000);
    for (std::size_t i = 0; i < order.size() / 2; i += 3)
        std::swap(order[i], order[order.size() - 1 - i]);
    EXPECT_TRUE(sentRows({7, 2000}, order).hasAllRows);
}

TEST(RowSender, SendsLongRowsAtOnce) {
    const Sent sent = sentRows({5000, 20}, ascending(20));
    EXPECT_TRUE(sent.hasAllRows);
    EXPECT_EQ(sent.messages, 1 + 20 + 2);
}

} // namespace
} // namespace complexion
