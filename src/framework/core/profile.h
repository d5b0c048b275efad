// What the program keeps between its runs: sections of named texts, shared by all its running copies.
#pragma once

#include <functional>
#include <map>
#include <string>

// Entries by their names, both ASCII.
using ProfileSection = std::map<std::string, std::string>;

class Profile {
  public:
    virtual ~Profile() = default;

    // Empty where the section is not there or cannot be read.
    virtual ProfileSection ReadSection(const std::string& strSection) const = 0;

    // Reads the section anew, lets the caller change it and puts the result in its place, and no other
    // program comes in between. False when that failed; what is kept is as it was then.
    virtual bool ChangeSection(const std::string& strSection,
                               const std::function<void(ProfileSection&)>& change) = 0;
};
