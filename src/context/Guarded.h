#pragma once

#include "context/EntityHashes.h"
#include "database/DbException.h"
#include "database/Failure.h"
#include "database/LoggingCategories.h"

#include <exception>

namespace DataAccess::Context {

/// What @p operation gives. What it throws is logged, as that of @p function, and reported as any other failure.
template <typename Operation>
auto guarded(const char* function, const Operation& operation) -> decltype(operation())
{
    using Database::Failure;
    const auto report = [function](const char* reason, Failure::Kind kind) {
        qCCritical(lcContext) << function << reason;
        Failure failure;
        failure.reason = QString::fromLocal8Bit(reason);
        failure.kind = kind;
        Database::FailureWatch::report(failure);
    };
    try {
        return operation();
    } catch (const Exceptions::DbException& error) {
        report(error.what(), error.isUnavailable() ? Failure::Kind::Unavailable : Failure::Kind::Statement);
    } catch (const std::exception& error) {
        report(error.what(), Failure::Kind::Statement);
    }
    return decltype(operation())();
}

/// The words for what @p watch has seen fail with entities of kind T; empty when nothing did.
template <typename T>
QString failureText(const Database::FailureWatch& watch)
{
    return watch.failed() ? QLatin1String(kindName<T>) + QLatin1String(": ") + watch.reason() : QString();
}

} // namespace DataAccess::Context
