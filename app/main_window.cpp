// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/main_window.h"

#include <QEvent>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QTimer>

namespace complexion {

namespace {

using namespace Qt::StringLiterals;

constexpr QSize kMinSize(900, 600);
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

} // namespace

MainWindow::MainWindow()
    : m_actions(new Actions(this)),
      m_root(new RootView),
      m_contents(new WindowContents(m_root, *m_actions)),
      m_busySign(new BusySign(m_root)),
      m_originalSign(new Sign(m_root)),
      m_editDisc(new EditDisc(m_root->imageView())),
      m_photoInput(new PhotoInput(m_root->imageView())) {
    setCentralWidget(m_root);
    setMenuBar(new MenuBar);
    setContextMenuPolicy(Qt::NoContextMenu);
    makeMenus();
    const QSize needed = m_contents->smallestSize() + QSize(0, menuBar()->sizeHint().height());
    setMinimumSize(kMinSize.expandedTo(needed));
    resize(kUsualSize.boundedTo(screen()->availableSize() - kScreenMargin).expandedTo(minimumSize()));
    showState({});
    m_root->imageView()->setFocus();
}

void MainWindow::makeMenus() {
    QMenu* file = menuBar()->addMenu(tr("&File"));
    file->addActions({m_actions->selectImage, m_actions->resetImage, m_actions->saveImage});
    file->addSeparator();
    file->addAction(m_actions->quit);
    QMenu* edit = menuBar()->addMenu(tr("&Edit"));
    edit->addActions({m_actions->undo, m_actions->redo});
    edit->addSeparator();
    edit->addActions({m_actions->largerArea, m_actions->smallerArea, m_actions->fitArea});
    QMenu* view = menuBar()->addMenu(tr("&View"));
    view->addActions({m_actions->zoomIn, m_actions->zoomOut, m_actions->resetZoom, m_actions->actualPixels});
    view->addSeparator();
    view->addAction(m_actions->showPreview);
    view->addSeparator();
    view->addActions({m_actions->nextBlemish, m_actions->previousBlemish});
    QMenu* help = menuBar()->addMenu(tr("&Help"));
    help->addActions({m_actions->videoTutorial, m_actions->about});
}

void MainWindow::showState(const WindowState& state) {
    const QWidget* const focused = focusWidget();
    const bool hadFocus = focused && focused->isEnabled();
    m_actions->showState(state);
    // Qt would pass the focus of a button that has just been disabled to the next one, where the same key
    // does something else.
    if (hadFocus && !focused->isEnabled())
        m_root->imageView()->setFocus();
    // In a title, "[*]" is the place of the mark for unsaved work; twice, it stands for itself.
    QString name = state.fileName;
    name.replace(u"[*]"_s, u"[*][*]"_s);
    setWindowTitle(name.isEmpty() ? u"Complexion"_s : name + u"[*] — Complexion"_s);
    setWindowModified(state.hasUnsavedWork);
    if (!state.isShowingOriginal)
        m_originalSign->hide();
    else if (m_originalSign->isHidden())
        m_originalSign->showText(tr("Original"));
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
