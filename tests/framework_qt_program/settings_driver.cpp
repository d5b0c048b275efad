// The settings and the list of recent files as a program has them that opens no window.
//
// settings_driver list           prints the paths, one a line
// settings_driver add PATH...    adds one after the other, each in a write of its own, and prints what is written
#include "framework/qt/kit/ini_profile.h"
#include "framework/qt/program/recent_files.h"

#include <cstdlib>
#include <iostream>
#include <span>

namespace {

constexpr u32 LIST_SIZE = 9;

bool Add(CRecentFileList& list, IniProfile& profile, const std::string& strPath) {
    list.Add(strPath);
    if (!list.WriteList(profile)) return false;
    std::cout << strPath << std::endl;
    return true;
}

}  // namespace

int main(int nCount, char** ppArguments) {
    const std::span<char*> arguments(ppArguments, nCount);
    if (arguments.size() < 2) return EXIT_FAILURE;
    IniProfile profile("Maker", "Program");
    CRecentFileList list(LIST_SIZE);
    list.ReadList(profile);
    if (std::string(arguments[1]) == "list") {
        for (u32 i = 0; i < list.GetSize(); ++i) std::cout << list[i] << '\n';
        return EXIT_SUCCESS;
    }
    for (const char* path : arguments.subspan(2)) {
        if (!Add(list, profile, path)) return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
