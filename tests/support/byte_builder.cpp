#include "support/byte_builder.h"

Bytes Truncated(const Bytes& bytes, u64 count) {
    return Bytes(bytes.begin(), bytes.end() - static_cast<i64>(count));
}
