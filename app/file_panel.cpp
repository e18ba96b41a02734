// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/file_panel.h"

#include "app/icons.h"
#include "editor/file_names.h"

#include <QDir>
#include <QFile>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QStandardPaths>
#include <QToolButton>
#include <QVBoxLayout>

#include <chrono>
#include <system_error>
#include <utility>

namespace complexion {

namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

constexpr QSize kUsualSize(860, 540); // at the usual text size
constexpr int kUsualLineHeight = 16;
constexpr QSize kScreenMargin(48, 72); // for the window frame and desktop panels
constexpr int kMargin = 16;
constexpr int kGap = 8;
constexpr int kPlacesWidthInLetters = 22;
constexpr int kMinButtonWidth = 88;
/// Faster checks show no message.
constexpr auto kStatusDelay = 150ms;

std::filesystem::path pathOf(const QString& text) {
    return QFile::encodeName(text).toStdString();
}

/// Removes dots and repeated slashes lexically, without the file system.
std::filesystem::path cleaned(const std::filesystem::path& folder) {
    std::filesystem::path clean = folder.lexically_normal();
    return clean.has_filename() || !clean.has_relative_path() ? clean : clean.parent_path();
}

} // namespace

FilePanel::FilePanel(const QString& title, const QString& acceptTitle, const std::filesystem::path& folder,
                     const std::vector<std::string>& extensions, FileAccess access, QWidget* parent)
    : QDialog(parent), m_access(std::move(access)), m_view(new FolderView(extensions, m_access)) {
    setWindowTitle(title);
    setAccessibleName(title);
    resize((kUsualSize * fontMetrics().height() / kUsualLineHeight)
               .boundedTo(screen()->availableSize() - kScreenMargin));
    QStringList types;
    for (const std::string& extension : extensions)
        types += QString::fromStdString(extension);
    m_usualStatus = tr("Photos: %1").arg(types.join(u", "_s));

    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    column->setSpacing(kGap);
    column->addLayout(makeFolderRow());
    auto* const lists = new QHBoxLayout;
    lists->setSpacing(kGap);
    m_places->setObjectName(u"places"_s);
    m_places->setAccessibleName(tr("Places"));
    m_places->setFixedWidth(fontMetrics().averageCharWidth() * kPlacesWidthInLetters);
    lists->addWidget(m_places);
    lists->addWidget(m_view, 1);
    column->addLayout(lists, 1);
    column->addLayout(makeNameRows(acceptTitle));

    connectLists();
    addUsualPlaces();
    open(cleaned(folder));
    m_isStarting = true;
    m_name->setFocus();
}

QLayout* FilePanel::makeFolderRow() {
    auto* const row = new QHBoxLayout;
    row->setSpacing(kGap);
    auto* const label = new QLabel(tr("Folder:"));
    label->setBuddy(m_ancestors);
    row->addWidget(label);
    m_ancestors->setAccessibleName(tr("Folder"));
    m_ancestors->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    connect(m_ancestors, &QComboBox::activated, this, [this](int index) {
        std::filesystem::path chosen = folder();
        for (int level = 0; level < index; ++level)
            chosen = chosen.parent_path();
        open(chosen);
    });
    row->addWidget(m_ancestors, 1);
    auto* const up = new QToolButton;
    up->setIcon(lineIcon(u"folder-up"_s));
    up->setIconSize(QSize(1, 1) * m_ancestors->fontMetrics().height());
    up->setAccessibleName(tr("Parent folder"));
    up->setToolTip(tr("Parent folder (Alt+Up)"));
    connect(up, &QToolButton::clicked, this, &FilePanel::openParent);
    connect(new QShortcut(Qt::ALT | Qt::Key_Up, this), &QShortcut::activated, this, &FilePanel::openParent);
    row->addWidget(up);
    return row;
}

QLayout* FilePanel::makeNameRows(const QString& acceptTitle) {
    auto* const rows = new QVBoxLayout;
    rows->setSpacing(kGap);
    auto* const nameRow = new QHBoxLayout;
    nameRow->setSpacing(kGap);
    auto* const label = new QLabel(tr("File name:"));
    label->setBuddy(m_name);
    nameRow->addWidget(label);
    m_name->setObjectName(u"fileNameEdit"_s);
    m_name->setAccessibleName(tr("File name"));
    nameRow->addWidget(m_name, 1);
    rows->addLayout(nameRow);

    auto* const buttonRow = new QHBoxLayout;
    buttonRow->setSpacing(kGap);
    m_status->setTextFormat(Qt::PlainText);
    m_status->setText(m_usualStatus);
    buttonRow->addWidget(m_status, 1);
    auto* const cancel = new QPushButton(tr("Cancel"));
    cancel->setMinimumWidth(kMinButtonWidth);
    cancel->setAutoDefault(false);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    buttonRow->addWidget(cancel);
    auto* const choice = new QPushButton(acceptTitle);
    choice->setMinimumWidth(kMinButtonWidth);
    choice->setDefault(true);
    connect(choice, &QPushButton::clicked, this, &FilePanel::accept);
    buttonRow->addWidget(choice);
    rows->addLayout(buttonRow);

    // An edit cancels the check of the previous text.
    connect(m_name, &QLineEdit::textChanged, this, [this] {
        m_selectedName.clear();
        finishChecking();
    });
    m_statusTimer.setSingleShot(true);
    m_statusTimer.setInterval(kStatusDelay);
    connect(&m_statusTimer, &QTimer::timeout, this, [this] { showStatus(tr("Looking for the file…")); });
    return rows;
}

