// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/portal_panel.h"

#include "editor/file_names.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QFile>
#include <QGuiApplication>
#include <QRandomGenerator>
#include <QUrl>
#include <QWindow>

#include <utility>

namespace complexion {

namespace {

using namespace Qt::StringLiterals;

/// A condition for file names: its kind (kGlob) and its text, in the portal's types.
struct PortalPattern {
    uint kind = 0;
    QString text;
};

/// A named list of conditions, one of which a file's name must meet.
struct PortalFilter {
    QString name;
    QList<PortalPattern> patterns;
};

// How Qt writes and reads these types.
QDBusArgument& operator<<(QDBusArgument& argument, const PortalPattern& pattern) {
    argument.beginStructure();
    argument << pattern.kind << pattern.text;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, PortalPattern& pattern) {
    argument.beginStructure();
    argument >> pattern.kind >> pattern.text;
    argument.endStructure();
    return argument; // NOLINT(bugprone-return-const-ref-from-parameter): Qt's signature
}

QDBusArgument& operator<<(QDBusArgument& argument, const PortalFilter& filter) {
    argument.beginStructure();
    argument << filter.name << filter.patterns;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, PortalFilter& filter) {
    argument.beginStructure();
    argument >> filter.name >> filter.patterns;
    argument.endStructure();
    return argument; // NOLINT(bugprone-return-const-ref-from-parameter): Qt's signature
}

const QString kService = u"org.freedesktop.portal.Desktop"_s;
const QString kPath = u"/org/freedesktop/portal/desktop"_s;
constexpr uint kGlob = 0;
constexpr uint kChosen = 0; // the response for a choice; 1 is a cancelled dialog, 2 any other end

/// Matches an extension in any letter case: "*.[jJ][pP][gG]".
QString globFor(const std::string& extension) {
    QString glob = u"*."_s;
    for (const QChar letter : QString::fromStdString(extension))
        glob += u"[%1%2]"_s.arg(letter.toLower()).arg(letter.toUpper());
    return glob;
}

/// The local path of the portal's answer, byte for byte; empty if it has none.
std::filesystem::path pathIn(const QVariantMap& results) {
    const QStringList addresses = results.value(u"uris"_s).toStringList();
    if (addresses.isEmpty())
        return {};
    const QUrl address = QUrl::fromEncoded(addresses.first().toUtf8());
    if (!address.isLocalFile())
        return {};
    return QByteArray::fromPercentEncoding(address.path(QUrl::FullyEncoded).toLatin1()).toStdString();
}

/// The window's name for the portal, which places its dialog above it; empty on Wayland.
QString handleOf(const QWidget* window) {
    const bool isX11 = QGuiApplication::platformName() == u"xcb"_s;
    return isX11 && window ? u"x11:%1"_s.arg(window->window()->winId(), 0, 16) : QString();
}

} // namespace

bool PortalPanel::isWanted() {
    return !qEnvironmentVariableIsEmpty("XDG_CURRENT_DESKTOP") || QFile::exists(u"/.flatpak-info"_s);
}

PortalPanel::PortalPanel(QString title, QString acceptTitle, std::filesystem::path folder,
                         std::vector<std::string> extensions, Dialogs& dialogs, QWidget* parent)
    : QDialog(parent),
      m_title(std::move(title)),
      m_acceptTitle(std::move(acceptTitle)),
      m_folder(std::move(folder)),
      m_extensions(std::move(extensions)),
      m_dialogs(dialogs) {
    setAttribute(Qt::WA_DontShowOnScreen);
    qDBusRegisterMetaType<PortalPattern>();
    qDBusRegisterMetaType<QList<PortalPattern>>();
    qDBusRegisterMetaType<PortalFilter>();
    qDBusRegisterMetaType<QList<PortalFilter>>();
    // A portal that crashes sends no answer.
    auto* const watcher = new QDBusServiceWatcher(kService, QDBusConnection::sessionBus(),
                                                  QDBusServiceWatcher::WatchForUnregistration, this);
    connect(watcher, &QDBusServiceWatcher::serviceUnregistered, this, &QDialog::reject);
}

PortalPanel::PortalPanel(const OpenPanel& panel, std::filesystem::path folder, Dialogs& dialogs,
                         QWidget* parent)
    : PortalPanel(OpenFilePanel::tr("Select image"), OpenFilePanel::tr("Open"), std::move(folder),
                  panel.allowedFileTypes, dialogs, parent) {}

PortalPanel::PortalPanel(const SavePanel& panel, std::filesystem::path folder, SaveFilePanel::Guarded guarded,
                         Dialogs& dialogs, QWidget* parent)
    : PortalPanel(SaveFilePanel::tr("Save image"), SaveFilePanel::tr("Save"), std::move(folder),
                  panel.allowedFileTypes, dialogs, parent) {
    m_isSaving = true;
    m_name = shownName(panel.nameFieldStringValue);
    m_guarded = std::move(guarded);
}

int PortalPanel::exec() {
    ask();
    return m_isUnavailable ? Rejected : QDialog::exec();
}

void PortalPanel::ask() {
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        m_isUnavailable = true;
        return;
    }
    // The portal answers with a signal of an object whose path is known beforehand, so that no answer is
    // lost.
    const QString token = u"complexion%1"_s.arg(QRandomGenerator::global()->generate());
    const QString sender = bus.baseService().mid(1).replace(u'.', u'_');
    QDBusConnection(bus).connect(kService, kPath + u"/request/%1/%2"_s.arg(sender, token),
                                 u"org.freedesktop.portal.Request"_s, u"Response"_s, this,
                                 SLOT(answered(uint, QVariantMap)));
    QDBusMessage call = QDBusMessage::createMethodCall(
        kService, kPath, u"org.freedesktop.portal.FileChooser"_s, m_isSaving ? u"SaveFile"_s : u"OpenFile"_s);
    call << handleOf(parentWidget()) << m_title << options(token);
    auto* const pending = new QDBusPendingCallWatcher(bus.asyncCall(call), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this, &PortalPanel::calledBack);
}

