#pragma once

#include <utility>

namespace KtTest
{

// A new object of type T named `name`, made from `args` (its parent among them).
template <class T, class... Args>
T* Named(const char* name, Args&&... args)
{
    auto* object = new T(std::forward<Args>(args)...);
    object->setObjectName(name);
    return object;
}

}  // namespace KtTest
