#include "framework/core/command_line.h"

void CCommandLineInfo::ParseCommandLine(int argc, char* const* argv) {
    bool switchesEnded = false;
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        if (switchesEnded || word.empty() || word[0] != '-') {
            m_strFileNames.push_back(word);
        } else if (word == "--") {
            switchesEnded = true;
        } else if (!IsAnswer()) {
            if (word == "--help") {
                m_nShellCommand = ShowHelp;
            } else if (word == "--version") {
                m_nShellCommand = ShowVersion;
            } else if (word == "-dde") {
                m_nShellCommand = FileDDE;
            } else if (word == "-p" && i + 1 < argc) {
                m_nShellCommand = FilePrint;
                m_strFileNames = {argv[++i]};
            } else if (word == "-pt" && i + 2 < argc) {
                m_nShellCommand = FilePrintTo;
                m_strFileNames = {argv[++i]};
                m_strPrinterName = argv[++i];
            } else {
                m_nShellCommand = BadSwitch;
                m_strBadSwitch = word;
            }
        }
    }
    if (m_nShellCommand == FileNew && !m_strFileNames.empty()) m_nShellCommand = FileOpen;
}
