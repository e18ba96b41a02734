// SPDX-License-Identifier: GPL-3.0-or-later
#include <QApplication>
#include <QDrag>
#include <QMimeData>
#include <QMouseEvent>
#include <QUrl>
#include <QWidget>

#include <cstdio>

namespace {

constexpr int kSide = 24; // small enough to lie in a corner of the screen, beside the window it drags onto

/// One line for who drives the mouse.
void say(const char* line) {
    std::puts(line);
    std::fflush(stdout);
}

/// A square from which one address can be dragged, above all windows. The target's answers are printed.
class DragSource : public QWidget {
public:
    explicit DragSource(QString address) : m_address(std::move(address)) {
        setWindowFlags(Qt::Window | Qt::BypassWindowManagerHint | Qt::WindowStaysOnTopHint);
        setGeometry(0, 0, kSide, kSide);
    }

protected:
    void mousePressEvent(QMouseEvent*) override {
        auto* content = new QMimeData;
        content->setUrls({QUrl(m_address)});
        auto* drag = new QDrag(this);
        drag->setMimeData(content);
        connect(drag, &QDrag::actionChanged, this,
                [](Qt::DropAction action) { say(action == Qt::CopyAction ? "copy offered" : "refused"); });
        // The drag is destroyed when the target is done; until then it may ask for the address.
        connect(drag, &QObject::destroyed, qApp, [] {
            say("finished");
            QCoreApplication::quit();
        });
        say("dragging");
        drag->exec(Qt::CopyAction);
    }

    void paintEvent(QPaintEvent*) override {
        if (!m_hasAppeared)
            say("ready");
        m_hasAppeared = true;
    }

private:
    QString m_address;
    bool m_hasAppeared = false;
};

} // namespace

/// Shows a square in the screen's top left corner, from which the address can be dragged once.
int main(int argc, char** argv) {
    QApplication application(argc, argv);
    if (argc != 2) {
        std::fputs("usage: drag_source ADDRESS\n", stderr);
        return 2;
    }
    DragSource source(QString::fromLocal8Bit(argv[1]));
    source.show();
    return QApplication::exec();
}
