// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/folder_view.h"

#include "app/icons.h"
#include "editor/file_names.h"

#include <QAccessible>
#include <QCollator>
#include <QDateTime>
#include <QGridLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLocale>
#include <QPixmap>
#include <QScrollBar>

#include <chrono>
#include <utility>

namespace complexion {

namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// Faster reads show no message, which would only flicker.
constexpr auto kSignDelay = 150ms;
constexpr int kMessageWidthInLetters = 40;
constexpr int kThumbnailLines = 3; // of text
/// After the last change or scrolling of the list.
constexpr auto kRest = 60ms;

/// Sizes and dates end at the right, each behind a gap.
QVariant alignmentOf(int column) {
    return {(column == FolderModel::Name ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter};
}

} // namespace

FolderModel::FolderModel() : m_folderIcon(lineIcon(u"folder"_s)), m_photoIcon(lineIcon(u"photo"_s)) {}

void FolderModel::clear(const std::filesystem::path& folder) {
    beginResetModel();
    m_folder = folder;
    m_entries.clear();
    endResetModel();
}

void FolderModel::add(const std::vector<FolderEntry>& entries) {
    if (entries.empty())
        return;
    beginInsertRows({}, rowCount(), rowCount() + static_cast<int>(entries.size()) - 1);
    m_entries.insert(m_entries.end(), entries.begin(), entries.end());
    endInsertRows();
}

int FolderModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_entries.size());
}

int FolderModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : kColumns;
}

QVariant FolderModel::data(const QModelIndex& index, int role) const {
    const FolderEntry& entry = this->entry(index.row());
    if (role == Qt::DecorationRole && index.column() == Name) {
        if (entry.isFolder)
            return m_folderIcon;
        const QImage thumbnail = FolderThumbnails::find(m_folder, entry);
        return thumbnail.isNull() ? m_photoIcon : QIcon(QPixmap::fromImage(thumbnail));
    }
    if (role == Qt::TextAlignmentRole)
        return alignmentOf(index.column());
    if (role == Qt::ToolTipRole && index.column() == Name)
        return shownName(entry.name);
    if (role != Qt::DisplayRole)
        return {};
    if (index.column() == Name)
        return shownName(entry.name);
    if (entry.isFolder)
        return {};
    if (index.column() == Size)
        return QLocale().formattedDataSize(entry.size, 1, QLocale::DataSizeSIFormat);
    return QLocale().toString(QDateTime::fromSecsSinceEpoch(entry.modifiedSeconds), QLocale::ShortFormat);
}

QVariant FolderModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation == Qt::Horizontal && role == Qt::TextAlignmentRole)
        return alignmentOf(section);
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    return section == Name ? tr("Name") : section == Size ? tr("Size") : tr("Modified");
}

bool SortedFolder::lessThan(const QModelIndex& left, const QModelIndex& right) const {
    const auto& model = static_cast<const FolderModel&>(*sourceModel());
    const FolderEntry& a = model.entry(left.row());
    const FolderEntry& b = model.entry(right.row());
    if (a.isFolder != b.isFolder)
        return a.isFolder == (sortOrder() == Qt::AscendingOrder);
    if (left.column() == FolderModel::Size && a.size != b.size)
        return a.size < b.size;
    if (left.column() == FolderModel::Modified && a.modifiedSeconds != b.modifiedSeconds)
        return a.modifiedSeconds < b.modifiedSeconds;
    static const QCollator collator = [] {
        // The "C" locale does not support the numeric mode.
        QCollator natural(QLocale().language() == QLocale::C ? QLocale(QLocale::English) : QLocale());
        natural.setNumericMode(true); // 2.jpg before 10.jpg
        natural.setCaseSensitivity(Qt::CaseInsensitive);
        return natural;
    }();
    const int order = collator.compare(shownName(a.name), shownName(b.name));
    return order != 0 ? order < 0 : a.name < b.name;
}

