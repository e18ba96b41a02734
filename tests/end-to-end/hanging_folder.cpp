// SPDX-License-Identifier: GPL-3.0-or-later
// Preloaded into the program under test: reading the folder that HANGING_FOLDER names blocks for ever, as if
// the server of its file system were gone.
#include <dirent.h>
#include <dlfcn.h>
#include <unistd.h>

#include <cstdlib>
#include <string_view>

extern "C" DIR* opendir(const char* path) {
    const char* const hanging = std::getenv("HANGING_FOLDER");
    while (hanging && std::string_view(path) == hanging)
        ::pause();
    static const auto next = reinterpret_cast<DIR* (*)(const char*)>(::dlsym(RTLD_NEXT, "opendir"));
    return next(path);
}
