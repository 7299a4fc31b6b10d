#pragma once

#include <QLoggingCategory>
#include <QPair>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include <functional>

namespace DataAccess::Database {

class StatementRunner;

/// A foreign key of one table that leads to another.
struct ForeignKey
{
    QString table; ///< The table that it leads to.
    QVariant ownerId;
    QString owner;
    QString name;
    QString definition;
    bool isText; ///< Its columns hold texts.
};

/// What a backup is made of, and named after.
struct BackupOrder
{
    QString feature;
    quint32 version;                        ///< The version that the migration aims at.
    QVector<QPair<QString, qint64>> tables; ///< Each table and the number of its rows.
    const QLoggingCategory& (*category)();
};

/**
 * What sets a backend apart in a migration: see Backend::schemaDialect(). The objects have no state and live as long as
 * the process; they are used inside jobs, on the database of the statements that they are given. Failures throw
 * ExecutionException.
 */
class SchemaDialect
{
public:
    virtual ~SchemaDialect();
    SchemaDialect(const SchemaDialect&) = delete;
    SchemaDialect& operator=(const SchemaDialect&) = delete;

    /// Makes other programs wait that migrate the same database, as far as the transaction has not done that already.
    virtual void lockOthersOut(StatementRunner& statements) const;
    /// Keeps other programs from writing to @p tables until the transaction ends.
    virtual void lockAgainstWriters(StatementRunner& statements, const QStringList& tables) const;

    /// Whether a reference to a table that is missing is an error.
    virtual bool needsReferencedTables() const { return false; }
    /// Creates the sequence of ids for a new table. One that has outlived an earlier table of that name serves again.
    virtual bool createSequence(StatementRunner& statements, const QString& table) const;
    /// Creates the sequence of a table that may have rows already, unless it is there.
    virtual bool completeSequence(StatementRunner& statements, const QString& table) const;

    /// The statements that put back what others have put on @p table, in the order in which they can be run.
    virtual QStringList attachmentsOf(StatementRunner& statements, const QString& table) const = 0;
    /// Takes away what a new table grants by default.
    virtual void revokeDefaultGrants(StatementRunner& statements, const QString& table) const;
    /// The foreign keys of other tables that keep @p table from being dropped.
    virtual QVector<ForeignKey> foreignKeysOn(StatementRunner& statements, const QString& table) const;
    /// Whether both tables of @p foreignKey, which was taken off, are there.
    virtual bool isPossible(StatementRunner& statements, const ForeignKey& foreignKey) const;

    /// Makes a backup, which is never one that is there already, and logs where it is. Gives the path of a file, which
    /// the end of the transaction leaves where it is; empty when there is none.
    virtual QString makeBackup(StatementRunner& statements, const BackupOrder& order) const = 0;

    /// Selects the name of each table with that of each of its columns.
    virtual QString columnsSelect() const = 0;
    /// The condition that @p column holds an id that is spelled otherwise than QUuid::toString() does.
    virtual QString isOddId(const QString& column) const = 0;
    /// The id in @p column as QUuid::toString() spells it; of no meaning unless it is an id.
    virtual QString canonicalId(const QString& column) const = 0;
    /// The same as @p condition, without a look at what lies behind large values of @p content, if the backend would
    /// have to read them whole to get there. Few of them are passed all the same.
    virtual QString unlessFarBehind(const QString& table, const QString& content, const QString& condition) const;
    /// @p number as it is compared with a column of texts.
    virtual QString asText(qint64 number) const { return QString::number(number); }

protected:
    SchemaDialect() = default;
    /// The first time stamp from now on that @p isTaken says no to: what is there is never overwritten.
    static QString freeTimeStamp(const std::function<bool(const QString&)>& isTaken);
};

} // namespace DataAccess::Database
