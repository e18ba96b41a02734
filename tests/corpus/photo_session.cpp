// SPDX-License-Identifier: GPL-3.0-or-later

// One photo through the whole editor: opened, clicked once in its middle, undone, redone, saved, opened
// again. What was seen is written as lines of "name value" into FOLDER/report, the pixels opened as
// FOLDER/opened.rgba (8 bits each, premultiplied) with their profile in FOLDER/opened.icc.
#include "app/connections.h"
#include "app/look.h"
#include "imaging/codecs/jpeg_original.h"
#include "imaging/image_tools.h"
#include "tests/fakes/fake_platform.h"
#include "tests/fakes/manual_queues.h"
#include "view/image_fit.h"

#include <QApplication>

#include <chrono>
#include <fstream>
#include <iostream>
#include <set>

namespace complexion {
namespace {

constexpr int kDiscRadius = 10; // the edit area that the window starts with

/// Says "Yes" to every question, saves where it is told to, and remembers what it was shown.
class ObligingDialogs : public Dialogs {
public:
    explicit ObligingDialogs(std::filesystem::path target) : m_target(std::move(target)) {}

    /// The alerts since the last call, one after the other.
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

/// The most memory that this process has held, in MiB (proc(5), "VmHWM", in KiB).
long mostMebibytes() {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;)
        if (word == "VmHWM:") {
            long kibibytes = 0;
            status >> kibibytes;
            return kibibytes / 1024;
        }
    return 0;
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

/// How the pixels outside the disc in the middle differ between two images of one size.
struct Difference {
    int mostOpaque = 0; // of any component of a pixel that is opaque in the first
    int most = 0;
    double mean = 0; // of the colour components of opaque pixels
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
        const int most = std::max({colors[0], colors[1], colors[2], std::abs(a[i].alpha() - b[i].alpha())});
        difference.most = std::max(difference.most, most);
        if (a[i].alpha() != 255)
            continue;
        difference.mostOpaque = std::max(difference.mostOpaque, most);
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

/// The point of the root view at which the middle of the image's middle pixel is shown.
Point middleOf(const Image& image, const Frame& frame) {
    const PointSize size = image.size();
    const ImageFit fit = fitImage(size, {frame.width, frame.height});
    const PixelSize pixels = image.pixelSize();
    return {frame.x + fit.offsetX + (pixels.width / 2 + 0.5) * fit.scale,
            frame.y + fit.offsetY + (size.height - pixels.height / 2 - 0.5) * fit.scale};
}

/// The editor in its window, with work run at once.
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
        tellOpened(opened);
        clickInTheMiddle();
        const Image clicked = m_controller->originalImage();
        m_controller->OnUndo(nullptr);
        tell("undoDiffers", m_controller->originalImage().isSameObject(opened) ? 0 : 1);
        m_controller->OnRedo(nullptr);
        tell("redoDiffers", m_controller->originalImage().isSameObject(clicked) ? 0 : 1);
        tellCoding(clicked);
        m_controller->OnSaveImage(nullptr);
        tell("save", m_dialogs.shown());
        std::filesystem::path saved = m_folder / "saved";
        saved += "." + lowerCase(m_controller->originalImageExtension);
        if (!std::filesystem::exists(saved) || !open(saved, "reopen"))
            return 0;
        tellReopened(opened, clicked, m_controller->originalImage());
        return 0;
    }

private:
    template <class Value>
    void tell(const std::string& name, const Value& value) {
        m_report << name << ' ' << value << std::endl;
    }

    static std::string lowerCase(std::string text) {
        std::ranges::transform(text, text.begin(), [](unsigned char c) { return std::tolower(c); });
        return text;
    }

    bool open(const std::filesystem::path& path, const std::string& what) {
        const auto begin = std::chrono::steady_clock::now();
        m_controller->OpenFile(path);
        const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
        tell(what + "Seconds", seconds.count());
        const std::string alert = m_dialogs.shown();
        tell(what, alert.empty() ? "done" : alert);
        tell(what + "Mebibytes", mostMebibytes());
        return alert.empty();
    }

    void tellOpened(const Image& opened) {
        tell("width", opened.pixelSize().width);
        tell("height", opened.pixelSize().height);
        tell("pointWidth", opened.size().width);
        tell("pointHeight", opened.size().height);
        tell("colors", colorCount(opened));
        tell("states", m_controller->stateImagesPath.size());
        writeOpened(opened, m_folder);
    }

    /// Whether the image is saved as the JPEG file that it was, but for what was clicked; or why not.
    void tellCoding(const Image& clicked) {
        const auto original = clicked.encoderMemory().get<jpeg::OriginalFile>();
        if (!original) {
            tell("exact", "not 8-bit grey, YCbCr or RGB");
            return;
        }
        const Result<FileContents> file = original->encode(clicked);
        tell("exact", file ? "yes" : file.error().message);
    }

    void clickInTheMiddle() {
        const Point point = middleOf(m_controller->originalImage(), m_controller->imageView->frame());
        m_controller->mouseDown({.locationInWindow = point});
        m_platform.uptime += 100'000'000;
        m_controller->mouseUp({.locationInWindow = point});
        m_queues.runAll();
    }

    void tellReopened(const Image& opened, const Image& clicked, const Image& reopened) {
        const bool sameSize = opened.pixelSize() == reopened.pixelSize();
        tell("sizeDiffers", sameSize ? 0 : 1);
        tell("profileDiffers", opened.profile() == reopened.profile() ? 0 : 1);
        const Difference byClick = differenceOutsideDisc(opened, clicked);
        tell("clickDiffers", byClick.most);
        if (!sameSize)
            return;
        const Difference difference = differenceOutsideDisc(opened, reopened);
        tell("mostOpaque", difference.mostOpaque);
        tell("most", difference.most);
        tell("mean", difference.mean);
    }

    std::filesystem::path m_folder;
    ObligingDialogs m_dialogs;
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
    QApplication application(argc, argv);
    if (argc != 3) {
        std::cerr << "usage: photo_session PHOTO FOLDER\n";
        return 2;
    }
    complexion::applyLook(application, 1);
    return complexion::Session(argv[2]).run(std::filesystem::absolute(argv[1]));
}
