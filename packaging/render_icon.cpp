// SPDX-License-Identifier: GPL-3.0-or-later

// Usage: render_icon DRAWING.svg SIZE PICTURE.png
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <cstdio>
#include <cstdlib>

int main(int argc, char** argv) {
    const int size = argc == 4 ? std::atoi(argv[2]) : 0;
    if (size < 1 || size > 4096) {
        std::fprintf(stderr, "usage: render_icon DRAWING.svg SIZE PICTURE.png\n");
        return 2;
    }
    QSvgRenderer drawing(QString::fromLocal8Bit(argv[1]));
    QImage picture(size, size, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    drawing.render(&painter);
    painter.end();
    if (!drawing.isValid() || !picture.save(QString::fromLocal8Bit(argv[3]), "PNG")) {
        std::fprintf(stderr, "render_icon: cannot render %s as %s\n", argv[1], argv[3]);
        return 1;
    }
    return 0;
}
