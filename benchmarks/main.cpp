// SPDX-License-Identifier: GPL-3.0-or-later

// Measures the speed table. ./bench documents the arguments.
#include "app/look.h"
#include "benchmarks/cores.h"
#include "benchmarks/frame_times.h"
#include "benchmarks/growth.h"
#include "benchmarks/memory.h"
#include "benchmarks/portraits.h"
#include "benchmarks/table.h"
#include "benchmarks/whole_process.h"
#include "imaging/base/freed_memory.h"
#include "imaging/reading/picture_reading.h"
#include "imaging/reading/reader_execution.h"

#include <QApplication>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <string_view>
#include <vector>

using namespace complexion;

int main(int argc, char** argv) {
    serveIfExecutedAsReader(argc, argv, answerReading);
    // Off screen and unscaled, whatever desktop it is started on.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_SCALE_FACTOR", "1");
    const std::string_view mode = argc > 1 ? argv[1] : "";
    if (mode != "--opened-here")
        startReader();
    keepFreedMemory(); // as the program does
    if (argc == 4 && mode == "--retouch")
        return bench::retouchOnce(argv[2], argv[3]);
    QApplication application(argc, argv);
    applyLook(application, 1);

    if (argc == 3 && mode == "--memory")
        return bench::measureMemory(argv[2]);
    if (argc == 3 && mode.starts_with("--opened"))
        return bench::measureOpened(argv[2]);
    if (argc == 4 && mode == "--peak")
        return bench::measurePeak(argv[2], argv[3]);
    if (argc < 2) {
        std::fputs("usage: speed FOLDER [NAME|MEGAPIXELS]...\n       speed FOLDER --growth [MEGAPIXELS]...\n",
                   stderr);
        return 2;
    }
    bench::setFolder(argv[1]);
    if (argc > 2 && std::string_view(argv[2]) == "--growth") {
        std::vector<int> megapixels;
        std::transform(argv + 3, argv + argc, std::back_inserter(megapixels),
                       [](const char* word) { return std::atoi(word); });
        if (megapixels.empty())
            megapixels = {12, 24, 50, 100, 200};
        return bench::measureGrowth(megapixels);
    }
    if (argc == 3 && std::string_view(argv[2]) == "--cores")
        return bench::measureCores();
    if (argc == 4 && std::string_view(argv[2]) == "--frames")
        return bench::plotFrameTimes(argv[3]);
    bench::addClickRows();
    bench::addStateRows();
    bench::addJournalRows();
    bench::addEffectRows();
    bench::addPaintingRows();
    bench::addLargeScreenRows();
    bench::addPixelCostRows();
    bench::addOpeningRows();
    bench::addSavingRows();
    bench::addMemoryRows();
    bench::addStartRow();
    bench::addWholeProcessRow();
    bench::addNaiveRow();
    return bench::runTable({argv + 2, argv + argc}, bench::folder() / "speed.json");
}
