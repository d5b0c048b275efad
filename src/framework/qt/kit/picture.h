// Pictures of the resource tables, drawn from their descriptions at whatever size and density they show in.
#pragma once

#include "base/types.h"

class QIcon;

// Follows the colours of the theme. Empty when no table holds the picture.
QIcon AfxLoadIcon(u32 nID);

// The picture of a description, which is borrowed; its currentColor is that of the theme's buttons.
QIcon AfxDrawnIcon(const char* pszSvg);
