// Menus and accelerators, made from the resource tables. An item shows the state that the command's update
// handler gives it just before its menu opens; a command that nobody handles is grey.
#pragma once

#include "base/types.h"
#include "framework/core/resource.h"

class CCmdTarget;
class QMenu;
class QMenuBar;
class QPoint;
class QWidget;

// Takes the place of the menus that the bar had before.
void AfxFillMenuBar(QMenuBar& bar, const MenuResource& menu, CCmdTarget& target);

// Opens a menu at a place on the screen, which goes when something was chosen there, or when its owner goes.
// The target outlives the owner.
void AfxTrackPopupMenu(const QWidget& owner, const MenuResource& menu, const QPoint& place,
                       CCmdTarget& target);

// The menu with an item of this command; null when there is none.
QMenu* AfxFindPopup(const QMenuBar& bar, u32 nID);

// Accelerators act wherever the keyboard is in the window; that of a disabled command does nothing.
void AfxAddAccelerators(QWidget& window, CCmdTarget& target);

// For an item that shows nothing else of the command's state.
bool AfxIsCommandEnabled(CCmdTarget& target, u32 nID);
