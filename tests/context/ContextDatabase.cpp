#include "context/ContextDatabase.h"

#include <QSet>
#include <QSqlRecord>

using namespace DataAccess;

namespace TestSupport {

std::shared_ptr<Manager::EditorRepositoryManager> ContextDatabase::editorManager()
{
    return Factories::EditorRepositoryManagerFactory().create(worker().get(), Enumerations::Complete);
}

std::shared_ptr<Manager::PdRepositoryManager> ContextDatabase::pdManager()
{
    return Factories::PdRepositoryManagerFactory().create(worker().get(), Enumerations::Complete);
}

std::shared_ptr<ContextDatabase::CableContext> ContextDatabase::cableContext()
{
    return std::make_shared<CableContext>(Enumerations::Complete, editorManager(), 0);
}

std::shared_ptr<ContextDatabase::PdContext> ContextDatabase::pdContext()
{
    return std::make_shared<PdContext>(Enumerations::Complete, pdManager(), 0);
}

std::shared_ptr<ContextDatabase::CableContext> ContextDatabase::loadedCableContext()
{
    auto context = cableContext();
    context->reload();
    return context;
}

QStringList ContextDatabase::cableRows()
{
    return rows("ce_cable ce_insulation ce_owner ce_phase ce_point ce_route ce_segment ce_segment_detail "
                "ce_segmenttype ce_station ce_switchgear ce_termination qor_rating");
}

QStringList ContextDatabase::pdRows()
{
    return rows("pd_file pd_filter pd_iec_overview pd_lbdiagram pd_mapping_event pd_report pd_summary pd_task "
                "pd_task_info");
}

QStringList ContextDatabase::rows(const char* tables)
{
    return worker().run([tables](Interfaces::IDatabase& db) {
        QStringList lines;
        for (const QString& table : QString::fromLatin1(tables).split(QLatin1Char(' '))) {
            QSqlQuery query = db.Exec(QStringLiteral("SELECT * FROM ") + table);
            while (query.next()) {
                QString line = table;
                for (int i = 0; i < query.record().count(); ++i)
                    line += QLatin1Char('|') + query.value(i).toString();
                lines.append(line);
            }
        }
        lines.sort();
        return lines;
    });
}

QStringList changedRows(const QStringList& before, const QStringList& after)
{
    const QSet<QString> known(before.begin(), before.end());
    QStringList changed;
    for (const QString& line : after) {
        if (!known.contains(line))
            changed.append(line);
    }
    return changed;
}

} // namespace TestSupport
