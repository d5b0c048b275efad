// Classes whose objects the framework makes by itself: the document, frame and view of a template.
#pragma once

#include "framework/core/cmd_target.h"

#include <memory>

struct CRuntimeClass {
    std::unique_ptr<CCmdTarget> (*pfnCreateObject)();
};

template <typename Class>
constexpr CRuntimeClass RuntimeClassOf() {
    return {[]() -> std::unique_ptr<CCmdTarget> { return std::make_unique<Class>(); }};
}

// A new object of the class; null where that is none that derives from Base.
template <typename Base>
std::unique_ptr<Base> CreateObjectAs(const CRuntimeClass& runtimeClass) {
    std::unique_ptr<CCmdTarget> made = runtimeClass.pfnCreateObject();
    auto* const object = dynamic_cast<Base*>(made.get());
    if (object) static_cast<void>(made.release());
    return std::unique_ptr<Base>(object);
}
