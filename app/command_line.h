// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace complexion {

/// The parsed command line. Parsing needs no display, so --help, --version and usage errors also work in a
/// plain terminal.
struct CommandLine {
    /// The exit status for a usage error.
    static constexpr int kUsageError = 2;

    /// Parses `arguments`, the first of which is the program's name. "--" ends the options.
    static CommandLine parse(std::span<char* const> arguments);

    bool help = false;
    bool version = false;
    std::string usageError; // one line without a newline; empty if there is none
    std::optional<std::filesystem::path> photo;
    std::vector<char*> toolkitArguments; // the program's name and the options for Qt
};

/// The text that --help prints.
std::string helpText();

} // namespace complexion
