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
    return rows({QStringLiteral("ce_cable"), QStringLiteral("ce_insulation"), QStringLiteral("ce_owner"),
                 QStringLiteral("ce_phase"), QStringLiteral("ce_point"), QStringLiteral("ce_route"),
                 QStringLiteral("ce_segment"), QStringLiteral("ce_segment_detail"), QStringLiteral("ce_segmenttype"),
                 QStringLiteral("ce_station"), QStringLiteral("ce_switchgear"), QStringLiteral("ce_termination"),
                 QStringLiteral("qor_rating")});
}

QStringList ContextDatabase::pdRows()
{
    return rows({QStringLiteral("pd_file"), QStringLiteral("pd_filter"), QStringLiteral("pd_iec_overview"),
                 QStringLiteral("pd_lbdiagram"), QStringLiteral("pd_mapping_event"), QStringLiteral("pd_report"),
                 QStringLiteral("pd_summary"), QStringLiteral("pd_task"), QStringLiteral("pd_task_info")});
}

QStringList ContextDatabase::rows(const QStringList& tables)
{
    return worker().run([&tables](Interfaces::IDatabase& db) {
        QStringList lines;
        for (const QString& table : tables) {
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
