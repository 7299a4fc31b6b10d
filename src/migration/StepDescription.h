#pragma once

#include "database/DataAccessExport.h"

#include <QString>
#include <QStringList>
#include <QVector>

namespace DataAccess::Manager {

/// What a migration step does, for those who are to decide whether it may run.
struct StepDescription
{
    QString feature; ///< The schema, by the name of the settings row that holds its version.
    quint32 version; ///< The version that the step reaches.
    QString name;
    QString text;
    QStringList discards; ///< Tables that may lose rows.
    QStringList rewrites; ///< Tables whose rows are changed or copied into a new layout.
};

/// All steps, those of the cable network first, each schema's in the order in which they run.
DATAACCESS_EXPORT const QVector<StepDescription>& stepDescriptions();

} // namespace DataAccess::Manager
