// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/accessible_pop_up.h"

#include <QAbstractItemView>
#include <QAccessibleWidget>
#include <QComboBox>
#include <QVariant>

namespace complexion {

namespace {

constexpr const char* kIsNamed = "complexion-accessibly-named";

class AccessiblePopUp : public QAccessibleWidget {
public:
    explicit AccessiblePopUp(QComboBox* popUp) : QAccessibleWidget(popUp, QAccessible::ComboBox) {}

    QString text(QAccessible::Text kind) const override {
        // Linux has no values that are texts, so that the entry is the description, too.
        return kind == QAccessible::Value || kind == QAccessible::Description ? popUp().currentText()
                                                                              : QAccessibleWidget::text(kind);
    }

    // The list of entries is its only child.
    int childCount() const override { return 1; }
    QAccessibleInterface* child(int index) const override {
        return index == 0 ? QAccessible::queryAccessibleInterface(popUp().view()) : nullptr;
    }
    int indexOfChild(const QAccessibleInterface* child) const override {
        return child && child->object() == popUp().view() ? 0 : -1;
    }

    QStringList actionNames() const override {
        return QStringList(showMenuAction()) + QAccessibleWidget::actionNames();
    }
    void doAction(const QString& name) override {
        if (name != showMenuAction())
            QAccessibleWidget::doAction(name);
        else if (popUp().view()->isVisible())
            popUp().hidePopup();
        else
            popUp().showPopup();
    }

private:
    QComboBox& popUp() const { return *static_cast<QComboBox*>(widget()); }
};

QAccessibleInterface* accessiblePopUp(const QString&, QObject* object) {
    auto* const popUp = qobject_cast<QComboBox*>(object);
    const bool isNamed = popUp && popUp->property(kIsNamed).toBool();
    return isNamed ? new AccessiblePopUp(popUp) : nullptr; // the accessibility cache owns it
}

} // namespace

void nameAccessibly(QComboBox& popUp) {
    QAccessible::installFactory(accessiblePopUp); // safe to repeat
    popUp.setProperty(kIsNamed, true);
    QObject::connect(&popUp, &QComboBox::currentIndexChanged, &popUp, [&popUp] {
        QAccessibleEvent change(&popUp, QAccessible::DescriptionChanged);
        QAccessible::updateAccessibility(&change);
    });
}

} // namespace complexion
