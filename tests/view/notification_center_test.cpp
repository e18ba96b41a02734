// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/notification_center.h"

#include <gmock/gmock.h>

namespace complexion {

namespace {

class Center : public testing::Test {
protected:
    NotificationCenter::Registration record(const std::string& name, const std::string& tag) {
        return center.addObserver(name, [this, tag](const Notification&) { received.push_back(tag); });
    }

    NotificationCenter center;
    std::vector<std::string> received;
};

TEST_F(Center, DeliversBeforePostReturns) {
    std::optional<UserInfo> userInfo;
    const auto registration = center.addObserver(
        kDragPerformed, [&](const Notification& notification) { userInfo = notification.userInfo; });
    center.post({kDragPerformed, UserInfo{{kPathKey, "/tmp/photo.jpg"}}});
    ASSERT_TRUE(userInfo.has_value());
    EXPECT_EQ(*userInfo, (UserInfo{{"path", "/tmp/photo.jpg"}}));
}

TEST_F(Center, TheNamesForDropsAreFixed) {
    EXPECT_STREQ(kDragPerformed, "DragPerformed");
    EXPECT_STREQ(kPathKey, "path");
}

TEST_F(Center, DeliversByNameOnly) {
    const auto a = record("A", "a");
    const auto b = record("B", "b");
    center.post({"B", {}});
    center.post({"C", {}});
    EXPECT_THAT(received, testing::ElementsAre("b"));
}

TEST_F(Center, DeliversInTheOrderOfRegistration) {
    const auto first = record("A", "1");
    const auto second = record("A", "2");
    center.post({"A", {}});
    EXPECT_THAT(received, testing::ElementsAre("1", "2"));
}

TEST_F(Center, ADestroyedRegistrationReceivesNothing) {
    {
        const auto registration = record("A", "a");
        center.post({"A", {}});
    }
    center.post({"A", {}});
    EXPECT_THAT(received, testing::ElementsAre("a"));
}

TEST_F(Center, AMovedRegistrationReceivesOnce) {
    auto first = record("A", "a");
    NotificationCenter::Registration second = std::move(first);
    center.post({"A", {}});
    EXPECT_THAT(received, testing::ElementsAre("a"));
    NotificationCenter::Registration third;
    third = std::move(second);
    center.post({"A", {}});
    EXPECT_THAT(received, testing::ElementsAre("a", "a"));
    third = record("A", "b"); // the earlier one ends
    center.post({"A", {}});
    EXPECT_THAT(received, testing::ElementsAre("a", "a", "b"));
}

TEST_F(Center, AnObserverMayRegisterAnother) {
    NotificationCenter::Registration inner;
    const auto outer = center.addObserver("A", [&](const Notification&) { inner = record("A", "inner"); });
    center.post({"A", {}});
    EXPECT_TRUE(received.empty());
    center.post({"B", {}});
    center.post({"A", {}});
    EXPECT_THAT(received, testing::SizeIs(testing::Le(1U)));
}

TEST_F(Center, AnObserverMayEndItsOwnRegistration) {
    NotificationCenter::Registration registration;
    registration = center.addObserver("A", [&](const Notification&) {
        received.emplace_back("once");
        registration = {};
    });
    center.post({"A", {}});
    center.post({"A", {}});
    EXPECT_THAT(received, testing::ElementsAre("once"));
}

TEST_F(Center, TheDefaultCenterIsASingleton) {
    EXPECT_EQ(&NotificationCenter::defaultCenter(), &NotificationCenter::defaultCenter());
}

} // namespace

} // namespace complexion
