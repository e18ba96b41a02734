// SPDX-License-Identifier: GPL-3.0-or-later

// An empty Qt window. Like Complexion, it opens the file of its argument as soon as it is shown.
#include <QApplication>
#include <QFile>
#include <QMainWindow>
#include <QTimer>

namespace {

class EmptyWindow : public QMainWindow {
public:
    explicit EmptyWindow(const char* file) : m_file(QFile::decodeName(file)) { resize(1440, 960); }

protected:
    void paintEvent(QPaintEvent* event) override {
        QMainWindow::paintEvent(event);
        QTimer::singleShot(0, this, [this] {
            QFile file(m_file);
            (void)file.open(QIODevice::ReadOnly);
        });
    }

private:
    QString m_file;
};

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    EmptyWindow window(argc > 1 ? argv[1] : "");
    window.show();
    return QApplication::exec();
}
