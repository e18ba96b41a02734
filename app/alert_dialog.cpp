// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/alert_dialog.h"

#include "app/icons.h"
#include "view/text_font.h"

#include <QAccessible>
#include <QCoreApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

#include <algorithm>

namespace complexion {

namespace {

constexpr int kTextWidthInLetters = 44; // a comfortable line length
constexpr int kMargin = 24;
constexpr int kGap = 8;
constexpr int kMinButtonWidth = 88;
constexpr int kIconSize = 32;

/// Translates a text that was marked with QT_TRANSLATE_NOOP in the context "Alerts".
QString translated(const std::string& text) {
    return QCoreApplication::translate("Alerts", text.c_str());
}

/// `width` is that of the screen, in points.
QLabel* makeText(const std::string& text, double size, int width) {
    auto* label = new QLabel(translated(text));
    label->setFont(textFont(size));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setMinimumWidth(std::min(label->fontMetrics().averageCharWidth() * kTextWidthInLetters,
                                    width - 4 * kMargin - kIconSize));
    return label;
}

/// A question, a warning and information differ by their shapes, not only by their words.
QString iconOf(const Alert& alert) {
    if (alert.buttons.size() > 1)
        return QStringLiteral("alert-question");
    return alert.style == AlertStyle::Informational ? QStringLiteral("alert-information")
                                                    : QStringLiteral("alert-warning");
}

/// An icon, rendered at the screen's device pixel ratio.
class AlertIcon : public QWidget {
public:
    explicit AlertIcon(const QString& name) {
        setObjectName(name);
        setFixedSize(kIconSize, kIconSize);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter(this).drawPixmap(
            0, 0,
            linePixmap(objectName(), kIconSize, palette().color(QPalette::Highlight), devicePixelRatioF()));
    }
};

} // namespace

AlertDialog::AlertDialog(const Alert& alert, QWidget* parent)
    : QDialog(parent), m_answer(kFirstButton + static_cast<int>(alert.buttons.size()) - 1) {
    setWindowTitle(QStringLiteral("Complexion"));
    setAccessibleName(translated(alert.informativeText));

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    column->setSpacing(kMargin);
    column->setSizeConstraint(QLayout::SetFixedSize);
    const int screenWidth = screen()->availableSize().width();
    auto* message = new QHBoxLayout;
    message->setSpacing(kMargin * 2 / 3);
    message->addWidget(new AlertIcon(iconOf(alert)), 0, Qt::AlignTop);
    auto* texts = new QVBoxLayout;
    texts->setSpacing(kGap);
    if (!alert.messageText.empty())
        texts->addWidget(makeText(alert.messageText, kTextSize + 5, screenWidth));
    texts->addWidget(makeText(alert.informativeText, kTextSize + 1, screenWidth), 1, Qt::AlignVCenter);
    message->addLayout(texts, 1);
    column->addLayout(message);

    auto* row = new QHBoxLayout;
    row->setSpacing(kGap);
    row->addStretch();
    column->addLayout(row);
    int answer = kFirstButton;
    for (const std::string& title : alert.buttons) {
        auto* button = new QPushButton(translated(title));
        button->setMinimumWidth(kMinButtonWidth);
        button->setDefault(answer == kFirstButton);
        button->setAutoDefault(true);
        connect(button, &QPushButton::clicked, this, [this, answer] {
            m_answer = answer;
            accept();
        });
        row->addWidget(button);
        ++answer;
    }
}

void AlertDialog::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    QAccessibleEvent announcement(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&announcement);
}

} // namespace complexion
