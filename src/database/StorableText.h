#pragma once

#include <QString>

namespace DataAccess::Converter {

/// The form in which @p text is bound. Throws ExecutionException for a text that not every backend gives back as it
/// was; it names @p placeholder, unless that is null.
QString storable(const QString& text, const QString& placeholder);

/// Throws ExecutionException: @p reason, and the property to which the value was to be bound by @p placeholder, but not
/// the value.
[[noreturn]] void refuseValue(const char* reason, const QString& placeholder);

} // namespace DataAccess::Converter
