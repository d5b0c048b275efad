// The main window.
#pragma once

#include "framework/qt/mdi.h"

class CMainFrame : public CMDIFrameWnd {};
