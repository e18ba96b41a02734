// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/platform.h"
#include "editor/repair.h"

#include <QObject>

#include <memory>
#include <optional>

namespace complexion {

/// Foresees repairs in the background. Only the last question counts: it is answered as soon as the one that
/// is being computed is done, and an answer to any other is dropped.
class RepairPreview : public QObject {
    Q_OBJECT

public:
    struct Question {
        Image image;
        Repair repair;
        Point point; // in the image
        bool isSameAs(const Question& other) const {
            return image.isSameObject(other.image) && repair == other.repair && point == other.point;
        }
    };

    /// `queues` outlives the preview's work.
    explicit RepairPreview(Queues& queues, QObject* parent = nullptr);
    ~RepairPreview() override;

    /// Asks what becomes of a repair; nothing takes the last question back. The same question is not computed
    /// again.
    void ask(std::optional<Question> question);

    /// The answer to the last question; null before it is there.
    const RepairReport* answer() const { return m_answer ? &*m_answer : nullptr; }

Q_SIGNALS:
    void answered();

private:
    void compute();
    void take(const Question& question, RepairReport report);

    Queues& m_queues;
    std::optional<Question> m_question;
    std::optional<RepairReport> m_answer;
    bool m_isComputing = false;
    /// Gone with the preview: tells work that comes back that nobody waits for it.
    std::shared_ptr<RepairPreview*> m_self;
};

} // namespace complexion
