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

    QSize sizeHint() const override {
        const QFontMetrics large(textFont(kHeadlineSize));
        const QFontMetrics small(textFont());
        return {std::max(large.horizontalAdvance(m_headline), small.horizontalAdvance(m_line)) +
                    2 * kHintMarginX,
                large.height() + kHintGap + small.height() + 2 * kHintMarginY};
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        paintCardButtonState(painter, *this);
        const int headlineHeight = QFontMetrics(textFont(kHeadlineSize)).height();
        const QRect lines = rect().adjusted(0, kHintMarginY, 0, -kHintMarginY);
        painter.setPen(palette().color(QPalette::Text));
        painter.setFont(textFont(kHeadlineSize));
        painter.drawText(lines, Qt::AlignHCenter | Qt::AlignTop, m_headline);
        painter.setPen(palette().color(QPalette::PlaceholderText));
        painter.setFont(textFont());
        painter.drawText(lines.adjusted(0, headlineHeight + kHintGap, 0, 0), Qt::AlignHCenter | Qt::AlignTop,
                         m_line);
    }

private:
    QString m_headline;
    QString m_line;
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
        grid->addWidget(new QLabel(text), row, 1);
        ++row;
    }
    grid->setColumnStretch(1, 1);
    column->addWidget(new TutorialButton(videoTutorial, box));
    column->addSpacing(kHelpMarginY / 2);
    return box;
}

} // namespace complexion