QVariantMap PortalPanel::options(const QString& token) const {
    PortalFilter filter;
    QStringList types;
    for (const std::string& extension : m_extensions) {
        filter.patterns += {kGlob, globFor(extension)};
        types += QString::fromStdString(extension);
    }
    filter.name = FilePanel::tr("Photos: %1").arg(types.join(u", "_s));
    QByteArray folder = QByteArray::fromStdString(m_folder.native());
    folder += '\0'; // the portal's type for paths ends with it
    QVariantMap options = {{u"handle_token"_s, token},
                           {u"accept_label"_s, m_acceptTitle},
                           {u"modal"_s, true},
                           {u"current_folder"_s, folder},
                           {u"filters"_s, QVariant::fromValue(QList<PortalFilter>{filter})}};
    if (m_isSaving)
        options.insert(u"current_name"_s, m_name);
    return options;
}

void PortalPanel::calledBack(QDBusPendingCallWatcher* call) {
    call->deleteLater();
    if (!call->isError())
        return;
    m_isUnavailable = true;
    reject();
}

void PortalPanel::answered(uint response, const QVariantMap& results) {
    if (response != kChosen)
        return reject();
    const std::filesystem::path path = pathIn(results);
    if (!m_isSaving)
        return choose(path);
    if (path.empty()) { // on a server
        m_dialogs.runAlert({.messageText = "",
                            .informativeText = QT_TRANSLATE_NOOP("Alerts", "Could not save the image."),
                            .style = AlertStyle::Warning,
                            .buttons = {QT_TRANSLATE_NOOP("Alerts", "OK")}});
        return reject();
    }
    m_check.start(
        [this, path, extensions = m_extensions, guarded = m_guarded](const BackgroundTask::Post& post) {
            const SaveFilePanel::Target target = SaveFilePanel::targetAt(path, extensions, guarded, fileKind);
            post([this, target] { save(target); });
        });
}

void PortalPanel::save(const SaveFilePanel::Target& target) {
    m_folder = target.path.parent_path();
    m_name = shownName(target.path.filename());
    // The desktop's dialog has asked whether to replace a file, under the name that was typed.
    const bool mustAsk = target.isSource || target.isCompleted;
    if (!target.isFolder && SaveFilePanel::mayWrite(target, mustAsk, m_dialogs))
        choose(target.path);
    else
        ask();
}

void PortalPanel::choose(const std::filesystem::path& path) {
    m_chosen = path;
    accept();
}

} // namespace complexion
