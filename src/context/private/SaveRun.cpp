#include "context/private/SaveRun.h"

namespace DataAccess::Context {

using namespace QOR::Entities::Enumerations;

SaveRun::SaveRun(EntityLedger& ledger)
    : m_ledger(ledger)
{
    ledger.adoptLinked();
    for (EntityLedger::Change& change : ledger.takeChanges())
        m_candidates.push_back({std::move(change)});
}

void SaveRun::fail(Candidate& candidate, const QString& reason)
{
    candidate.outcome = Outcome::Failed;
    ++m_failures;
    if (!reason.isEmpty() && !m_reasons.contains(reason))
        m_reasons.append(reason);
}

QString SaveRun::finish()
{
    int homeless = 0;
    for (Candidate& candidate : m_candidates) {
        EntityLedger::Change& change = candidate.change;
        if (candidate.outcome == Outcome::Stored) {
            m_ledger.settle(*change.entity);
            continue;
        }
        if (candidate.outcome == Outcome::NotTried) {
            ++homeless;
            change.isOfContent = true;
            change.entity->SetEntityState(Normal);
        }
        m_ledger.putBack(change);
    }
    if (homeless > 0)
        qCWarning(lcContext) << homeless << "attached entities have no repository here, and are not stored";
    if (m_failures == 0)
        return {};
    QString text = QStringLiteral("%1 entities could not be stored: %2")
                       .arg(QString::number(m_failures), m_reasons.join(QLatin1String("; ")));
    qCWarning(lcContext).noquote() << text;
    return text;
}

} // namespace DataAccess::Context
