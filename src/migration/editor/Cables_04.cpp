#include "migration/SchemaChange.h"

namespace DataAccess::Manager::EditorSteps {

namespace {

struct DefaultDetail
{
    QString insulation;
    QString id;
};

const QString& unknownDetail()
{
    static const QString id = QStringLiteral("{a9e63935-52ba-467d-8b82-d1ab111192f8}");
    return id;
}

QVector<DefaultDetail> defaultDetails()
{
    return {{QStringLiteral("PE"), QStringLiteral("{e4ceb74c-b03e-409d-8493-fd7aaa01162e}")},
            {QStringLiteral("XLPE"), QStringLiteral("{d9697ef4-ea47-485d-b2fb-f0294ca44956}")},
            {QStringLiteral("PILC"), QStringLiteral("{0faaa849-cb7a-41aa-9da0-af9da80489c2}")},
            {QStringLiteral("EPR"), QStringLiteral("{ecbb94ed-e7ad-477c-a9d4-53e0a7a61caf}")},
            {QStringLiteral("PVC"), QStringLiteral("{a258f674-0e8e-43e4-a315-3400fe99cb5a}")},
            {QStringLiteral("MIXED"), QStringLiteral("{672aa7b2-cd8d-4e48-a0a6-63530c5b0124}")},
            {QStringLiteral("Unknown"), unknownDetail()}};
}

/// The spellings of @p name among the stored insulations. LIKE takes no notice of case on SQLite only.
QStringList spellings(const StatementRunner::Rows& insulations, const QString& name)
{
    QStringList found;
    for (const QVariantList& row : insulations) {
        const QString stored = row.first().toString();
        if (stored.compare(name, Qt::CaseInsensitive) == 0)
            found.append(stored);
    }
    return found;
}

void shareDetailsOfInsulations(SchemaChange& schema)
{
    const StatementRunner::Rows insulations = schema.rows(QStringLiteral("SELECT DISTINCT name FROM ce_insulation"));
    for (const DefaultDetail& detail : defaultDetails()) {
        for (const QString& name : spellings(insulations, detail.insulation)) {
            schema.execute(
                QStringLiteral("UPDATE ce_segment SET \"detail\" = :newId WHERE detail in (SELECT ce_segment_detail.id "
                               "as id from ce_segment_detail INNER JOIN ce_insulation ON "
                               "ce_segment_detail.insulation = ce_insulation.id WHERE ce_insulation.name like :iso )"),
                {{QStringLiteral(":newId"), detail.id}, {QStringLiteral(":iso"), name}});
        }
    }
}

} // namespace

void Cables_04(SchemaChange& schema)
{
    shareDetailsOfInsulations(schema);
    schema.execute(QStringLiteral("UPDATE ce_segment SET \"detail\" = :newId where detail in (Select id from "
                                  "ce_segment_detail where (insulation not in (Select id from ce_insulation)) and "
                                  "type like '{3308519a-3368-40fb-8371-9b4e39bf4cb2}')"),
                   {{QStringLiteral(":newId"), unknownDetail()}});
    schema.execute(QStringLiteral("UPDATE ce_segment SET \"detail\" = :newId WHERE detail in (SELECT "
                                  "ce_segment_detail.id as id from ce_segment_detail INNER JOIN ce_segmenttype ON "
                                  "ce_segment_detail.type = ce_segmentType.id WHERE ce_segmenttype.isjoint = :joint)"),
                   {{QStringLiteral(":newId"), QStringLiteral("{45c6c0b5-f2d4-338e-d0db-4737fb6cc0a7}")},
                    {QStringLiteral(":joint"), true}});
    // The default entries are written again with the other default types.
    schema.empty(QStringLiteral("ce_insulation"));
    schema.empty(QStringLiteral("ce_segment_detail"));
}

} // namespace DataAccess::Manager::EditorSteps
