// SPDX-License-Identifier: GPL-3.0-or-later

// The thumbnails in the file panels' lists.
#include "imaging/image_tools.h"
#include "tests/app/panel_fixture.h"
#include "tests/fakes/fake_dialogs.h"
#include "tests/fakes/metadata_samples.h"
#include "tests/fakes/pictures.h"
#include "tests/fakes/profiles.h"
#include "tests/fakes/temporary_folder.h"

#include <QIcon>
#include <QScrollBar>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <mutex>
#include <set>
#include <thread>

namespace complexion {
namespace {

using namespace std::chrono_literals;

constexpr RGBA32 kRed(200, 30, 20, 255);
const auto kWanted = [] { return true; };

class FolderThumbnailsTest : public testing::Test {
protected:
    std::filesystem::path path(const std::string& name) const { return folder.path() / name; }
    OpenPanel photos() const { return {.allowedFileTypes = {"jpg", "png"}}; }

    void makePhoto(const std::string& name, const Image& image) const {
        EXPECT_TRUE(ImageTools::SaveImage(image, path(name), "png"));
    }

    static QImage iconOf(FilePanel& panel, int row) {
        const QTreeView& list = test::listOf(panel);
        return list.model()
            ->index(row, 0)
            .data(Qt::DecorationRole)
            .value<QIcon>()
            .pixmap(list.iconSize())
            .toImage();
    }
    /// The colour in the middle of a row's icon.
    static QColor middleOf(FilePanel& panel, int row) {
        const QImage icon = iconOf(panel, row);
        return icon.pixelColor(icon.width() / 2, icon.height() / 2);
    }
    template <class Condition>
    static bool waitFor(Condition condition) {
        return QTest::qWaitFor(condition, test::kTimeoutMilliseconds);
    }

