// A file that appears whole or not at all: it is written where nobody looks and gets its name at the end.
#pragma once

#include <string>

class WholeFile {
  public:
    // strPath: the name that it is to get. Throws CFileException where nothing can be written beside it.
    explicit WholeFile(const std::string& strPath);
    WholeFile(const WholeFile&) = delete;
    WholeFile& operator=(const WholeFile&) = delete;
    // What has not got its name is gone then.
    ~WholeFile();

    // To write into. Borrowed.
    int Descriptor() const { return m_nDescriptor; }

    // Gives it its name, once the disk has it. Throws CFileException when that fails, and where the name is
    // taken: unless bReplace is set, and by what is no file, nor a link to a file or a folder or to nothing,
    // in any case. Whoever has the name keeps it then.
    void Put(bool bReplace);

    // Puts what was written into the file that has the name already, where that is empty: whoever made it may
    // have it open and look there. False where there is none such. Throws CFileException when that fails; it
    // is empty again then.
    bool FillEmpty();

  private:
    bool CopyInto(int nTarget) const;
    void OpenBeside();
    void LinkBeside();

    std::string m_strPath;
    std::string m_strBeside;  // its name until then; empty while it has none
    int m_nDescriptor = -1;
};
