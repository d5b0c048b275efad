// The one seam through which the program puts a question to its user. Whoever can ask installs itself here:
// the windows do while they run, tests put in the next answer, and without either the question goes to
// standard error, which is where the checks before the first window speak.
#pragma once

#include "base/types.h"

#include <string>
#include <vector>

constexpr u32 MB_OK = 0x0;
constexpr u32 MB_ICONEXCLAMATION = 0x30;
constexpr u32 MB_SETFOREGROUND = 0x10000;

constexpr int IDOK = 1;
constexpr int IDCANCEL = 2;
constexpr int IDYES = 6;
constexpr int IDNO = 7;

// A question to be answered with Yes or No.
struct YesNoQuestion {
    std::vector<std::string> paragraphs;
    std::string strCheckBox;  // of the box under it
};

struct YesNoAnswer {
    int nButton = IDNO;
    bool bChecked = false;  // the box, where it was a button that ended the question
};

// One choice of what an Open dialog lists.
struct FileFilter {
    std::string strName;                // as it is shown
    std::vector<std::string> patterns;  // such as "*.IFF", matched in either case
};

// A dialog with its controls filled in, as whoever answers in the user's place finds it.
class ModalDialog {
  public:
    virtual ~ModalDialog() = default;

    virtual std::string GetItemText(u32 nID) const = 0;  // UTF-8
    virtual void SetItemText(u32 nID, const std::string& strText) = 0;

    // False when the dialog stays open.
    virtual bool Press(u32 nIDButton) = 0;

    // Shows the dialog until its user ends it; the button that did.
    virtual int Wait() = 0;
};

class Answers {
  public:
    virtual ~Answers() = default;

    // Shows plain text and waits; returns the button that ended it. nStyle: MB_ bits.
    virtual int Message(const std::string& strText, const std::string& strCaption, u32 nStyle) = 0;

    // Shows plain text under the program's title.
    virtual YesNoAnswer AskYesNo(const YesNoQuestion& question) = 0;

    // The paths of the files to open, in their order; none when the user thinks better of it. The first
    // filter is the one in use at first, and strFolder is shown, or the current folder where it is empty.
    virtual std::vector<std::string> OpenFiles(const std::vector<FileFilter>& filters,
                                               const std::string& strFolder) = 0;

    // Returns the button that ended the dialog, which is the one of this id.
    virtual int Dialog(u32 nID, ModalDialog& dialog) = 0;
};

// Borrows the answers until the next call and returns those it replaces. Null brings the default back.
Answers* InstallAnswers(Answers* pAnswers);
Answers& CurrentAnswers();

// Null texts count as empty. Boxes belong to the active window, whatever the owner.
int MessageBoxA(void* hOwner, const char* pszText, const char* pszCaption, u32 nStyle);

// A message under the program's own title.
int AfxMessageBox(const std::string& strText, u32 nStyle = MB_OK | MB_ICONEXCLAMATION);
