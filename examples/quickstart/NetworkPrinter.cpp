#include "NetworkPrinter.h"

#include <algorithm>
#include <cmath>

using namespace Cables::Entities;

namespace {

const QString s_unknown = QStringLiteral("unknown");

template <typename T>
bool isDeleted(const std::shared_ptr<T>& entity)
{
    return entity->EntityState() == QOR::Entities::Enumerations::Deleted;
}

/// The entities in the order of @p less, without those marked deleted.
template <typename T, typename Less>
std::vector<std::shared_ptr<T>> sorted(const QHash<QUuid, std::shared_ptr<T>>& entities, Less less)
{
    std::vector<std::shared_ptr<T>> list(entities.begin(), entities.end());
    list.erase(std::remove_if(list.begin(), list.end(), isDeleted<T>), list.end());
    std::sort(list.begin(), list.end(), less);
    return list;
}

template <typename T>
std::vector<std::shared_ptr<T>> sortedByIndex(const QHash<QUuid, std::shared_ptr<T>>& entities)
{
    return sorted(entities, [](const auto& left, const auto& right) { return left->Index() < right->Index(); });
}

template <typename T>
QString nameOf(const QHash<QUuid, std::shared_ptr<T>>& entities, const QUuid& id)
{
    const auto entity = entities.value(id);
    return entity ? entity->Name() : s_unknown;
}

QString number(double value, int decimals, const QString& unit)
{
    return std::isnan(value) ? s_unknown : QStringLiteral("%1 %2").arg(QString::number(value, 'f', decimals), unit);
}

QString metres(double value)
{
    return number(value, 1, QStringLiteral("m"));
}

QString velocity(double metresPerSecond)
{
    return number(metresPerSecond / 1e6, 1, QStringLiteral("m/µs"));
}

QString date(const QDate& value)
{
    return value.isValid() ? value.toString(Qt::ISODate) : s_unknown;
}

QString position(const Point& point)
{
    return QStringLiteral("%1°, %2°").arg(point.latitude(), 0, 'f', 4).arg(point.longitude(), 0, 'f', 4);
}

} // namespace

NetworkPrinter::NetworkPrinter(Repositories& repositories, QTextStream& out)
    : m_repositories(repositories)
    , m_out(out)
    , m_insulations(repositories.insulations.GetAll())
    , m_owners(repositories.owners.GetAll())
    , m_ratings(repositories.ratings.GetAll())
    , m_details(repositories.details.GetAll())
    , m_segmentTypes(repositories.segmentTypes.GetAll())
    , m_stations(repositories.stations.GetAll())
    , m_switchgears(repositories.switchgears.GetAll())
    , m_terminations(repositories.terminations.GetAll())
{}

void NetworkPrinter::printCounts()
{
    const std::pair<const char*, unsigned int> counts[] = {{"cables", m_repositories.cables.Count()},
                                                           {"phases", m_repositories.phases.Count()},
                                                           {"segments", m_repositories.segments.Count()},
                                                           {"segment details", m_repositories.details.Count()},
                                                           {"segment types", m_repositories.segmentTypes.Count()},
                                                           {"insulations", m_repositories.insulations.Count()},
                                                           {"routes", m_repositories.routes.Count()},
                                                           {"points", m_repositories.points.Count()},
                                                           {"stations", m_repositories.stations.Count()},
                                                           {"terminations", m_repositories.terminations.Count()},
                                                           {"switchgear", m_repositories.switchgears.Count()},
                                                           {"owners", m_repositories.owners.Count()},
                                                           {"ratings", m_repositories.ratings.Count()}};
    m_out << "Rows\n";
    for (const auto& count : counts)
        m_out << QStringLiteral("  %1 %2\n").arg(QLatin1String(count.first), -16).arg(count.second, 6);
}

void NetworkPrinter::printNetwork()
{
    const auto cables = sorted(m_repositories.cables.GetAll(), [](const auto& left, const auto& right) {
        return std::make_pair(left->Number(), left->Id()) < std::make_pair(right->Number(), right->Id());
    });
    for (const auto& cable : cables)
        printCable(*cable);
}

