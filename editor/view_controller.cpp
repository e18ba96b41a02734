// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/view_controller.h"

#include "editor/tutorial_address.h"

namespace complexion {

ViewController::ViewController(QWidget* rootView, Dialogs& dialogs, Platform& platform, Queues& queues)
    : m_session(platform),
      tutorialAddress(kTutorialAddress),
      view(rootView),
      m_dialogs(dialogs),
      m_platform(platform),
      m_queues(queues) {}

ViewController::~ViewController() = default;

bool ViewController::hasImage() const {
    return imageView->image().has_value();
}

bool ViewController::hasUnsavedWork() const {
    return hasImage() && m_session.hasUnsavedWork(comboEffect->currentIndex());
}

int ViewController::runQuestion(const char* informativeText) {
    return m_dialogs.runAlert(yesNoQuestion(informativeText));
}

} // namespace complexion
