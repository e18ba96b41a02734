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

/// A user who says yes to everything and chooses the file that is set.
class WillingDialogs final : public Dialogs {
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

    /// Told when the editor is about to write a state: it asks for the folder then.
    std::function<void()> stateIsNamed = [] {};

    /// Lets the uptime go on by some seconds.
    void goOn(double seconds) { m_ahead += seconds; }

    std::uint64_t monotonicNanoseconds() override;
    double secondsSince1970() override;
    std::filesystem::path temporaryDirectory() override;
    void openAddress(const std::string&) override {}
    void terminate() override {}

private:
    PrivateFolder m_folder;
    double m_ahead = 0;                 // seconds
    double m_wallClock = 1'700'000'000; // goes on at each look, so that states' names differ
};

/// Work runs on the calling thread when it is asked for.
class WaitingQueues final : public Queues {
public:
    void runAll();

    void submitBackground(std::function<void()> work) override { m_work.push_back(std::move(work)); }
    void submitMain(std::function<void()> work) override { m_work.push_back(std::move(work)); }

private:
    std::deque<std::function<void()>> m_work;
};

/// The whole editor in its real window of 1920 by 1200, which nobody sees.
class Editor : public QObject {
public:
    Editor();
    ~Editor() override;

    ViewController& controller() { return *m_controller; }
    TimedPlatform& platform() { return m_platform; }

    /// Opens a photo through the panel; the seconds until it was painted for the first time.
    double open(const std::filesystem::path& photo);
    /// Shows a picture as if it had been opened, without a file and a history.
    void show(const Image& image);
    /// Saves through the panel.
    void save(const std::filesystem::path& target);

    /// Clicks with the mouse at the next of many places on the skin, `spacing` points of the root view from
    /// each other, where there is something to repair; the seconds from the release until it is painted. The
    /// state is written, too.
    double clickOnSkin(QPointF spacing);
    /// Steps back, also over a click that found nothing to repair, and paints what that changes.
    void undo();
    /// Drags by a distance; the seconds until that is painted.
    double drag(QPointF distance);

    /// Does `work` and paints what it has changed; the seconds for both.
    double paintedAfter(const std::function<void()>& work);

    /// Zooms about the middle until the ratio is nearest to `ratio`.
    void zoomTo(double ratio);

    /// Steers the repairs: the radius in pixels.
    void setRadius(int radius);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    static void paintNow();
    /// Runs `work` with all that follows; the seconds until the photo was painted, be it before or after the
    /// state is written; nothing when it was not.
    std::optional<double> untilPainted(const std::function<void()>& work);
    QPointF nextSkin(QPointF spacing);
    void sendMouse(QEvent::Type type, QPointF place, Qt::MouseButtons buttons);

    TimedPlatform m_platform;
    WillingDialogs m_dialogs;
    WaitingQueues m_queues;
    MainWindow m_window;
    std::shared_ptr<ViewController> m_controller;
    std::optional<Image> m_shownBefore; // the painting of any other picture counts
    int m_paintings = 0;
    int m_skin = 0;
};

} // namespace complexion::bench
