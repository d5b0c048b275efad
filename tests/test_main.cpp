#include "chunks/register_chunks.h"

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    RegisterChunks();
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
