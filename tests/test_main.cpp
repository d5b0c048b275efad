#include "chunks/register_chunks.h"

#include <gtest/gtest.h>

#include <malloc.h>

int main(int argc, char** argv) {
    mallopt(M_PERTURB, 0x5A);  // so that memory shows which nobody has filled
    RegisterChunks();
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
