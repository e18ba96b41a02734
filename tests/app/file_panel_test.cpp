// SPDX-License-Identifier: GPL-3.0-or-later

// The contents of the file panels' lists, and that they stay responsive whatever a folder does.
#include "tests/app/panel_fixture.h"
#include "tests/fakes/active_window.h"
#include "tests/fakes/fake_dialogs.h"
#include "tests/fakes/pictures.h"
#include "tests/fakes/temporary_folder.h"

#include <QApplication>
#include <QComboBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QListWidget>
#include <QLocale>
#include <QPushButton>
#include <QTest>

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <future>
#include <mutex>
#include <thread>

namespace complexion {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

constexpr int kMinGap = 12;       // between columns
constexpr auto kMaxReaction = 2s; // under any load; the hang lasts until the test ends it

/// A file system on which calls for one folder hang until the object is destroyed.
class HangingAccess {
public:
    explicit HangingAccess(std::filesystem::path folder) : m_state(std::make_shared<State>()) {
        m_state->folder = std::move(folder);
    }
    HangingAccess(const HangingAccess&) = delete;
    HangingAccess& operator=(const HangingAccess&) = delete;
    ~HangingAccess() {
        std::unique_lock lock(m_state->mutex);
        m_state->isReleased = true;
        m_state->changed.notify_all();
        EXPECT_TRUE(m_state->changed.wait_for(lock, 20s, [this] { return m_state->hanging == 0; }));
    }

    FileAccess access() const {
        return {.list =
                    [state = m_state](const std::filesystem::path& folder,
                                      const std::vector<std::string>& extensions, const EntriesFound& found) {
                        hangIn(*state, folder);
                        return listFolder(folder, extensions, found);
                    },
                .kindOf =
                    [state = m_state](const std::filesystem::path& path) {
                        hangIn(*state, path);
                        return fileKind(path);
                    }};
    }
    int hanging() const {
        const std::scoped_lock lock(m_state->mutex);
        return m_state->hanging;
    }

private:
    struct State {
        std::filesystem::path folder;
        std::mutex mutex;
        std::condition_variable changed;
        bool isReleased = false;
        int hanging = 0;
    };

    static void hangIn(State& state, const std::filesystem::path& path) {
        if (!path.native().starts_with(state.folder.native()))
            return;
        std::unique_lock lock(state.mutex);
        ++state.hanging;
        state.changed.wait(lock, [&state] { return state.isReleased; });
        --state.hanging;
        state.changed.notify_all();
    }

    std::shared_ptr<State> m_state;
};

class FilePanels : public testing::Test {
protected:
    FilePanels() {
        for (const char* folder : {"dead", "good"})
            std::filesystem::create_directory(path(folder));
        for (const char* file : {"good/10.jpg", "good/2.JPG", "good/notes.txt", "good/.hidden.jpg"})
            writeFile(path(file), "a photo");
    }

    std::filesystem::path path(const std::string& name) const { return root.path() / name; }
    OpenPanel photos() const { return {.allowedFileTypes = {"jpg", "png"}}; }

    static QString messageOf(FilePanel& panel) { return panel.findChild<FolderView*>()->message(); }
    static QLineEdit& nameOf(FilePanel& panel) { return *panel.findChild<QLineEdit*>(u"fileNameEdit"_s); }
    static void press(FilePanel& panel, const QString& title) {
        for (QPushButton* button : panel.findChildren<QPushButton*>())
            if (button->text() == title)
                return button->click();
        ADD_FAILURE() << "no button " << title.toStdString();
    }

