// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/connections.h"

#include "editor/aim.h"
#include "editor/file_names.h"
#include "editor/stroke_drawing.h"
#include "editor/suggestion_marks.h"
#include "view/accessibility.h"

#include <QCoreApplication>
#include <QToolButton>

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
            .undoStep = controller.undoStep(),
            .redoStep = controller.redoStep(),
            .hasTutorial = !controller.tutorialAddress.empty(),
            .fileName = shownName(name),
            .hasUnsavedWork = controller.hasUnsavedWork(),
            .isShowingOriginal = controller.isShowingSource()};
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
    QObject::connect(actions.higherThreshold, &QAction::triggered, &controller,
                     [&controller] { controller.StepThreshold(1); });
    QObject::connect(actions.lowerThreshold, &QAction::triggered, &controller,
                     [&controller] { controller.StepThreshold(-1); });
    QObject::connect(actions.showOriginal, &QAction::triggered, &controller, &ViewController::ShowSource);
    QObject::connect(actions.largerArea, &QAction::triggered, &controller,
                     [&controller] { controller.StepEditAreaSize(1); });
    QObject::connect(actions.smallerArea, &QAction::triggered, &controller,
                     [&controller] { controller.StepEditAreaSize(-1); });
}

/// Connects the signals that only user actions emit, so that setting a control from code triggers no action.
void connectSettings(const SettingsBar& bar, ViewController& controller) {
    QLineEdit* field = bar.textFieldEditAreaSize;
    Stepper* stepper = bar.stepperEditAreaSize;
    QObject::connect(stepper, &Stepper::triggered, &controller,
                     [&controller, stepper] { controller.OnEditAreaSizeChanged(stepper); });
    QObject::connect(field, &QLineEdit::editingFinished, &controller, [&controller, field, stepper] {
        if (field->text() != QString::number(stepper->integerValue()))
            controller.OnEditAreaSizeChanged(field);
    });
    // Once a size is confirmed or cancelled, the photo gets the keyboard focus again.
    const auto leaveField = [&controller] { controller.imageView->setFocus(); };
    QObject::connect(field, &QLineEdit::returnPressed, &controller, leaveField);
    QObject::connect(&bar, &SettingsBar::sizeEntryCancelled, &controller, leaveField);
    QComboBox* effects = bar.comboEffect;
    QObject::connect(effects, &QComboBox::activated, &controller,
                     [&controller, effects] { controller.OnEffectSelected(effects); });
}

void connectMouse(RootView& root, ViewController& controller) {
    QObject::connect(&root, &RootView::mouseDown, &controller, &ViewController::mouseDown);
    QObject::connect(&root, &RootView::mouseDragged, &controller, &ViewController::mouseDragged);
    QObject::connect(&root, &RootView::visibleAreaResized, &controller, &ViewController::visibleAreaResized);
}

