// The counted base of the library's objects, and the holder that does the counting. Whoever makes an object
// owns its first reference; searches return uncounted pointers, and whoever keeps one takes a reference.
#pragma once

#include "base/types.h"

#include <utility>

class IffObject {
  public:
    IffObject() = default;
    IffObject(const IffObject&) = delete;
    IffObject& operator=(const IffObject&) = delete;
    virtual ~IffObject() = default;

    void AddRef() { ++m_nRefs; }
    void Release() {
        if (--m_nRefs == 0) delete this;
    }

    i32 m_nRefs = 1;
};

// Holds one reference of an object that counts, or nothing.
template <typename Object>
class CountedPtr {
  public:
    CountedPtr() = default;
    CountedPtr(CountedPtr&& other) noexcept : m_pObject(std::exchange(other.m_pObject, nullptr)) {}
    CountedPtr(const CountedPtr& other) : CountedPtr(Share(other.m_pObject)) {}
    CountedPtr& operator=(CountedPtr other) noexcept {
        std::swap(m_pObject, other.m_pObject);
        return *this;
    }
    ~CountedPtr() { Reset(); }

    // Takes over the caller's reference.
    static CountedPtr Adopt(Object* pObject) {
        CountedPtr holder;
        holder.m_pObject = pObject;
        return holder;
    }

    // Takes a reference of its own.
    static CountedPtr Share(Object* pObject) {
        if (pObject) pObject->AddRef();
        return Adopt(pObject);
    }

    // Hands the reference over to the caller.
    Object* Release() { return std::exchange(m_pObject, nullptr); }

    void Reset() {
        if (Object* const object = std::exchange(m_pObject, nullptr)) object->Release();
    }

    Object* Get() const { return m_pObject; }
    Object* operator->() const { return m_pObject; }
    Object& operator*() const { return *m_pObject; }
    explicit operator bool() const { return m_pObject != nullptr; }

  private:
    Object* m_pObject = nullptr;
};
