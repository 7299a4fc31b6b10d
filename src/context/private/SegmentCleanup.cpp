#include "context/CableContext.h"
#include "context/private/Networks.h"
#include "database/LoggingCategories.h"

#include <QSet>

#include <algorithm>
#include <cmath>
#include <map>
#include <optional>
#include <tuple>

namespace DataAccess::Context {

using namespace Cables::Entities;

namespace {

using SegmentPointer = std::shared_ptr<Segment>;
using SegmentList = std::vector<SegmentPointer>;
/// The live segments of one phase by index; of one index those first that a rating has a value of, and of these, and of
/// the others, those that were changed last.
using Places = std::map<unsigned int, SegmentList>;

/// The segments that the ratings of a network have values of. It reads all their documents, which takes time, and so
/// only when it is asked.
class RatedSegments
{
public:
    explicit RatedSegments(const CableNetwork& network)
        : m_network(network)
    {}

    bool contains(const Segment& segment) const
    {
        if (!m_ids)
            m_ids = read();
        return m_ids->contains(segment.Id());
    }

private:
    QSet<QUuid> read() const
    {
        QSet<QUuid> ids;
        for (const auto& rating : m_network.of<Rating>()) {
            const QStringList phases = isLive(*rating) ? rating->phaseKeys() : QStringList();
            for (const QString& phase : phases) {
                const QStringList segments = rating->segmentKeysForPhase(phase);
                for (const QString& segment : segments)
                    ids.insert(QUuid(segment));
            }
        }
        return ids;
    }

    const CableNetwork& m_network;
    mutable std::optional<QSet<QUuid>> m_ids;
};

QHash<QUuid, Places> placesByPhase(const CableNetwork& network, const RatedSegments& rated)
{
    const auto isKeptRather = [&rated](const SegmentPointer& left, const SegmentPointer& right) {
        const auto rank = [&rated](const Segment& segment) {
            return std::make_tuple(rated.contains(segment), segment.Timestamp(), segment.Id());
        };
        return rank(*left) > rank(*right);
    };
    QHash<QUuid, Places> phases;
    for (const SegmentPointer& segment : network.of<Segment>()) {
        if (isLive(*segment) && !segment->PhaseId().isNull())
            phases[segment->PhaseId()][segment->Index()].push_back(segment);
    }
    for (Places& places : phases) {
        for (auto& place : places)
            std::sort(place.second.begin(), place.second.end(), isKeptRather);
    }
    return phases;
}

bool hasSameContent(const Segment& left, const Segment& right)
{
    return left.Name() == right.Name() && isSameNumber(left.Length(), right.Length()) &&
           left.InstallationDate() == right.InstallationDate() && left.DetailId() == right.DetailId();
}

void markDeleted(Segment& segment, const Segment& kept)
{
    qCInfo(lcContext).noquote() << "Segment" << segment.Id().toString() << "is stored twice; marked deleted, kept"
                                << kept.Id().toString();
    segment.SetEntityState(QOR::Entities::Enumerations::Deleted);
}

bool isKnownLength(double length)
{
    return std::isfinite(length) && length > 0;
}

/// Whether somebody entered @p segment. Older programs made joints by themselves, without any value.
bool isEntered(const Segment& segment)
{
    return isKnownLength(segment.Length()) || !segment.Name().isEmpty() || segment.InstallationDate().isValid();
}

/// Whether @p segment holds nothing that @p other does not hold too, or has no value for.
bool fitsInto(const Segment& segment, const Segment& other)
{
    const auto fits = [](const auto& value, const auto& there, bool isSaid, bool isSaidThere) {
        return !isSaid || !isSaidThere || value == there;
    };
    return fits(segment.Name(), other.Name(), !segment.Name().isEmpty(), !other.Name().isEmpty()) &&
           fits(segment.Length(), other.Length(), isKnownLength(segment.Length()), isKnownLength(other.Length())) &&
           fits(segment.InstallationDate(), other.InstallationDate(), segment.InstallationDate().isValid(),
                other.InstallationDate().isValid()) &&
           segment.DetailId() == other.DetailId();
}

/// Gives @p kept the values that only @p dropped has.
void complete(Segment& kept, const Segment& dropped)
{
    if (kept.Name().isEmpty() && !dropped.Name().isEmpty())
        kept.SetName(dropped.Name());
    if (!isKnownLength(kept.Length()) && isKnownLength(dropped.Length()))
        kept.SetLength(dropped.Length());
    if (!kept.InstallationDate().isValid() && dropped.InstallationDate().isValid())
        kept.SetInstallationDate(dropped.InstallationDate());
}

/// Makes the joints of a network agree with their details and neighbours.
class JointRepair
{
public:
    explicit JointRepair(const CableNetwork& network)
        : m_network(network)
        , m_rated(network)
        , m_phases(placesByPhase(network, m_rated))
    {
        for (const Places& places : qAsConst(m_phases))
            noteUses(places);
    }

    void run()
    {
        for (const auto& detail : m_network.of<SegmentDetail>())
            retype(*detail);
        for (const Places& places : qAsConst(m_phases)) {
            forEachBetweenSections(places, [this](const SegmentList& place) {
                for (const SegmentPointer& segment : place)
                    giveJointDetail(*segment);
            });
        }
        for (const Places& places : qAsConst(m_phases)) {
            for (const auto& place : places)
                mergeJoints(place.second);
        }
    }

private:
    /// How many live segments have a detail, and how many of these nobody entered as a section.
    struct Uses
    {
        int all = 0;
        int asJoint = 0;
    };

