#pragma once

#include <QVariant>

#include <cstring>

namespace DataAccess::Database {

/// What a driver or a result of Qt SQL has as its @p handle, if that is a pointer whose type is called @p name.
template <typename T>
T* handleAs(const QVariant& handle, const char* name)
{
    const char* const actual = handle.typeName();
    return actual != nullptr && std::strcmp(actual, name) == 0 ? *static_cast<T* const*>(handle.constData()) : nullptr;
}

} // namespace DataAccess::Database
