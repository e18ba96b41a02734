// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/session_end.h"

#include "tests/app/window_fixture.h"

namespace complexion {
namespace {

/// Records the calls to the session manager.
struct FakeSessionManager {
    bool mayInteract = true;
    std::vector<std::string> calls;

    bool allowsInteraction() {
        calls.emplace_back("interact?");
        return mayInteract;
    }
    void release() { calls.emplace_back("release"); }
    void cancel() { calls.emplace_back("cancel"); }
};

class SessionEnd : public WindowTest {
protected:
    std::vector<std::string> answered(bool mayInteract) {
        FakeSessionManager manager{.mayInteract = mayInteract, .calls = {}};
        answerSessionEnd(manager, *controller);
        return manager.calls;
    }
};

TEST_F(SessionEnd, IsNotDelayedWithoutAPhoto) {
    EXPECT_EQ(answered(true), (std::vector<std::string>{"interact?", "release"}));
    EXPECT_EQ(answered(false), std::vector<std::string>{"interact?"});
}

TEST_F(SessionEnd, ContinuesAfterYes) {
    open();
    dialogs.expectQuestion(kExitQuestion, kFirstButton);
    EXPECT_EQ(answered(true), (std::vector<std::string>{"interact?", "release"}));
}

TEST_F(SessionEnd, IsCancelledByNo) {
    open();
    dialogs.expectQuestion(kExitQuestion, kSecondButton);
    EXPECT_EQ(answered(true), (std::vector<std::string>{"interact?", "release", "cancel"}));
}

TEST_F(SessionEnd, DoesNotAskIfInteractionIsForbidden) {
    open();
    EXPECT_EQ(answered(false), std::vector<std::string>{"interact?"});
}

} // namespace
} // namespace complexion
