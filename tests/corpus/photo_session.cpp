// SPDX-License-Identifier: GPL-3.0-or-later

// Usage: photo_session PHOTO FOLDER
//
// Runs one photo through the whole editor: opens it, clicks once in its centre, undoes, redoes, saves, and
// opens the result. Files are decoded in children, as in the program. Writes measurements as lines of
// "name value" to FOLDER/report, the decoded pixels to FOLDER/opened.rgba (8 bits each, premultiplied), and
// their profile to FOLDER/opened.icc.
#include "app/connections.h"
#include "app/look.h"
#include "imaging/base/lower_case.h"
#include "imaging/codecs/jpeg_original.h"
#include "imaging/image_tools.h"
#include "imaging/reading/picture_reading.h"
#include "tests/fakes/fake_platform.h"
#include "tests/fakes/manual_queues.h"
#include "view/image_fit.h"

#include <QApplication>

#include <sys/resource.h>

#include <chrono>
#include <fstream>
#include <iostream>
#include <set>

namespace complexion {
namespace {

constexpr int kDiscRadius = 10; // the window's initial edit area size

/// Answers "Yes" to every question, saves to a given path, and records the alerts.
class AutomaticDialogs : public Dialogs {
public:
    explicit AutomaticDialogs(std::filesystem::path target) : m_target(std::move(target)) {}

    /// The texts of the alerts since the last call, concatenated.
    std::string shown() { return std::exchange(m_shown, {}); }

    int runAlert(const Alert& alert) override {
        if (alert.buttons.size() == 1)
            m_shown += alert.informativeText;
        return kFirstButton;
    }
    PanelAnswer runOpenPanel(const OpenPanel& /*panel*/) override { return {}; }
    PanelAnswer runSavePanel(const SavePanel& panel) override {
        return {true, std::filesystem::path(m_target.string() + "." + panel.allowedFileTypes.front())};
    }

private:
    std::filesystem::path m_target;
    std::string m_shown;
};

/// The peak resident memory of this process in MiB (proc(5), "VmHWM", in KiB).
long peakMebibytes() {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;)
        if (word == "VmHWM:") {
            long kibibytes = 0;
            status >> kibibytes;
            return kibibytes / 1024;
        }
    return 0;
}

/// The peak resident memory of the largest child that has ended, in MiB.
long childMebibytes() {
    rusage usage = {};
    ::getrusage(RUSAGE_CHILDREN, &usage);
    return usage.ru_maxrss / 1024; // from KiB
}

std::vector<RGBA32> pixelsOf(const Image& image) {
    const PixelSize size = image.pixelSize();
    std::vector<RGBA32> pixels(static_cast<std::size_t>(size.area()));
    image.read({0, 0, size.width, size.height}, pixels.data(), size.width);
    return pixels;
}

void writeOpened(const Image& image, const std::filesystem::path& folder) {
    std::ofstream out(folder / "opened.rgba", std::ios::binary);
    std::string row;
    const PixelSize size = image.pixelSize();
    std::vector<RGBA32> pixels(static_cast<std::size_t>(size.width));
    for (int y = 0; y < size.height; ++y) {
        image.read({0, y, size.width, 1}, pixels.data(), size.width);
        row.clear();
        for (const RGBA32 pixel : pixels)
            for (const std::uint8_t component : {pixel.red(), pixel.green(), pixel.blue(), pixel.alpha()})
                row += static_cast<char>(component);
        out.write(row.data(), static_cast<std::streamsize>(row.size()));
    }
    const auto icc = image.profile().icc();
    std::ofstream(folder / "opened.icc", std::ios::binary)
        .write(reinterpret_cast<const char*>(icc.data()), static_cast<std::streamsize>(icc.size()));
}

/// How the pixels outside the disc in the centre differ between two images of one size.
struct Difference {
    int maxOpaque = 0; // of any component, over pixels that are opaque in the first image
    int max = 0;       // of any component
    double mean = 0;   // of the colour components of opaque pixels
};

Difference differenceOutsideDisc(const Image& before, const Image& after) {
    const PixelSize size = before.pixelSize();
    const std::vector<RGBA32> a = pixelsOf(before);
    const std::vector<RGBA32> b = pixelsOf(after);
    Difference difference;
    std::int64_t sum = 0;
    std::int64_t count = 0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        const int x = static_cast<int>(i % static_cast<std::size_t>(size.width)) - size.width / 2;
        const int y = static_cast<int>(i / static_cast<std::size_t>(size.width)) - size.height / 2;
        if (x * x + y * y <= (kDiscRadius + 1) * (kDiscRadius + 1))
            continue;
        const int colors[] = {std::abs(a[i].red() - b[i].red()), std::abs(a[i].green() - b[i].green()),
                              std::abs(a[i].blue() - b[i].blue())};
        const int max = std::max({colors[0], colors[1], colors[2], std::abs(a[i].alpha() - b[i].alpha())});
        difference.max = std::max(difference.max, max);
        if (a[i].alpha() != 255)
            continue;
        difference.maxOpaque = std::max(difference.maxOpaque, max);
        sum += colors[0] + colors[1] + colors[2];
        count += 3;
    }
    difference.mean = count == 0 ? 0 : static_cast<double>(sum) / static_cast<double>(count);
    return difference;
}

