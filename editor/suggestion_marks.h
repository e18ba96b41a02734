// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/suggestions.h"
#include "editor/view_controller.h"
#include "view/blemish_marks.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

namespace complexion {

/// Searches the photo for blemishes whenever the user pauses, so that they are known when asked for, and
/// marks them on the photo while that is on.
class SuggestionMarks : public QObject {
    Q_OBJECT

public:
    static constexpr std::size_t kStrongest = 10;

    /// `controller` and `suggestions` must outlive this object; the marks are owned by their view.
    SuggestionMarks(ViewController& controller, Suggestions& suggestions, BlemishMarks* marks,
                    QObject* parent = nullptr);

    /// Turns the marks on or off; announces how many there are.
    void setShown(bool on);
    /// Limits the marks to the kStrongest strongest blemishes.
    void setOnlyStrongest(bool on);

Q_SIGNALS:
    /// A text for assistive technology to speak.
    void announced(const QString& text);

private:
    void imageMayHaveChanged();
    void search();
    /// Marks what is known about the working image.
    void refresh();
    void announceCount();

    ViewController& m_controller;
    Suggestions& m_suggestions;
    QPointer<BlemishMarks> m_marks;
    Image m_image;      // the working image at the last change
    QTimer m_restTimer; // the search begins when it fires
    bool m_isShown = false;
    bool m_isOnlyStrongest = false;
    bool m_mustAnnounce = false; // once the search has ended
};

} // namespace complexion
