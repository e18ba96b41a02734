// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/cards.h"

#include "app/icons.h"
#include "view/text_font.h"

#include <QAbstractButton>
#include <QAction>
#include <QGridLayout>
#include <QLabel>
#include <QPainter>
#include <QToolButton>
#include <QVBoxLayout>

namespace complexion {

namespace {

using namespace Qt::StringLiterals;

constexpr double kHeadlineSize = 26;
constexpr int kHintMarginX = 40;
constexpr int kHintMarginY = 26;
constexpr int kHintGap = 6;
constexpr double kHintCornerRadius = 10; // the box's
constexpr double kHoverLight = 0.06;

constexpr int kDrawingSize = 28;
constexpr int kHelpMarginX = 28;
constexpr int kHelpMarginY = 20;
constexpr int kHelpGap = 16;

/// Two centred lines, the first of them large, as a button.
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
        paintState(painter);
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
    void paintState(QPainter& painter) {
        if (isDown() || underMouse()) {
            QColor tint = isDown() ? QColor(Qt::black) : QColor(Qt::white);
            tint.setAlphaF(static_cast<float>(isDown() ? 0.3 : kHoverLight));
            painter.setPen(Qt::NoPen);
            painter.setBrush(tint);
            painter.drawRoundedRect(QRectF(rect()), kHintCornerRadius, kHintCornerRadius);
        }
        if (hasFocus()) {
            painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
            painter.setBrush(Qt::NoBrush);
            painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), kHintCornerRadius - 1,
                                    kHintCornerRadius - 1);
        }
    }

    QString m_headline;
    QString m_line;
};

/// A drawing of the help card, drawn anew for each screen.
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

} // namespace

Box* makeHintCard(QWidget* parent, QAction* selectImage) {
    auto* box = new Box(parent);
    box->setObjectName(u"boxHint"_s);
    auto* button = new HintButton(u"Drop a photo here"_s, u"or click to choose one"_s, box);
    QObject::connect(button, &QAbstractButton::clicked, selectImage, &QAction::trigger);
    auto* column = new QVBoxLayout(box);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(button);
    return box;
}

Box* makeHelpCard(QWidget* parent, QAction* videoTutorial) {
    auto* box = new Box(parent);
    box->setObjectName(u"boxHelp"_s);
    auto* grid = new QGridLayout(box);
    grid->setContentsMargins(kHelpMarginX, kHelpMarginY, kHelpMarginX, kHelpMarginY);
    grid->setHorizontalSpacing(kHelpGap);
    grid->setVerticalSpacing(kHelpGap * 3 / 4);
    const std::pair<QString, QString> lines[] = {
        {u"help-size"_s, u"Set the edit area a little larger than the blemish."_s},
        {u"help-click"_s, u"Click the blemish: it takes on the skin around it."_s},
        {u"help-save"_s, u"Save a copy. Your photo stays as it is."_s},
    };
    int row = 0;
    for (const auto& [drawing, text] : lines) {
        grid->addWidget(new Drawing(drawing), row, 0);
        grid->addWidget(new QLabel(text), row, 1);
        ++row;
    }
    auto* tutorial = new QToolButton;
    tutorial->setObjectName(u"buttonVideoTutorial"_s);
    tutorial->setDefaultAction(videoTutorial);
    tutorial->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    tutorial->setIconSize({20, 20});
    tutorial->setAccessibleName(u"Video tutorial"_s);
    grid->addWidget(tutorial, row, 1, Qt::AlignLeft);
    return box;
}

} // namespace complexion