    TemporaryFolder folder;
    FakeDialogs dialogs;
};

TEST_F(FolderThumbnailsTest, AppearForPhotosAndNothingElse) {
    makePhoto("a.png", filled({300, 200}, kRed));
    writeFile(path("b.png"), "no photo");
    OpenFilePanel panel(photos(), folder.path(), dialogs, nullptr);
    panel.show();
    test::waitUntilListed(panel);
    const QImage usual = iconOf(panel, 1);
    EXPECT_TRUE(waitFor([&] { return middleOf(panel, 0) == QColor(200, 30, 20); }));
    EXPECT_EQ(iconOf(panel, 1), usual);
    EXPECT_EQ(iconOf(panel, 0).pixelColor(iconOf(panel, 0).width() / 2, 1).alpha(), 0)
        << "wide photos are not cut";
}

TEST_F(FolderThumbnailsTest, AreMadeOnceForWhatIsOnTheScreen) {
    constexpr int kFiles = 200;
    for (int i = 0; i < kFiles; ++i)
        writeFile(path(std::to_string(1000 + i) + ".png"), "a photo");
    std::mutex mutex;
    std::multiset<std::string> asked;
    const auto count = [&] {
        const std::scoped_lock lock(mutex);
        return asked.size();
    };
    FileAccess access;
    access.thumbnail = [&](const std::filesystem::path& file, int, const std::function<bool()>&) {
        const std::scoped_lock lock(mutex);
        asked.insert(file.filename());
        return QImage();
    };
    const auto settled = [&] {
        std::size_t before = 0;
        return waitFor([&] {
            const std::size_t last = std::exchange(before, count());
            QTest::qWait(200);
            return last > 0 && last == count();
        });
    };
    {
        OpenFilePanel panel(photos(), folder.path(), dialogs, nullptr, access);
        panel.show();
        test::waitUntilListed(panel);
        EXPECT_TRUE(settled());
        EXPECT_GT(count(), 2U);
        EXPECT_LT(count(), 60U);
        EXPECT_EQ(asked.count("1000.png"), 1U);
        const std::size_t first = count();
        QScrollBar& bar = *test::listOf(panel).verticalScrollBar();
        bar.setValue(bar.maximum());
        EXPECT_TRUE(waitFor([&] { return count() > first; }));
        EXPECT_TRUE(settled());
        EXPECT_EQ(asked.count("1199.png"), 1U);
        EXPECT_EQ(asked.count("1100.png"), 0U);
    }
    const std::size_t before = count();
    OpenFilePanel again(photos(), folder.path(), dialogs, nullptr, access);
    again.show();
    test::waitUntilListed(again);
    QTest::qWait(300);
    EXPECT_EQ(count(), before) << "what is known of a file is kept for the next panel";
}

TEST_F(FolderThumbnailsTest, EndWithThePanelWithoutMakingItWait) {
    writeFile(path("a.png"), "a photo");
    const auto isWorking = std::make_shared<std::atomic<bool>>(false);
    FileAccess access;
    access.thumbnail = [isWorking](const std::filesystem::path&, int, const std::function<bool()>& isWanted) {
        *isWorking = true;
        while (isWanted())
            std::this_thread::sleep_for(1ms);
        *isWorking = false;
        return QImage();
    };
    {
        OpenFilePanel panel(photos(), folder.path(), dialogs, nullptr, access);
        panel.show();
        EXPECT_TRUE(waitFor([&] { return isWorking->load(); }));
        EXPECT_EQ(test::namesIn(panel).size(), 1);
    }
    EXPECT_TRUE(waitFor([&] { return !*isWorking; }));
}

TEST_F(FolderThumbnailsTest, AChangedFileGetsANewOne) {
    makePhoto("a.png", filled({30, 30}, kRed));
    const FolderEntry entry{.name = "a.png", .size = 100, .modifiedSeconds = 1};
    FolderThumbnails thumbnails({});
    thumbnails.make(folder.path(), {entry}, 16);
    EXPECT_TRUE(waitFor([&] { return !FolderThumbnails::find(folder.path(), entry).isNull(); }));
    FolderEntry changed = entry;
    changed.modifiedSeconds = 2;
    EXPECT_TRUE(FolderThumbnails::find(folder.path(), changed).isNull());
}

TEST_F(FolderThumbnailsTest, AreInTheScreensColors) {
    makePhoto("wide.png", filled({40, 40}, kRed).withProfile(ColorProfile::fromIcc(wideProfile())));
    const QImage thumbnail = photoThumbnail(path("wide.png"), 16, kWanted);
    ASSERT_EQ(thumbnail.size(), QSize(16, 16));
    EXPECT_GT(thumbnail.pixelColor(8, 8).red(), 210);
}

TEST_F(FolderThumbnailsTest, AreThoseThatCamerasMadeIfTheyAreLargeEnough) {
    SampleTiff exif = cameraExif(1);
    exif.thumbnail = encodedAs(kJpegCodec, filled({40, 30}, kRed));
    writeFile(path("camera.jpg"),
              withSegments(encodedAs(kJpegCodec, filled({2400, 1800}, grey(90))),
                           jpegSegmentOf(0xe1, std::string("Exif\0\0", 6) + exif.bytes())));
    for (const int side : {32, 40, 48}) {
        const QImage thumbnail = photoThumbnail(path("camera.jpg"), side, kWanted);
        ASSERT_EQ(thumbnail.size(), QSize(side, side));
        const QColor middle = thumbnail.pixelColor(side / 2, side / 2);
        EXPECT_EQ(middle.red() - middle.blue() > 100, side <= 40) << side;
    }
}

TEST_F(FolderThumbnailsTest, OfHugeDamagedOrUnwantedFilesAreNull) {
    makePhoto("huge.png", filled({65'000, 1'000}, kRed));
    EXPECT_TRUE(photoThumbnail(path("huge.png"), 16, kWanted).isNull());
    writeFile(path("text.png"), "no photo");
    EXPECT_TRUE(photoThumbnail(path("text.png"), 16, kWanted).isNull());
    EXPECT_TRUE(photoThumbnail(path("missing.png"), 16, kWanted).isNull());
    makePhoto("a.png", filled({30, 30}, kRed));
    EXPECT_TRUE(photoThumbnail(path("a.png"), 16, [] { return false; }).isNull());
    EXPECT_FALSE(photoThumbnail(path("a.png"), 16, kWanted).isNull());
}

} // namespace
} // namespace complexion
