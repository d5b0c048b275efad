#include "framework/core/command_line.h"

#include <algorithm>

bool CCommandLineInfo::HasSwitch(const std::string& strSwitch) const {
    return std::ranges::find(m_givenSwitches, strSwitch) != m_givenSwitches.end();
}

void CCommandLineInfo::ParseCommandLine(int argc, char* const* argv) {
    bool switchesEnded = false;
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        if (switchesEnded || word.empty() || word[0] != '-') {
            m_fileNames.push_back(word);
        } else if (word == "--") {
            switchesEnded = true;
        } else if (!IsAnswer()) {
            if (word == "--help") {
                m_nShellCommand = ShowHelp;
            } else if (word == "--version") {
                m_nShellCommand = ShowVersion;
            } else if (std::ranges::find(m_ownSwitches, word) != m_ownSwitches.end()) {
                m_givenSwitches.push_back(word);
            } else if (word == "-dde") {
                Choose(FileDDE, word);
            } else if (word == "-p") {
                Choose(FilePrint, word);
            } else if (word == "-pt" && i + 2 < argc) {
                Choose(FilePrintTo, word);
                m_fileNames.push_back(argv[++i]);
                m_strPrinterName = argv[++i];
            } else {
                Refuse(BadSwitch, word);
            }
        }
    }
    if (m_nShellCommand == FileNew && !m_fileNames.empty()) m_nShellCommand = FileOpen;
    if (m_nShellCommand == FilePrint && m_fileNames.empty()) Refuse(BadSwitch, "-p");
    if (m_nShellCommand == FilePrintTo && m_fileNames.size() > 1) Refuse(SurplusWord, "-pt");
}

void CCommandLineInfo::Choose(ShellCommand command, const std::string& strSwitch) {
    if (m_nShellCommand == FileNew || m_nShellCommand == command)
        m_nShellCommand = command;
    else
        Refuse(SurplusWord, strSwitch);
}

void CCommandLineInfo::Refuse(ShellCommand answer, const std::string& strSwitch) {
    m_nShellCommand = answer;
    m_strBadSwitch = strSwitch;
}
