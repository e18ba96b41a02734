// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/dialogs.h"

#include <QtGlobal>

#include <utility>

namespace complexion {

Alert yesNoQuestion(std::string informativeText) {
    return {.messageText = "",
            .informativeText = std::move(informativeText),
            .style = AlertStyle::Warning,
            .buttons = {QT_TRANSLATE_NOOP("Alerts", "Yes"), QT_TRANSLATE_NOOP("Alerts", "No")}};
}

} // namespace complexion
