#pragma once

#include "context/CableContext.h"
#include "context/PdContext.h"
#include "facade/DataAccessFacade.h"
#include "manager/IRepositoryManager.h"
#include "support/RunningWorker.h"
#include "support/Scalar.h"
#include "support/TestDatabase.h"

#include <QDir>

namespace TestSupport {

/// Runs statements past the facade, and gives the first value that the last one selects.
inline QVariant execute(const TestDatabase& database, const QStringList& statements)
{
    return RunningWorker(database.config()).run([&](DataAccess::Interfaces::IDatabase& db) {
        // Rows come in any order, and ids are respelled one by one: foreign keys would object.
        if (database.type() == DataAccess::Enumerations::Postgres)
            db.Exec(QStringLiteral("SET session_replication_role = replica"));
        QVariant value;
        for (const QString& statement : statements)
            value = scalar(db, statement.toUtf8().constData());
        return value;
    });
}

inline QVariant execute(const TestDatabase& database, const char* statements)
{
    return execute(database, QString::fromLatin1(statements).split(QLatin1Char(';')));
}

/// A thread that has ended may still be seen for a while.
inline int threadCount()
{
    return QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
}

inline std::shared_ptr<Cables::Entities::Owner> makeOwner()
{
    auto owner = std::make_shared<Cables::Entities::Owner>();
    owner->SetId(QUuid::createUuid());
    return owner;
}

} // namespace TestSupport
