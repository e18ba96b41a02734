// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/photo_ahead.h"

#include "tests/editor/opening_fixture.h"
#include "tests/fakes/hostile_reader.h"
#include "tests/fakes/installed_reader.h"
#include "tests/fakes/system_calls.h"

#include <cerrno>
#include <cstdint>
#include <optional>

namespace complexion {
namespace {

using PhotosReadAhead = Opening;

TEST_F(PhotosReadAhead, APhotoReadAheadIsOpenedLikeAnyOther) {
    const std::filesystem::path path = makePhoto();
    PhotoAhead ahead(path);
    controller->OpenFile(ahead);
    expectFreshlyOpened(path, photo());
}

TEST_F(PhotosReadAhead, AFileThatIsNoPictureShowsTheLoadFailure) {
    PhotoAhead ahead(undecodable());
    expectUnchangedBy([&] {
        dialogs.expectAlert(kLoadFailure, AlertStyle::Warning);
        controller->OpenFile(ahead);
    });
}

TEST_F(PhotosReadAhead, AMissingFileShowsTheLoadFailure) {
    PhotoAhead ahead(platform.photos() / "missing.png");
    expectUnchangedBy([&] {
        dialogs.expectAlert(kLoadFailure, AlertStyle::Warning);
        controller->OpenFile(ahead);
    });
}

TEST_F(PhotosReadAhead, TheIdentityIsThatOfTheFileBeforeItWasRead) {
    const std::filesystem::path path = makePhoto();
    const std::optional<FileIdentity> before = identify(path);
    PhotoAhead ahead(path);
    const Result<OpenedPhoto> opened = ahead.wait({});
    ASSERT_TRUE(opened);
    EXPECT_TRUE(samePixels(opened->image, photo()));
    writeFile(path, "changed since then");
    EXPECT_EQ(ahead.identity(), before);
    EXPECT_NE(identify(path), before);
}

TEST_F(PhotosReadAhead, WithoutAThreadThePhotoIsReadWhenItIsOpened) {
    const std::filesystem::path path = makePhoto();
    const std::optional<FileIdentity> before = identify(path);
    std::optional<PhotoAhead> ahead;
    {
        const FailingCalls noThread(SystemCall::PthreadCreate, EAGAIN);
        ahead.emplace(path);
        EXPECT_EQ(noThread.failedCount(), 1);
    }
    double part = 0;
    const Result<OpenedPhoto> opened = ahead->wait([&part](double done) {
        part = done;
        return true;
    });
    ASSERT_TRUE(opened);
    EXPECT_TRUE(samePixels(opened->image, photo()));
    EXPECT_EQ(ahead->identity(), before);
}

TEST_F(PhotosReadAhead, WithoutAThreadAPhotoThatIsNeverOpenedIsNotRead) {
    const FailingCalls noThread(SystemCall::PthreadCreate, EAGAIN);
    const FailingCalls read(SystemCall::Read, EIO, 1);
    {
        const PhotoAhead ahead(makePhoto());
    }
    EXPECT_EQ(noThread.failedCount(), 1);
    EXPECT_EQ(read.failedCount(), 0);
}

TEST_F(PhotosReadAhead, APreviewAndProgressThatNobodyFollowsAreDropped) {
    const InstalledReader reader(doAsTheFileSays);
    const std::filesystem::path path = platform.photos() / "previewed.jpg";
    writeFile(path, hostileFile(kPreviewAndHang));
    PhotoAhead ahead(path);
    int calls = 0;
    const Result<OpenedPhoto> opened = ahead.wait([&calls](double) { return ++calls < 5; });
    ASSERT_FALSE(opened);
    EXPECT_EQ(opened.error().kind, ErrorKind::Cancelled);
    EXPECT_EQ(calls, 5);
}

TEST_F(PhotosReadAhead, ThePreviewIsShownUntilTheUserCancels) {
    const InstalledReader reader(doAsTheFileSays);
    const std::filesystem::path path = platform.photos() / "previewed.jpg";
    writeFile(path, hostileFile(kPreviewAndHang));
    PhotoAhead ahead(path);
    expectPreviewUntilCancelled([&] { controller->OpenFile(ahead); });
}

TEST_F(PhotosReadAhead, TheUserCanCancelTheReading) {
    // Noise, which takes long to decode.
    std::uint32_t state = 1;
    const Image noise = painted({6000, 4000}, [&state](int, int) {
        state = state * 1664525 + 1013904223;
        return RGBA32(static_cast<std::uint8_t>(state >> 24), static_cast<std::uint8_t>(state >> 16),
                      static_cast<std::uint8_t>(state >> 8), 255);
    });
    const std::filesystem::path path = makePhoto("noise.png", noise);
    PhotoAhead ahead(path);
    int calls = 0;
    const Result<OpenedPhoto> opened = ahead.wait([&calls](double) {
        ++calls;
        return false;
    });
    ASSERT_FALSE(opened);
    EXPECT_EQ(opened.error().kind, ErrorKind::Cancelled);
    EXPECT_EQ(calls, 1);
}

} // namespace
} // namespace complexion
