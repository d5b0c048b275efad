// What the program was asked on its command line. Switches begin with a dash; every other word is the path of
// a file, kept as the bytes it came in, and so is everything after "--".
#pragma once

#include <string>
#include <vector>

class CCommandLineInfo {
  public:
    enum ShellCommand {
        FileNew,
        FileOpen,
        FileDDE,
        FilePrint,
        FilePrintTo,
        ShowHelp,
        ShowVersion,
        BadSwitch,   // not known, or one of the words that go with it is missing
        SurplusWord  // a switch beside which there are words that do not go with it
    };

    // Beside the framework's own switches the program understands this one. It goes with all others.
    void AddSwitch(const std::string& strSwitch) { m_ownSwitches.push_back(strSwitch); }

    // Takes the arguments after the program's name. Help, version and a switch that cannot be followed win
    // over files.
    void ParseCommandLine(int argc, char* const* argv);

    bool IsPrint() const { return m_nShellCommand == FilePrint || m_nShellCommand == FilePrintTo; }

    // Whether one of the program's own switches was given, and whether any was.
    bool HasSwitch(const std::string& strSwitch) const;
    bool HasOwnSwitches() const { return !m_givenSwitches.empty(); }

    // Whether there is only something to say, and the first such switch counts.
    bool IsAnswer() const {
        return m_nShellCommand == ShowHelp || m_nShellCommand == ShowVersion ||
               m_nShellCommand == BadSwitch || m_nShellCommand == SurplusWord;
    }

    ShellCommand m_nShellCommand = FileNew;
    std::vector<std::string> m_fileNames;  // in their order; one for FilePrintTo
    std::string m_strPrinterName;          // for FilePrintTo
    std::string m_strBadSwitch;            // for BadSwitch and SurplusWord

  private:
    void Choose(ShellCommand command, const std::string& strSwitch);
    void Refuse(ShellCommand answer, const std::string& strSwitch);

    std::vector<std::string> m_ownSwitches;
    std::vector<std::string> m_givenSwitches;
};
