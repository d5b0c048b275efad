// A folder on the disk that goes with its test.
#pragma once

#include "support/byte_builder.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <stdlib.h>
#include <string>

namespace fs = std::filesystem;

struct TempFolder {
    TempFolder() {
        if (!mkdtemp(m_strPath.data())) throw std::runtime_error("no folder for the test");
    }
    TempFolder(const TempFolder&) = delete;
    // What the program starts beside itself can still be writing there.
    ~TempFolder() {
        std::error_code ignored;
        fs::remove_all(m_strPath, ignored);
    }

    std::string Path(const std::string& strName) const { return m_strPath + "/" + strName; }

    // Returns the path of the file.
    std::string Write(const Bytes& bytes, const std::string& strName = "file") const {
        std::ofstream(Path(strName), std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
        return Path(strName);
    }

    std::string m_strPath = fs::temp_directory_path() / "vistrel-test-XXXXXX";
};
