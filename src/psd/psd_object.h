// What every object of a Photoshop image has in common: a reference count, and the list that keeps the
// objects in file order. Whoever makes an object owns its one reference until a list or a field takes it
// over.
#pragma once

#include "base/limited_object.h"
#include "base/types.h"

#include <cassert>
#include <memory>
#include <vector>

class PsdObject : public LimitedObject {
  public:
    PsdObject() = default;
    PsdObject(const PsdObject&) = delete;
    PsdObject& operator=(const PsdObject&) = delete;
    virtual ~PsdObject() = default;

    void Release() {
        if (--m_nRefs == 0) delete this;
    }

  private:
    u32 m_nRefs = 1;
};

struct PsdRelease {
    void operator()(PsdObject* pObject) const { pObject->Release(); }
};

// Holds one reference of a T.
template <typename T>
using PsdPtr = std::unique_ptr<T, PsdRelease>;

template <typename T>
PsdPtr<T> MakePsdObject() {
    return PsdPtr<T>(new T);
}

// An ordered sequence of elements, each held by one reference.
template <typename T>
class PsdList {
  public:
    // Takes over the caller's reference.
    void Append(PsdPtr<T> element) { m_elements.push_back(std::move(element)); }

    u32 GetCount() const { return static_cast<u32>(m_elements.size()); }

    // The element is borrowed.
    T* GetAt(u32 nIndex) const {
        assert(nIndex < m_elements.size());
        return m_elements[nIndex].get();
    }

    // The memory that held the elements goes as well.
    void RemoveAll() { std::vector<PsdPtr<T>>().swap(m_elements); }

    auto begin() const { return m_elements.begin(); }
    auto end() const { return m_elements.end(); }

  private:
    std::vector<PsdPtr<T>> m_elements;
};