    bool isOfType(const Segment& segment, bool joint) const
    {
        const auto detail = m_network.find<SegmentDetail>(segment.DetailId());
        const auto type = detail ? m_network.find<SegmentType>(detail->TypeId()) : nullptr;
        return type && type->IsJoint() == joint;
    }

    bool isSection(const Segment& segment) const { return isOfType(segment, false) && isKnownLength(segment.Length()); }

    /// Calls @p visit for each place that has a section of known length, and nothing else, before and behind it.
    template <typename Visitor>
    void forEachBetweenSections(const Places& places, const Visitor& visit) const
    {
        const auto areSections = [this](const Places::value_type& place) {
            return std::all_of(place.second.begin(), place.second.end(),
                               [this](const SegmentPointer& segment) { return isSection(*segment); });
        };
        if (places.size() < 3)
            return;
        for (auto it = std::next(places.begin()); std::next(it) != places.end(); ++it) {
            if (areSections(*std::prev(it)) && areSections(*std::next(it)))
                visit(it->second);
        }
    }

    void noteUses(const Places& places)
    {
        for (const auto& place : places) {
            for (const SegmentPointer& segment : place.second)
                ++m_uses[segment->DetailId()].all;
        }
        forEachBetweenSections(places, [this](const SegmentList& place) {
            for (const SegmentPointer& segment : place) {
                if (!isEntered(*segment))
                    ++m_uses[segment->DetailId()].asJoint;
            }
        });
    }

    /// Gives the joint type to a detail that says nothing of a section and that only joints have. A type other than
    /// the default one was chosen by somebody, and stays.
    void retype(SegmentDetail& detail)
    {
        const Uses uses = m_uses.value(detail.Id());
        const bool saysSection = !detail.InsulationId().isNull() || isKnownLength(detail.Velocity());
        const bool isWrong = detail.TypeId().isNull() || detail.TypeId() == m_defaults.cableType()->Id();
        const auto jointType = m_network.find<SegmentType>(m_defaults.jointType()->Id());
        if (!isWrong || saysSection || uses.all == 0 || uses.asJoint < uses.all || !isLive(detail) || !jointType ||
            !jointType->IsJoint())
            return;
        qCInfo(lcContext).noquote() << "Segment detail" << detail.Id().toString() << "is of joints only; its type"
                                    << detail.TypeId().toString() << "becomes" << jointType->Id().toString();
        detail.SetTypeId(jointType->Id());
    }

    /// Makes a joint of a piece of no length, name or date between two sections: gives it the default detail when it
    /// has none, or a section's that another segment has too.
    void giveJointDetail(Segment& segment)
    {
        const QUuid detail = segment.DetailId();
        const auto jointDetail = m_network.find<SegmentDetail>(m_defaults.getSegmentDetailJointDefault()->Id());
        const bool isWrong = detail.isNull() || isOfType(segment, false);
        const bool isOnlyHere = !detail.isNull() && m_uses.value(detail).all < 2;
        if (!isWrong || isOnlyHere || isEntered(segment) || !isSameNumber(segment.Length(), 0) || !jointDetail ||
            !isLive(*jointDetail))
            return;
        qCInfo(lcContext).noquote() << "Segment" << segment.Id().toString() << "is a joint; its detail"
                                    << detail.toString() << "becomes" << jointDetail->Id().toString();
        --m_uses[detail].all;
        segment.SetDetailId(jointDetail->Id());
    }

    /// Merges the joints of one place that do not contradict each other into one.
    void mergeJoints(const SegmentList& place)
    {
        SegmentList kept;
        for (const SegmentPointer& segment : place) {
            if (!isOfType(*segment, true))
                continue;
            const auto same = std::find_if(kept.begin(), kept.end(), [&segment](const SegmentPointer& other) {
                return fitsInto(*segment, *other);
            });
            if (same == kept.end() || m_rated.contains(*segment)) {
                kept.push_back(segment);
                continue;
            }
            complete(**same, *segment);
            markDeleted(*segment, **same);
        }
    }

    const CableNetwork& m_network;
    const RatedSegments m_rated;
    const CableContext::DefaultTypes m_defaults = CableContext::defaultTypes();
    QHash<QUuid, Places> m_phases;
    QHash<QUuid, Uses> m_uses;
};

} // namespace

void removeDuplicateSegments(const CableNetwork& network)
{
    const RatedSegments rated(network);
    for (const Places& places : placesByPhase(network, rated)) {
        for (const auto& place : places) {
            SegmentList kept;
            for (const SegmentPointer& segment : place.second) {
                const auto same = std::find_if(kept.begin(), kept.end(), [&segment](const SegmentPointer& other) {
                    return hasSameContent(*segment, *other);
                });
                if (same == kept.end() || rated.contains(*segment))
                    kept.push_back(segment);
                else
                    markDeleted(*segment, **same);
            }
        }
    }
}

void repairJoints(const CableNetwork& network)
{
    JointRepair(network).run();
}

} // namespace DataAccess::Context
