// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/repair_preview.h"

#include <utility>

namespace complexion {

RepairPreview::RepairPreview(Queues& queues, QObject* parent)
    : QObject(parent), m_queues(queues), m_self(std::make_shared<RepairPreview*>(this)) {}

RepairPreview::~RepairPreview() = default;

void RepairPreview::ask(std::optional<Question> question) {
    if (question && m_question && question->isSameAs(*m_question))
        return;
    m_question = std::move(question);
    m_answer.reset();
    if (m_question && !m_isComputing)
        compute();
}

void RepairPreview::compute() {
    m_isComputing = true;
    const std::weak_ptr<RepairPreview*> self = m_self;
    m_queues.submitBackground([self, &queues = m_queues, question = *m_question] {
        if (self.expired())
            return;
        Result<Repaired> result = question.repair.applyTo(question.image, question.path);
        queues.submitMain([self, question, result = std::move(result)] {
            if (const auto preview = self.lock())
                (*preview)->take(question, result);
        });
    });
}

void RepairPreview::take(const Question& question, Result<Repaired> result) {
    m_isComputing = false;
    if (!m_question)
        return;
    if (!question.isSameAs(*m_question)) {
        compute();
        return;
    }
    m_answer = std::move(result);
    Q_EMIT answered();
}

} // namespace complexion
