#pragma once

#include "repositories/EditorDatabase.h"

namespace TestSupport {

/// A database of the current backend with the schemas of the cable network and of the partial-discharge data.
class PdDatabase : public EditorDatabase
{
public:
    PdDatabase();
};

} // namespace TestSupport
