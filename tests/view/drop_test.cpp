// SPDX-License-Identifier: GPL-3.0-or-later

// Files that are dropped on the image view.
#include "imaging/image_tools.h"
#include "tests/fakes/fake_dialogs.h"
#include "tests/fakes/pictures.h"
#include "tests/fakes/temporary_folder.h"
#include "view/custom_image_view.h"
#include "view/notification_center.h"

#include <QCoreApplication>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QUrl>

namespace complexion {

namespace {

class Drop : public testing::Test {
protected:
    Drop() {
        view.setDialogs(&dialogs);
        view.resize(100, 100);
        observer = NotificationCenter::defaultCenter().addObserver(
            kDragPerformed, [this](const Notification& notification) { posted.push_back(notification); });
    }

    std::filesystem::path makeFile(const std::string& name) {
        const std::filesystem::path png = folder.path() / "source";
        EXPECT_TRUE(ImageTools::SaveImage(filled({8, 6}, kSkin), png, "png"));
        const std::filesystem::path path = folder.path() / name;
        std::filesystem::rename(png, path);
        return path;
    }

    bool drop(const QUrl& url) {
        QMimeData data;
        data.setUrls({url});
        return view.performDragOperation(&data);
    }
    bool drop(const std::filesystem::path& path) {
        return drop(QUrl::fromLocalFile(QString::fromStdString(path)));
    }

    void showAnImage() { view.setImage(filled({10, 10}, kBlemish)); }
    void expectPostedOnly(const std::filesystem::path& path) {
        ASSERT_EQ(posted.size(), 1U);
        EXPECT_EQ(posted[0].name, "DragPerformed");
        ASSERT_TRUE(posted[0].userInfo.has_value());
        EXPECT_EQ(*posted[0].userInfo, (UserInfo{{"path", path.string()}}));
    }

