#include "database/PostgresValueConverter.h"

namespace DataAccess::Converter {

PostgresValueConverter::~PostgresValueConverter() = default;

} // namespace DataAccess::Converter
