// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"
#include "tests/editor/zoom_model.h"

#include <deque>
#include <filesystem>
#include <map>
#include <vector>

namespace complexion {

/// A model of the editor's rules, used as an oracle. It holds no pixels of its own: its images are the
/// editor's, stored once a test has compared them.
struct EditorModel {
    std::int64_t numberOfStates = 50;
    std::vector<std::filesystem::path> paths;
    std::int64_t current = -1;
    std::map<std::filesystem::path, Image> disk;
    bool writable = true;

    std::filesystem::path source; // empty while no photo is open
    Image working;
    int photo = 0; // number of loads and reloads
    int effect = 0;
    ZoomModel zoom;

    struct Repair {
        int photo = 0;
        Image result;
    };
    std::deque<Point> clicks;   // queued, not yet started
    std::deque<Repair> repairs; // computed, not yet installed
    bool processing = false;

    bool isOpen() const { return !source.empty(); }
    bool isIndex(std::int64_t index) const { return index >= 0 && index < std::ssize(paths); }
    bool canUndo() const { return isOpen() && !processing && current > 0 && isIndex(current - 1); }
    bool canRedo() const { return isOpen() && !processing && isIndex(current + 1); }

    void begin(const std::filesystem::path& path) {
        for (const auto& old : paths)
            disk.erase(old);
        paths.clear();
        if (!writable)
            return;
        disk.insert_or_assign(path, working);
        paths = {path};
        current = 0;
    }

    /// Whether the next push is fatal: the history is full but has no state to drop.
    bool isPushFatal() const { return writable && paths.empty() && current >= numberOfStates; }

    void push(const std::filesystem::path& path) {
        if (current < numberOfStates) {
            while (std::ssize(paths) - 1 > current) {
                disk.erase(paths.back());
                paths.pop_back();
            }
            if (writable) {
                disk.insert_or_assign(path, working);
                paths.push_back(path);
                ++current;
            }
        } else if (writable) {
            disk.insert_or_assign(path, working);
            disk.erase(paths.front());
            paths.erase(paths.begin());
            paths.push_back(path);
        }
        processing = false;
    }

    void step(std::int64_t index) {
        const auto file = disk.find(paths[static_cast<std::size_t>(index)]);
        if (file == disk.end())
            return;
        current = index;
        working = file->second;
    }
};

} // namespace complexion
