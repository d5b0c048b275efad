// The files that stand beside a document's in its folder.
#pragma once

#include <functional>
#include <string>
#include <vector>

class Neighbours {
  public:
    // Of the file of this absolute path, as the folder is now. isListed tells by a name which files count;
    // the one itself has its place even where it does not, or is gone.
    Neighbours(const std::string& strPath, const std::function<bool(const std::string&)>& isListed);

    // Their paths, the nearest first.
    std::vector<std::string> After() const;
    std::vector<std::string> Before() const;

    // Which of all a file is, as "3 of 27".
    std::string PlaceText(const std::string& strPath) const;

  private:
    std::string m_strFolder;           // with its slash
    std::vector<std::string> m_names;  // in their order, the file's own among them
    std::vector<std::string>::size_type m_nOwn;
    bool m_bOwnListed = false;
};