void FilePanel::connectLists() {
    connect(m_view, &FolderView::selected, this, [this](const FolderEntry& entry) {
        if (entry.isFolder)
            return;
        m_name->setText(shownName(entry.name));
        m_selectedName = entry.name;
    });
    connect(m_view, &FolderView::activated, this, &FilePanel::activate);
    connect(m_view, &FolderView::parentRequested, this, &FilePanel::openParent);
    connect(m_view, &FolderView::ended, this, [this](std::error_code error) {
        const bool isMissing =
            error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory;
        const std::filesystem::path missing = folder();
        if (m_isStarting && isMissing && missing.has_relative_path()) {
            open(missing.parent_path());
            m_isStarting = true;
        }
    });
    const auto openPlace = [this](const QListWidgetItem* item) {
        open(item->data(Qt::UserRole).toByteArray().toStdString());
    };
    connect(m_places, &QListWidget::itemClicked, this, openPlace);
    connect(m_places, &QListWidget::itemActivated, this, openPlace);
}

void FilePanel::addPlace(const QString& title, const std::filesystem::path& folder) {
    auto* const item = new QListWidgetItem(title, m_places);
    item->setData(Qt::UserRole, QByteArray::fromStdString(folder.native()));
    item->setToolTip(shownName(folder));
}

/// Adds common folders for photos; most of them after a background check that they exist.
void FilePanel::addUsualPlaces() {
    addPlace(tr("Computer"), "/");
    const std::filesystem::path home = pathOf(QDir::homePath());
    addPlace(tr("Home"), home);
    std::vector<std::filesystem::path> folders;
    for (const auto location : {QStandardPaths::DesktopLocation, QStandardPaths::DownloadLocation,
                                QStandardPaths::PicturesLocation})
        folders.push_back(cleaned(pathOf(QStandardPaths::writableLocation(location))));
    m_findPlaces.start([this, home, folders, kindOf = m_access.kindOf](const BackgroundTask::Post& post) {
        for (const std::filesystem::path& folder : folders)
            if (folder != home && kindOf(folder) == FileKind::Folder)
                post([this, folder] { addPlace(shownName(folder.filename()), folder); });
    });
}

void FilePanel::open(const std::filesystem::path& folder) {
    m_isStarting = false;
    finishChecking();
    m_view->open(folder);
    if (m_proposal.isEmpty())
        m_name->clear(); // it named a file in the previous folder
    m_ancestors->clear();
    for (std::filesystem::path shown = folder;; shown = shown.parent_path()) {
        m_ancestors->addItem(shownName(shown));
        if (!shown.has_relative_path())
            break;
    }
}

void FilePanel::openParent() {
    if (folder().has_relative_path())
        open(folder().parent_path());
}

void FilePanel::enter(const std::filesystem::path& folder) {
    open(cleaned(folder));
    propose(m_proposal);
}

void FilePanel::propose(const QString& name) {
    m_proposal = name;
    m_name->setText(name);
    m_name->selectAll();
}

void FilePanel::activate(const FolderEntry& entry) {
    if (entry.isFolder)
        return open(folder() / entry.name);
    m_name->setText(shownName(entry.name));
    m_selectedName = entry.name;
    accept();
}

std::filesystem::path FilePanel::typedPath() const {
    const QString text = m_name->text();
    if (text.isEmpty())
        return {};
    if (!m_selectedName.empty())
        return folder() / m_selectedName;
    if (text.startsWith(u"~/"_s))
        return pathOf(QDir::homePath() + text.mid(1));
    return folder() / pathOf(text);
}

void FilePanel::accept() {
    const std::filesystem::path typed = typedPath();
    if (typed.empty())
        return;
    m_isChecking = true;
    m_statusTimer.start();
    m_check.start([this, job = check(typed)](const BackgroundTask::Post& post) {
        post([this, action = job()] {
            finishChecking();
            action();
        });
    });
}

void FilePanel::finishChecking() {
    m_check.abandon();
    m_isChecking = false;
    m_statusTimer.stop();
    showStatus(m_usualStatus);
}

void FilePanel::showStatus(const QString& status) {
    m_status->setText(status);
}

void FilePanel::choose(const std::filesystem::path& path) {
    m_chosen = path;
    QDialog::accept();
}

void FilePanel::keyPressEvent(QKeyEvent* event) {
    // In a list, Return activates the entry and must not press the default button as well.
    const QWidget* const focused = focusWidget();
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isReturn || (focused != m_places && focused != m_view->list()))
        QDialog::keyPressEvent(event);
}

} // namespace complexion
