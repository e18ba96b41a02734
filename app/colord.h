// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>
#include <QVariant>

#include <functional>

class QDBusMessage;

namespace complexion {

/// The desktop's colour management service. Nothing here waits for it.
class Colord : public QObject {
    Q_OBJECT

public:
    explicit Colord(QObject* parent = nullptr);

    /// Asks for the file of the profile of the monitor at `output`, a connector's name such as "DP-1".
    /// Another question takes the place of one that has not been answered yet.
    void ask(const QString& output);

Q_SIGNALS:
    /// The answer; empty if the service does not run or knows none.
    void answered(const QString& path);
    /// A monitor may have another profile now.
    void changed();

private:
    using Receiver = std::function<void(const QVariant& value)>;

    /// Calls the service, and then `receiver` with the first value of its answer.
    void call(const QDBusMessage& message, const Receiver& receiver);
    void askProperty(const QString& object, const QString& interface, const QString& name,
                     const Receiver& receiver);
    void askProfiles(const QString& device);

    int m_question = 0;
};

} // namespace complexion
