// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/colord.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

namespace complexion {

namespace {

using namespace Qt::StringLiterals;

const QString kService = u"org.freedesktop.ColorManager"_s;
const QString kPath = u"/org/freedesktop/ColorManager"_s;

} // namespace

Colord::Colord(QObject* parent) : QObject(parent) {
    QDBusConnection bus = QDBusConnection::systemBus();
    for (const char* const signal : {"DeviceAdded", "DeviceChanged", "DeviceRemoved"})
        bus.connect(kService, kPath, kService, QString::fromLatin1(signal), this, SIGNAL(changed()));
}

void Colord::ask(const QString& output) {
    ++m_question;
    QDBusMessage message =
        QDBusMessage::createMethodCall(kService, kPath, kService, u"FindDeviceByProperty"_s);
    message << u"XRANDR_name"_s << output;
    call(message, [this](const QVariant& device) { askProfiles(device.value<QDBusObjectPath>().path()); });
}

void Colord::askProfiles(const QString& device) {
    askProperty(device, u"Device"_s, u"Profiles"_s, [this](const QVariant& value) {
        QList<QDBusObjectPath> profiles;
        if (value.canConvert<QDBusArgument>())
            value.value<QDBusArgument>() >> profiles;
        if (profiles.isEmpty())
            return Q_EMIT answered({});
        // The first one is in use.
        askProperty(profiles.first().path(), u"Profile"_s, u"Filename"_s,
                    [this](const QVariant& path) { Q_EMIT answered(path.toString()); });
    });
}

void Colord::askProperty(const QString& object, const QString& interface, const QString& name,
                         const Receiver& receiver) {
    QDBusMessage message =
        QDBusMessage::createMethodCall(kService, object, u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    message << kService + u'.' + interface << name;
    call(message, [receiver](const QVariant& value) { receiver(value.value<QDBusVariant>().variant()); });
}

void Colord::call(const QDBusMessage& message, const Receiver& receiver) {
    QDBusMessage quiet = message;
    quiet.setAutoStartService(false); // a desktop that uses the service has started it
    auto* const pending = new QDBusPendingCallWatcher(QDBusConnection::systemBus().asyncCall(quiet), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this,
            [this, pending, receiver, question = m_question] {
                pending->deleteLater();
                if (question != m_question)
                    return;
                const QList<QVariant> values = pending->reply().arguments();
                if (pending->isError() || values.isEmpty())
                    Q_EMIT answered({});
                else
                    receiver(values.first());
            });
}

} // namespace complexion
