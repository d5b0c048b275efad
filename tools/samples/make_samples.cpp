// Paints the pictures in samples/ and writes them into the folder named on the command line.

#include "tools/samples/samples.h"

#include <cstdio>
#include <fstream>
#include <string>

namespace {

bool Write(const std::string& strPath, const Bytes& bytes) {
    std::ofstream file(strPath, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    if (!file.flush()) std::fprintf(stderr, "%s cannot be written\n", strPath.c_str());
    return file.good();
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: make_samples FOLDER\n");
        return 2;
    }
    const std::string folder = argv[1];
    const bool written =
        Write(folder + "/evening.iff", EveningPicture()) && Write(folder + "/ball.iff", BallPicture()) &&
        Write(folder + "/marble.tmg", MarbleMipMaps()) && Write(folder + "/lantern.psd", LanternDocument());
    return written ? 0 : 1;
}
