// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/platform.h"
#include "editor/repair.h"

#include <QObject>

#include <memory>
#include <optional>
#include <vector>

namespace complexion {

/// Computes previews of repairs in the background, one at a time. Only the latest question is answered;
/// results for earlier ones are discarded.
class RepairPreview : public QObject {
    Q_OBJECT

public:
    struct Question {
        Image image;
        Repair repair;
        std::vector<Point> path; // of a stroke in the image; a single point is a click
        bool isSameAs(const Question& other) const {
            return image.isSameObject(other.image) && repair == other.repair && path == other.path;
        }
    };

    /// `queues` must outlive all work submitted to it.
    explicit RepairPreview(Queues& queues, QObject* parent = nullptr);
    ~RepairPreview() override;

    /// Sets the question; nothing withdraws it. A question equal to the current one is not computed again.
    void ask(std::optional<Question> question);

    /// The answer to the current question; null until it is computed.
    const Result<Repaired>* answer() const { return m_answer ? &*m_answer : nullptr; }

Q_SIGNALS:
    void answered();

private:
    void compute();
    void take(const Question& question, Result<Repaired> result);

    Queues& m_queues;
    std::optional<Question> m_question;
    std::optional<Result<Repaired>> m_answer;
    bool m_isComputing = false;
    /// Owned by the preview alone; background work sees from its expired weak pointer that it has been
    /// destroyed.
    std::shared_ptr<RepairPreview*> m_self;
};

} // namespace complexion
