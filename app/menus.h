// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/actions.h"
#include "app/recent_photos.h"

class QAbstractButton;
class QComboBox;
class QMenu;
class QMenuBar;

namespace complexion {

class SettingsBar;

/// The menus of the menu bar, which hold every command.
struct Menus {
    /// Adds the menus to `bar`.
    Menus(QMenuBar& bar, const Actions& actions, const SettingsBar& settings);

    QMenu* effect; // one item per entry of the effect pop-up, see addChoices
    QMenu* repair;
    RecentPhotos* recentPhotos;
};

/// Adds an item for every entry of a pop-up. Choosing one is as choosing the entry.
void addChoices(QMenu& menu, QComboBox* popUp);

/// Adds an item for a control that can be checked. Choosing it is as pressing the control.
void addSwitch(QMenu& menu, const QString& text, QAbstractButton* control);

} // namespace complexion
