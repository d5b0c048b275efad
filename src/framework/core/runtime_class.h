// Classes whose objects the framework makes by itself: the document, frame and view of a template.
#pragma once

class CCmdTarget;

struct CRuntimeClass {
    CCmdTarget* (*pfnCreateObject)();  // a new object, owned by the caller
};

template <typename Class>
constexpr CRuntimeClass RuntimeClassOf() {
    return {[]() -> CCmdTarget* { return new Class; }};
}
