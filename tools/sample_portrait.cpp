// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/sample_portrait_painter.h"

#include <QCoreApplication>

#include <cstdio>
#include <fstream>

using namespace complexion;

namespace {

bool writeBlemishes(const char* path, const std::vector<Blemish>& blemishes) {
    std::ofstream file(path);
    file << "x,y,radius\n";
    for (const Blemish& blemish : blemishes)
        file << blemish.x << ',' << blemish.y << ',' << blemish.radius << '\n';
    file.close();
    return file.good();
}

} // namespace

/// Writes the sample portrait, and the positions of its blemishes if a second file is named.
int main(int argc, char** argv) {
    if (argc != 2 && argc != 3) {
        std::fputs("usage: sample_portrait PICTURE.png [BLEMISHES.csv]\n", stderr);
        return 2;
    }
    const SamplePortrait portrait = paintSamplePortrait();
    if (!portrait.image.save(QString::fromLocal8Bit(argv[1]), "PNG")) {
        std::fprintf(stderr, "cannot write %s\n", argv[1]);
        return 1;
    }
    if (argc == 3 && !writeBlemishes(argv[2], portrait.blemishes)) {
        std::fprintf(stderr, "cannot write %s\n", argv[2]);
        return 1;
    }
    return 0;
}
