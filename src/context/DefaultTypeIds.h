#pragma once

#include <QUuid>

namespace DataAccess::Context {

/// Whether @p id is that of a row that every cable network has, with the same id everywhere.
bool isDefaultType(const QUuid& id);

} // namespace DataAccess::Context
