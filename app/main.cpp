// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/app_delegate.h"
#include "app/command_line.h"
#include "app/connections.h"
#include "app/core_dumps.h"
#include "app/font_loading.h"
#include "app/icons.h"
#include "app/look.h"
#include "app/main_window.h"
#include "app/monitor_watch.h"
#include "app/private_folder.h"
#include "app/session_end.h"
#include "app/system_platform.h"
#include "app/system_queues.h"
#include "app/termination_signals.h"
#include "app/translation.h"
#include "app/tutorial_page.h"
#include "app/unfinished_work.h"
#include "app/window_dialogs.h"
#include "editor/photo_ahead.h"
#include "imaging/base/freed_memory.h"
#include "imaging/reading/picture_reading.h"
#include "imaging/reading/reader_execution.h"

#include <QApplication>
#include <QLocale>
#include <QSessionManager>
#include <QSettings>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <system_error>

using namespace complexion;

namespace {

/// `path` itself if the working folder has been deleted. Opening a relative one then fails with an alert.
std::filesystem::path absoluteIfPossible(const std::filesystem::path& path) {
    std::error_code failed;
    const std::filesystem::path absolute = std::filesystem::absolute(path, failed);
    return failed ? path : absolute;
}

/// Handles a usage error, --help and --version. Returns the exit status; nothing if the window is to open.
std::optional<int> answerOnTerminal(const CommandLine& line) {
    if (!line.usageError.empty()) {
        std::fprintf(stderr, "complexion: %s\nTry 'complexion --help'.\n", line.usageError.c_str());
        return CommandLine::kUsageError;
    }
    if (line.help)
        std::fputs(helpText().c_str(), stdout);
    else if (line.version)
        std::puts("complexion " COMPLEXION_VERSION);
    else
        return std::nullopt;
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    serveIfExecutedAsReader(argc, argv, answerReading);
    CommandLine line = CommandLine::parse({argv, static_cast<std::size_t>(argc)});
    if (const std::optional<int> status = answerOnTerminal(line))
        return *status;
    forgoCoreDumps();
    startReader(); // while this process is small and has one thread
    keepFreedMemory();
    std::optional<PhotoAhead> photo;
    if (line.photo)
        photo.emplace(absoluteIfPossible(*line.photo));
    beginLoadingFonts();
    int toolkitCount = static_cast<int>(line.toolkitArguments.size());
    line.toolkitArguments.push_back(nullptr);
    QApplication application(toolkitCount, line.toolkitArguments.data());
    QApplication::setApplicationName(QStringLiteral("complexion"));
    QApplication::setApplicationDisplayName(QStringLiteral("Complexion"));
    QApplication::setApplicationVersion(QStringLiteral(COMPLEXION_VERSION));
    QApplication::setDesktopFileName(QStringLiteral("org.complexion.complexion"));
    installTranslations(application, QLocale());
    applyLook(application, systemFontScale());
    QApplication::setWindowIcon(applicationIcon());

    AppDelegate delegate;
    QApplication::setQuitOnLastWindowClosed(delegate.applicationShouldTerminateAfterLastWindowClosed());
    QObject::connect(&application, &QCoreApplication::aboutToQuit,
                     [&delegate] { delegate.applicationWillTerminate(); });

    // Static, so that exit() destroys it too: Qt calls exit() when it loses the display.
    static const Result<PrivateFolder> folder = PrivateFolder::create();
    if (!folder) {
        std::fprintf(stderr, "complexion: %s\n", folder.error().message.c_str());
        return 1;
    }

    // Qt's color dialog stores the chosen colours. Store them in the private folder, which is removed when
    // the program ends.
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope,
                       QString::fromStdString(folder->path().string()));

    MainWindow window;
    std::shared_ptr<ViewController> controller;
    WindowDialogs dialogs(&window, [&controller] { return controller->originalImagePath; }, folder->path());
    // Asks nothing: the caller has already asked the user. exit() sends no close event, so windowWillClose is
    // called here.
    const auto end = [&controller] {
        controller->windowWillClose();
        QCoreApplication::exit();
    };
    SystemPlatform platform(folder->path(), end);
    SystemQueues queues;
    controller = std::make_shared<ViewController>(&window.rootView(), dialogs, platform, queues);
    if (controller->tutorialAddress.empty())
        controller->tutorialAddress =
            tutorialPageAddress(QCoreApplication::applicationDirPath(), QLocale().name().section(u'_', 0, 0));
    connectWindow(window, *controller, dialogs);
    // On a signal the journal is kept, so that the work can be resumed.
    const TerminationSignals terminationSignals;
    QObject::connect(&terminationSignals, &TerminationSignals::received, &window, [&controller] {
        controller->terminateBySystem();
        QCoreApplication::exit();
    });
    QObject::connect(
        &application, &QGuiApplication::commitDataRequest, &window,
        [&controller](QSessionManager& manager) { answerSessionEnd(manager, *controller); },
        Qt::DirectConnection);
    std::optional<UnfinishedWork> unfinishedWork;
    if (const std::optional<std::filesystem::path> journals = journalFolder())
        unfinishedWork.emplace(*journals, *window.contents().boxContinue, *controller, dialogs);

    if (photo)
        QObject::connect(&window, &MainWindow::appeared, controller.get(),
                         [&controller, &photo] { controller->OpenFile(*photo); });
    window.show();
    MonitorWatch monitor(window.windowHandle());
    QObject::connect(&monitor, &MonitorWatch::found, window.rootView().imageView(),
                     &CustomImageView::setMonitor);
    monitor.look();
    delegate.applicationDidFinishLaunching();
    const int status = QApplication::exec();
    queues.finish(); // before the window, whose controls background work may use, is destroyed
    return status;
}
