// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/edit_session.h"
#include "editor/outlet.h"
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
#include <QWidget>

#include <array>
#include <atomic>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace complexion {

class PhotoAhead;

/// The titles of the effect pop-up, in order. The first one means no effect, the others name effects.
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
    double deltaX = 0;      // movement since the previous event, in points, to the right
    double deltaY = 0;      // downward
};

/// The controller of the window: applies the user's actions to the session and updates the views. Held by a
/// shared pointer, as background work keeps it alive.
///
/// Implemented in one source file per subject: history, opening, continuing, retouch, zoom, saving, settings
/// and window. Main thread only, except RetouchAtPoint and editSettings.
class ViewController : public QObject, public std::enable_shared_from_this<ViewController> {
    Q_OBJECT

    EditSession m_session; // first: the fields below refer to it

public:
    /// `view` is the root view. It and the services must outlive the controller's background work.
    ViewController(QWidget* view, Dialogs& dialogs, Platform& platform, Queues& queues);
    ~ViewController() override;

    // Aliases of the session's fields.

    std::vector<std::filesystem::path>& stateImagesPath = m_session.history.paths;
    std::int64_t& numberOfStates = m_session.history.bound;
    std::int64_t& currenState = m_session.history.position;

    Image originalImage() const { return m_session.image(); }
    void setOriginalImage(const Image& image) { m_session.setImage(image); }
    std::string& originalImageName = m_session.name;
    std::filesystem::path& originalImagePath = m_session.path;
    std::string& originalImageExtension = m_session.extension;

    std::atomic<bool>& imageProcessing = m_session.isRepairing;

    /// The URL of the video tutorial's page; empty if there is none.
    std::string tutorialAddress;

    // Outlets. The window owns the controls; accessing one that has been destroyed is fatal.

    Outlet<QWidget> view;
    Outlet<CustomImageView> imageView;
    Outlet<Box> boxHint;
    Outlet<Box> boxHelp;
    Outlet<Box> boxSelectImage;
    Outlet<Box> boxResetImage;
    Outlet<Box> boxSaveImage;
    Outlet<Box> boxZoomIn;
    Outlet<Box> boxZoomOut;
    Outlet<Box> boxResetZoom;
    Outlet<Box> boxUndo;
    Outlet<Box> boxRedo;
    Outlet<Box> boxEditSettings;
    Outlet<QCheckBox> checkAutodetectColor;
    Outlet<ColorWell> colorWellCustomColor;
    Outlet<QLineEdit> textFieldEditAreaSize;
    Outlet<Stepper> stepperEditAreaSize;
    Outlet<Slider> sliderThreshold;
    Outlet<QComboBox> comboRepair;
    Outlet<QComboBox> comboEffect;

    Queues& queues() const { return m_queues; }

    // The window's life cycle.

    /// Sets the root view's background colour.
    void awakeFromNib();
    /// Initialises the controls and the settings. Requires connected outlets.
    void viewDidLoad();
    /// Whether the window may close; asks the user if an image is shown. Called for close events once
    /// viewDidLoad has run.
    bool windowShouldClose();
    /// Deletes the state images and the journal.
    void windowWillClose();

    // Actions. `sender` is the control or menu item; it may be null.

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
    /// Opens a photo that was open before. Asks first if another one is open.
    void OpenAgain(const std::filesystem::path& path);
    /// Opens a file named by the system ("Open with", the command line). Shows the load-failure alert if it
    /// is not an image.
    void OpenFile(const std::filesystem::path& path);
    /// The same for a file that is already being read.
    void OpenFile(PhotoAhead& file);

    // Resuming interrupted work.

    /// Records every step in `journal`, beginning with the next photo.
    void setJournal(std::unique_ptr<Journal> journal);
    /// Opens the photo of an abandoned journal and replays its steps, which restores the working image, the
    /// history and the position in it. If the photo is missing or changed, or a step cannot be applied, shows
    /// an alert, keeps the journal and returns false.
    bool ContinueWork(const AbandonedJournal& work);
    /// Whether the desktop session may end. Asks like windowShouldClose if `mayAsk`. After true, closing the
    /// window for the session's end does not ask again.
    bool sessionMayEnd(bool mayAsk);
    /// Called before the system ends the process: deletes the state images. Keeps the journal, unless the
    /// user agreed to the session's end.
    void terminateBySystem();

    // Retouch.

    void HandleClick(const MouseEvent& event);
    /// Starts a repair at a point of the working image, as a click does. Ignored without a photo and during
    /// another repair.
    void BeginRetouch(Point point);
    /// Starts a natural repair along a stroke of at most kMaxStrokePoints points of the working image.
    /// Ignored without a photo and during another repair.
    void BeginStroke(const std::vector<Point>& path);
    /// The repair that a click would start now.
    Repair currentRepair() const;
    /// Repairs the working image at a point in image coordinates. Call on a background thread.
    void RetouchAtPoint(Point point);
    void FinishRetouch(const std::optional<Image>& result);
    /// The settings of a repair that starts now. Callable from any thread.
    EditSettings editSettings() const { return m_session.settings(); }

    // Zoom.

    void ResetZoom();
    void RepositionImageInVisibleArea();
    /// Keeps the zoom ratio and the centre when the root view is resized.
    void visibleAreaResized(PointSize from, PointSize to);
    /// Zooms in by `steps`, or out if negative, about a point of the root view.
    void ZoomAbout(Point point, int steps);
    /// Zooms to `scale` device pixels per image pixel, within the zoom limits, about a point of the root
    /// view.
    void ZoomToPixels(Point about, double scale = 1);
    /// The width of a shown image pixel in device pixels; nothing without a photo.
    std::optional<double> shownScale() const;
    /// Moves the photo by a distance in points, y downward, without opening a gap at the edges.
    void MovePhoto(double deltaX, double deltaY);
    /// Scrolls the photo as little as possible so that a point of it is visible, at least `margin` points
    /// from the edges of the visible area.
    void Reveal(Point inImage, double margin);

