// SPDX-License-Identifier: GPL-3.0-or-later

// Dressing the window's controls, and what guards its end.
#include "editor/outlet.h"
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
    QWidget& root = reach(view);
    QPalette palette = root.palette();
    palette.setColor(QPalette::Window, QColor::fromRgbF(kRootGray, kRootGray, kRootGray));
    root.setPalette(palette);
    root.setAutoFillBackground(true);
}

void ViewController::viewDidLoad() {
    reach(view).window()->installEventFilter(this);
    reach(imageView).setAcceptDrops(true);

    for (const auto& box : {boxHint, boxHelp, boxSelectImage, boxResetImage, boxSaveImage, boxZoomIn,
                            boxZoomOut, boxResetZoom, boxUndo, boxRedo, boxEditSettings})
        reach(box).setAlpha(Box::kAlphaOverPhoto);

    QCheckBox& autodetect = reach(checkAutodetectColor);
    autodetect.setText(tr("Autodetect Color"));
    autodetect.setFont(textFont());
    QPalette palette = autodetect.palette();
    palette.setColor(QPalette::WindowText, Qt::white);
    autodetect.setPalette(palette);

    QComboBox& effects = reach(comboEffect);
    effects.clear();
    for (const char* title : kEffectTitles)
        effects.addItem(QCoreApplication::translate("Effects", title));

    QComboBox& repairs = reach(comboRepair);
    repairs.clear();
    for (const char* title : kRepairTitles)
        repairs.addItem(QCoreApplication::translate("Repairs", title));

    reach(boxHint).show();
    reach(boxHelp).show();

    autodetect.setChecked(true);
    reach(textFieldEditAreaSize).setText(QString::number(kStartEditAreaSize));
    reach(stepperEditAreaSize).setIntegerValue(kStartEditAreaSize);
    reach(sliderThreshold).setFloatValue(kStartThreshold);
    effects.setCurrentIndex(0);
    repairs.setCurrentIndex(static_cast<int>(RepairStyle::FlatColor));
    followSettings();

    m_dragPerformed = NotificationCenter::defaultCenter().addObserver(
        kDragPerformed, [this](const Notification& notification) { DragPerformed(notification); });
    Q_EMIT stateChanged();
}

bool ViewController::windowShouldClose() {
    return !hasImage() || runQuestion(kExitQuestion) != kSecondButton;
}

void ViewController::windowWillClose() {
    RemoveStateImages();
    m_session.forgetWork();
}

bool ViewController::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::Close)
        return QObject::eventFilter(watched, event);
    // Who closes the window of a session that ends is the toolkit, not the user.
    const bool endsWithSession = m_isSessionEnding && !event->spontaneous();
    const bool closes = endsWithSession || windowShouldClose();
    event->setAccepted(closes);
    if (endsWithSession)
        terminateBySystem();
    else if (closes)
        windowWillClose();
    // Never handed on: when a filter joins the window's filters while the question is shown (the menu bar's
    // does on Alt), the event comes here a second time.
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
