// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/app_delegate.h"
#include "app/connections.h"
#include "app/icons.h"
#include "app/look.h"
#include "app/main_window.h"
#include "app/private_folder.h"
#include "app/system_platform.h"
#include "app/system_queues.h"
#include "app/window_dialogs.h"

#include <QApplication>

#include <cstdio>
#include <memory>

using namespace complexion;

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("complexion"));
    QApplication::setApplicationDisplayName(QStringLiteral("Complexion"));
    QApplication::setApplicationVersion(QStringLiteral(COMPLEXION_VERSION));
    QApplication::setDesktopFileName(QStringLiteral("org.complexion.complexion"));
    applyLook(application, systemFontScale());
    QApplication::setWindowIcon(applicationIcon());

    AppDelegate delegate;
    QApplication::setQuitOnLastWindowClosed(delegate.applicationShouldTerminateAfterLastWindowClosed());
    QObject::connect(&application, &QCoreApplication::aboutToQuit,
                     [&delegate] { delegate.applicationWillTerminate(); });

    const Result<PrivateFolder> folder = PrivateFolder::create();
    if (!folder) {
        std::fprintf(stderr, "complexion: %s\n", folder.error().message.c_str());
        return 1;
    }

    MainWindow window;
    std::shared_ptr<ViewController> controller;
    WindowDialogs dialogs(&window, [&controller] { return controller->originalImagePath; });
    // Ending asks nothing: who asks for it has asked the user. No close event is sent, so the window's
    // closing is announced here.
    SystemPlatform platform(folder->path(), [&controller] {
        controller->windowWillClose();
        QCoreApplication::exit();
    });
    SystemQueues queues;
    controller = std::make_shared<ViewController>(&window.rootView(), dialogs, platform, queues);
    connectWindow(window, *controller, dialogs);

    if (argc > 1)
        QObject::connect(
            &window, &MainWindow::appeared, controller.get(),
            [&controller, path = std::filesystem::absolute(argv[1])] { controller->OpenFile(path); });
    window.show();
    delegate.applicationDidFinishLaunching();
    const int status = QApplication::exec();
    queues.finish(); // while the controls that work in the background reads are there
    return status;
}
