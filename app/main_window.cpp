// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/main_window.h"

#include <QEvent>
#include <QMenuBar>
#include <QScreen>
#include <QTimer>

namespace complexion {

namespace {

using namespace Qt::StringLiterals;

constexpr QSize kMinSize(640, 480);
constexpr QSize kUsualSize(1440, 960);
constexpr QSize kScreenMargin(48, 72); // for the window frame and desktop panels

/// Qt's menu bar takes the focus when Alt is pressed and released with no event in between. It does not count
/// wheel events; this class does.
class MenuBar : public QMenuBar {
public:
    using QMenuBar::QMenuBar;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Wheel) {
            QEvent shortcut(QEvent::Shortcut); // makes the base class forget the pressed Alt
            QMenuBar::eventFilter(watched, &shortcut);
        }
        return QMenuBar::eventFilter(watched, event);
    }
};

QSize usualSize(const QWidget& window) {
    return kUsualSize.boundedTo(window.screen()->availableSize() - kScreenMargin).expandedTo(kMinSize);
}

/// Each later change of a parent would style all children again, and each change of the size would arrange
/// them.
RootView* newRootView(QMainWindow& window) {
    auto* const root = new RootView(&window);
    root->resize(usualSize(window));
    return root;
}

} // namespace

MainWindow::MainWindow()
    : m_actions(new Actions(this)),
      m_root(newRootView(*this)),
      m_contents(new WindowContents(m_root, *m_actions)),
      m_busySign(new BusySign(m_root)),
      m_originalSign(new Sign(m_root)),
      m_blemishMarks(new BlemishMarks(m_root->imageView())),
      m_strokeOutline(new StrokeOutline(m_root->imageView())),
      m_editDisc(new EditDisc(m_root->imageView())),
      m_photoInput(new PhotoInput(m_root->imageView())),
      m_touchInput(new TouchInput(m_root->imageView())),
      m_stylusInput(new StylusInput(m_root->imageView())) {
    setCentralWidget(m_root);
    setMenuBar(new MenuBar(this));
    setContextMenuPolicy(Qt::NoContextMenu);
    m_menus.emplace(*menuBar(), *m_actions, *m_contents->boxEditSettings);
    connect(m_actions->close, &QAction::triggered, this, &QWidget::close);
    connect(m_actions->fullScreen, &QAction::triggered, this,
            [this](bool on) { setWindowState(windowState().setFlag(Qt::WindowFullScreen, on)); });
    connect(m_actions->showBars, &QAction::toggled, this, [this](bool on) {
        m_contents->setBarsVisible(on);
        if (!on)
            m_root->imageView()->setFocus();
    });
    setMinimumSize(kMinSize);
    resize(usualSize(*this));
    showState({});
    m_root->imageView()->setFocus();
}

void MainWindow::showState(const WindowState& state) {
    const QWidget* const focused = focusWidget();
    const bool hadFocus = focused && focused->isEnabled();
    m_actions->showState(state);
    // Qt would pass the focus of a button that has just been disabled to the next one, where the same key
    // does something else.
    if (hadFocus && !focused->isEnabled())
        m_root->imageView()->setFocus();
    // In a title, "[*]" is the place of the mark for unsaved work; twice, it is shown as it is.
    QString name = state.fileName;
    name.replace(u"[*]"_s, u"[*][*]"_s);
    setWindowTitle(name.isEmpty() ? u"Complexion"_s : name + u"[*] — Complexion"_s);
    setWindowModified(state.hasUnsavedWork);
    if (!state.isShowingOriginal)
        m_originalSign->hide();
    else if (m_originalSign->isHidden())
        m_originalSign->showText(tr("Original"));
}

void MainWindow::changeEvent(QEvent* event) {
    if (event->type() == QEvent::WindowStateChange)
        m_actions->fullScreen->setChecked(isFullScreen()); // the window manager can end it, too
    QMainWindow::changeEvent(event);
}

void MainWindow::paintEvent(QPaintEvent* event) {
    QMainWindow::paintEvent(event);
    if (m_hasAppeared)
        return;
    m_hasAppeared = true;
    // Queued, so that the first frame is on the screen.
    QTimer::singleShot(0, this, &MainWindow::appeared);
}

} // namespace complexion
