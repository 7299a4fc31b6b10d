#pragma once

#include "database/ValueConverter.h"

namespace DataAccess::Converter {

/// The conversions for PostgreSQL.
class DATAACCESS_EXPORT PostgresValueConverter final : public ValueConverter
{
public:
    using ValueConverter::ValueConverter;
    ~PostgresValueConverter() override;
};

} // namespace DataAccess::Converter