/// Mouse, wheel and keys over the photo, and the disc that follows them.
void connectPhotoInput(MainWindow& window, ViewController& controller) {
    auto* const suggestions = new Suggestions(controller.queues(), &controller);
    auto* const aim = new Aim(controller, *suggestions, &window.editDisc(), controller.queues(), &controller);
    auto* const marks = new SuggestionMarks(controller, *suggestions, &window.blemishMarks(), &controller);
    const PhotoInput* input = &window.photoInput();
    QObject::connect(&window.rootView(), &RootView::mouseUp, &controller,
                     [&controller, aim](MouseEvent event) {
                         event.locationInWindow = aim->clickPoint(event.locationInWindow);
                         controller.mouseUp(event);
                     });
    QObject::connect(input, &PhotoInput::pointed, aim, &Aim::pointAt);
    QObject::connect(input, &PhotoInput::placeStepped, aim, &Aim::moveBy);
    QObject::connect(input, &PhotoInput::acted, aim, &Aim::act);
    QObject::connect(input, &PhotoInput::focusTaken, aim, &Aim::takeKeys);
    QObject::connect(input, &PhotoInput::focusShown, &window.editDisc(), &EditDisc::setFocusShown);
    QObject::connect(input, &PhotoInput::zoomed, &controller, &ViewController::ZoomAbout);
    QObject::connect(input, &PhotoInput::sizeStepped, &controller, &ViewController::StepEditAreaSize);
    QObject::connect(input, &PhotoInput::thresholdStepped, &controller, &ViewController::StepThreshold);
    QObject::connect(input, &PhotoInput::panned, &controller, &ViewController::MovePhoto);
    const TouchInput* touch = &window.touchInput();
    QObject::connect(touch, &TouchInput::pointed, aim, &Aim::pointAt);
    QObject::connect(touch, &TouchInput::zoomed, &controller, &ViewController::ZoomAbout);
    QObject::connect(touch, &TouchInput::panned, &controller, &ViewController::MovePhoto);
    QObject::connect(&window.stylusInput(), &StylusInput::erased, window.actions().undo, &QAction::trigger);
    QObject::connect(aim, &Aim::placeChanged, &window.photoInput(),
                     [&window, aim] { window.photoInput().setPointerHidden(aim->place().has_value()); });
    const auto announce = [view = window.rootView().imageView()](const QString& text) {
        announceDescription(*view, text);
    };
    QObject::connect(aim, &Aim::announced, &window, announce);
    QObject::connect(marks, &SuggestionMarks::announced, &window, announce);
    QObject::connect(&controller, &ViewController::announced, &window, announce);

    auto* const stroke = new StrokeDrawing(controller, *aim, &window.strokeOutline(), &controller);
    QObject::connect(&window.rootView(), &RootView::strokeDrawn, stroke, &StrokeDrawing::drawTo);
    QObject::connect(&window.rootView(), &RootView::strokeEnded, stroke, &StrokeDrawing::finish);
    QObject::connect(input, &PhotoInput::strokeToggled, stroke, &StrokeDrawing::toggleByKeys);
    QObject::connect(input, &PhotoInput::cancelled, stroke, &StrokeDrawing::cancel);
    QObject::connect(stroke, &StrokeDrawing::announced, &window, announce);

    const Actions& actions = window.actions();
    QObject::connect(actions.fitArea, &QAction::triggered, aim, &Aim::fit);
    window.contents().boxEditSettings->fitArea->setDefaultAction(actions.fitArea);
    window.rootView().imageView()->addAction(actions.fitArea); // an accessible action of the photo
    QObject::connect(actions.nextBlemish, &QAction::triggered, aim, [aim] { aim->goToSuggestion(1); });
    QObject::connect(actions.previousBlemish, &QAction::triggered, aim, [aim] { aim->goToSuggestion(-1); });
    QObject::connect(actions.showBlemishes, &QAction::toggled, marks, &SuggestionMarks::setShown);
    QObject::connect(actions.onlyStrongest, &QAction::toggled, marks, &SuggestionMarks::setOnlyStrongest);
    QObject::connect(actions.showPreview, &QAction::toggled, aim, &Aim::setPreviewing);
    for (const auto& [action, scale] :
         {std::pair(actions.halfPixels, 0.5), {actions.actualPixels, 1}, {actions.doublePixels, 2}})
        QObject::connect(action, &QAction::triggered, aim,
                         [&controller, aim, scale] { controller.ZoomToPixels(aim->shownPoint(), scale); });
    QObject::connect(window.contents().compare, &HeldCommand::held, &controller, &ViewController::ShowSource);
}

