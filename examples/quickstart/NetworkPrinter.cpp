#include "NetworkPrinter.h"

#include <algorithm>
#include <cmath>

using namespace Cables::Entities;

namespace {

const QString s_unknown = QStringLiteral("unknown");

QString nameOf(const Interfaces::INamedEntity* entity)
{
    return entity != nullptr ? entity->Name() : s_unknown;
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

QString position(const Interfaces::IPoint& point)
{
    return QStringLiteral("%1°, %2°").arg(point.latitude(), 0, 'f', 4).arg(point.longitude(), 0, 'f', 4);
}

QString describe(const Interfaces::ISegment& segment)
{
    const auto detail = segment.Detail();
    const auto type = detail ? detail->Type() : nullptr;
    if (type && type->IsJoint())
        return QStringLiteral("%1 joint: %2").arg(detail->Name(), segment.Name());
    QString text =
        QStringLiteral("%1 section: %2, %3").arg(nameOf(detail.get()), segment.Name(), metres(segment.Length()));
    if (detail)
        text += QStringLiteral(", %1").arg(velocity(detail->Velocity()));
    if (detail && detail->Insulation())
        text += QStringLiteral(", insulation ") + detail->Insulation()->Name();
    return text;
}

} // namespace

NetworkPrinter::NetworkPrinter(const DataAccess::Context::CableContext& context, QTextStream& out)
    : m_context(context)
    , m_out(out)
{}

void NetworkPrinter::printCounts()
{
    const std::pair<const char*, int> counts[] = {{"cables", m_context.Cables().size()},
                                                  {"phases", m_context.Phases().size()},
                                                  {"segments", m_context.Segments().size()},
                                                  {"segment details", m_context.SegmentDetails().size()},
                                                  {"segment types", m_context.SegmentTypes().size()},
                                                  {"insulations", m_context.Insulations().size()},
                                                  {"routes", m_context.Routes().size()},
                                                  {"points", m_context.Points().size()},
                                                  {"stations", m_context.Stations().size()},
                                                  {"terminations", m_context.Terminations().size()},
                                                  {"switchgear", m_context.Switchgears().size()},
                                                  {"owners", m_context.Owners().size()},
                                                  {"ratings", m_context.Ratings().size()}};
    m_out << "Rows\n";
    for (const auto& count : counts)
        m_out << QStringLiteral("  %1 %2\n").arg(QLatin1String(count.first), -16).arg(count.second, 6);
}

void NetworkPrinter::printNetwork()
{
    const auto all = m_context.Cables();
    std::vector<std::shared_ptr<Cable>> cables(all.begin(), all.end());
    std::sort(cables.begin(), cables.end(), [](const auto& left, const auto& right) {
        return std::make_pair(left->Number(), left->Id()) < std::make_pair(right->Number(), right->Id());
    });
    for (const auto& cable : cables) {
        if (cable->EntityState() != QOR::Entities::Enumerations::Deleted)
            printCable(*cable);
    }
}

void NetworkPrinter::printCable(const Cable& cable)
{
    m_out << "Cable " << cable.Number() << ": " << number(cable.Voltage() / 1000, 1, QStringLiteral("kV")) << ", "
          << metres(cable.Length()) << ", " << cable.City() << ", installed " << date(cable.InstallationDate())
          << ", joints: " << cable.NrOfJoint() << '\n';
    m_out << "  Owner: " << nameOf(cable.Owner().get()) << '\n';
    printEnd(QStringLiteral("From"), cable.StationA().get(), cable.TerminationA().get(), cable.SwitchGearA().get());
    printEnd(QStringLiteral("To"), cable.StationB().get(), cable.TerminationB().get(), cable.SwitchGearB().get());
    if (cable.Route())
        printRoute(*cable.Route());
    for (const auto& phase : cable.Phases())
        printPhase(*phase);
    for (const auto& rating : m_context.Ratings()) {
        if (rating->cableID() == cable.Id())
            printRating(*rating, cable);
    }
}

void NetworkPrinter::printEnd(const QString& label, const Interfaces::IStation* station,
                              const Interfaces::ITermination* termination, const Interfaces::ISwitchgear* switchgear)
{
    m_out << "  " << label << ": station " << nameOf(station);
    if (station != nullptr) {
        if (station->Point())
            m_out << " (" << position(*station->Point()) << ')';
        if (!station->Image().isNull())
            m_out << ", image " << station->Image().width() << " x " << station->Image().height() << " px";
    }
    m_out << ", termination " << nameOf(termination) << ", switchgear " << nameOf(switchgear) << '\n';
}

void NetworkPrinter::printRoute(const Interfaces::IRoute& route)
{
    m_out << "  Route: " << route.PointIds().size() << " points\n";
    for (const auto& point : route.Points())
        m_out << "    " << position(*point) << '\n';
}

void NetworkPrinter::printPhase(const Interfaces::IPhase& phase)
{
    m_out << "  Phase " << phase.Index() + 1 << ": " << metres(phase.Length()) << ", " << velocity(phase.Velocity())
          << '\n';
    for (const auto& segment : phase.Segments())
        m_out << "    " << describe(*segment) << '\n';
}

void NetworkPrinter::printRating(const Rating& rating, const Cable& cable)
{
    m_out << "  Rating of " << rating.measureTime().toString(Qt::ISODate) << ": " << rating.comment() << '\n';
    for (const auto& phase : cable.Phases()) {
        const int key = static_cast<int>(phase->Index());
        m_out << "    phase " << key + 1 << ": " << rating.summary(key)
              << " overall, segments rated: " << rating.segmentKeysForPhase(key).size() << '\n';
    }
}