    TemporaryFolder folder;
    FakeDialogs dialogs;
    CustomImageView view;
    NotificationCenter::Registration observer;
    std::vector<Notification> posted;
};

TEST_F(Drop, TheAcceptedTypesAreInOrder) {
    EXPECT_THAT(view.acceptedTypes(),
                testing::ElementsAre("jpg", "jpeg", "png", "tiff", "tif", "gif", "bmp"));
}

TEST_F(Drop, OnAnEmptyViewPostsAPhotoWithoutAQuestion) {
    const std::filesystem::path path = makeFile("photo.JPG");
    EXPECT_TRUE(drop(path));
    expectPostedOnly(path);
    EXPECT_EQ(dialogs.shownCount(), 0);
    EXPECT_FALSE(view.image().has_value()); // the view only checks that the photo can be decoded
}

TEST_F(Drop, AcceptsEveryTypeInAnyCase) {
    for (const char* name :
         {"a.jpg", "a.jpeg", "a.png", "a.tiff", "a.tif", "a.gif", "a.bmp", "a.PNG", "a.Tiff", "a.b.GIF"}) {
        SCOPED_TRACE(name);
        posted.clear();
        const std::filesystem::path path = makeFile(name);
        EXPECT_TRUE(drop(path));
        expectPostedOnly(path);
    }
}

TEST_F(Drop, OnAnOpenPhotoAnsweringYesPostsTheFile) {
    showAnImage();
    dialogs.expectQuestion(kDropQuestion, kFirstButton);
    const std::filesystem::path path = makeFile("photo.png");
    EXPECT_TRUE(drop(path));
    expectPostedOnly(path);
}

TEST_F(Drop, OnAnOpenPhotoAnsweringNoRefusesTheFile) {
    showAnImage();
    dialogs.expectQuestion(kDropQuestion, kSecondButton);
    EXPECT_FALSE(drop(makeFile("photo.png")));
    EXPECT_TRUE(posted.empty());
}

TEST_F(Drop, AnyAnswerExceptNoCountsAsYes) {
    showAnImage();
    dialogs.expectQuestion(kDropQuestion, 1002);
    EXPECT_TRUE(drop(makeFile("photo.png")));
}

TEST_F(Drop, OnAnOpenPhotoWhatCannotBeOpenedIsRefusedWithoutAQuestion) {
    showAnImage();
    const Image before = *view.image();
    EXPECT_FALSE(drop(makeFile("notes.txt")));
    EXPECT_FALSE(drop(makeFile("photo")));
    EXPECT_FALSE(drop(QUrl(QStringLiteral("https://example.org/photo.png"))));
    EXPECT_EQ(dialogs.shownCount(), 0);
    EXPECT_TRUE(posted.empty());
    EXPECT_TRUE(view.image()->isSameObject(before));
}

TEST_F(Drop, OnAnEmptyViewATextFileIsRefusedSilently) {
    EXPECT_FALSE(drop(makeFile("notes.txt")));
    EXPECT_TRUE(posted.empty());
}

TEST_F(Drop, ANameWithoutAnExtensionIsRefused) {
    EXPECT_FALSE(drop(makeFile("photo")));
    EXPECT_FALSE(drop(makeFile("photo.")));
    EXPECT_FALSE(drop(makeFile(".png")));
    EXPECT_FALSE(drop(folder.path()));
    EXPECT_TRUE(posted.empty());
}

TEST_F(Drop, AnUndecodableFileIsRefusedSilently) {
    writeFile(folder.path() / "fake.png", "not a picture");
    EXPECT_FALSE(drop(folder.path() / "fake.png"));
    showAnImage();
    dialogs.expectQuestion(kDropQuestion, kFirstButton);
    EXPECT_FALSE(drop(folder.path() / "fake.png"));
    EXPECT_TRUE(posted.empty());
}

TEST_F(Drop, AMissingFileOrAFolderIsRefused) {
    EXPECT_FALSE(drop(folder.path() / "missing.png"));
    std::filesystem::create_directory(folder.path() / "folder.png");
    EXPECT_FALSE(drop(folder.path() / "folder.png"));
    EXPECT_TRUE(posted.empty());
}

TEST_F(Drop, AUrlThatIsNotALocalFileIsRefused) {
    EXPECT_FALSE(drop(QUrl(QStringLiteral("https://example.org/photo.png"))));
    EXPECT_FALSE(drop(QUrl(QStringLiteral("mailto:somebody@example.org"))));
    EXPECT_FALSE(drop(QUrl(QStringLiteral("photo.png"))));
    EXPECT_TRUE(posted.empty());
}

TEST_F(Drop, DataWithoutAUrlIsRefusedWithoutAQuestion) {
    showAnImage();
    QMimeData text;
    text.setText(QStringLiteral("/tmp/photo.png"));
    EXPECT_FALSE(view.performDragOperation(&text));
    QMimeData colour;
    colour.setColorData(QColor(Qt::red));
    EXPECT_FALSE(view.performDragOperation(&colour));
    EXPECT_TRUE(posted.empty());
}

TEST_F(Drop, OfSeveralFilesTheFirstIsPosted) {
    const std::filesystem::path first = makeFile("first.png");
    const std::filesystem::path second = makeFile("second.png");
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QString::fromStdString(first)),
                  QUrl::fromLocalFile(QString::fromStdString(second))});
    EXPECT_TRUE(view.performDragOperation(&data));
    expectPostedOnly(first);
}

TEST_F(Drop, APathIsPostedByteForByte) {
    const std::filesystem::path spaced = makeFile("a photo, 100% #1?.png");
    EXPECT_TRUE(drop(spaced));
    expectPostedOnly(spaced);
    posted.clear();

    const std::filesystem::path umlaut = makeFile("m\xC3\xBCnchen.png");
    EXPECT_TRUE(drop(umlaut));
    expectPostedOnly(umlaut);
    posted.clear();

    // A Latin-1 name, percent-encoded as by file managers.
    const std::filesystem::path latin = makeFile("m\xFCnchen.png");
    const QByteArray address = QByteArray("file://") + folder.path().c_str() + "/m%FCnchen.png";
    EXPECT_TRUE(drop(QUrl::fromEncoded(address)));
    expectPostedOnly(latin);
}

