// SPDX-License-Identifier: GPL-3.0-or-later
#include "benchmarks/editor.h"

#include "app/connections.h"
#include "benchmarks/stopwatch.h"
#include "imaging/base/fatal.h"

#include <QCoreApplication>
#include <QMouseEvent>

#include <chrono>
#include <cmath>
#include <thread>

namespace complexion::bench {

namespace {

/// Low enough that even noise is repaired, which is the most work.
constexpr float kThreshold = 1;
constexpr int kSkinColumns = 11;
constexpr int kSkinRows = 8;

PrivateFolder newFolder() {
    Result<PrivateFolder> folder = PrivateFolder::create();
    if (!folder)
        fatal("cannot create a folder for the state images");
    return *std::move(folder);
}

double required(std::optional<double> seconds) {
    if (!seconds)
        fatal("the measured change was not painted");
    return *seconds;
}

} // namespace

TimedPlatform::TimedPlatform() : m_folder(newFolder()) {}

std::uint64_t TimedPlatform::monotonicNanoseconds() {
    return static_cast<std::uint64_t>((now() + m_ahead) * 1e9);
}

double TimedPlatform::secondsSince1970() {
    m_wallClock += 1.0 / 64;
    return m_wallClock;
}

std::filesystem::path TimedPlatform::temporaryDirectory() {
    aboutToWriteState();
    return m_folder.path();
}

void DeferredQueues::runAll() {
    while (!m_work.empty()) {
        const std::function<void()> work = std::move(m_work.front());
        m_work.pop_front();
        work();
    }
}

Editor::Editor(QSize window)
    : m_controller(std::make_shared<ViewController>(&m_window.rootView(), m_dialogs, m_platform, m_queues)) {
    connectWindow(m_window, *m_controller, m_dialogs);
    connect(m_controller.get(), &ViewController::previewShown, this, [this] {
        if (m_previewPaintedAt == 0)
            m_previewPaintedAt = now();
    });
    m_window.rootView().imageView()->installEventFilter(this);
    m_controller->sliderThreshold->setFloatValue(kThreshold);
    m_window.resize(window);
    m_window.show();
    paintNow();
}

Editor::~Editor() {
    m_controller->windowWillClose();
}

void Editor::paintNow() {
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
}

bool Editor::eventFilter(QObject* watched, QEvent* event) {
    const std::optional<Image>& shown = m_controller->imageView->image();
    if (event->type() == QEvent::Paint && shown && !(m_shownBefore && m_shownBefore->isSameObject(*shown)))
        ++m_paintings;
    return QObject::eventFilter(watched, event);
}

std::optional<double> Editor::untilPainted(const std::function<void()>& work) {
    m_shownBefore = m_controller->imageView->image();
    m_paintings = 0;
    m_previewPaintedAt = 0;
    double paintedAt = 0;
    m_platform.aboutToWriteState = [&] {
        if (m_paintings > 0)
            paintedAt = now();
    };
    const double start = now();
    work();
    m_queues.runAll();
    paintNow();
    if (paintedAt == 0)
        paintedAt = now();
    m_platform.aboutToWriteState = [] {};
    if (m_previewPaintedAt > 0)
        paintedAt = m_previewPaintedAt;
    return m_paintings > 0 ? std::optional(paintedAt - start) : std::nullopt;
}

double Editor::open(const std::filesystem::path& photo) {
    m_dialogs.chosen = photo;
    return required(untilPainted([this] { m_controller->OnSelectImage(nullptr); }));
}

void Editor::show(const Image& image) {
    m_controller->boxHint->hide();
    m_controller->boxHelp->hide();
    m_controller->setOriginalImage(image);
    m_controller->ApplyEffectsOnPreview();
    m_controller->ResetZoom();
    paintNow();
}

void Editor::save(const std::filesystem::path& target) {
    m_dialogs.chosen = target;
    m_controller->OnSaveImage(nullptr);
}

void Editor::sendMouse(QEvent::Type type, QPointF place, Qt::MouseButtons buttons) {
    RootView& root = m_window.rootView();
    QMouseEvent event(type, place, root.mapToGlobal(place),
                      type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton, buttons, Qt::NoModifier);
    QCoreApplication::sendEvent(&root, &event);
}

double Editor::clickOnSkin(QPointF spacing) {
    std::optional<double> seconds;
    for (int tried = 0; !seconds && tried < kSkinColumns * kSkinRows; ++tried) {
        const QPointF place = nextSkin(spacing);
        sendMouse(QEvent::MouseButtonPress, place, Qt::LeftButton);
        seconds = untilPainted([&] { sendMouse(QEvent::MouseButtonRelease, place, Qt::NoButton); });
    }
    return required(seconds);
}

void Editor::undo() {
    m_controller->OnUndo(nullptr);
    paintNow();
}

double Editor::drag(QPointF distance) {
    const QPointF middle = QRectF(QPointF(), m_window.size()).center();
    sendMouse(QEvent::MouseButtonPress, middle, Qt::LeftButton);
    const double seconds =
        paintedAfter([&] { sendMouse(QEvent::MouseMove, middle + distance, Qt::LeftButton); });
    m_platform.advance(1); // too long a press for a click
    sendMouse(QEvent::MouseButtonRelease, middle + distance, Qt::NoButton);
    return seconds;
}

double Editor::paintedAfter(const std::function<void()>& work) {
    m_shownBefore.reset();
    m_paintings = 0;
    const double seconds = secondsOf([&] {
        work();
        paintNow();
    });
    if (m_paintings == 0)
        fatal("the measured change was not painted");
    return seconds;
}

double Editor::rest(const std::function<void(double seconds)>& eachStep) {
    constexpr std::chrono::milliseconds kPause{1};
    m_shownBefore.reset();
    double seconds = 0;
    while (m_controller->imageView->isProvisional()) {
        std::this_thread::sleep_for(kPause);
        m_paintings = 0;
        const double step = secondsOf([] {
            QCoreApplication::processEvents();    // refines
            QCoreApplication::sendPostedEvents(); // and paints
        });
        if (m_paintings == 0)
            continue;
        seconds += step;
        if (eachStep)
            eachStep(step);
    }
    return seconds;
}

void Editor::zoomTo(double ratio) {
    const auto current = [this] {
        return m_controller->imageView->frame().width / m_window.rootView().width();
    };
    m_controller->ResetZoom();
    while (current() < ratio && current() < 10) {
        const double before = current();
        m_controller->OnZoomIn(nullptr);
        if (std::abs(current() - before) < 1e-9)
            break;
    }
    paintNow();
    rest();
}

void Editor::setRadius(int radius) {
    m_controller->stepperEditAreaSize->setIntegerValue(radius);
}

QPointF Editor::nextSkin(QPointF spacing) {
    const int column = m_skin % kSkinColumns;
    const int row = m_skin / kSkinColumns % kSkinRows;
    ++m_skin;
    return QRectF(QPointF(), m_window.size()).center() +
           QPointF((column - kSkinColumns / 2) * spacing.x(), (row - kSkinRows / 2) * spacing.y());
}

} // namespace complexion::bench