    // Effects.

    /// Shows the working image with the selected effect.
    void ApplyEffectsOnPreview();
    /// `image` with the selected effect; `image` itself if none is selected.
    Image withEffect(const Image& image) const;

    /// While `on`, shows the photo as it was opened. Does not affect the working image or saving.
    void ShowSource(bool on);
    bool isShowingSource() const { return m_isShowingSource; }

    // Settings.

    /// Sets the edit area size, in pixels, clamped to its range.
    void SetEditAreaSize(std::int64_t radius);
    /// Changes the edit area size by `steps`, each a tenth of the size and at least one pixel.
    void StepEditAreaSize(int steps);
    /// Changes the threshold by `steps` grey levels.
    void StepThreshold(int steps);

    /// Cancels the work that `longWorkProgressed` reports, as if it had not begun.
    void CancelLongWork();

    // History.

    std::filesystem::path MakeStateImagePath();
    void BeginEditHistory();
    void PushStateImage();
    void RemoveStateImages();
    void RemoveStateImageWithImagePath(const std::filesystem::path& path);

    // State for enabling the controls.

    bool hasImage() const;
    /// Whether closing the photo would lose repairs or an effect.
    bool hasUnsavedWork() const;
    bool canUndo() const;
    bool canRedo() const;
    StepName undoStep() const { return m_session.undoStep(); }
    StepName redoStep() const { return m_session.redoStep(); }

    /// Set if the open photo's file is damaged and parts of the picture are missing.
    const std::optional<Error>& photoDamage() const { return m_session.damage; }

Q_SIGNALS:
    /// State that the controls or the window's title depend on has changed.
    void stateChanged();
    /// Another photo has been opened.
    void photoOpened();
    /// A preview of the photo that is being opened has been painted.
    void previewShown();
    /// An edit setting has changed, by the user or by the program.
    void settingsChanged();
    /// A repair has ended.
    void repairFinished(const complexion::Result<complexion::Repaired>& repair);
    /// Work that blocks the window begins. `description` is shown to the user immediately.
    void longWorkBegan(const QString& description);
    /// It has taken long, and can be cancelled: `part` of it is done, 0 to 1. Emitted ten times a second.
    void longWorkProgressed(double part);
    void longWorkEnded();
    /// A text for assistive technology to speak.
    void announced(const QString& text);
    /// Something that the user should know, for a moment; empty text ends what was shown before.
    void noticed(const QString& text);

protected:
    /// Watches for the window's close event.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    int runQuestion(const char* informativeText);
    /// Whether another photo may be selected; asks if one is open.
    bool mayLeavePhoto();
    /// Shows the load-failure alert, and `reason` as a notice.
    void showLoadFailure(const QString& reason = {});
    /// The alert and the notice for a photo that could not be opened, unless the user cancelled it.
    void showOpeningFailure(const std::filesystem::path& path, const Error& error);
    PointSize visibleArea() const;

    /// Decodes the file at `path`; an error if it is not a picture.
    Result<OpenedPhoto> decodeSource(const std::filesystem::path& path);
    /// Shows that a photo is being opened while `read`, which gets the progress to report, decodes it.
    Result<OpenedPhoto> decodeWith(const std::function<Result<OpenedPhoto>(const ReadingProgress&)>& read);
    /// The same with a preview, which is shown until the photo is installed. If there is none, all is as
    /// before.
    Result<OpenedPhoto> decodeWithPreview(
        const std::function<Result<OpenedPhoto>(const ReadingProgress&, const PreviewListener&)>& read);
    /// Shows a photo that is being decoded where it will be.
    void showPreview(const Image& preview);
    /// Opens the file at `path`. Shows the load-failure alert, with nothing changed, if it is not a picture.
    void loadImage(const std::filesystem::path& path);
    /// Makes a decoded photo the current one.
    void installPhoto(const OpenedPhoto& photo, const std::filesystem::path& path,
                      const std::optional<FileIdentity>& opened);
    /// Does so, or shows the failure. Returns whether the photo was opened.
    bool installIfOpened(const Result<OpenedPhoto>& photo, const std::filesystem::path& path,
                         const std::optional<FileIdentity>& opened);
    bool replaySteps(const AbandonedJournal& work, const OpenedPhoto& photo, const FileIdentity& opened);
    void writePendingStates();
    void showContinueFailure(const char* informativeText);
    /// Repairs the snapshot's image and passes the result to the main thread; does nothing without a
    /// snapshot.
    void retouch(const std::vector<Point>& path, const std::optional<EditSession::Snapshot>& snapshot);
    /// Updates the window after undo or redo.
    void showWorkingImage();
    /// Passes the values of the settings controls to the session, now and whenever they change.
    void observeSettings();

    Dialogs& m_dialogs;
    Platform& m_platform;
    Queues& m_queues;
    NotificationCenter::Registration m_dragPerformed;

    std::uint64_t clickStartTime = 0; // monotonic time of the last press, in nanoseconds
    std::uint64_t clickEndTime = 0;   // and of the last release

    bool m_isLongWorkCancelled = false;
    bool m_isShowingSource = false;
    bool m_isSessionEnding = false;
    /// The photo number and change count when the user agreed to the session's end.
    std::optional<std::pair<std::uint64_t, std::int64_t>> m_agreedSessionEnd;
};

} // namespace complexion
