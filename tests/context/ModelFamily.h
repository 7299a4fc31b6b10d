#pragma once

#include "context/ContextDatabase.h"
#include "support/FileLocker.h"

#include <functional>
#include <map>
#include <vector>

namespace TestSupport {

using Object = std::shared_ptr<QOR::Entities::Entity>;
using QOR::Entities::Enumerations::EntityState;

/// What of an entity the model compares: one text, and the reference to the entity above it.
struct Content
{
    QString text;
    QUuid parent;

    bool operator==(const Content& other) const { return text == other.text && parent == other.parent; }
};

/// One kind of entity, as far as the model uses it.
struct ModelKind
{
    const char* table;
    std::function<Object()> make;
    std::function<Content(const Object&)> content;
    std::function<void(const Object&, int)> setText;
    std::function<void(const Object&, const Object&)> setParent;
    std::function<Object(const Object&)> parent;
    std::function<std::vector<Object>(const Object&)> children;
    /// What the context shows, the types that every database has left out.
    std::function<std::vector<Object>()> shown;
    // Beside the context.
    std::function<std::vector<Object>()> rows;
    std::function<bool(const Object&)> update;
    std::function<bool(const Object&)> remove;
};

/// A database of one backend, a context on it, and three of its kinds, each of which refers to the one before.
class ModelFamily
{
public:
    virtual ~ModelFamily();
    ModelFamily(const ModelFamily&) = delete;
    ModelFamily& operator=(const ModelFamily&) = delete;

    virtual DataAccess::Context::AbstractContext& context() const = 0;
    /// Begins with a new context.
    virtual void reopen() = 0;
    /// Begins with an empty database.
    void empty();
    /// The operation that only this family has: loads the files of a report, or imports a cable with an owner.
    virtual void loadMore(const Object& object) = 0;

    std::vector<ModelKind> kinds;
    /// The kinds in the order in which they are saved.
    std::vector<int> savingOrder;
    /// The kinds that a load reads.
    std::vector<int> loadedKinds;
    /// The third kind comes by loadMore() only; or else that imports.
    bool hasFiles = false;

    static std::unique_ptr<ModelFamily> make(bool isPd);

    void run(const QString& statement);
    /// Another program that holds the database while the object lives; null where that stops no reader.
    std::unique_ptr<FileLocker> lock();

protected:
    ModelFamily();

    ContextDatabase m_database;
};

} // namespace TestSupport
