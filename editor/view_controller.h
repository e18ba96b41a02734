// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/edit_session.h"
#include "editor/platform.h"
#include "editor/repair.h"
#include "imaging/base/image.h"
#include "imaging/photo_files.h"
#include "view/box.h"
#include "view/color_well.h"
#include "view/custom_image_view.h"
#include "view/dialogs.h"
#include "view/image_fit.h"
#include "view/notification_center.h"
#include "view/slider.h"
#include "view/stepper.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QObject>
#include <QPointer>
#include <QWidget>

#include <array>
#include <atomic>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace complexion {

/// The titles of the effect pop-up, in order; the first means none, the others are names of effects.
inline constexpr std::array<const char*, 9> kEffectTitles = {
    QT_TRANSLATE_NOOP("Effects", "Normal"),  QT_TRANSLATE_NOOP("Effects", "Chrome"),
    QT_TRANSLATE_NOOP("Effects", "Fade"),    QT_TRANSLATE_NOOP("Effects", "Instant"),
    QT_TRANSLATE_NOOP("Effects", "Mono"),    QT_TRANSLATE_NOOP("Effects", "Noir"),
    QT_TRANSLATE_NOOP("Effects", "Process"), QT_TRANSLATE_NOOP("Effects", "Tonal"),
    QT_TRANSLATE_NOOP("Effects", "Transfer")};

/// The titles of the repair pop-up, in the order of RepairStyle.
inline constexpr std::array<const char*, 2> kRepairTitles = {QT_TRANSLATE_NOOP("Repairs", "Flat color"),
                                                             QT_TRANSLATE_NOOP("Repairs", "Natural")};

/// A mouse event in the root view's coordinates.
struct MouseEvent {
    Point locationInWindow; // of the root view, in points, bottom-left origin
    double deltaX = 0;      // movement since the previous event, in points; positive to the right
    double deltaY = 0;      // positive downward
};

/// The controller of the one window: what every control does to the session, and what the window then shows.
/// Held by a shared pointer: work in the background keeps it alive.
///
/// Each source file has the operations of one intention: history, opening, retouch, zoom, saving, settings
/// and window. All run on the main thread, except RetouchAtPoint.
class ViewController : public QObject, public std::enable_shared_from_this<ViewController> {
    Q_OBJECT

    EditSession m_session; // first: the fields below refer to it

public:
    /// `view` is the root view; it and the services outlive the controller's work.
    ViewController(QWidget* view, Dialogs& dialogs, Platform& platform, Queues& queues);
    ~ViewController() override;

    // The session's fields under the names that the window knows them by.

    std::vector<std::filesystem::path>& stateImagesPath = m_session.history.paths;
    std::int64_t& numberOfStates = m_session.history.bound;
    std::int64_t& currenState = m_session.history.position;

    Image originalImage() const { return m_session.image(); }
    void setOriginalImage(const Image& image) { m_session.setImage(image); }
    std::string& originalImageName = m_session.name;
    std::filesystem::path& originalImagePath = m_session.path;
    std::string& originalImageExtension = m_session.extension;

    std::atomic<bool>& imageProcessing = m_session.isRepairing;

    /// The address of the page with the video tutorial; empty where there is none.
    std::string tutorialAddress;

    // Outlets. The window's view hierarchy owns the controls; reaching one that is gone is fatal.

    QPointer<QWidget> view;
    QPointer<CustomImageView> imageView;
    QPointer<Box> boxHint;
    QPointer<Box> boxHelp;
    QPointer<Box> boxSelectImage;
    QPointer<Box> boxResetImage;
    QPointer<Box> boxSaveImage;
    QPointer<Box> boxZoomIn;
    QPointer<Box> boxZoomOut;
    QPointer<Box> boxResetZoom;
    QPointer<Box> boxUndo;
    QPointer<Box> boxRedo;
    QPointer<Box> boxEditSettings;
    QPointer<QCheckBox> checkAutodetectColor;
    QPointer<ColorWell> colorWellCustomColor;
    QPointer<QLineEdit> textFieldEditAreaSize;
    QPointer<Stepper> stepperEditAreaSize;
    QPointer<Slider> sliderThreshold;
    QPointer<QComboBox> comboRepair;
    QPointer<QComboBox> comboEffect;

    Queues& queues() const { return m_queues; }

    // The window's life.

    /// Gives the root view its colour.
    void awakeFromNib();
    /// Dresses the controls and gives the settings their start values. The outlets are connected by then.
    void viewDidLoad();
    /// Whether the window may close: asks when an image is shown. The window itself asks, once viewDidLoad
    /// has run.
    bool windowShouldClose();
    /// Deletes the state images.
    void windowWillClose();

    // Actions. `sender` is the control or menu item that sends it; it may be null.

    void OnAppQuit(QObject* sender);
    void OnVideoTutorial(QObject* sender);
    void OnSelectImage(QObject* sender);
    void OnResetImage(QObject* sender);
    void OnSaveImage(QObject* sender);
    void OnZoomIn(QObject* sender);
    void OnZoomOut(QObject* sender);
    void OnResetZoom(QObject* sender);
    void OnUndo(QObject* sender);
    void OnRedo(QObject* sender);
    void OnEditAreaSizeChanged(QObject* sender);
    void OnEffectSelected(QObject* sender);

    // The mouse, in the root view.

    void mouseDown(const MouseEvent& event);
    void mouseUp(const MouseEvent& event);
    void mouseDragged(const MouseEvent& event);

    // Opening.

