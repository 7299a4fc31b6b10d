#pragma once

#include "transfer/private/SchemaTables.h"

#include <QString>
#include <QVector>

#include <functional>

namespace DataAccess::Interfaces {
class IDatabase;
}

/// Something wrong in a database.
struct Finding
{
    QString fault; ///< A word for the kind of fault, the same in every version of the program.
    QString table; ///< Empty when it is a fault of the file.
    QString id;    ///< Of the row; empty when it is a fault of the table.
    QString column;
    QString text;
    /// The statements that set it right, where there is one right answer; the values to bind are ":value" and ":id".
    QString repair;
    QString value;
};

/// Looks for what is wrong in a database, and changes nothing.
class DatabaseCheck
{
public:
    using Progress = std::function<bool(qint64, qint64)>;

    /// @p isDeep: also every image, document and text, one by one.
    DatabaseCheck(DataAccess::Interfaces::IDatabase& db, bool isDeep);

    QVector<Finding> run(const Progress& progress);

private:
    /// The columns, types and keys of the tables against those that the migrations make.
    void checkSchema();
    /// The rows that hold the versions.
    void checkVersions();
    /// Ids that are none, are doubled or have capitals, in the key and in references.
    void checkIds(const DataAccess::Transfer::SchemaTable& table);
    void checkReference(const DataAccess::Transfer::SchemaTable& table,
                        const DataAccess::Transfer::SchemaReference& reference);
    void checkPointLists();
    /// Ratings that belong to nothing.
    void checkRatings();
    /// Values that are not of the kind of their column.
    void checkValues(const DataAccess::Transfer::SchemaTable& table);
    void checkContents();
    void checkImages();
    void checkDocuments(const char* table, const char* column);
    /// Texts that other backends would not give back as they are.
    void checkTexts(const DataAccess::Transfer::SchemaTable& table);

    void add(const char* fault, const QString& table, const QString& id, const QString& column, const QString& text);
    void addRepairable(const char* fault, const QString& table, const QString& id, const QString& column,
                       const QString& text, const QString& value);
    bool isComplete(const QString& table) const { return m_complete.contains(table); }

    DataAccess::Interfaces::IDatabase& m_db;
    bool m_isDeep;
    QStringList m_complete; // the tables that have all of their columns
    QVector<Finding> m_findings;
};
