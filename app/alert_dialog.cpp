// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/alert_dialog.h"

#include "view/text_font.h"

#include <QAccessible>
#include <QCoreApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace complexion {

namespace {

constexpr int kTextWidthInLetters = 44; // a comfortable line length
constexpr int kMargin = 24;
constexpr int kGap = 8;
constexpr int kMinButtonWidth = 88;

/// Translates a text that was marked with QT_TRANSLATE_NOOP in the context "Alerts".
QString translated(const std::string& text) {
    return QCoreApplication::translate("Alerts", text.c_str());
}

QLabel* makeText(const std::string& text, double size) {
    auto* label = new QLabel(translated(text));
    label->setFont(textFont(size));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setMinimumWidth(label->fontMetrics().averageCharWidth() * kTextWidthInLetters);
    return label;
}

} // namespace

AlertDialog::AlertDialog(const Alert& alert, QWidget* parent)
    : QDialog(parent), m_answer(kFirstButton + static_cast<int>(alert.buttons.size()) - 1) {
    setWindowTitle(QStringLiteral("Complexion"));
    setAccessibleName(translated(alert.informativeText));

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    column->setSpacing(kMargin);
    column->setSizeConstraint(QLayout::SetFixedSize);
    if (!alert.messageText.empty())
        column->addWidget(makeText(alert.messageText, kTextSize + 5));
    column->addWidget(makeText(alert.informativeText, kTextSize + 1));

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
