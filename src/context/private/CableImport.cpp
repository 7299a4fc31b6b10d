#include "context/private/CableImport.h"

#include "database/LoggingCategories.h"
#include "entities/qor/Properties.h"

#include <QSet>
#include <QtMath>

#include <algorithm>
#include <functional>
#include <type_traits>

namespace DataAccess::Context {

using namespace Cables::Entities;
using namespace QOR::Entities::Enumerations;
using QOR::Entities::copyProperties;
using QOR::Entities::forEachReference;

namespace {

/// Whether entities of a kind may be found by their names.
template <typename T>
constexpr bool isKnownByName =
    std::is_same_v<T, Insulation> || std::is_same_v<T, SegmentType> || std::is_same_v<T, SegmentDetail> ||
    std::is_same_v<T, Owner> || std::is_same_v<T, Termination> || std::is_same_v<T, Switchgear> ||
    std::is_same_v<T, Station>;

/// Whether each entity of a kind is a thing of its own, so that none stands for two others.
template <typename T>
constexpr bool isUnique = std::is_same_v<T, Station>;

template <typename T, typename Interface>
std::shared_ptr<T> withId(const std::shared_ptr<Interface>& object)
{
    const auto entity = std::dynamic_pointer_cast<T>(object);
    return entity && !entity->Id().isNull() ? entity : nullptr;
}

/// "Segment type" for "SegmentType".
QString inWords(const char* kind)
{
    QString words = QString::fromLatin1(kind).toLower();
    for (int i = words.size() - 1; i > 0; --i) {
        if (words.at(i) != QLatin1Char(kind[i]))
            words.insert(i, QLatin1Char(' '));
    }
    words[0] = QLatin1Char(kind[0]);
    return words;
}

/// Whether two measurements of a position may be of one place. What is not known may be anything.
bool mayBeOnePlace(const Cables::Entities::Interfaces::IPoint& left, const Cables::Entities::Interfaces::IPoint& right)
{
    constexpr double tolerance = 0.001; // degrees of latitude: about a hundred metres
    const double north = std::abs(left.latitude() - right.latitude());
    const double east = std::abs(left.longitude() - right.longitude()) * std::cos(qDegreesToRadians(left.latitude()));
    return !(north > tolerance || east > tolerance);
}

} // namespace

CableImport::CableImport(CableNetwork& target, IsUnsaved isUnsaved, bool hasImages)
    : m_target(target)
    , m_isUnsaved(std::move(isUnsaved))
    , m_hasImages(hasImages)
{}

void CableImport::add(const std::shared_ptr<Cable>& cable, const Ratings& ratings)
{
    if (!cable)
        return;
    if (cable->Id().isNull() || !isLive(*cable)) {
        qCWarning(lcContext).noquote() << "Cable" << cable->Id().toString()
                                       << "has no id, is deleted or is a snapshot; it is not imported";
        return;
    }
    const auto here = m_target.find<Cable>(cable->Id());
    const bool comesBack = !here || here->EntityState() == Deleted;
    m_isIncomplete = false;
    collect<Cable>(cable, comesBack);
    collectParts(*cable, comesBack);
    for (const auto& rating : ratings)
        collect<Rating>(rating, comesBack);
    if (m_isIncomplete)
        qCWarning(lcContext).noquote() << "Cable" << cable->Id().toString() << "was imported without all of its parts";
}

void CableImport::collectParts(const Cable& cable, bool comesBack)
{
    for (const auto& phase : cable.Phases()) {
        collect<Phase>(phase, comesBack);
        for (const auto& segment : phase->Segments())
            collect<Segment>(segment, comesBack);
    }
    if (cable.Rating())
        collect<Rating>(cable.Rating(), comesBack);
}

template <typename T, typename Interface>
void CableImport::collect(const std::shared_ptr<Interface>& object, bool comesBack)
{
    const auto entity = withId<T>(object);
    if (!entity) {
        m_isIncomplete = true;
        return;
    }
    Source<T>& known = sources<T>()[entity->Id()];
    if (known.entity && (known.comesBack || !comesBack))
        return;
    known = {entity, comesBack};
    const auto here = m_target.find<T>(entity->Id());
    if (here && here->EntityState() == Deleted && !comesBack)
        return;
    const bool isKept = here && !givesWay(*here, known);
    forEachReference<T>([&](const auto& reference) {
        using Reference = std::decay_t<decltype(reference)>;
        using Target = typename Reference::Target;
        const QUuid id = std::invoke(Reference::get, *entity);
        // The entity here may refer to a counterpart, or to something else by now.
        if (!id.isNull() && (!isKept || std::invoke(Reference::get, *here) == id))
            collectReferred<Target>(id, std::invoke(Reference::getObject, *entity), comesBack);
    });
    if constexpr (std::is_same_v<T, Route>) {
        QSet<QUuid> linked;
        for (const auto& point : entity->Points())
            linked.insert(point->Id());
        for (const QUuid& id : entity->PointIds()) {
            if (!linked.contains(id) && !m_target.find<Point>(id))
                m_isIncomplete = true;
        }
    }
}

template <typename Target, typename Interface>
void CableImport::collectReferred(const QUuid& id, const std::shared_ptr<Interface>& object, bool comesBack)
{
    if constexpr (!std::is_same_v<Target, Point>) {
        if (object) {
            collect<Target>(object, comesBack);
            return;
        }
    }
    if (!withId<Target>(object) && !m_target.find<Target>(id))
        m_isIncomplete = true;
}

std::vector<CableImport::EntityPointer> CableImport::run()
{
    // No kind refers to a later one by an id that may be another one here.
    Manager::forEachKind(Manager::editorKinds, [this](const auto& kind) {
        using T = typename std::decay_t<decltype(kind)>::Entity;
        if constexpr (!std::is_same_v<T, Point>)
            place<T>(inWords(kind.name));
    });
    return std::move(m_changed);
}

template <typename T>
void CableImport::place(const QString& kind)
{
    Entities<T> strangers;
    for (const Source<T>& source : qAsConst(sources<T>())) {
        if (const auto here = m_target.find<T>(source.entity->Id()))
            merge(source, here, kind);
        else
            strangers.push_back(source.entity);
    }
    // The names here are final now, and nothing has been inserted yet.
    if constexpr (isKnownByName<T>)
        findByName(strangers);
    for (const auto& stranger : strangers) {
        if (!m_standIns.contains(stranger->Id()))
            insert(sources<T>()[stranger->Id()]);
    }
}

template <typename T>
void CableImport::insert(const Source<T>& source)
{
    placePoints(source, static_cast<const T*>(nullptr));
    const auto copy = std::make_shared<T>();
    copy->SetId(source.entity->Id());
    assignContent(*source.entity, *copy);
    m_target.of<T>().insert(copy->Id(), copy);
    m_changed.push_back(copy);
}

template <typename T>
void CableImport::merge(const Source<T>& source, const std::shared_ptr<T>& here, const QString& kind)
{
    const bool isDeleted = here->EntityState() == Deleted;
    if (source.entity == here || (isDeleted && !source.comesBack))
        return;
    const bool isOverwritten = givesWay(*here, source);
    placePoints(source, isOverwritten ? nullptr : here.get());
    bool isChanged = isDeleted;
    if (isOverwritten) {
        assignContent(*source.entity, *here);
        isChanged = here->EntityState() != Normal;
    } else if (isLive(*here)) {
        isChanged = complete(*source.entity, *here);
    }
    if (isDeleted)
        here->SetEntityState(Modified);
    if (isChanged)
        m_changed.push_back(here);
    if (isChanged && isOverwritten)
        qCInfo(lcContext).noquote() << kind << here->Id().toString()
                                    << (isDeleted ? "was marked deleted, and comes back as it is at the source"
                                                  : "is overwritten: it was written later at the source");
}

void CableImport::placePoints(const Source<Station>& source, const Station* kept)
{
    if (!kept || kept->PointId() == source.entity->PointId())
        placePoint(source.entity->Point(), source.comesBack);
}

void CableImport::placePoints(const Source<Route>& source, const Route* kept)
{
    QSet<QUuid> listed;
    if (kept)
        listed = QSet<QUuid>(kept->PointIds().begin(), kept->PointIds().end());
    for (const auto& point : source.entity->Points()) {
        if (!kept || listed.contains(point->Id()))
            placePoint(point, source.comesBack);
    }
}

void CableImport::placePoint(const std::shared_ptr<Cables::Entities::Interfaces::IPoint>& object, bool comesBack)
{
    const Source<Point> source{withId<Point>(object), comesBack};
    if (!source.entity)
        return;
    if (const auto here = m_target.find<Point>(source.entity->Id()))
        merge(source, here, QStringLiteral("Point"));
    else
        insert(source);
}

template <typename T>
bool CableImport::givesWay(const T& here, const Source<T>& source) const
{
    if (isDefaultType(here.Id()))
        return false;
    if (here.EntityState() == Deleted)
        return source.comesBack;
    const QDateTime& written = source.entity->Timestamp();
    // Entities made by this import are New.
    const bool isUnsaved = here.EntityState() == New || m_isUnsaved(here);
    return !isUnsaved && written.isValid() && here.Timestamp().isValid() && written > here.Timestamp();
}

template <typename T>
void CableImport::assignContent(const T& source, T& to)
{
    // By way of a copy: a value that is changed and changed back would make the entity Modified.
    T content;
    copyProperties(source, content);
    forEachReference<T>([&](const auto& reference) {
        using Reference = std::decay_t<decltype(reference)>;
        using Target = typename Reference::Target;
        const QUuid here = std::invoke(Reference::get, to);
        const QUuid id = standIn(std::invoke(Reference::get, content));
        const bool isLost = !id.isNull() && !m_target.find<Target>(id) && m_target.find<Target>(here);
        std::invoke(Reference::set, content, isLost ? here : id);
    });
    copyProperties(content, to);
}

template <typename T>
bool CableImport::complete(const T& source, T& here)
{
    bool isCompleted = false;
    forEachReference<T>([&](const auto& reference) {
        using Reference = std::decay_t<decltype(reference)>;
        using Target = typename Reference::Target;
        const QUuid id = std::invoke(Reference::get, here);
        if (!m_standIns.contains(id) || m_target.find<Target>(id))
            return;
        std::invoke(Reference::set, here, standIn(id));
        isCompleted = true;
    });
    if constexpr (std::is_same_v<T, Station>) {
        // The row of a station may have an image that was not loaded.
        const bool lacksImage = here.Image().isNull() && (m_hasImages || here.EntityState() == New);
        if (lacksImage && !source.Image().isNull()) {
            here.SetImage(source.Image());
            isCompleted = true;
        }
    }
    return isCompleted;
}

template <typename T>
void CableImport::findByName(const Entities<T>& strangers)
{
    QHash<QString, Entities<T>> namesakes;
    for (const auto& stranger : strangers)
        namesakes[stranger->Name()];
    namesakes.remove(QString());
    if (namesakes.isEmpty())
        return;
    for (const auto& entity : qAsConst(m_target.of<T>())) {
        // An entity that is at the source by its id is no counterpart of another one.
        const auto found = namesakes.find(entity->Name());
        if (found != namesakes.end() && isLive(*entity) && !(isUnique<T> && sources<T>().contains(entity->Id())))
            found->push_back(entity);
    }

    QHash<QUuid, int> claims;
    QHash<QUuid, QUuid> found;
    for (const auto& stranger : strangers) {
        const auto named = namesakes.constFind(stranger->Name());
        if (named == namesakes.constEnd())
            continue;
        std::vector<QUuid> same;
        for (const auto& namesake : *named) {
            if (!isSameThing(*stranger, *namesake))
                continue;
            same.push_back(namesake->Id());
            ++claims[namesake->Id()];
        }
        if (!same.empty() && (!isUnique<T> || same.size() == 1))
            found.insert(stranger->Id(), *std::min_element(same.begin(), same.end()));
    }
    for (auto it = found.cbegin(); it != found.cend(); ++it) {
        if (!isUnique<T> || claims.value(*it) == 1)
            m_standIns.insert(it.key(), *it);
    }
}

template <typename T>
bool CableImport::isSameThing(const T& source, const T& here)
{
    if constexpr (std::is_same_v<T, Insulation>) {
        return isSameNumber(source.Velocity(), here.Velocity());
    } else if constexpr (std::is_same_v<T, SegmentType>) {
        return source.IsJoint() == here.IsJoint();
    } else if constexpr (std::is_same_v<T, SegmentDetail>) {
        return isSameNumber(source.Velocity(), here.Velocity()) &&
               areSameThing<SegmentType>(standIn(source.TypeId()), here.TypeId()) &&
               areSameThing<Insulation>(standIn(source.InsulationId()), here.InsulationId());
    } else if constexpr (std::is_same_v<T, Station>) {
        const auto there = source.Point();
        const auto point = m_target.find<Point>(here.PointId());
        const bool isOneCity = source.City().isEmpty() || here.City().isEmpty() || source.City() == here.City();
        return isOneCity && (!there || !point || mayBeOnePlace(*there, *point));
    } else {
        return true;
    }
}

template <typename T>
bool CableImport::areSameThing(const QUuid& left, const QUuid& right)
{
    const auto first = m_target.find<T>(left);
    const auto second = m_target.find<T>(right);
    return left == right || (first && second && first->Name() == second->Name() && isSameThing(*first, *second));
}

} // namespace DataAccess::Context
