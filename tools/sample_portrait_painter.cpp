// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/sample_portrait_painter.h"

#include "tools/sample_portrait_layers.h"

namespace complexion {

std::vector<Blemish> samplePortraitBlemishes() {
    return {{548, 418, 6, true}, {668, 446, 9, true}, {604, 492, 4, true},  {466, 470, 5, false},
            {470, 700, 8, true}, {512, 760, 5, true}, {434, 762, 11, true}, {690, 690, 6, false},
            {726, 752, 8, true}, {664, 800, 4, true}, {540, 906, 7, true},  {634, 944, 6, true},
            {570, 1090, 9, true}};
}

SamplePortrait paintSamplePortrait() {
    SamplePortrait portrait{
        .image = QImage(kPortraitWidth, kPortraitHeight, QImage::Format_RGB32),
        .blemishes = samplePortraitBlemishes(),
    };
    paintBackdrop(portrait.image);
    paintHairBehind(portrait.image);
    paintSkin(portrait.image);
    paintBlemishes(portrait.image, portrait.blemishes);
    paintEyes(portrait.image);
    paintMouthAndNostrils(portrait.image);
    paintSweater(portrait.image);
    paintHairInFront(portrait.image);
    paintGrain(portrait.image);
    return portrait;
}

} // namespace complexion
