// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/suggestions.h"

#include "imaging/base/parallel.h"

#include <utility>

namespace complexion {

namespace {

/// A change of more than this part of the picture is not an edit, but another photo.
constexpr std::int64_t kEditShare = 4;

std::shared_ptr<const BlemishFinder> searchAgain(const Image& before, const BlemishFinder& finder,
                                                 const Image& image) {
    const PixelRect changed = before.difference(image);
    if (before.pixelSize() != image.pixelSize() || changed.area() * kEditShare > image.pixelSize().area())
        return std::make_shared<const BlemishFinder>(image);
    auto updated = std::make_shared<BlemishFinder>(finder);
    updated->update(image, changed);
    return updated;
}

} // namespace

Suggestions::Suggestions(Queues& queues, QObject* parent)
    : QObject(parent), m_queues(queues), m_self(std::make_shared<Suggestions*>(this)) {}

void Suggestions::search(const Image& image) {
    m_wanted = image;
    if (!m_isSearching && !on(image))
        compute();
}

const std::vector<SuggestedBlemish>* Suggestions::on(const Image& image) const {
    return m_finder && m_searched.isSameObject(image) ? &m_finder->suggestions() : nullptr;
}

void Suggestions::compute() {
    m_isSearching = true;
    const std::weak_ptr<Suggestions*> self = m_self;
    m_queues.submitBackground(
        [self, &queues = m_queues, image = m_wanted, before = m_searched, finder = m_finder] {
            if (self.expired())
                return;
            const OneCoreFree forClicks;
            auto found =
                finder ? searchAgain(before, *finder, image) : std::make_shared<const BlemishFinder>(image);
            queues.submitMain([self, image, found = std::move(found)] {
                if (const auto suggestions = self.lock())
                    (*suggestions)->take(image, found);
            });
        });
}

void Suggestions::take(const Image& searched, std::shared_ptr<const BlemishFinder> finder) {
    m_isSearching = false;
    m_searched = searched;
    m_finder = std::move(finder);
    if (on(m_wanted))
        Q_EMIT found();
    else
        compute();
}

} // namespace complexion
