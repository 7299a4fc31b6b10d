#pragma once

#include <QString>

namespace DataAccess::Converter {

/// The form in which @p text is bound. Throws ExecutionException for a text that not every backend gives back as it
/// was.
QString storable(const QString& text);

} // namespace DataAccess::Converter
