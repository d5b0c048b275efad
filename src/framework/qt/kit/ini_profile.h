// The user's settings in a file of their own.
#pragma once

#include "framework/core/profile.h"

class IniProfile final : public Profile {
  public:
    // strCompany: folders below that of the user's settings, divided by backslashes. strApplication names the
    // file.
    IniProfile(const std::string& strCompany, const std::string& strApplication);

    ProfileSection ReadSection(const std::string& strSection) const override;
    bool ChangeSection(const std::string& strSection,
                       const std::function<void(ProfileSection&)>& change) override;

  private:
    std::string m_strFolder;
    std::string m_strPath;
};