    /// Loads the file that a "DragPerformed" notification names.
    void DragPerformed(const Notification& notification);
    /// Opens a file as the application is asked to by the system ("Open with"); shows the load-failure alert
    /// when it is no image.
    void OpenFile(const std::filesystem::path& path);

    // Work that outlives the process.

    /// From the next photo on, keeps every step in `journal`.
    void setJournal(std::unique_ptr<Journal> journal);
    /// Opens the photo of an abandoned journal and repeats its steps: picture, history and position are then
    /// what they were. False, after an alert that says why and with the journal kept, when the photo is gone
    /// or another one, or the steps do not fit it.
    bool ContinueWork(const AbandonedJournal& work);
    /// Whether the desktop session may end: where it `mayAsk`, asks as windowShouldClose does. Closing the
    /// window for the session's end then asks nothing.
    bool sessionMayEnd(bool mayAsk);
    /// Before the process ends because the system says so: deletes the state images. The journal stays,
    /// unless the user has agreed to the session's end.
    void terminateBySystem();

    // Retouch.

    void HandleClick(const MouseEvent& event);
    /// Begins a repair at a point of the working image, as a click there does: not without a photo, and not
    /// while a repair is being computed.
    void BeginRetouch(Point point);
    /// What a click would do now.
    Repair currentRepair() const;
    /// Repairs the working image at a point in its own coordinates. Runs on a background thread.
    void RetouchAtPoint(Point point);
    void FinishRetouch(const std::optional<Image>& result);
    /// The settings that a repair which starts now works with. Read from any thread.
    EditSettings editSettings() const { return m_session.settings(); }

    // Zoom.

    void ResetZoom();
    void RepositionImageInVisibleArea();
    /// Keeps the zoom ratio and the centre when the root view changes from one size to another.
    void visibleAreaResized(PointSize from, PointSize to);
    /// Zooms in by so many steps, out by as many below zero, about a point of the root view.
    void ZoomAbout(Point point, int steps);
    /// Shows one pixel of the photo on one of the screen where the limits allow, about a point of the root
    /// view.
    void ZoomToPixels(Point about);
    /// Moves the photo by a distance in points, y downward, as far as no gap opens.
    void MovePhoto(double deltaX, double deltaY);
    /// Moves the photo as little as it takes to show a point of it, and `margin` points around it, free of
    /// the visible area's edges.
    void Reveal(Point inImage, double margin);

    // Effects.

    /// Shows the working image through the selected effect.
    void ApplyEffectsOnPreview();
    /// `image` through the selected effect; itself when none is.
    Image throughEffect(const Image& image) const;

    /// Shows the photo as it was opened while `on`. The working image and what is saved stay what they are.
    void ShowSource(bool on);
    bool isShowingSource() const { return m_isShowingSource; }

    // Settings.

    /// Changes the edit area size by so many steps, of a tenth of it but at least one pixel.
    void StepEditAreaSize(int steps);
    /// Changes the threshold by so many grey levels.
    void StepThreshold(int steps);

    // History.

    std::filesystem::path MakeStateImagePath();
    void BeginEditHistory();
    void PushStateImage();
    void RemoveStateImages();
    void RemoveStateImageWithImagePath(const std::filesystem::path& path);

    // What is possible now, for the look of the controls.

    bool hasImage() const;
    bool canUndo() const;
    bool canRedo() const;

    /// What is wrong with the open photo's file where parts of its picture are missing; nothing for a whole
    /// one.
    const std::optional<Error>& photoDamage() const { return m_session.damage; }

Q_SIGNALS:
    /// Something that the controls' look or the window's title depends on has changed.
    void stateChanged();
    /// An edit setting is another one, whoever changed it.
    void settingsChanged();
    /// A repair has ended.
    void repairFinished(const complexion::RepairReport& report);
    /// Work that may take long begins, told in words for the user; the window paints a sign at once.
    void longWorkBegan(const QString& what);
    void longWorkEnded();

protected:
    /// Watches the window for its closing.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    int runQuestion(const char* informativeText);
    void showLoadFailure();
    PointSize visibleArea() const;

    /// The file at `path` decoded and at its actual size; an error when it is no picture.
    Result<OpenedPhoto> decodeSource(const std::filesystem::path& path);
    /// The one load sequence; shows the load-failure alert, with nothing changed, when the file is no
    /// picture.
    void loadImage(const std::filesystem::path& path);
    /// What every way to open a photo does once it is decoded.
    void installPhoto(const OpenedPhoto& photo, const std::filesystem::path& path,
                      const std::optional<FileIdentity>& opened);
    bool repeatSteps(const AbandonedJournal& work, const OpenedPhoto& photo, const FileIdentity& opened);
    void writeLeftStates();
    void showContinueFailure(const char* informativeText);
    /// Runs the repair that `taken` was taken for; nothing without it.
    void retouch(Point point, const std::optional<EditSession::Snapshot>& taken);
    /// Shows the working image after a step back or forth.
    void showStep();
    void followSettings();

    Dialogs& m_dialogs;
    Platform& m_platform;
    Queues& m_queues;
    NotificationCenter::Registration m_dragPerformed;

    std::uint64_t clickStartTime = 0; // uptime in nanoseconds, of the last press
    std::uint64_t clickEndTime = 0;   // and of the last release

    bool m_isShowingSource = false;
    bool m_isSessionEnding = false;
    /// The photo's number and its number of changes when the user agreed to the session's end.
    std::optional<std::pair<std::uint64_t, std::int64_t>> m_agreedEnd;
};

} // namespace complexion
