// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/font_loading.h"

#include <fontconfig/fontconfig.h>
#include <gtest/gtest.h>

#include <set>
#include <string>

namespace complexion {
namespace {

std::set<std::string> fontFiles(FcConfig* config) {
    std::set<std::string> files;
    const FcFontSet* const fonts = FcConfigGetFonts(config, FcSetSystem);
    for (int i = 0; fonts && i < fonts->nfont; ++i) {
        FcChar8* file = nullptr;
        if (FcPatternGetString(fonts->fonts[i], FC_FILE, 0, &file) == FcResultMatch)
            files.insert(reinterpret_cast<const char*>(file));
    }
    return files;
}

/// The file of the font that the configuration's rules choose for a generic family.
std::string chosenFile(FcConfig* config) {
    FcPattern* const wanted = FcNameParse(reinterpret_cast<const FcChar8*>("sans-serif:size=13"));
    FcConfigSubstitute(config, wanted, FcMatchPattern);
    FcDefaultSubstitute(wanted);
    FcResult result = FcResultNoMatch;
    FcPattern* const match = FcFontMatch(config, wanted, &result);
    FcChar8* file = nullptr;
    const bool isFound = match && FcPatternGetString(match, FC_FILE, 0, &file) == FcResultMatch;
    std::string name = isFound ? reinterpret_cast<const char*>(file) : "";
    if (match)
        FcPatternDestroy(match);
    FcPatternDestroy(wanted);
    return name;
}

TEST(FontLoading, FindsTheSameFontsAsTheSystemsOwnInitialisation) {
    FcConfig* const before = FcConfigReference(nullptr);
    beginLoadingFonts();
    waitForFonts();
    FcConfig* const loaded = FcConfigGetCurrent();
    EXPECT_NE(loaded, before) << "nothing was loaded";

    FcConfig* const system = FcInitLoadConfigAndFonts();
    EXPECT_EQ(fontFiles(loaded), fontFiles(system));
    EXPECT_EQ(chosenFile(loaded), chosenFile(system));
    EXPECT_FALSE(chosenFile(loaded).empty());
    FcConfigDestroy(system);
    FcConfigSetCurrent(before); // which the toolkit has been using
    FcConfigDestroy(before);
}

TEST(FontLoading, WaitingReturnsAtOnceIfNothingIsLoading) {
    waitForFonts();
    waitForFonts();
}

} // namespace
} // namespace complexion