/// The menus that depend on the controller, and the zoom that the rail shows.
void connectMenus(MainWindow& window, ViewController& controller) {
    const SettingsBar& bar = *window.contents().boxEditSettings;
    addChoices(*window.menus().repair, bar.comboRepair);
    addChoices(*window.menus().effect, bar.comboEffect);
    RecentPhotos* const recent = window.menus().recentPhotos;
    QObject::connect(&controller, &ViewController::photoOpened, recent,
                     [&controller, recent] { recent->add(controller.originalImagePath); });
    QObject::connect(recent, &RecentPhotos::chosen, &controller, &ViewController::OpenAgain);

    ZoomButton* const zoom = window.contents().zoom;
    const auto showScale = [&controller, zoom] { zoom->setScale(controller.shownScale()); };
    QObject::connect(window.rootView().imageView(), &CustomImageView::frameChanged, zoom, showScale);
    QObject::connect(&controller, &ViewController::stateChanged, zoom, showScale);
}

/// The pipette beside the colour well.
void connectPipette(MainWindow& window, ViewController& controller) {
    const SettingsBar& bar = *window.contents().boxEditSettings;
    QToolButton* const pipette = bar.pipette;
    auto* const aim = controller.findChild<Aim*>();
    QObject::connect(pipette, &QToolButton::toggled, aim, [&window, aim](bool on) {
        aim->setPicking(on);
        window.photoInput().setPicking(on);
        if (on)
            window.rootView().imageView()->setFocus();
    });
    QObject::connect(&window.photoInput(), &PhotoInput::cancelled, pipette,
                     [pipette] { pipette->setChecked(false); });
    QObject::connect(aim, &Aim::picked, pipette,
                     [pipette, well = bar.colorWellCustomColor](const QColor& color) {
                         well->setColor(color);
                         pipette->setChecked(false);
                     });
}

void showAbout(Dialogs& dialogs) {
    dialogs.runAlert({.messageText = "Complexion " + QCoreApplication::applicationVersion().toStdString(),
                      .informativeText = QT_TRANSLATE_NOOP(
                          "Alerts", "Removes blemishes from portraits. Free software under the "
                                    "GNU General Public License, version 3 or later."),
                      .style = AlertStyle::Informational,
                      .buttons = {QT_TRANSLATE_NOOP("Alerts", "OK")}});
}

} // namespace

void connectWindow(MainWindow& window, ViewController& controller, Dialogs& dialogs) {
    setOutlets(window, controller);
    window.rootView().imageView()->setDialogs(&dialogs);

    QObject::connect(&controller, &ViewController::stateChanged, &window, [&window, &controller] {
        WindowState state = stateOf(controller);
        // Undo and redo are disabled during a repair. Keep their buttons as they are, so that they do not
        // flicker.
        if (controller.imageProcessing) {
            state.canUndo = window.actions().undo->isEnabled();
            state.canRedo = window.actions().redo->isEnabled();
        }
        window.showState(state);
    });
    QObject::connect(
        &controller, &ViewController::stateChanged, window.contents().boxEditSettings,
        [&window, &controller] { window.contents().boxEditSettings->setHasPhoto(controller.hasImage()); });
    QObject::connect(&controller, &ViewController::longWorkBegan, &window.busySign(), &BusySign::begin);
    QObject::connect(&controller, &ViewController::longWorkEnded, &window.busySign(), &BusySign::end);
    QObject::connect(&controller, &ViewController::longWorkProgressed, &window.busySign(),
                     &BusySign::progress);
    QObject::connect(&window.busySign(), &BusySign::cancelled, &controller, &ViewController::CancelLongWork);

    NoticeLine* const notice = window.contents().notice;
    QObject::connect(&controller, &ViewController::noticed, notice, &NoticeLine::present);
    // Qt would pass its focus to any control.
    QObject::connect(notice, &NoticeLine::clicked, window.rootView().imageView(),
                     [view = window.rootView().imageView()] { view->setFocus(); });

    controller.awakeFromNib();
    controller.viewDidLoad();

    connectActions(window.actions(), controller);
    connectSettings(*window.contents().boxEditSettings, controller);
    connectMouse(window.rootView(), controller);
    connectPhotoInput(window, controller);
    connectPipette(window, controller);
    connectMenus(window, controller);
    QObject::connect(window.actions().about, &QAction::triggered, &window,
                     [&dialogs] { showAbout(dialogs); });
}

} // namespace complexion
