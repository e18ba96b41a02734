// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/connections.h"

#include <QCoreApplication>
#include <QFile>

namespace complexion {

namespace {

void setOutlets(MainWindow& window, ViewController& controller) {
    const WindowContents& contents = window.contents();
    controller.imageView = window.rootView().imageView();
    controller.boxHint = contents.boxHint;
    controller.boxHelp = contents.boxHelp;
    controller.boxSelectImage = contents.boxSelectImage;
    controller.boxResetImage = contents.boxResetImage;
    controller.boxSaveImage = contents.boxSaveImage;
    controller.boxZoomIn = contents.boxZoomIn;
    controller.boxZoomOut = contents.boxZoomOut;
    controller.boxResetZoom = contents.boxResetZoom;
    controller.boxUndo = contents.boxUndo;
    controller.boxRedo = contents.boxRedo;
    controller.boxEditSettings = contents.boxEditSettings;
    controller.checkAutodetectColor = contents.boxEditSettings->checkAutodetectColor;
    controller.colorWellCustomColor = contents.boxEditSettings->colorWellCustomColor;
    controller.textFieldEditAreaSize = contents.boxEditSettings->textFieldEditAreaSize;
    controller.stepperEditAreaSize = contents.boxEditSettings->stepperEditAreaSize;
    controller.sliderThreshold = contents.boxEditSettings->sliderThreshold;
    controller.comboRepair = contents.boxEditSettings->comboRepair;
    controller.comboEffect = contents.boxEditSettings->comboEffect;
}

WindowState stateOf(const ViewController& controller) {
    const std::filesystem::path name = controller.originalImagePath.filename();
    return {.hasImage = controller.hasImage(),
            .canUndo = controller.canUndo(),
            .canRedo = controller.canRedo(),
            .hasTutorial = !controller.tutorialAddress.empty(),
            .fileName = QFile::decodeName(name.c_str())};
}

void connectActions(const Actions& actions, ViewController& controller) {
    using Operation = void (ViewController::*)(QObject*);
    const auto send = [&controller](QAction* action, Operation operation) {
        QObject::connect(action, &QAction::triggered, &controller,
                         [&controller, action, operation] { (controller.*operation)(action); });
    };
    send(actions.selectImage, &ViewController::OnSelectImage);
    send(actions.resetImage, &ViewController::OnResetImage);
    send(actions.saveImage, &ViewController::OnSaveImage);
    send(actions.quit, &ViewController::OnAppQuit);
    send(actions.undo, &ViewController::OnUndo);
    send(actions.redo, &ViewController::OnRedo);
    send(actions.zoomIn, &ViewController::OnZoomIn);
    send(actions.zoomOut, &ViewController::OnZoomOut);
    send(actions.resetZoom, &ViewController::OnResetZoom);
    send(actions.videoTutorial, &ViewController::OnVideoTutorial);
}

/// Only what the user does sends an action; a control that is set from code sends none.
void connectSettings(const SettingsBar& bar, ViewController& controller) {
    QLineEdit* field = bar.textFieldEditAreaSize;
    Stepper* stepper = bar.stepperEditAreaSize;
    QObject::connect(stepper, &Stepper::triggered, &controller,
                     [&controller, stepper] { controller.OnEditAreaSizeChanged(stepper); });
    QObject::connect(field, &QLineEdit::editingFinished, &controller, [&controller, field, stepper] {
        if (field->text() != QString::number(stepper->integerValue()))
            controller.OnEditAreaSizeChanged(field);
    });
    // A confirmed size is done with: the keys belong to the photo again.
    QObject::connect(field, &QLineEdit::returnPressed, &controller,
                     [&controller] { controller.imageView->setFocus(); });
    QComboBox* effects = bar.comboEffect;
    QObject::connect(effects, &QComboBox::activated, &controller,
                     [&controller, effects] { controller.OnEffectSelected(effects); });
}

void connectMouse(RootView& root, ViewController& controller) {
    QObject::connect(&root, &RootView::mouseDown, &controller, &ViewController::mouseDown);
    QObject::connect(&root, &RootView::mouseUp, &controller, &ViewController::mouseUp);
    QObject::connect(&root, &RootView::mouseDragged, &controller, &ViewController::mouseDragged);
    QObject::connect(&root, &RootView::visibleAreaResized, &controller, &ViewController::visibleAreaResized);
}

void showAbout(Dialogs& dialogs) {
    dialogs.runAlert({.messageText = "Complexion " + QCoreApplication::applicationVersion().toStdString(),
                      .informativeText =
                          "Clears blemishes from portraits. Free software under the GNU General "
                          "Public License, version 3 or later.",
                      .style = AlertStyle::Informational,
                      .buttons = {"OK"}});
}

} // namespace

void connectWindow(MainWindow& window, ViewController& controller, Dialogs& dialogs) {
    setOutlets(window, controller);
    window.rootView().imageView()->setDialogs(&dialogs);

    QObject::connect(&controller, &ViewController::stateChanged, &window,
                     [&window, &controller] { window.showState(stateOf(controller)); });
    QObject::connect(&controller, &ViewController::longWorkBegan, &window.busySign(), &BusySign::begin);
    QObject::connect(&controller, &ViewController::longWorkEnded, &window.busySign(), &BusySign::end);

    controller.awakeFromNib();
    controller.viewDidLoad();

    connectActions(window.actions(), controller);
    connectSettings(*window.contents().boxEditSettings, controller);
    connectMouse(window.rootView(), controller);
    QObject::connect(window.actions().about, &QAction::triggered, &window,
                     [&dialogs] { showAbout(dialogs); });
}

} // namespace complexion
