// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/cards.h"

#include "app/icons.h"
#include "view/text_font.h"

#include <QAbstractButton>
#include <QAction>
#include <QCoreApplication>
#include <QGridLayout>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

#include <algorithm>

namespace complexion {

namespace {

using namespace Qt::StringLiterals;

class Cards {
    Q_DECLARE_TR_FUNCTIONS(Cards)
};

constexpr double kHeadlineSize = 26;
constexpr int kHintMarginX = 40;
constexpr int kHintMarginY = 26;
constexpr int kHintGap = 6;
constexpr int kSteps = 20; // of a text size that shrinks

constexpr int kDrawingSize = 28;
constexpr int kHelpMarginX = 28;
constexpr int kHelpMarginY = 20;
constexpr int kHelpGap = 16;
constexpr int kTutorialIconSize = 20;

constexpr double kCornerRadius = 10;  // the same as Box's
constexpr float kHoverAlpha = 0.06F;  // of white
constexpr float kPressedAlpha = 0.3F; // of black
constexpr double kRingWidth = 2;

/// A button with two centred lines of text, the first one large.
class HintButton : public QAbstractButton {
public:
    HintButton(const QString& headline, const QString& line, QWidget* parent)
        : QAbstractButton(parent), m_headline(headline), m_line(line) {
        setFocusPolicy(Qt::TabFocus);
        setAttribute(Qt::WA_Hover);
        setCursor(Qt::PointingHandCursor);
        setAccessibleName(u"%1 %2"_s.arg(headline, line));
    }

    /// Makes the lines narrow enough for a button of this width.
    void fitTo(int width) {
        const int available = width - 2 * kHintMarginX;
        const double headline = fittingSize(kHeadlineSize, m_headline, available);
        const double line = fittingSize(kTextSize, m_line, available);
        if (headline == m_headlineSize && line == m_lineSize)
            return;
        m_headlineSize = headline;
        m_lineSize = line;
        updateGeometry();
        update();
    }

    QSize sizeHint() const override {
        const QFontMetrics large(textFont(m_headlineSize));
        const QFontMetrics small(textFont(m_lineSize));
        return {std::max(large.horizontalAdvance(m_headline), small.horizontalAdvance(m_line)) +
                    2 * kHintMarginX,
                large.height() + kHintGap + small.height() + 2 * kHintMarginY};
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        paintCardButtonState(painter, *this);
        const int headlineHeight = QFontMetrics(textFont(m_headlineSize)).height();
        const QRect lines = rect().adjusted(0, kHintMarginY, 0, -kHintMarginY);
        painter.setPen(palette().color(QPalette::Text));
        painter.setFont(textFont(m_headlineSize));
        painter.drawText(lines, Qt::AlignHCenter | Qt::AlignTop, m_headline);
        painter.setPen(palette().color(QPalette::PlaceholderText));
        painter.setFont(textFont(m_lineSize));
        painter.drawText(lines.adjusted(0, headlineHeight + kHintGap, 0, 0), Qt::AlignHCenter | Qt::AlignTop,
                         m_line);
    }

private:
    /// The largest size, at most `size`, at which `text` is no wider than `available`. Hinting rounds the
    /// width of each letter, so that the width is not proportional to the size.
    static double fittingSize(double size, const QString& text, int available) {
        for (int step = kSteps; step > 1; --step)
            if (QFontMetrics(textFont(size * step / kSteps)).horizontalAdvance(text) <= available)
                return size * step / kSteps;
        return size / kSteps;
    }

    QString m_headline;
    QString m_line;
    double m_headlineSize = kHeadlineSize;
    double m_lineSize = kTextSize;
};

/// An icon of the help card, rendered at the screen's device pixel ratio.
class Drawing : public QWidget {
public:
    explicit Drawing(QString name) : m_name(std::move(name)) { setFixedSize(kDrawingSize, kDrawingSize); }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.drawPixmap(
            0, 0,
            linePixmap(m_name, kDrawingSize, palette().color(QPalette::Highlight), devicePixelRatioF()));
    }

private:
    QString m_name;
};

/// The button for the tutorial. Its icon and text align with the icons and lines above it.
class TutorialButton : public QAbstractButton {
public:
    TutorialButton(QAction* action, QWidget* parent) : QAbstractButton(parent) {
        setObjectName(u"buttonVideoTutorial"_s);
        setText(action->text());
        setAccessibleName(action->text());
        setFocusPolicy(Qt::TabFocus);
        setAttribute(Qt::WA_Hover);
        const auto follow = [this, action] {
            setEnabled(action->isEnabled());
            setToolTip(action->toolTip());
            setCursor(action->isEnabled() ? Qt::PointingHandCursor : Qt::ArrowCursor);
        };
        connect(action, &QAction::changed, this, follow);
        connect(this, &QAbstractButton::clicked, action, &QAction::trigger);
        follow();
    }

