#pragma once

namespace DataAccess::Enumerations {

/// The column kinds of the schema. IValueConverter::type() gives each backend's text for them.
enum DataType : int {
    Integer = 0,
    TimeStamp = 1,
    Boolean = 2,
    Numeric = 3,
    Text = 4,
    Char = 5,
    VarChar = 6,
    ByteArray = 7,
    Date = 8
};

} // namespace DataAccess::Enumerations