std::size_t colorCount(const Image& image) {
    constexpr std::size_t kMany = 1000;
    std::set<std::uint32_t> colors;
    for (const RGBA32 pixel : pixelsOf(image))
        if (colors.insert(pixel.color).second && colors.size() == kMany)
            break;
    return colors.size();
}

/// The point of the root view that shows the centre of the image's central pixel.
Point centreOf(const Image& image, const Frame& frame) {
    const PointSize size = image.size();
    const ImageFit fit = fitImage(size, {frame.width, frame.height});
    const PixelSize pixels = image.pixelSize();
    return {frame.x + fit.offsetX + (pixels.width / 2 + 0.5) * fit.scale,
            frame.y + fit.offsetY + (size.height - pixels.height / 2 - 0.5) * fit.scale};
}

/// The editor in its window, with background work run on this thread.
class Session {
public:
    Session(std::filesystem::path folder)
        : m_folder(std::move(folder)), m_dialogs(m_folder / "saved"), m_report(m_folder / "report") {
        connectWindow(m_window, *m_controller, m_dialogs);
        m_window.show();
    }
    ~Session() { m_controller->windowWillClose(); }

    int run(const std::filesystem::path& photo) {
        if (!open(photo, "open"))
            return 0;
        const Image opened = m_controller->originalImage();
        reportOpened(opened);
        clickCentre();
        const Image clicked = m_controller->originalImage();
        m_controller->OnUndo(nullptr);
        report("undoDiffers", m_controller->originalImage().isSameObject(opened) ? 0 : 1);
        m_controller->OnRedo(nullptr);
        report("redoDiffers", m_controller->originalImage().isSameObject(clicked) ? 0 : 1);
        reportCoding(clicked);
        m_controller->OnSaveImage(nullptr);
        report("save", m_dialogs.shown());
        std::filesystem::path saved = m_folder / "saved";
        saved += "." + lowerCase(m_controller->originalImageExtension);
        if (!std::filesystem::exists(saved) || !open(saved, "reopen"))
            return 0;
        reportReopened(opened, clicked, m_controller->originalImage());
        return 0;
    }

private:
    template <class Value>
    void report(const std::string& name, const Value& value) {
        m_report << name << ' ' << value << std::endl;
    }

    bool open(const std::filesystem::path& path, const std::string& what) {
        const auto begin = std::chrono::steady_clock::now();
        m_controller->OpenFile(path);
        const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
        report(what + "Seconds", seconds.count());
        const std::string alert = m_dialogs.shown();
        report(what, alert.empty() ? "done" : alert);
        report(what + "Mebibytes", peakMebibytes());
        return alert.empty();
    }

    void reportOpened(const Image& opened) {
        report("width", opened.pixelSize().width);
        report("height", opened.pixelSize().height);
        report("pointWidth", opened.size().width);
        report("pointHeight", opened.size().height);
        report("colors", colorCount(opened));
        report("states", m_controller->stateImagesPath.size());
        writeOpened(opened, m_folder);
    }

    /// Reports whether the image can be saved exactly (JPEG coefficients unchanged outside the click), or why
    /// not.
    void reportCoding(const Image& clicked) {
        const auto original = clicked.encoderMemory().get<jpeg::OriginalFile>();
        if (!original) {
            report("exact", "not 8-bit grey, YCbCr or RGB");
            return;
        }
        const Result<FileContents> file = original->encode(clicked);
        report("exact", file ? "yes" : file.error().message);
    }

    void clickCentre() {
        const Point point = centreOf(m_controller->originalImage(), m_controller->imageView->frame());
        m_controller->mouseDown({.locationInWindow = point});
        m_platform.uptime += 100'000'000;
        m_controller->mouseUp({.locationInWindow = point});
        m_queues.runAll();
    }

    void reportReopened(const Image& opened, const Image& clicked, const Image& reopened) {
        const bool sameSize = opened.pixelSize() == reopened.pixelSize();
        report("sizeDiffers", sameSize ? 0 : 1);
        report("profileDiffers", opened.profile() == reopened.profile() ? 0 : 1);
        const Difference byClick = differenceOutsideDisc(opened, clicked);
        report("clickDiffers", byClick.max);
        if (!sameSize)
            return;
        const Difference difference = differenceOutsideDisc(opened, reopened);
        report("maxOpaque", difference.maxOpaque);
        report("max", difference.max);
        report("mean", difference.mean);
    }

    std::filesystem::path m_folder;
    AutomaticDialogs m_dialogs;
    std::ofstream m_report;
    FakePlatform m_platform;
    ManualQueues m_queues;
    MainWindow m_window;
    std::shared_ptr<ViewController> m_controller =
        std::make_shared<ViewController>(&m_window.rootView(), m_dialogs, m_platform, m_queues);
};

} // namespace
} // namespace complexion

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    complexion::startReader();
    QApplication application(argc, argv);
    if (argc != 3) {
        std::cerr << "usage: photo_session PHOTO FOLDER\n";
        return 2;
    }
    complexion::applyLook(application, 1);
    const int status = complexion::Session(argv[2]).run(std::filesystem::absolute(argv[1]));
    complexion::installReader(nullptr); // ends the reader process
    std::ofstream(std::filesystem::path(argv[2]) / "report", std::ios::app)
        << "childMebibytes " << complexion::childMebibytes() << '\n';
    return status;
}
