// Objects that are small, but of which a file can want any number, such as the chunks of a tree. Those of a
// derived class that are made by new count against the limit of the large blocks.
#pragma once

#include <cstddef>

class LimitedObject {
  public:
    // Throws std::bad_alloc where the limit has no room, or the memory cannot be had.
    static void* operator new(std::size_t nSize);

    // nSize: that of the object, whatever class it is deleted as.
    static void operator delete(void* pObject, std::size_t nSize) noexcept;
};
