// SPDX-License-Identifier: GPL-3.0-or-later

// Files as they occur in practice: unusual names, contradictory metadata, and what saving must preserve.
#include "imaging/metadata/creation_date.h"
#include "imaging/screen_colors.h"
#include "tests/editor/editor_fixture.h"
#include "tests/fakes/photo_files.h"
#include "tests/fakes/profiles.h"

#include <QMimeData>
#include <QUrl>

#include <sys/vfs.h>

namespace complexion {

namespace {

using namespace std::string_literals;

class RealFiles : public EditorTest {
protected:
    std::filesystem::path target(const std::string& name) const { return platform.photos() / name; }

    /// Drops a percent-encoded URL, as file managers do.
    bool dropEncoded(const std::filesystem::path& path) {
        if (imageView->image())
            dialogs.expectQuestion(kDropQuestion, kFirstButton);
        QMimeData data;
        data.setUrls({QUrl::fromEncoded(
            "file://" + QByteArray::fromStdString(path.string()).toPercentEncoding("/"), QUrl::StrictMode)});
        return imageView->performDragOperation(&data);
    }

    /// Saves under the proposed name.
    std::filesystem::path saveAsProposed() {
        const std::filesystem::path path =
            target(controller->originalImageName + "_retouched." + controller->originalImageExtension);
        save(path);
        return path;
    }
};

/// A file name of `length` bytes, including its extension.
std::string longName(std::size_t length) {
    return std::string(length - 4, 'n') + ".png";
}

TEST_F(RealFiles, OfAnyNameAreOpenedAndSaved) {
    const std::string names[] = {
        "two words.png",
        " begins and ends with a blank .png",
        "it's \"quoted\" `twice` $(so).png",
        "100% #1 ?&;.png",
        "back\\slash\nnew line.png",
        "-rf.png",
        "caf\xC3\xA9.png",  // composed
        "cafe\xCC\x81.png", // decomposed
        "\xE5\x86\x99\xE7\x9C\x9F \xF0\x9F\x98\x80.png",
        "caf\xE9 in Latin-1.png", // not UTF-8
        "\xFF\xFE\x80.png",       // not UTF-8 either
        ".hidden.png",
        "two.dots.png",
        longName(255 - std::string("_retouched").size()),
    };
    for (const std::string& name : names) {
        SCOPED_TRACE(name);
        const std::filesystem::path path = makePhoto(name);
        ASSERT_TRUE(dropEncoded(path));
        EXPECT_EQ(controller->originalImagePath, path);
        controller->OpenFile(path);
        EXPECT_EQ(controller->originalImagePath, path);
        EXPECT_EQ(controller->originalImageName + ".png", name);
        retouch(0);
        const std::filesystem::path saved = saveAsProposed();
        EXPECT_TRUE(samePixels(decoded(saved), controller->originalImage()));
        EXPECT_FALSE(samePixels(decoded(saved), photo()));
    }
}

TEST_F(RealFiles, OfTheLongestNameCanBeSavedUnderAShorterOne) {
    const std::filesystem::path path = makePhoto(longName(255));
    ASSERT_TRUE(dropEncoded(path));
    retouch(0);
    const std::vector<std::string> before = filesIn(platform.photos());
    // The proposed name is longer than file systems allow.
    const std::string proposed = controller->originalImageName + "_retouched.png";
    dialogs.expectSavePanel({{"png"}, proposed}, chosen(target(proposed)));
    dialogs.expectAlert(kSaveFailure, AlertStyle::Warning);
    printedBy([this] { controller->OnSaveImage(nullptr); });
    EXPECT_EQ(filesIn(platform.photos()), before);

    save(target("m" + longName(254)));
    EXPECT_TRUE(samePixels(decoded(target("m" + longName(254))), controller->originalImage()));
}

TEST_F(RealFiles, WithoutAnExtensionAreSavedInTheFormatOfTheirContent) {
    const std::filesystem::path path = target("portrait");
    writeFile(path, contentsOf(makePhoto()));
    controller->OpenFile(path);
    EXPECT_TRUE(samePixels(shown(), photo()));
    dialogs.expectSavePanel({{"png"}, "portrait_retouched.png"}, chosen(target("saved")));
    dialogs.expectAlert(kSaveSuccess, AlertStyle::Informational);
    printedBy([this] { controller->OnSaveImage(nullptr); });
    EXPECT_TRUE(samePixels(decoded(target("saved")), photo()));
}

TEST_F(RealFiles, AreReadByTheirContentAndWrittenByTheirExtension) {
    const std::string png = contentsOf(makePhoto());
    for (const auto& [extension, start] :
         {std::pair{"jpg"s, "\xFF\xD8\xFF"s}, {"TIF"s, "II*"s}, {"gif"s, "GIF8"s}, {"bmp"s, "BM"s}}) {
        SCOPED_TRACE(extension);
        const std::filesystem::path path = target("a png file." + extension);
        writeFile(path, png);
        controller->OpenFile(path);
        EXPECT_TRUE(samePixels(controller->originalImage(), photo()));
        retouch(0);
        save(target("saved"));
        EXPECT_EQ(contentsOf(target("saved")).substr(0, start.size()), start);
        EXPECT_TRUE(nearlySamePixels(decoded(target("saved")), controller->originalImage(), 3));
    }
}

// Colour.

TEST_F(RealFiles, InAWideColorSpaceGetTheCustomColorConverted) {
    const ColorProfile wide = ColorProfile::fromIcc(wideProfile());
    for (const char* name : {"wide.png", "wide.tiff", "wide.bmp"}) {
        SCOPED_TRACE(name);
        controller->OpenFile(makePhoto(name, photo().withProfile(wide)));
        EXPECT_EQ(controller->originalImage().profile(), wide);
        controller->checkAutodetectColor->setChecked(false);
        controller->colorWellCustomColor->setColor(QColor(200, 120, 90));
        retouch(0);
        save(target("saved"));
        const Image saved = decoded(target("saved"));
        EXPECT_EQ(saved.profile(), wide);
        const PixelPosition place = blemishes().front();
        RGBA32 pixel = saved.pixel(static_cast<int>(place.row), static_cast<int>(place.column));
        EXPECT_GT(std::abs(pixel.red() - 200), 3) << "the colour was not converted to the file's space";
        screenTransform(wide)->apply({&pixel, 1});
        EXPECT_NEAR(pixel.red(), 200, 1);
        EXPECT_NEAR(pixel.green(), 120, 1);
        EXPECT_NEAR(pixel.blue(), 90, 1);
    }
}

// Orientation.

/// A JPEG file with an XMP packet that has an orientation.
std::string withXmpOrientation(const std::string& jpeg, int orientation) {
    const std::string packet = "http://ns.adobe.com/xap/1.0/\0"s +
                               "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:Description tiff:Orientation=\"" +
                               std::to_string(orientation) + "\"/></x:xmpmeta>";
    const std::size_t length = packet.size() + 2;
    return jpeg.substr(0, 2) + "\xFF\xE1" + static_cast<char>(length >> 8) + static_cast<char>(length & 255) +
           packet + jpeg.substr(2);
}

TEST_F(RealFiles, AreTurnedByExifWhereXmpContradictsItAndKeepBoth) {
    const std::filesystem::path source = makePhoto("turned.jpg");
    writeFile(source, withXmpOrientation(withExif(contentsOf(source), 6, "photographer"), 3));
    const Image upright = turnedUpright(photo(), Orientation::RightTop);
    controller->OpenFile(source);
    EXPECT_TRUE(nearlySamePixels(controller->originalImage(), upright, 4));
    save(target("saved.jpg"));
    EXPECT_TRUE(nearlySamePixels(decoded(target("saved.jpg")), upright, 8));
    EXPECT_NE(contentsOf(target("saved.jpg")).find("tiff:Orientation=\"3\""), std::string::npos);
}

TEST_F(RealFiles, WithAnOrientationInXmpOnlyAreNotTurned) {
    const std::filesystem::path source = makePhoto("turned.jpg");
    writeFile(source, withXmpOrientation(contentsOf(source), 6));
    controller->OpenFile(source);
    EXPECT_TRUE(nearlySamePixels(controller->originalImage(), photo(), 4));
    save(target("saved.jpg"));
    EXPECT_TRUE(nearlySamePixels(decoded(target("saved.jpg")), photo(), 8));
}

TEST_F(RealFiles, OfAnyOrientationAreRetouchedUnderThePointer) {
    const std::filesystem::path tagged = makePhoto("tagged.jpg");
    const std::string untagged = contentsOf(tagged);
    for (const char* name : {"turned.tif", "turned.png", "turned.jpg"})
        for (int orientation = 1; orientation <= 8; ++orientation) {
            SCOPED_TRACE(name + std::to_string(orientation));
            // The upright picture is always the photo; the tag says how it is stored.
            const Orientation turn = orientationFromTag(orientation);
            const std::filesystem::path source = makePhoto(name, turnedForStorage(photo(), turn));
            writeFile(tagged, withExif(untagged, orientation, "photographer"));
            ImageTools::ChangeImageExif(tagged, source);
            controller->OpenFile(source);
            ASSERT_TRUE(nearlySamePixels(controller->originalImage(), photo(), 4));
            retouch(1);
            const PixelPosition place = blemishes().at(1);
            const RGBA32 healed = controller->originalImage().pixel(static_cast<int>(place.row),
                                                                    static_cast<int>(place.column));
            EXPECT_NEAR(healed.red(), kSkin.red(), 6);
            const std::filesystem::path saved = saveAsProposed();
            EXPECT_TRUE(nearlySamePixels(decoded(saved), controller->originalImage(), 8));
            EXPECT_EQ(ImageTools::CarriedOrientation(saved, name + std::string(name).size() - 3), turn);
        }
}

// Density.

TEST_F(RealFiles, OfAnyDensityHaveOnePointPerPixelAndKeepTheirDensity) {
    const std::filesystem::path dense = target("dense.jpg");
    writeJpeg(dense, photo(), 300);
    for (const char* name : {"photo.jpg", "photo.png", "photo.tif", "photo.bmp"}) {
        SCOPED_TRACE(name);
        const std::filesystem::path source = makePhoto(name);
        ImageTools::ChangeImageExif(dense, source);
        const PointSize stated{kPhotoSize.width * 72 / 300.0, kPhotoSize.height * 72 / 300.0};
        EXPECT_EQ(decoded(source).size(), stated);
        controller->OpenFile(source);
        EXPECT_EQ(controller->originalImage().size(), (PointSize{80, 60}));
        const std::filesystem::path saved = saveAsProposed();
        EXPECT_EQ(decoded(saved).pixelSize(), kPhotoSize);
        EXPECT_EQ(decoded(saved).size(), stated);
    }
}

TEST_F(RealFiles, Of72DotsPerInchAreNotCopiedForTheirSize) {
    for (const char* name : {"photo.jpg", "photo.png", "photo.tif", "photo.bmp", "photo.gif"}) {
        SCOPED_TRACE(name);
        const std::filesystem::path source = makePhoto(name);
        const Image image = decoded(source);
        EXPECT_TRUE(ImageTools::BringImageToActualSize(image, source).isSameObject(image));
    }
}

// Dates.

/// The magic number of the folder's file system.
long fileSystemOf(const std::filesystem::path& folder) {
    struct statfs status = {};
    return ::statfs(folder.c_str(), &status) == 0 ? static_cast<long>(status.f_type) : 0;
}

TEST_F(RealFiles, KeepTheirCreationDateOrReportThatTheFileSystemCannotStoreIt) {
    constexpr CreationDate kDate{std::chrono::seconds(1'234'567'890)};
    std::vector<long> seen;
    for (const std::filesystem::path& place :
         {platform.photos(), std::filesystem::path("/dev/shm"), std::filesystem::path("/var/tmp")}) {
        const long kind = fileSystemOf(place);
        if (kind == 0 || std::ranges::find(seen, kind) != seen.end())
            continue;
        std::string name = (place / "complexion_test_XXXXXX").string();
        if (!::mkdtemp(name.data()))
            continue;
        seen.push_back(kind);
        const std::filesystem::path folder = name;
        const std::filesystem::path source = folder / "photo.png";
        writeFile(source, contentsOf(makePhoto()));
        const bool canStoreDate = setCreationDate(source, kDate);
        const CreationDate date = ImageTools::ImageCreationDate(source);
        controller->OpenFile(source);
        dialogs.expectSavePanel({{"png"}, "photo_retouched.png"}, chosen(folder / "saved.png"));
        dialogs.expectAlert(kSaveSuccess, AlertStyle::Informational);
        const std::string printed = printedBy([this] { controller->OnSaveImage(nullptr); });
        EXPECT_EQ(printed.find("ERROR\n") == std::string::npos, canStoreDate) << printed;
        EXPECT_EQ(ImageTools::ImageCreationDate(folder / "saved.png") == date, canStoreDate);
        std::filesystem::remove_all(folder);
    }
    RecordProperty("fileSystems", static_cast<int>(seen.size()));
    if (seen.size() < 2)
        GTEST_SKIP() << "there is only one file system";
}

} // namespace
} // namespace complexion
