// A folder on the disk that goes with its test.
#pragma once

#include "support/byte_builder.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <stdlib.h>
#include <string>

struct TempFolder {
    TempFolder() {
        if (!mkdtemp(m_strPath.data())) throw std::runtime_error("no folder for the test");
    }
    TempFolder(const TempFolder&) = delete;
    // What the program starts beside itself can still be writing there.
    ~TempFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_strPath, ignored);
    }

    std::string Path(const std::string& name) const { return m_strPath + "/" + name; }

    // Returns the path of the file.
    std::string Write(const Bytes& bytes, const std::string& name = "file") const {
        std::ofstream(Path(name), std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
        return Path(name);
    }

    std::string m_strPath = std::filesystem::temp_directory_path() / "vistrel-test-XXXXXX";
};
