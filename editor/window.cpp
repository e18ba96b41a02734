// SPDX-License-Identifier: GPL-3.0-or-later

// Initialising the window's controls, and closing the window.
#include "editor/notices.h"
#include "editor/view_controller.h"
#include "view/text_font.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QPalette>
#include <QUrl>

namespace complexion {

namespace {

constexpr double kRootGray = 0.15;
constexpr const char* kExitQuestion = QT_TRANSLATE_NOOP(
    "Alerts", "All unsaved changes will be lost. Are you sure you want to exit the application?");

constexpr int kStartEditAreaSize = 10;
constexpr float kStartThreshold = 10;

} // namespace

void ViewController::awakeFromNib() {
    QWidget& root = *view;
    QPalette palette = root.palette();
    palette.setColor(QPalette::Window, QColor::fromRgbF(kRootGray, kRootGray, kRootGray));
    root.setPalette(palette);
    root.setAutoFillBackground(true);
}

void ViewController::viewDidLoad() {
    view->window()->installEventFilter(this);
    imageView->setAcceptDrops(true);
    imageView->setBackground(view->palette().color(QPalette::Window));

    for (const auto& box : {boxHint, boxHelp, boxSelectImage, boxResetImage, boxSaveImage, boxZoomIn,
                            boxZoomOut, boxResetZoom, boxUndo, boxRedo, boxEditSettings})
        box->setAlpha(Box::kAlphaOverPhoto);

    QCheckBox& autodetect = *checkAutodetectColor;
    autodetect.setText(tr("Autodetect Color"));
    autodetect.setFont(textFont());
    QPalette palette = autodetect.palette();
    for (const auto group : {QPalette::Active, QPalette::Inactive})
        palette.setColor(group, QPalette::WindowText, Qt::white);
    autodetect.setPalette(palette);

    QComboBox& effects = *comboEffect;
    effects.clear();
    for (const char* title : kEffectTitles)
        effects.addItem(QCoreApplication::translate("Effects", title));

    QComboBox& repairs = *comboRepair;
    repairs.clear();
    for (const char* title : kRepairTitles)
        repairs.addItem(QCoreApplication::translate("Repairs", title));

    boxHint->show();
    boxHelp->show();

    autodetect.setChecked(true);
    textFieldEditAreaSize->setText(QString::number(kStartEditAreaSize));
    stepperEditAreaSize->setIntegerValue(kStartEditAreaSize);
    sliderThreshold->setFloatValue(kStartThreshold);
    effects.setCurrentIndex(0);
    repairs.setCurrentIndex(static_cast<int>(RepairStyle::FlatColor));
    observeSettings();

    m_dragPerformed = NotificationCenter::defaultCenter().addObserver(
        kDragPerformed, [this](const Notification& notification) { DragPerformed(notification); });
    connect(imageView, &CustomImageView::fileRefused, this,
            [this](const std::filesystem::path& path, bool hasAcceptedExtension) {
                Q_EMIT noticed(noticeOfRefusal(path, hasAcceptedExtension));
            });
    Q_EMIT stateChanged();
}

bool ViewController::windowShouldClose() {
    return !hasImage() || runQuestion(kExitQuestion) != kSecondButton;
}

void ViewController::windowWillClose() {
    RemoveStateImages();
    m_session.discardJournal();
}

bool ViewController::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::Close)
        return QObject::eventFilter(watched, event);
    // At the end of the session Qt closes the window, with an event that is not spontaneous.
    const bool endsWithSession = m_isSessionEnding && !event->spontaneous();
    const bool closes = endsWithSession || windowShouldClose();
    event->setAccepted(closes);
    if (endsWithSession)
        terminateBySystem();
    else if (closes)
        windowWillClose();
    // Always consumed: if another event filter is installed while the question is shown (the menu bar does so
    // on Alt), Qt delivers the event to this filter a second time.
    return true;
}

void ViewController::OnAppQuit(QObject*) {
    if (hasImage() && runQuestion(kExitQuestion) == kSecondButton)
        return;
    m_platform.terminate();
}

void ViewController::OnVideoTutorial(QObject*) {
    const QUrl url(QString::fromStdString(tutorialAddress), QUrl::StrictMode);
    if (url.isValid() && !url.scheme().isEmpty())
        m_platform.openAddress(url.toString(QUrl::FullyEncoded).toStdString());
}

} // namespace complexion
