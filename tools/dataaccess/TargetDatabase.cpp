#include "TargetDatabase.h"

#include "Invocation.h"
#include "ToolError.h"
#include "transfer/private/TableRows.h"

#include <QFileInfo>

using namespace DataAccess;

TargetDatabase::TargetDatabase(const QString& argument, NewFile::Leftover leftover, bool isResumed,
                               const Invocation& invocation)
    : m_address(DatabaseAddress::parse(argument))
{
    if (m_address.isLegacy())
        throw ToolError(WrongUsage, QStringLiteral("%1 is a legacy file, which is never written").arg(m_address.text),
                        QStringLiteral("Name a new file."));
    DatabaseAddress written = m_address;
    if (!m_address.isPostgres()) {
        m_isNew = !m_address.exists();
        m_file.emplace(m_address.path(), !m_isNew, m_isNew ? leftover : NewFile::Leftover::Removed);
        if (m_isNew) {
            written.settings.name = m_file->unfinished();
            if (!isResumed || !QFileInfo::exists(written.settings.name))
                m_file->begin();
        }
    }
    m_opened.emplace(written, OpenedDatabase::Access::Write, invocation);
    m_hadRows = Transfer::rowCount(database()) > 0;
    m_opened->refuseNewerSchema();
    if (m_hadRows)
        m_opened->requireCurrentSchema();
    else if (!m_opened->direct().migrate())
        throw ToolError(Failed, QStringLiteral("The tables of %1 can't be made").arg(m_address.text),
                        QStringLiteral("The option --verbose shows the log."));
}

TargetDatabase::~TargetDatabase() = default;

void TargetDatabase::complete()
{
    m_opened.reset();
    if (m_isNew)
        m_file->publish();
}
