// What the files of pictures are called: FILE.LAYER.CHANNEL and the format's extension.
#pragma once

#include "base/types.h"

#include <string>
#include <unordered_map>

class PictureNames {
  public:
    static constexpr size_t MOST_BYTES = 255;  // of a name, on all file systems that matter

    // strExtension: with its dot.
    explicit PictureNames(std::string strExtension) : m_strExtension(std::move(strExtension)) {}

    // A name that no call before has given, in small letters of ASCII or capital ones. It is of UTF-8, has in
    // it no control character and nothing else that some file system does not take, and at most MOST_BYTES
    // bytes; what a file names its parts does not lead out of a folder. Of what is too long the longest part
    // is cut, between characters.
    std::string Next(const std::string& strFile, const std::string& strLayer, const std::string& strChannel);

  private:
    const std::string m_strExtension;
    std::unordered_map<std::string, u32>
        m_given;  // in small letters, with the last number that made one of it unique
};
