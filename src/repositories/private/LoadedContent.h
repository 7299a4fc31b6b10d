#pragma once

#include "database/IDatabase.h"

#include <QHash>
#include <QVariant>

#include <algorithm>
#include <iterator>
#include <memory>

namespace DataAccess::Repositories {

/**
 * Remembers which objects were read or written with their content, a column too heavy to be read each time. The update
 * of any other object must keep the stored content, unless it brings its own. Does not keep the objects alive. Used on
 * the worker's thread.
 */
template <typename T>
class LoadedContent
{
public:
    void add(const std::shared_ptr<T>& object)
    {
        m_objects.insert(object.get(), object);
        if (m_objects.size() < m_cleanAt)
            return;
        for (auto entry = m_objects.begin(); entry != m_objects.end();)
            entry = entry->expired() ? m_objects.erase(entry) : std::next(entry);
        m_cleanAt = std::max(1024, 2 * m_objects.size());
    }

    bool contains(const std::shared_ptr<T>& object) const { return m_objects.value(object.get()).lock() == object; }

    /// Runs @p select, which finds the row that the current transaction is to update, and lets nobody else change it.
    static QSqlQuery selectForUpdate(Interfaces::IDatabase& db, const QString& select)
    {
        return db.SelectForUpdate(select);
    }

    /// Binds what the current @p row has in @p column, in the form in which it is stored, so that it stays.
    static void bindStored(Interfaces::IDatabase& db, Interfaces::IValueConverter& values, const QString& placeholder,
                           QSqlQuery& row, int column)
    {
        if (row.value(column).type() == QVariant::ByteArray) {
            QByteArray stored;
            db.Converter(row)->value(stored, column);
            values.bindValue(placeholder, stored);
        } else {
            values.bindValue(placeholder, row.value(column).toString());
        }
    }

private:
    QHash<const T*, std::weak_ptr<T>> m_objects;
    int m_cleanAt = 1024;
};

} // namespace DataAccess::Repositories
