// The desktop's style, but for what would look odd or could not be read in the program's windows.
#pragma once

class QStyle;

// For the toolkit's application, which comes to own it.
QStyle* AfxMakeStyle();
