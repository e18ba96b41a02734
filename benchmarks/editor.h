// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/main_window.h"
#include "app/private_folder.h"
#include "editor/platform.h"
#include "editor/view_controller.h"
#include "view/dialogs.h"

#include <QEvent>

#include <deque>

namespace complexion::bench {

/// Dialogs that confirm everything at once and choose the file `chosen`.
class AutomaticDialogs final : public Dialogs {
public:
    std::filesystem::path chosen;

    int runAlert(const Alert&) override { return kFirstButton; }
    PanelAnswer runOpenPanel(const OpenPanel&) override { return {true, chosen}; }
    PanelAnswer runSavePanel(const SavePanel&) override { return {true, chosen}; }
};

/// The system's clocks and a private folder.
class TimedPlatform final : public Platform {
public:
    TimedPlatform();

    /// Called when the editor is about to write a state, i.e. when it asks for the folder.
    std::function<void()> aboutToWriteState = [] {};

    /// Advances the monotonic clock.
    void advance(double seconds) { m_ahead += seconds; }

    std::uint64_t monotonicNanoseconds() override;
    double secondsSince1970() override;
    std::filesystem::path temporaryDirectory() override;
    void openAddress(const std::string&) override {}
    void terminate() override {}

private:
    PrivateFolder m_folder;
    double m_ahead = 0;                 // seconds
    double m_wallClock = 1'700'000'000; // advances on each call, so that the states' names differ
};

/// Runs the submitted work on the calling thread, in runAll().
class DeferredQueues final : public Queues {
public:
    void runAll();

    void submitBackground(std::function<void()> work) override { m_work.push_back(std::move(work)); }
    void submitMain(std::function<void()> work) override { m_work.push_back(std::move(work)); }

private:
    std::deque<std::function<void()>> m_work;
};

/// The whole editor in its real window, off screen.
class Editor : public QObject {
public:
    /// `window`: in points, which are device pixels.
    explicit Editor(QSize window = {1920, 1200});
    ~Editor() override;

    ViewController& controller() { return *m_controller; }
    TimedPlatform& platform() { return m_platform; }

    /// Opens a photo through the panel. Returns the seconds until it, or a preview of it, was first painted.
    double open(const std::filesystem::path& photo);
    /// Shows a picture as if it had been opened, but without a file or a history.
    void show(const Image& image);
    /// Saves through the panel.
    void save(const std::filesystem::path& target);

    /// Clicks at the next of a grid of points on the skin, `spacing` points of the root view apart; skips
    /// those where there is nothing to repair. Returns the seconds from the release until the repair is
    /// painted. Also writes the state.
    double clickOnSkin(QPointF spacing);
    /// Undoes the last click, even one that found nothing to repair, and repaints.
    void undo();
    /// Drags the photo. Returns the seconds until it is repainted.
    double drag(QPointF distance);

    /// Runs `work` and repaints. Returns the seconds for both.
    double paintedAfter(const std::function<void()>& work);

    /// Waits until all scaled pixels that a zoom shows at first are replaced. Calls `eachStep` with the
    /// seconds that the window was busy with each part. Returns their sum.
    double rest(const std::function<void(double seconds)>& eachStep = {});

    /// Zooms in about the centre until the zoom ratio is at least `ratio`, and rests.
    void zoomTo(double ratio);

    /// Sets the radius of the repairs, in pixels.
    void setRadius(int radius);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    static void paintNow();
    /// Runs `work` and all work that it submits. Returns the seconds until the photo was painted, whether
    /// before or after the state was written; nothing if it was not painted.
    std::optional<double> untilPainted(const std::function<void()>& work);
    QPointF nextSkin(QPointF spacing);
    void sendMouse(QEvent::Type type, QPointF place, Qt::MouseButtons buttons);

    TimedPlatform m_platform;
    AutomaticDialogs m_dialogs;
    DeferredQueues m_queues;
    MainWindow m_window;
    std::shared_ptr<ViewController> m_controller;
    std::optional<Image> m_shownBefore; // only paintings of a different picture count
    int m_paintings = 0;
    double m_previewPaintedAt = 0; // 0 if no preview was shown
    int m_skin = 0;
};

} // namespace complexion::bench
