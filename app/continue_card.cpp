// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/continue_card.h"

#include "app/cards.h"
#include "app/icons.h"

#include <QAbstractButton>
#include <QGridLayout>
#include <QPainter>

#include <algorithm>

namespace complexion {

namespace {

using namespace Qt::StringLiterals;

constexpr int kMargin = 16;
constexpr int kGap = 8;
constexpr int kIconSize = 20;
constexpr int kRowHeight = 44;
constexpr int kMaxNameWidth = 180; // points; longer names are elided
constexpr int kMaxTextWidth = 480; // points; longer lines are elided

/// A button with one line of text and an optional icon before it.
class LineButton : public QAbstractButton {
public:
    LineButton(const QString& text, const QString& icon, QWidget* parent)
        : QAbstractButton(parent), m_icon(icon) {
        setText(text);
        setAccessibleName(text);
        setFocusPolicy(Qt::TabFocus);
        setAttribute(Qt::WA_Hover);
        setCursor(Qt::PointingHandCursor);
    }

    QSize sizeHint() const override {
        const int text = std::min(fontMetrics().horizontalAdvance(this->text()), kMaxTextWidth);
        return {textLeft() + text + kMargin, std::max(kRowHeight, fontMetrics().height() + kGap)};
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        paintCardButtonState(painter, *this);
        if (!m_icon.isEmpty())
            painter.drawPixmap(
                kMargin, (height() - kIconSize) / 2,
                linePixmap(m_icon, kIconSize, palette().color(QPalette::Highlight), devicePixelRatioF()));
        painter.setPen(palette().color(m_icon.isEmpty() ? QPalette::PlaceholderText : QPalette::Text));
        const QRect line = rect().adjusted(textLeft(), 0, -kMargin, 0);
        painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter,
                         fontMetrics().elidedText(text(), Qt::ElideMiddle, line.width()));
    }

private:
    int textLeft() const { return m_icon.isEmpty() ? kMargin : kMargin + kIconSize + kGap; }

    QString m_icon;
};

} // namespace

ContinueCard::ContinueCard(QWidget* parent) : Box(parent), m_rows(new QGridLayout(this)) {
    setObjectName(u"boxContinue"_s);
    m_rows->setContentsMargins(0, 0, 0, 0);
    m_rows->setSpacing(0);
    m_rows->setColumnStretch(0, 1);
    hide();
}

void ContinueCard::setWork(const std::vector<Work>& works) {
    while (QLayoutItem* const item = m_rows->takeAt(0)) {
        // Deleted later: one of them may be emitting `clicked` right now.
        item->widget()->hide();
        item->widget()->deleteLater();
        delete item;
    }
    const int count = static_cast<int>(std::min<std::size_t>(works.size(), kMaxRows));
    for (int row = 0; row < count; ++row)
        addRow(row, works[static_cast<std::size_t>(row)]);
    setVisible(count > 0);
}

QString ContinueCard::offer(const QString& fileName, std::int64_t repairs) {
    if (repairs == 0) // an effect alone
        return tr("Continue where you left off: %1").arg(fileName);
    if (repairs == 1)
        return tr("Continue where you left off: %1, 1 repair").arg(fileName);
    return tr("Continue where you left off: %1, %2 repairs").arg(fileName).arg(repairs);
}

void ContinueCard::addRow(int row, const Work& work) {
    const QString shownName = fontMetrics().elidedText(work.fileName, Qt::ElideMiddle, kMaxNameWidth);
    auto* const resume = new LineButton(offer(shownName, work.repairs), u"redo"_s, this);
    resume->setAccessibleName(offer(work.fileName, work.repairs));
    resume->setToolTip(resume->accessibleName());
    auto* const forget = new LineButton(tr("Forget"), {}, this);
    forget->setAccessibleName(tr("Forget %1").arg(work.fileName));
    connect(resume, &QAbstractButton::clicked, this, [this, row] { Q_EMIT continued(row); });
    connect(forget, &QAbstractButton::clicked, this, [this, row] { Q_EMIT forgotten(row); });
    m_rows->addWidget(resume, row, 0);
    m_rows->addWidget(forget, row, 1);
    resume->show();
    forget->show();
}

} // namespace complexion
