// SPDX-License-Identifier: GPL-3.0-or-later

// The time from the program's start until its window is shown, relative to an empty window, and until a photo
// named on the command line is open.
#include "benchmarks/portraits.h"
#include "benchmarks/references.h"
#include "benchmarks/stopwatch.h"
#include "benchmarks/table.h"
#include "imaging/base/fatal.h"
#include "imaging/image_tools.h"

#include <QByteArray>

#include <csignal>
#include <fstream>
#include <spawn.h>
#include <sys/inotify.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <string>

namespace complexion::bench {

namespace {

/// Watches files for events.
class Watch {
public:
    Watch() : m_descriptor(::inotify_init1(IN_CLOEXEC)) {}
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;
    ~Watch() { ::close(m_descriptor); }

    void add(const std::filesystem::path& path, std::uint32_t events) const {
        if (::inotify_add_watch(m_descriptor, path.c_str(), events) < 0)
            fatal("cannot watch what the program does");
    }

    /// Returns the name of the file in the watched folder.
    std::string wait() const {
        alignas(inotify_event) std::array<char, 4096> buffer;
        if (::read(m_descriptor, buffer.data(), buffer.size()) <= 0)
            fatal("the program did not do what is measured");
        const auto* const event = reinterpret_cast<const inotify_event*>(buffer.data());
        return event->len > 0 ? event->name : "";
    }

private:
    int m_descriptor;
};

/// A program with an argument. Killed at the end.
class Run {
public:
    Run(std::string program, std::string argument) {
        const std::array<char*, 3> arguments = {program.data(), argument.data(), nullptr};
        if (::posix_spawn(&m_child, program.c_str(), nullptr, nullptr, arguments.data(), environ) != 0)
            fatal("cannot start the program");
    }
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;
    ~Run() {
        ::kill(m_child, SIGKILL);
        ::waitpid(m_child, nullptr, 0);
    }

private:
    pid_t m_child = 0;
};

/// The seconds from the start of the empty window's program until it is shown. It opens the file of its
/// argument at that moment.
double emptyWindowSeconds() {
    const std::filesystem::path file = folder() / "no photo";
    std::ofstream(file).put('\n');
    const Watch watch;
    watch.add(file, IN_OPEN);
    const double start = now();
    const Run run(EMPTY_WINDOW_PROGRAM, file.string());
    watch.wait();
    return now() - start;
}

/// The seconds from Complexion's start until it has shown its window, then opened `photo`, and begins to
/// record its first state.
double openedSeconds(const std::filesystem::path& photo) {
    const std::filesystem::path temporary = folder() / "temporary";
    std::filesystem::remove_all(temporary);
    std::filesystem::create_directory(temporary);
    const QByteArray variable = qgetenv("TMPDIR");
    qputenv("TMPDIR", QByteArray::fromStdString(std::filesystem::absolute(temporary).string()));
    const Watch folders;
    folders.add(temporary, IN_CREATE);
    const double start = now();
    double seconds = 0;
    {
        const Run run(COMPLEXION_PROGRAM, photo.string());
        const Watch states;
        states.add(temporary / folders.wait(), IN_CREATE);
        states.wait();
        seconds = now() - start;
    }
    if (variable.isNull())
        qunsetenv("TMPDIR");
    else
        qputenv("TMPDIR", variable);
    std::filesystem::remove_all(temporary);
    return seconds;
}

/// A photo that takes no time to open.
std::filesystem::path tinyPhoto() {
    const std::filesystem::path path = folder() / "tiny.png";
    const std::array<RGBA32, 4> pixels = {};
    if (!ImageTools::SaveImage(Image::fromPixels({2, 2}, pixels), path, "png"))
        fatal("cannot write a photo");
    return path;
}

} // namespace

void addStartRow() {
    addRow({.name = "start", .goal = atMost(1.5), .rounds = 15, .prepare = []() -> Round {
                return [photo = tinyPhoto()](Samples& samples) {
                    const double reference = emptyWindowSeconds();
                    samples.add(openedSeconds(photo), reference);
                };
            }});
    constexpr int kPhoto = 24; // megapixels
    addRow({.name = rowName("start_with_photo", kPhoto),
            .goal = atMost(1.15),
            .rounds = 9,
            .prepare = []() -> Round {
                return [photo = portraitFile(kPhoto, Kind::Jpeg)](Samples& samples) {
                    const double reference = emptyWindowSeconds() + decodeJpegSeconds(photo);
                    samples.add(openedSeconds(photo), reference);
                };
            }});
}

} // namespace complexion::bench