TEST_F(Drop, ADragWithoutAListOfTypesIsFatal) {
    EXPECT_DEATH(view.performDragOperation(nullptr), "types");
}

TEST_F(Drop, AMissingUrlInAUriListIsFatal) {
    QMimeData data;
    data.setData(QStringLiteral("text/uri-list"), QByteArray());
    EXPECT_DEATH(view.performDragOperation(&data), "URLs");
}

TEST_F(Drop, ACopyIsOfferedForAnyDrag) {
    view.setAcceptDrops(true);
    QMimeData text;
    text.setText(QStringLiteral("not a file"));
    QMimeData file;
    file.setUrls({QUrl::fromLocalFile(QString::fromStdString(folder.path() / "notes.txt"))});
    for (QMimeData* data : {&text, &file}) {
        QDragEnterEvent enter({5, 5}, Qt::CopyAction | Qt::MoveAction, data, Qt::LeftButton, Qt::NoModifier);
        enter.setAccepted(false);
        QCoreApplication::sendEvent(&view, &enter);
        EXPECT_TRUE(enter.isAccepted());
        EXPECT_EQ(enter.dropAction(), Qt::CopyAction);
        QDragMoveEvent move({6, 6}, Qt::CopyAction | Qt::MoveAction, data, Qt::LeftButton, Qt::NoModifier);
        move.setAccepted(false);
        QCoreApplication::sendEvent(&view, &move);
        EXPECT_TRUE(move.isAccepted());
        EXPECT_EQ(move.dropAction(), Qt::CopyAction);
    }
    EXPECT_TRUE(posted.empty());
}

TEST_F(Drop, TheToolkitsDropEventIsAcceptedOrRefused) {
    // Sent directly, as the application would route it to the target of the current drag, which does not
    // exist.
    const auto receive = [this](QEvent& event) { static_cast<QObject&>(view).event(&event); };
    view.setAcceptDrops(true);
    const std::filesystem::path path = makeFile("photo.png");
    QMimeData good;
    good.setUrls({QUrl::fromLocalFile(QString::fromStdString(path))});
    QDropEvent dropped(QPointF(5, 5), Qt::CopyAction, &good, Qt::LeftButton, Qt::NoModifier);
    receive(dropped);
    EXPECT_TRUE(dropped.isAccepted());
    EXPECT_EQ(dropped.dropAction(), Qt::CopyAction);
    expectPostedOnly(path);

    QMimeData bad;
    bad.setUrls({QUrl::fromLocalFile(QString::fromStdString(folder.path() / "notes.txt"))});
    QDropEvent refused(QPointF(5, 5), Qt::CopyAction, &bad, Qt::LeftButton, Qt::NoModifier);
    receive(refused);
    EXPECT_FALSE(refused.isAccepted());
    EXPECT_EQ(posted.size(), 1U);
}

TEST_F(Drop, TheDropEventEndsBeforeTheQuestionIsAsked) {
    showAnImage();
    view.setAcceptDrops(true);
    const std::filesystem::path path = makeFile("photo.png");
    {
        QMimeData data; // the source's, which ends with the drop
        data.setUrls({QUrl::fromLocalFile(QString::fromStdString(path))});
        QDropEvent dropped(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        static_cast<QObject&>(view).event(&dropped);
        EXPECT_TRUE(dropped.isAccepted());
        EXPECT_EQ(dialogs.shownCount(), 0);
    }
    dialogs.expectQuestion(kDropQuestion, kFirstButton);
    QCoreApplication::processEvents();
    EXPECT_EQ(dialogs.shownCount(), 1);
    expectPostedOnly(path);
}

TEST_F(Drop, ADropWhoseSourceHasEndedIsRefused) {
    QMimeData broken;
    broken.setData(QStringLiteral("text/uri-list"), {});
    QDropEvent dropped(QPointF(5, 5), Qt::CopyAction, &broken, Qt::LeftButton, Qt::NoModifier);
    static_cast<QObject&>(view).event(&dropped);
    EXPECT_FALSE(dropped.isAccepted());
    EXPECT_TRUE(posted.empty());
}

} // namespace

} // namespace complexion
