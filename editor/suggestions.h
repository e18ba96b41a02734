// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/platform.h"
#include "imaging/finding/blemish_finder.h"

#include <QObject>

#include <memory>

namespace complexion {

/// Finds blemishes on the working image in the background: the first time on all of it, later only where an
/// edit changed it.
class Suggestions : public QObject {
    Q_OBJECT

public:
    /// `queues` must outlive all work submitted to it.
    explicit Suggestions(Queues& queues, QObject* parent = nullptr);

    /// Searches `image`, unless it was searched last. If a search is running, this one follows it.
    void search(const Image& image);

    /// The blemishes on `image` in descending order of score; null until it has been searched.
    const std::vector<SuggestedBlemish>* on(const Image& image) const;

Q_SIGNALS:
    /// A search has ended, and no other one is pending.
    void found();

private:
    void compute();
    void take(const Image& searched, std::shared_ptr<const BlemishFinder> finder);

    Queues& m_queues;
    Image m_wanted;
    Image m_searched;
    std::shared_ptr<const BlemishFinder> m_finder; // of m_searched
    bool m_isSearching = false;
    /// Owned by this object alone; background work sees from its expired weak pointer that it has been
    /// destroyed.
    std::shared_ptr<Suggestions*> m_self;
};

} // namespace complexion
