// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/busy_sign.h"

#include "app/sign.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>
#include <QWindow>

namespace complexion {

namespace {

constexpr int kMarginX = 20;
constexpr int kMarginY = 10;
constexpr int kSpacing = 14;
constexpr int kMaxMilliseconds = 50; // for the waiting events

bool isInput(QEvent::Type type) {
    switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
    case QEvent::Shortcut:
    case QEvent::ContextMenu:
    case QEvent::NativeGesture:
    case QEvent::TabletPress:
    case QEvent::TabletMove:
    case QEvent::TabletRelease:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
        return true;
    default:
        return false;
    }
}

} // namespace

BusySign::BusySign(QWidget* parent)
    : QWidget(parent), m_text(new QLabel(this)), m_cancel(new QPushButton(tr("Cancel"), this)) {
    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(kMarginX, kMarginY, kMarginX, kMarginY);
    layout->setSpacing(kSpacing);
    layout->addWidget(m_text);
    layout->addWidget(m_cancel);
    m_cancel->setFocusPolicy(Qt::NoFocus);
    m_cancel->setCursor(Qt::ArrowCursor);
    m_cancel->hide();
    setAttribute(Qt::WA_TransparentForMouseEvents);
    QObject::connect(m_cancel, &QPushButton::clicked, this, &BusySign::cancelled);
    hide();
}

void BusySign::setText(const QString& text) {
    m_text->setText(text);
    layout()->activate();
    resize(sizeHint());
    move((parentWidget()->width() - width()) / 2, kSignTop);
    raise();
}

void BusySign::begin(const QString& what) {
    if (m_depth++ == 0)
        QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    m_what = what;
    setText(what);
    show();
    repaint();
}

void BusySign::end() {
    if (m_depth == 0)
        return;
    --m_depth;
    if (m_depth > 0)
        return;
    QGuiApplication::restoreOverrideCursor();
    m_cancel->hide();
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
}

void BusySign::progress(double part) {
    constexpr int kPercent = 100;
    const int percent = static_cast<int>(part * kPercent);
    setAttribute(Qt::WA_TransparentForMouseEvents, false);
    m_cancel->show();
    // A decoder that needs the whole file before it has a row says nothing for long.
    setText(percent > 0 ? tr("%1 %2%").arg(m_what).arg(percent) : m_what);
    qApp->installEventFilter(this);
    QCoreApplication::processEvents(QEventLoop::AllEvents, kMaxMilliseconds);
    qApp->removeEventFilter(this);
}

bool BusySign::isOwn(const QObject* receiver) const {
    // The window passes the mouse on to its widgets.
    return receiver == m_cancel || qobject_cast<const QWindow*>(receiver) != nullptr;
}

bool BusySign::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Close) {
        event->ignore();
        Q_EMIT cancelled();
        return true;
    }
    if (!isInput(event->type()))
        return false;
    if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
        Q_EMIT cancelled();
        return true;
    }
    const bool isMouse = event->type() == QEvent::MouseButtonPress ||
                         event->type() == QEvent::MouseButtonRelease || event->type() == QEvent::MouseMove;
    return !(isMouse && isOwn(watched));
}

void BusySign::paintEvent(QPaintEvent* event) {
    paintSignGround(*this);
    QWidget::paintEvent(event);
}

} // namespace complexion