    QSize sizeHint() const override {
        return {textLeft() + fontMetrics().horizontalAdvance(text()) + kHelpGap,
                std::max(kTutorialIconSize, fontMetrics().height()) + kHelpGap};
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        paintCardButtonState(painter, *this);
        const QColor color =
            palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::Text);
        painter.drawPixmap(kHelpMarginX + (kDrawingSize - kTutorialIconSize) / 2,
                           (height() - kTutorialIconSize) / 2,
                           linePixmap(u"play"_s, kTutorialIconSize, color, devicePixelRatioF()));
        painter.setPen(color);
        painter.drawText(rect().adjusted(textLeft(), 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter, text());
    }

private:
    static int textLeft() { return kHelpMarginX + kDrawingSize + kHelpGap; }
};

} // namespace

void paintCardButtonState(QPainter& painter, const QAbstractButton& button) {
    const QRectF area(button.rect());
    if (button.isEnabled() && (button.isDown() || button.underMouse())) {
        QColor tint = button.isDown() ? QColor(Qt::black) : QColor(Qt::white);
        tint.setAlphaF(button.isDown() ? kPressedAlpha : kHoverAlpha);
        painter.setPen(Qt::NoPen);
        painter.setBrush(tint);
        painter.drawRoundedRect(area, kCornerRadius, kCornerRadius);
    }
    if (button.hasFocus()) {
        painter.setPen(QPen(button.palette().color(QPalette::Highlight), kRingWidth));
        painter.setBrush(Qt::NoBrush);
        constexpr double kInset = kRingWidth / 2;
        painter.drawRoundedRect(area.adjusted(kInset, kInset, -kInset, -kInset), kCornerRadius - kInset,
                                kCornerRadius - kInset);
    }
}

QSize sizeOfCard(Box& card, int width) {
    if (auto* const hint = dynamic_cast<HintButton*>(card.findChild<QAbstractButton*>()))
        hint->fitTo(width);
    // A label that wraps has no width of its own.
    constexpr int kAroundLabels = 2 * kHelpMarginX + kDrawingSize + kHelpGap;
    for (QLabel* label : card.findChildren<QLabel*>()) {
        const int needed = label->fontMetrics().horizontalAdvance(label->text()) + 1;
        const int length = std::min(needed, width - kAroundLabels);
        if (label->minimumWidth() != length || label->maximumWidth() != length)
            label->setFixedSize(length, label->heightForWidth(length));
    }
    return card.sizeHint().boundedTo({width, QWIDGETSIZE_MAX});
}

Box* makeHintCard(QWidget* parent, QAction* selectImage) {
    auto* box = new Box(parent);
    box->setObjectName(u"boxHint"_s);
    auto* button = new HintButton(Cards::tr("Drop a photo here"), Cards::tr("or click to choose one"), box);
    QObject::connect(button, &QAbstractButton::clicked, selectImage, &QAction::trigger);
    auto* column = new QVBoxLayout(box);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(button);
    return box;
}

Box* makeHelpCard(QWidget* parent, QAction* videoTutorial) {
    auto* box = new Box(parent);
    box->setObjectName(u"boxHelp"_s);
    auto* column = new QVBoxLayout(box);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    auto* grid = new QGridLayout;
    grid->setContentsMargins(kHelpMarginX, kHelpMarginY, kHelpMarginX, kHelpMarginY / 2);
    grid->setHorizontalSpacing(kHelpGap);
    grid->setVerticalSpacing(kHelpGap * 3 / 4);
    column->addLayout(grid);
    const std::pair<QString, QString> lines[] = {
        {u"help-size"_s, Cards::tr("Set the edit area a little larger than the blemish.")},
        {u"help-click"_s, Cards::tr("Click the blemish: it blends into the skin around it.")},
        {u"help-save"_s, Cards::tr("Save a copy. Your photo stays as it is.")},
    };
    int row = 0;
    for (const auto& [drawing, text] : lines) {
        grid->addWidget(new Drawing(drawing), row, 0);
        auto* const label = new QLabel(text);
        label->setWordWrap(true);
        grid->addWidget(label, row, 1);
        ++row;
    }
    grid->setColumnStretch(1, 1);
    column->addWidget(new TutorialButton(videoTutorial, box));
    column->addSpacing(kHelpMarginY / 2);
    return box;
}

} // namespace complexion
