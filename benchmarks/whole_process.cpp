// SPDX-License-Identifier: GPL-3.0-or-later

// The time of a process without a window, from its start to its end: open a photo, one natural repair, save.
// Relative to plain decoding and encoding.
#include "benchmarks/whole_process.h"

#include "benchmarks/portraits.h"
#include "benchmarks/references.h"
#include "benchmarks/stopwatch.h"
#include "benchmarks/table.h"
#include "imaging/base/fatal.h"
#include "imaging/image_tools.h"
#include "imaging/photo_files.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <optional>
#include <string>

namespace complexion::bench {

namespace {

constexpr std::int64_t kRadius = 20;
constexpr std::int64_t kThreshold = 25;

void runSelf(std::string mode, std::string photo, std::string target) {
    std::string self = std::filesystem::read_symlink("/proc/self/exe").string();
    const std::array<char*, 5> arguments = {self.data(), mode.data(), photo.data(), target.data(), nullptr};
    pid_t child = 0;
    int status = 0;
    if (::posix_spawn(&child, self.c_str(), nullptr, nullptr, arguments.data(), environ) != 0 ||
        ::waitpid(child, &status, 0) != child || status != 0)
        fatal("the process that retouches a photo failed");
}

} // namespace

int retouchOnce(const std::filesystem::path& photo, const std::filesystem::path& target) {
    const Result<OpenedPhoto> opened = openPhoto(photo);
    if (!opened)
        return 1;
    const PointSize size = opened->image.size();
    const std::optional<Image> repaired =
        ImageTools::HealPimpleInImage(opened->image, {size.width / 2, size.height / 2}, kRadius, kThreshold);
    return savePhoto(repaired.value_or(opened->image), target, opened->extension, photo) ? 0 : 1;
}

void addWholeProcessRow() {
    constexpr int kPhoto = 24; // megapixels
    addRow({.name = rowName("whole_process", kPhoto),
            .goal = atMost(0.6),
            .rounds = 7,
            .prepare = []() -> Round {
                const auto picture = std::make_shared<PlainPicture>(portrait(kPhoto));
                return [picture, photo = portraitFile(kPhoto, Kind::Jpeg)](Samples& samples) {
                    const std::filesystem::path target = folder() / "retouched.jpg";
                    const double reference = decodeJpegSeconds(photo) + encodeJpegSeconds(*picture);
                    samples.add(secondsOf([&] { runSelf("--retouch", photo.string(), target.string()); }),
                                reference);
                    std::filesystem::remove(target);
                };
            }});
}

} // namespace complexion::bench
