#pragma once

#include "transfer/private/SchemaTables.h"

namespace DataAccess::Interfaces {
class IDatabase;
}

/// In what a table differs from one that the migrations have made.
struct SchemaFault
{
    const char* fault;
    QString column;
    QString text;
    bool isColumnMissing = false;
};

QVector<SchemaFault> schemaFaults(DataAccess::Interfaces::IDatabase& db,
                                  const DataAccess::Transfer::SchemaTable& table);