    TemporaryFolder root;
    FakeDialogs dialogs;
};

TEST_F(FilePanels, ListFoldersThenPhotosInTheirNaturalOrder) {
    std::filesystem::create_directory(path("good/inner"));
    std::filesystem::create_symlink(path("good/10.jpg"), path("good/link.jpg"));
    std::filesystem::create_directory_symlink(path("dead"), path("good/elsewhere"));
    std::filesystem::create_symlink(path("nothing"), path("good/broken.jpg"));
    OpenFilePanel panel(photos(), path("good"), dialogs);
    test::waitUntilListed(panel);
    EXPECT_EQ(test::namesIn(panel),
              QStringList({u"elsewhere"_s, u"inner"_s, u"2.JPG"_s, u"10.jpg"_s, u"link.jpg"_s}));
    test::listOf(panel).sortByColumn(FolderModel::Name, Qt::DescendingOrder);
    EXPECT_EQ(test::namesIn(panel),
              QStringList({u"inner"_s, u"elsewhere"_s, u"link.jpg"_s, u"10.jpg"_s, u"2.JPG"_s}));
}

TEST_F(FilePanels, ShowSizesAndTimesInFullInEveryLanguage) {
    const FileAccess access{.list = [](const std::filesystem::path&, const std::vector<std::string>&,
                                       const EntriesFound& found) {
        // 28 December 2026, 22:58 UTC
        found({{.name = "a.jpg", .isFolder = false, .size = 888'888'888, .modifiedSeconds = 1'798'498'680}});
        return std::error_code();
    }};
    for (const QString& language : {u"en_US"_s, u"de"_s, u"es"_s, u"fr"_s, u"it"_s, u"ja"_s, u"nl"_s, u"pl"_s,
                                    u"pt_BR"_s, u"zh_CN"_s}) {
        QLocale::setDefault(QLocale(language));
        OpenFilePanel panel(photos(), path("good"), dialogs, nullptr, access);
        panel.show();
        test::waitUntilListed(panel);
        QApplication::processEvents();
        const QAbstractItemView& list = test::listOf(panel); // its sizeHintForColumn is public
        const QHeaderView& header = *test::listOf(panel).header();
        for (const int column : {FolderModel::Size, FolderModel::Modified}) {
            const int needed = std::max(list.sizeHintForColumn(column), header.sectionSizeHint(column));
            EXPECT_EQ(header.sectionSize(column), needed) << language.toStdString(); // the rest is for names
            // Ending at the right, the text has a gap on its left.
            const QModelIndex cell = list.model()->index(0, column);
            const int width = list.fontMetrics().horizontalAdvance(cell.data().toString());
            EXPECT_TRUE(cell.data(Qt::TextAlignmentRole).toInt() & Qt::AlignRight);
            EXPECT_GE(header.sectionSize(column) - width, kMinGap) << language.toStdString();
        }
    }
    QLocale::setDefault(QLocale::system());
}

TEST_F(FilePanels, AlignTheTitlesOfTheColumnsWithTheirCells) {
    OpenFilePanel panel(photos(), path("good"), dialogs);
    panel.show();
    test::waitUntilListed(panel);
    const QAbstractItemModel& model = *test::listOf(panel).model();
    ASSERT_GT(model.rowCount(), 0);
    for (const auto& [column, alignment] :
         {std::pair(FolderModel::Name, Qt::AlignLeft), std::pair(FolderModel::Size, Qt::AlignRight),
          std::pair(FolderModel::Modified, Qt::AlignRight)}) {
        const int cell = model.index(0, column).data(Qt::TextAlignmentRole).toInt();
        const int title = model.headerData(column, Qt::Horizontal, Qt::TextAlignmentRole).toInt();
        EXPECT_EQ(cell & Qt::AlignHorizontal_Mask, alignment) << column;
        EXPECT_EQ(title & Qt::AlignHorizontal_Mask, alignment) << column;
    }
}

TEST_F(FilePanels, ShowThatAFolderHasNoPhotos) {
    OpenFilePanel panel(photos(), path("dead"), dialogs);
    panel.show();
    test::waitUntilListed(panel);
    EXPECT_EQ(messageOf(panel), u"There are no photos here."_s);
}

TEST_F(FilePanels, ShowWhyAFolderCannotBeListed) {
    FileAccess access;
    access.list = [this](const std::filesystem::path& folder, const std::vector<std::string>& extensions,
                         const EntriesFound& found) {
        return folder == path("dead") ? std::make_error_code(std::errc::permission_denied)
                                      : listFolder(folder, extensions, found);
    };
    OpenFilePanel panel(photos(), path("dead"), dialogs, nullptr, access);
    panel.show();
    test::waitUntilListed(panel);
    EXPECT_EQ(messageOf(panel), u"This folder cannot be listed: Permission denied"_s);
    nameOf(panel).setText(u"../good"_s);
    test::accept(panel);
    test::waitUntilListed(panel);
    EXPECT_EQ(panel.folder(), path("good"));
    EXPECT_EQ(test::namesIn(panel).size(), 2);
    EXPECT_EQ(messageOf(panel), QString());
}

TEST(FolderListing, ReturnsTheSystemsErrors) {
    const TemporaryFolder root;
    const auto none = [](const std::vector<FolderEntry>&) {};
    EXPECT_EQ(listFolder(root.path() / "missing", {}, none), std::errc::no_such_file_or_directory);
    writeFile(root.path() / "file", "no folder");
    EXPECT_EQ(listFolder(root.path() / "file", {}, none), std::errc::not_a_directory);
    if (::geteuid() == 0)
        GTEST_SKIP() << "root may list every folder";
    std::filesystem::permissions(root.path(), std::filesystem::perms::none);
    const std::error_code error = listFolder(root.path(), {}, none);
    std::filesystem::permissions(root.path(), std::filesystem::perms::owner_all);
    EXPECT_EQ(error, std::errc::permission_denied);
}

TEST_F(FilePanels, ShowThatAHangingFolderIsBeingReadAndCanOpenAnother) {
    const HangingAccess file(path("dead"));
    OpenFilePanel panel(photos(), path("dead"), dialogs, nullptr, file.access());
    panel.show();
    EXPECT_TRUE(QTest::qWaitFor([&] { return messageOf(panel) == u"Reading the folder…"_s; }));
    EXPECT_GE(file.hanging(), 1);
    nameOf(panel).setText(QString::fromStdString(path("good")));
    test::accept(panel);
    test::waitUntilListed(panel);
    EXPECT_EQ(test::namesIn(panel), QStringList({u"2.JPG"_s, u"10.jpg"_s}));
    nameOf(panel).setText(u"2.JPG"_s);
    test::accept(panel);
    EXPECT_EQ(panel.chosenPath(), path("good/2.JPG"));
}

TEST_F(FilePanels, CanOpenTheParentOfAHangingFolder) {
    const HangingAccess file(path("dead"));
    OpenFilePanel panel(photos(), path("dead"), dialogs, nullptr, file.access());
    panel.show();
    test::activate(panel);
    QTest::keyClick(&panel, Qt::Key_Up, Qt::AltModifier);
    test::waitUntilListed(panel);
    EXPECT_EQ(panel.folder(), root.path());
    EXPECT_EQ(test::namesIn(panel), QStringList({u"dead"_s, u"good"_s})) << "listed without accessing it";
}

TEST_F(FilePanels, CloseAtOnceWhenCancelledThoughTheFolderHangs) {
    const HangingAccess file(path("dead"));
    const auto start = std::chrono::steady_clock::now();
    {
        OpenFilePanel panel(photos(), path("dead"), dialogs, nullptr, file.access());
        panel.show();
        EXPECT_TRUE(QTest::qWaitFor([&] { return file.hanging() > 0; }));
        press(panel, u"Cancel"_s);
        EXPECT_FALSE(panel.isVisible());
        EXPECT_EQ(panel.result(), QDialog::Rejected);
    }
    EXPECT_GE(file.hanging(), 1) << "the panel did not wait for it";
    EXPECT_LT(std::chrono::steady_clock::now() - start, kMaxReaction);
}

TEST_F(FilePanels, StayResponsiveWhileAPathHangs) {
    const HangingAccess file(path("dead"));
    OpenFilePanel panel(photos(), path("good"), dialogs, nullptr, file.access());
    panel.show();
    test::waitUntilListed(panel);
    nameOf(panel).setText(QString::fromStdString(path("dead/a.jpg")));
    panel.accept();
    EXPECT_TRUE(QTest::qWaitFor([&] { return file.hanging() == 1; }));
    EXPECT_TRUE(panel.isChecking());
    EXPECT_TRUE(panel.isVisible());
    nameOf(panel).setText(u"10.jpg"_s); // cancels the check of the other path
    EXPECT_FALSE(panel.isChecking());
    test::accept(panel);
    EXPECT_EQ(panel.chosenPath(), path("good/10.jpg"));
}

TEST_F(FilePanels, ForSavingStayResponsiveToo) {
    const HangingAccess file(path("dead"));
    SaveFilePanel panel({.allowedFileTypes = {"jpg"}, .nameFieldStringValue = "new.jpg"}, path("dead"), {},
                        dialogs, nullptr, file.access());
    panel.show();
    panel.accept();
    EXPECT_TRUE(QTest::qWaitFor([&] { return file.hanging() >= 2; }));
    nameOf(panel).setText(QString::fromStdString(path("good")));
    test::accept(panel);
    EXPECT_EQ(panel.folder(), path("good"));
    EXPECT_EQ(nameOf(panel).text(), u"new.jpg"_s) << "the proposed name stays";
    test::accept(panel);
    EXPECT_EQ(panel.chosenPath(), path("good/new.jpg"));
}

// Late results from an abandoned folder are ignored.
TEST_F(FilePanels, IgnoreAFolderThatAnswersLate) {
    auto file = std::make_unique<HangingAccess>(path("dead"));
    writeFile(path("dead/late.jpg"), "a photo");
    OpenFilePanel panel(photos(), path("dead"), dialogs, nullptr, file->access());
    panel.show();
    EXPECT_TRUE(QTest::qWaitFor([&] { return file->hanging() == 1; }));
    nameOf(panel).setText(QString::fromStdString(path("good")));
    test::accept(panel);
    test::waitUntilListed(panel);
    file.reset();
    QTest::qWait(50);
    EXPECT_EQ(test::namesIn(panel), QStringList({u"2.JPG"_s, u"10.jpg"_s}));
    EXPECT_EQ(panel.folder(), path("good"));
}

TEST_F(FilePanels, StartInTheNearestFolderThatExists) {
    OpenFilePanel panel(photos(), path("good/gone/for good"), dialogs);
    panel.show();
    EXPECT_TRUE(QTest::qWaitFor([&] { return panel.folder() == path("good"); }));
    test::waitUntilListed(panel);
    EXPECT_EQ(test::namesIn(panel).size(), 2);
}

TEST_F(FilePanels, CanBeUsedWithTheKeyboardAlone) {
    OpenFilePanel panel(photos(), root.path(), dialogs);
    panel.show();
    test::activate(panel);
    test::waitUntilListed(panel);
    EXPECT_EQ(panel.focusWidget(), &nameOf(panel));
    QTreeView& list = test::listOf(panel);
    list.setFocus();
    list.setCurrentIndex(list.model()->index(1, 0));
    QTest::keyClick(&list, Qt::Key_Return);
    test::waitUntilListed(panel);
    EXPECT_EQ(panel.folder(), path("good"));
    EXPECT_TRUE(panel.isVisible());
    QTest::keyClick(&list, Qt::Key_Backspace);
    test::waitUntilListed(panel);
    EXPECT_EQ(panel.folder(), root.path());
    list.setCurrentIndex(list.model()->index(1, 0));
    QTest::keyClick(&list, Qt::Key_Return);
    test::waitUntilListed(panel);
    list.setCurrentIndex(list.model()->index(0, 0));
    EXPECT_EQ(nameOf(panel).text(), u"2.JPG"_s);
    QTest::keyClick(&list, Qt::Key_Return);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !panel.isVisible(); }));
    EXPECT_EQ(panel.chosenPath(), path("good/2.JPG"));
}

// In the list, Return opens a folder and must not save under the proposed name.
TEST_F(FilePanels, DoNotSaveWhenReturnOpensAFolder) {
    SaveFilePanel panel({.allowedFileTypes = {"jpg"}, .nameFieldStringValue = "new.jpg"}, root.path(), {},
                        dialogs);
    panel.show();
    test::activate(panel);
    test::waitUntilListed(panel);
    QTreeView& list = test::listOf(panel);
    list.setFocus();
    EXPECT_EQ(nameOf(panel).text(), u"new.jpg"_s);
    list.setCurrentIndex(list.model()->index(1, 0));
    QTest::keyClick(&list, Qt::Key_Return);
    test::waitUntilListed(panel);
    EXPECT_EQ(panel.folder(), path("good"));
    EXPECT_TRUE(panel.isVisible());
    EXPECT_FALSE(panel.isChecking());
    EXPECT_EQ(nameOf(panel).text(), u"new.jpg"_s);
}

TEST_F(FilePanels, OpenAncestorsAndPlaces) {
    OpenFilePanel panel(photos(), path("good"), dialogs);
    panel.show();
    auto* const ancestors = panel.findChild<QComboBox*>();
    EXPECT_EQ(ancestors->currentText().toStdString(), path("good").string());
    EXPECT_EQ(ancestors->itemText(ancestors->count() - 1), u"/"_s);
    Q_EMIT ancestors->activated(1);
    EXPECT_EQ(panel.folder(), root.path());
    Q_EMIT ancestors->activated(ancestors->count() - 1);
    EXPECT_EQ(panel.folder(), "/");
    auto* const places = panel.findChild<QListWidget*>();
    Q_EMIT places->itemActivated(places->item(1));
    EXPECT_EQ(panel.folder(), QDir::homePath().toStdString());
}

} // namespace
} // namespace complexion
