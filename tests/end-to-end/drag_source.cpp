// SPDX-License-Identifier: GPL-3.0-or-later
#include <QApplication>
#include <QColor>
#include <QDrag>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QUrl>
#include <QWidget>

#include <cstdio>

namespace {

constexpr int kSide = 24;             // small enough not to cover the window under test
constexpr QColor kColor(255, 0, 255); // for tests that have to find the square on the screen

/// Prints a line for the test that drives the mouse.
void report(const char* line) {
    std::puts(line);
    std::fflush(stdout);
}

/// A square, above all windows, from which an address can be dragged. Prints the target's answers.
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
                [](Qt::DropAction action) { report(action == Qt::CopyAction ? "copy offered" : "refused"); });
        // The drag lives until the target is done: it may request the address until then.
        connect(drag, &QObject::destroyed, qApp, [] {
            report("finished");
            QCoreApplication::quit();
        });
        report("dragging");
        drag->exec(Qt::CopyAction);
    }

    void paintEvent(QPaintEvent*) override {
        QPainter(this).fillRect(rect(), kColor);
        if (!m_hasAppeared)
            report("ready");
        m_hasAppeared = true;
    }

private:
    QString m_address;
    bool m_hasAppeared = false;
};

} // namespace

/// Shows a square, on X in the top left corner of the screen, from which the address can be dragged once.
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