void NetworkPrinter::printCable(const Cable& cable)
{
    m_out << "Cable " << cable.Number() << ": " << number(cable.Voltage() / 1000, 1, QStringLiteral("kV")) << ", "
          << metres(cable.Length()) << ", " << cable.City() << ", installed " << date(cable.InstallationDate()) << '\n';
    m_out << "  Owner: " << nameOf(m_owners, cable.OwnerId()) << '\n';
    printEnd(QStringLiteral("From"), cable.StationAId(), cable.TerminationAId(), cable.SwitchgearAId());
    printEnd(QStringLiteral("To"), cable.StationBId(), cable.TerminationBId(), cable.SwitchgearBId());
    if (!cable.RouteId().isNull())
        printRoute(cable.RouteId());

    const auto phases = sortedByIndex(m_repositories.phases.GetByCableId(cable.Id()));
    std::vector<unsigned int> indexes;
    for (const auto& phase : phases) {
        printPhase(*phase);
        indexes.push_back(phase->Index());
    }
    for (const auto& rating : m_ratings) {
        if (rating->cableID() == cable.Id() && !isDeleted(rating))
            printRating(*rating, indexes);
    }
}

void NetworkPrinter::printEnd(const QString& label, const QUuid& station, const QUuid& termination,
                              const QUuid& switchgear)
{
    m_out << "  " << label << ": station " << nameOf(m_stations, station);
    const auto found = m_stations.value(station);
    if (found) {
        const auto point = m_repositories.points.GetById(found->PointId());
        if (point)
            m_out << " (" << position(*point) << ')';
        if (!found->Image().isNull())
            m_out << ", image " << found->Image().width() << " x " << found->Image().height() << " px";
    }
    m_out << ", termination " << nameOf(m_terminations, termination) << ", switchgear "
          << nameOf(m_switchgears, switchgear) << '\n';
}

void NetworkPrinter::printRoute(const QUuid& id)
{
    const auto route = m_repositories.routes.GetById(id);
    const auto points = m_repositories.points.GetByRouteId(id);
    m_out << "  Route: " << points.size() << " points\n";
    if (!route)
        return;
    for (const QUuid& pointId : route->PointIds()) {
        const auto point = points.value(pointId);
        m_out << "    " << (point ? position(*point) : s_unknown) << '\n';
    }
}

void NetworkPrinter::printPhase(const Phase& phase)
{
    const auto segments = sortedByIndex(m_repositories.segments.GetByPhaseId(phase.Id()));
    double length = 0;
    for (const auto& segment : segments)
        length += std::isnan(segment->Length()) ? 0 : segment->Length();
    m_out << "  Phase " << phase.Index() + 1 << ": " << metres(length) << '\n';
    for (const auto& segment : segments)
        m_out << "    " << describe(*segment) << '\n';
}

QString NetworkPrinter::describe(const Segment& segment) const
{
    const auto detail = m_details.value(segment.DetailId());
    const auto type = detail ? m_segmentTypes.value(detail->TypeId()) : nullptr;
    const QString made = detail ? detail->Name() : s_unknown;
    if (type && type->IsJoint())
        return QStringLiteral("%1 joint: %2").arg(made, segment.Name());
    QString text = QStringLiteral("%1 section: %2, %3").arg(made, segment.Name(), metres(segment.Length()));
    if (detail)
        text += QStringLiteral(", %1").arg(velocity(detail->Velocity()));
    if (detail && m_insulations.contains(detail->InsulationId()))
        text += QStringLiteral(", insulation ") + nameOf(m_insulations, detail->InsulationId());
    return text;
}

void NetworkPrinter::printRating(const Rating& rating, const std::vector<unsigned int>& phases)
{
    m_out << "  Rating of " << rating.measureTime().toString(Qt::ISODate) << ": " << rating.comment() << '\n';
    for (const unsigned int phase : phases) {
        const int key = static_cast<int>(phase);
        m_out << "    phase " << phase + 1 << ": " << rating.summary(key)
              << " overall, segments rated: " << rating.segmentKeysForPhase(key).size() << '\n';
    }
}
