// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace complexion {

/// What the words behind the program's name ask for. Understood before there is a display: help, the version
/// and mistakes are answered on the terminal.
struct CommandLine {
    /// Exit status where the command line is not understood.
    static constexpr int kUsageError = 2;

    /// `arguments` begin with the program's name. "--" ends the options.
    static CommandLine parse(std::span<char* const> arguments);

    bool help = false;
    bool version = false;
    std::string mistake; // one line without its end; empty for none
    std::optional<std::filesystem::path> photo;
    std::vector<char*> forToolkit; // the program's name and the toolkit's own options
};

/// What `--help` prints.
std::string helpText();

} // namespace complexion