FolderView::FolderView(std::vector<std::string> extensions, FileAccess access, QWidget* parent)
    : QWidget(parent),
      m_extensions(std::move(extensions)),
      m_access(std::move(access)),
      m_list(new QTreeView),
      m_message(new QLabel),
      m_thumbnails(m_access) {
    m_sorted.setSourceModel(&m_model);
    m_list->setModel(&m_sorted);
    m_list->setObjectName(u"files"_s);
    m_list->setAccessibleName(tr("Files"));
    m_list->setRootIsDecorated(false);
    m_list->setItemsExpandable(false);
    m_list->setUniformRowHeights(true);
    m_list->setAllColumnsShowFocus(true);
    m_list->setSortingEnabled(true);
    m_list->sortByColumn(FolderModel::Name, Qt::AscendingOrder);
    m_list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_list->setTextElideMode(Qt::ElideMiddle);
    m_list->setTabKeyNavigation(false);
    m_list->installEventFilter(this);
    m_list->setIconSize(QSize(1, 1) * kThumbnailLines * fontMetrics().height());
    QHeaderView* const header = m_list->header();
    header->setStretchLastSection(false);
    header->setSectionResizeMode(FolderModel::Name, QHeaderView::Stretch);
    for (const int column : {FolderModel::Size, FolderModel::Modified})
        header->setSectionResizeMode(column, QHeaderView::ResizeToContents);

    m_message->setAlignment(Qt::AlignCenter);
    m_message->setWordWrap(true);
    m_message->setTextFormat(Qt::PlainText);
    m_message->setMinimumWidth(fontMetrics().averageCharWidth() * kMessageWidthInLetters);
    m_message->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_message->hide();
    auto* const layout = new QGridLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(m_list, 0, 0);
    layout->addWidget(m_message, 0, 0, Qt::AlignCenter);

    m_signTimer.setSingleShot(true);
    m_signTimer.setInterval(kSignDelay);
    connect(&m_signTimer, &QTimer::timeout, this, [this] { showMessage(tr("Reading the folder…")); });
    m_restTimer.setSingleShot(true);
    m_restTimer.setInterval(kRest);
    connect(&m_restTimer, &QTimer::timeout, this, &FolderView::makeThumbnails);
    const auto rest = [this] { m_restTimer.start(); };
    connect(&m_model, &QAbstractItemModel::rowsInserted, this, rest);
    connect(&m_sorted, &QAbstractItemModel::layoutChanged, this, rest);
    connect(m_list->verticalScrollBar(), &QScrollBar::valueChanged, this, rest);
    connect(m_list->verticalScrollBar(), &QScrollBar::rangeChanged, this, rest);
    connect(&m_thumbnails, &FolderThumbnails::made, m_list->viewport(), qOverload<>(&QWidget::update));
    connect(m_list->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
        const QModelIndexList rows = m_list->selectionModel()->selectedRows();
        if (!rows.isEmpty())
            Q_EMIT selected(FolderEntry(entryAt(rows.front())));
    });
    connect(m_list, &QTreeView::activated, this,
            [this](const QModelIndex& index) { Q_EMIT activated(FolderEntry(entryAt(index))); });
}

const FolderEntry& FolderView::entryAt(const QModelIndex& index) const {
    return m_model.entry(m_sorted.mapToSource(index).row());
}

void FolderView::open(const std::filesystem::path& folder) {
    m_folder = folder;
    m_isReading = true;
    m_model.clear(folder);
    m_message->hide();
    m_signTimer.start();
    m_reading.start(
        [this, list = m_access.list, folder, extensions = m_extensions](const BackgroundTask::Post& post) {
            const std::error_code error = list(folder, extensions, [&](std::vector<FolderEntry> entries) {
                post([this, entries = std::move(entries)] {
                    m_model.add(entries);
                    if (m_model.rowCount() > 0)
                        m_message->hide();
                });
            });
            post([this, error] { end(error); });
        });
}

void FolderView::makeThumbnails() {
    std::vector<FolderEntry> shown;
    const QRect area = m_list->viewport()->rect();
    for (QModelIndex index = m_list->indexAt(area.topLeft());
         index.isValid() && m_list->visualRect(index).top() <= area.bottom();
         index = m_list->indexBelow(index))
        shown.push_back(entryAt(index));
    m_thumbnails.make(m_folder, shown, static_cast<int>(m_list->iconSize().width() * devicePixelRatioF()));
}

void FolderView::end(std::error_code error) {
    m_isReading = false;
    m_signTimer.stop();
    m_message->hide();
    if (error)
        showMessage(tr("This folder cannot be listed: %1").arg(QString::fromLocal8Bit(error.message())));
    else
        showMessage(tr("There are no photos here."));
    Q_EMIT ended(error);
}

void FolderView::showMessage(const QString& text) {
    if (m_model.rowCount() > 0)
        return;
    m_message->setText(text);
    m_message->show();
    QAccessibleEvent announcement(m_message, QAccessible::Alert);
    QAccessible::updateAccessibility(&announcement);
}

bool FolderView::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Backspace) {
        Q_EMIT parentRequested();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace complexion
