// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/session_end.h"

#include "tests/app/window_fixture.h"

namespace complexion {
namespace {

/// Records what the session manager is told.
struct FakeSessionManager {
    bool mayInteract = true;
    std::vector<std::string> told;

    bool allowsInteraction() {
        told.emplace_back("interact?");
        return mayInteract;
    }
    void release() { told.emplace_back("release"); }
    void cancel() { told.emplace_back("cancel"); }
};

class SessionEnd : public WindowTest {
protected:
    std::vector<std::string> answered(bool mayInteract) {
        FakeSessionManager manager{.mayInteract = mayInteract, .told = {}};
        answerSessionEnd(manager, *controller);
        return manager.told;
    }
};

TEST_F(SessionEnd, WithoutAPhotoIsNotHeldUp) {
    EXPECT_EQ(answered(true), (std::vector<std::string>{"interact?", "release"}));
    EXPECT_EQ(answered(false), std::vector<std::string>{"interact?"});
}

TEST_F(SessionEnd, AsksAndGoesOnAfterYes) {
    open();
    dialogs.expectQuestion(kExitQuestion, kFirstButton);
    EXPECT_EQ(answered(true), (std::vector<std::string>{"interact?", "release"}));
}

TEST_F(SessionEnd, IsCancelledByNo) {
    open();
    dialogs.expectQuestion(kExitQuestion, kSecondButton);
    EXPECT_EQ(answered(true), (std::vector<std::string>{"interact?", "release", "cancel"}));
}

TEST_F(SessionEnd, AsksNothingWhereItMayNot) {
    open();
    EXPECT_EQ(answered(false), std::vector<std::string>{"interact?"});
}

} // namespace
} // namespace complexion
