// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/fakes/temporary_folder.h"

#include <QByteArray>

namespace complexion {

/// A temporary home directory, so that the toolkit never touches the developer's settings. Create it before
/// the application and destroy it after.
class PrivateHome {
public:
    PrivateHome() {
        qputenv("HOME", m_folder.path().c_str());
        for (const char* name : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME"})
            qunsetenv(name);
    }

private:
    TemporaryFolder m_folder;
};

} // namespace complexion
