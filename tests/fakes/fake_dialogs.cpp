// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/fakes/fake_dialogs.h"

#include "imaging/image_tools.h"

#include <gtest/gtest.h>

namespace complexion {

namespace {

std::vector<std::string> acceptedTypes() {
    return {ImageTools::kAcceptedTypes.begin(), ImageTools::kAcceptedTypes.end()};
}

} // namespace

FakeDialogs::~FakeDialogs() {
    EXPECT_TRUE(m_expected.empty()) << m_expected.size() << " expected dialogs were never shown";
}

void FakeDialogs::expectQuestion(const std::string& informativeText, int answer) {
    const Alert alert{"", informativeText, AlertStyle::Warning, {"Yes", "No"}};
    m_expected.push_back({ExpectedAlert{alert, answer}, {}});
}

void FakeDialogs::expectAlert(const std::string& informativeText, AlertStyle style) {
    m_expected.push_back({ExpectedAlert{{"", informativeText, style, {"OK"}}, kFirstButton}, {}});
}

void FakeDialogs::expectOpenPanel(PanelAnswer answer) {
    m_expected.push_back({ExpectedOpenPanel{std::move(answer)}, {}});
}

void FakeDialogs::expectSavePanel(SavePanel panel, PanelAnswer answer) {
    m_expected.push_back({ExpectedSavePanel{std::move(panel), std::move(answer)}, {}});
}

void FakeDialogs::whileItIsShown(std::function<void()> action) {
    ASSERT_FALSE(m_expected.empty());
    m_expected.back().whileShown = std::move(action);
}

template <class Kind>
std::optional<Kind> FakeDialogs::next(const std::string& shownDialog) {
    ++m_shownCount;
    if (m_expected.empty() || !std::holds_alternative<Kind>(m_expected.front().dialog)) {
        ADD_FAILURE() << "unexpected dialog: " << shownDialog;
        return std::nullopt;
    }
    const Expected expected = std::move(m_expected.front());
    m_expected.pop_front();
    if (expected.whileShown)
        expected.whileShown();
    return std::get<Kind>(expected.dialog);
}

int FakeDialogs::runAlert(const Alert& alert) {
    const auto expected = next<ExpectedAlert>(alert.informativeText);
    if (!expected)
        return kSecondButton;
    EXPECT_EQ(alert.messageText, expected->alert.messageText);
    EXPECT_EQ(alert.informativeText, expected->alert.informativeText);
    EXPECT_EQ(alert.style, expected->alert.style) << alert.informativeText;
    EXPECT_EQ(alert.buttons, expected->alert.buttons);
    return expected->answer;
}

PanelAnswer FakeDialogs::runOpenPanel(const OpenPanel& panel) {
    const auto expected = next<ExpectedOpenPanel>("an open panel");
    EXPECT_EQ(panel.allowedFileTypes, acceptedTypes());
    return expected ? expected->answer : cancelled();
}

PanelAnswer FakeDialogs::runSavePanel(const SavePanel& panel) {
    const auto expected = next<ExpectedSavePanel>("a save panel for " + panel.nameFieldStringValue);
    if (!expected)
        return cancelled();
    EXPECT_EQ(panel.nameFieldStringValue, expected->panel.nameFieldStringValue);
    EXPECT_EQ(panel.allowedFileTypes, expected->panel.allowedFileTypes);
    return expected->answer;
}

PanelAnswer chosen(const std::filesystem::path& path) {
    return {.confirmed = true, .url = path};
}

PanelAnswer cancelled() {
    return {};
}

} // namespace complexion
