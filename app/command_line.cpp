// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/command_line.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace complexion {

namespace {

// The options of QApplication and its X11 platform plug-in, without their dashes.
constexpr std::array<std::string_view, 14> kToolkitOptionsWithValue = {
    "platform",    "platformpluginpath", "platformtheme", "plugin", "qwindowgeometry", "geometry",
    "qwindowicon", "qwindowtitle",       "session",       "style",  "stylesheet",      "display",
    "name",        "qmljsdebugger"};
constexpr std::array<std::string_view, 4> kToolkitOptions = {"reverse", "widgetcount", "nograb", "dograb"};

std::string_view withoutDashes(std::string_view option) {
    option.remove_prefix(option.starts_with("--") ? 2 : 1);
    return option;
}

} // namespace

CommandLine CommandLine::parse(std::span<char* const> arguments) {
    CommandLine line;
    bool optionsEnded = false;
    const auto fail = [&line](const std::string& error) {
        if (line.usageError.empty())
            line.usageError = error;
    };
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string_view word = arguments[i];
        if (i == 0) {
            line.toolkitArguments.push_back(arguments[i]);
            continue;
        }
        if (optionsEnded || !word.starts_with('-') || word == "-") {
            if (line.photo)
                fail("only one photo can be opened: unexpected '" + std::string(word) + "'");
            else
                line.photo = word;
            continue;
        }
        const std::string_view option = withoutDashes(word);
        if (word == "--") {
            optionsEnded = true;
        } else if (word == "--help" || word == "-h") {
            line.help = true;
        } else if (word == "--version") {
            line.version = true;
        } else if (std::ranges::find(kToolkitOptions, option) != kToolkitOptions.end()) {
            line.toolkitArguments.push_back(arguments[i]);
        } else if (std::ranges::find(kToolkitOptionsWithValue, option.substr(0, option.find('='))) !=
                   kToolkitOptionsWithValue.end()) {
            line.toolkitArguments.push_back(arguments[i]);
            if (option.find('=') != std::string_view::npos)
                continue;
            if (++i < arguments.size())
                line.toolkitArguments.push_back(arguments[i]);
            else
                fail("option '" + std::string(word) + "' needs a value");
        } else {
            fail("unknown option '" + std::string(word) + "'");
        }
    }
    return line;
}

std::string helpText() {
    return "Usage: complexion [OPTION]... [--] [PHOTO]\n"
           "Retouch portrait photographs: opens a window, with PHOTO if one is named.\n"
           "\n"
           "  -h, --help     print this and exit\n"
           "      --version  print the version and exit\n"
           "\n"
           "The Qt toolkit's own options, such as -style and -platform, are understood too.\n";
}

} // namespace complexion
