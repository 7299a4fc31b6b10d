#include "context/CableContext.h"
#include "context/private/Loading.h"
#include "context/private/Networks.h"
#include "manager/AbstractRepositoryManager.h"

#include <QSet>

#include <algorithm>

namespace DataAccess::Context {

using namespace Cables::Entities;

namespace {

struct NamedRow
{
    const char* id;
    const char* name;
};

struct InsulationRow
{
    const char* id;
    const char* name;
    double velocity; // metres per second
};

struct DetailRow
{
    const char* id;
    const char* insulation; // name of a default insulation; empty for joints
    const char* type;
    const char* name;
    double velocity; // metres per second
};

constexpr char s_cableType[] = "{3308519A-3368-40FB-8371-9B4E39BF4CB2}";
constexpr char s_jointType[] = "{5FD6D386-7999-46A5-BD24-93967E96580C}";
constexpr char s_cableDefault[] = "{02624102-9335-DD5F-36BF-6149B8F93774}";
constexpr char s_jointDefault[] = "{45C6C0B5-F2D4-338E-D0DB-4737FB6CC0A7}";

constexpr InsulationRow s_insulations[] = {{"{43186217-0E5C-47C8-B00A-C4B186CA2CDA}", "Unknown", 160000000},
                                           {"{74922196-D604-4B23-9ABE-35244B4F2E4A}", "Mixed", 152000000},
                                           {"{8B49CF33-5A01-4996-AE0C-61565844D1AF}", "PE", 166000000},
                                           {"{9E942235-9D3B-4BAA-8E84-BAB5D8311E59}", "XLPE", 166000000},
                                           {"{5BD7187B-A313-44DF-A2DE-E7003FE33E7D}", "PILC", 160000000},
                                           {"{2D75A45D-9222-4748-A875-D3627EAA81EA}", "EPR", 160000000},
                                           {"{CF88EC6A-643A-429F-AB7A-376DF6EB1AD8}", "PVC", 152000000},
                                           {"{D9F80E69-0D63-42F3-A2C4-6CF8DA098AAD}", "TR-XLPE", 152000000}};

constexpr DetailRow s_details[] = {
    {"{A9E63935-52BA-467D-8B82-D1AB111192F8}", "Unknown", s_cableType, "Unknown", 160000000},
    {"{672AA7B2-CD8D-4E48-A0A6-63530C5B0124}", "Mixed", s_cableType, "Mixed", 152000000},
    {"{E4CEB74C-B03E-409D-8493-FD7AAA01162E}", "PE", s_cableType, "PE", 166000000},
    {"{D9697EF4-EA47-485D-B2FB-F0294CA44956}", "XLPE", s_cableType, "XLPE", 166000000},
    {"{0FAAA849-CB7A-41AA-9DA0-AF9DA80489C2}", "PILC", s_cableType, "PILC", 160000000},
    {"{ECBB94ED-E7AD-477C-A9D4-53E0A7A61CAF}", "EPR", s_cableType, "EPR", 160000000},
    {"{A258F674-0E8E-43E4-A315-3400FE99CB5A}", "PVC", s_cableType, "PVC", 152000000},
    {"{33646D13-FE2C-4FC5-BD9E-29169DDFA890}", "TR-XLPE", s_cableType, "TR-XLPE", 152000000},
    {s_cableDefault, "Unknown", s_cableType, "Default", 160000000},
    {s_jointDefault, "", s_jointType, "Default", 0},
    {"{9667ECCF-2F38-40E0-9B2C-543781B6C11B}", "", s_jointType, "OilFilled", 0},
    {"{A9BD4245-22BB-44C9-B655-D6A1741AAF24}", "", s_jointType, "HeatShrink", 0},
    {"{54032E86-40B9-4DF4-A24D-4775CB0C0EB2}", "", s_jointType, "ColdShrink", 0},
    {"{3CD6D253-A34B-49D3-8C8F-C8BA6910048A}", "", s_jointType, "Taped", 0},
    {"{942DBD66-0D02-4B22-BF32-C60EEAF942D5}", "", s_jointType, "CastResin", 0},
    {"{59B7CA2C-0DB1-4DCC-A9A1-98C6C12C0C38}", "", s_jointType, "SlipOn", 0}};

constexpr NamedRow s_switchgears[] = {{"{EAC9D561-33AD-427A-96E4-281FED01593C}", "OilInsulated"},
                                      {"{210D4C62-6512-474F-BE59-9A36FAF651AD}", "AirInsulated"},
                                      {"{AECE3E84-1D24-422B-9886-F761C84D949C}", "SF6"},
                                      {"{5465B6D7-D100-4D3D-80F4-7A2A2CC1C5F8}", "CarbonDioxide"},
                                      {"{016831D8-0D3A-4E30-B568-ECB848EC2A01}", "Unknown"}};

constexpr NamedRow s_terminations[] = {{"{A982E1DD-5C42-47C7-86FE-EFF3EE00FD44}", "SlipOn"},
                                       {"{F7E9E4D2-76DD-4FC1-B6D3-2371D451FBEB}", "ColdShrink"},
                                       {"{D6F928C7-F1A7-4D06-84B3-817C0A720DFF}", "HeatShrink"},
                                       {"{E7058423-BDA0-4432-8A1B-0FCFC3F3368D}", "OilFilled"},
                                       {"{5C1E2BD5-DA3C-4005-8F1B-A4F9ACF57DE7}", "ConnectorTechnology"},
                                       {"{37DF77E7-D712-5AB1-9AB9-C3BAEF86D460}", "Unknown"}};

QUuid idFrom(const char* text)
{
    return QUuid(QLatin1String(text));
}

template <typename T>
std::shared_ptr<T> makeNamed(const char* id, const char* name)
{
    auto entity = std::make_shared<T>();
    entity->SetId(idFrom(id));
    entity->SetName(QLatin1String(name));
    return entity;
}

template <typename T, std::size_t Size>
std::vector<std::shared_ptr<T>> makeAll(const NamedRow (&rows)[Size])
{
    std::vector<std::shared_ptr<T>> entities;
    for (const NamedRow& row : rows)
        entities.push_back(makeNamed<T>(row.id, row.name));
    return entities;
}

QUuid insulationId(const char* name)
{
    const auto row =
        std::find_if(std::begin(s_insulations), std::end(s_insulations),
                     [name](const InsulationRow& other) { return QLatin1String(other.name) == QLatin1String(name); });
    return row == std::end(s_insulations) ? QUuid() : idFrom(row->id);
}

template <typename T>
std::shared_ptr<T> find(const std::vector<std::shared_ptr<T>>& entities, const QUuid& id, const char* typeName)
{
    for (const std::shared_ptr<T>& entity : entities) {
        if (entity->Id() == id)
            return entity;
    }
    qCWarning(lcContext).noquote() << "UNKNOWN ID:" << id.toString() << typeName;
    return nullptr;
}

/// Inserts those of @p entities, of the kind called @p kind, whose ids @p repository, which may be null, does not have.
/// Rows that are there stay. False when the database is out of reach.
template <typename T>
bool insertMissing(const char* kind, const std::shared_ptr<Interfaces::IRepository<T>>& repository,
                   const std::vector<std::shared_ptr<T>>& entities)
{
    if (!repository)
        return true;
    const Database::FailureWatch watch;
    const auto stored = guarded(Q_FUNC_INFO, [&] { return repository->GetAll(); });
    std::vector<std::shared_ptr<T>> missing;
    for (const std::shared_ptr<T>& entity : entities) {
        if (!stored.contains(entity->Id()))
            missing.push_back(entity);
    }
    if (!watch.failed() && !missing.empty())
        guarded(Q_FUNC_INFO, [&] { return repository->Insert(missing); });
    if (watch.failed())
        qCWarning(lcContext).noquote() << "The default types are not stored:" << failureText(kind, watch);
    return !watch.isUnavailable();
}

} // namespace

bool isDefaultType(const QUuid& id)
{
    static const QSet<QUuid> ids = [] {
        QSet<QUuid> all = {idFrom(s_cableType), idFrom(s_jointType)};
        const auto add = [&all](const auto& rows) {
            for (const auto& row : rows)
                all.insert(idFrom(row.id));
        };
        add(s_insulations);
        add(s_details);
        add(s_switchgears);
        add(s_terminations);
        return all;
    }();
    return ids.contains(id);
}

std::shared_ptr<Insulation> CableContext::DefaultTypes::findInsulation(const QUuid& id) const
{
    return find(insulations, id, "(Insulation)");
}

std::shared_ptr<SegmentType> CableContext::DefaultTypes::findType(const QUuid& id) const
{
    return find(segmentTypes, id, "(SegmentType)");
}

std::shared_ptr<SegmentDetail> CableContext::DefaultTypes::findSegmentDetail(const QUuid& id) const
{
    return find(segmentDetails, id, "(SegmentDetail)");
}

std::shared_ptr<SegmentType> CableContext::DefaultTypes::cableType() const
{
    return findType(idFrom(s_cableType));
}

std::shared_ptr<SegmentType> CableContext::DefaultTypes::jointType() const
{
    return findType(idFrom(s_jointType));
}

std::shared_ptr<SegmentDetail> CableContext::DefaultTypes::getSegmentDetailCableDefault() const
{
    return findSegmentDetail(idFrom(s_cableDefault));
}

std::shared_ptr<SegmentDetail> CableContext::DefaultTypes::getSegmentDetailJointDefault() const
{
    return findSegmentDetail(idFrom(s_jointDefault));
}

CableContext::DefaultTypes CableContext::defaultTypes()
{
    DefaultTypes types;
    for (const InsulationRow& row : s_insulations) {
        types.insulations.push_back(makeNamed<Insulation>(row.id, row.name));
        types.insulations.back()->SetVelocity(row.velocity);
    }
    types.segmentTypes = {makeNamed<SegmentType>(s_cableType, "Cable"), makeNamed<SegmentType>(s_jointType, "Joint")};
    types.jointType()->SetIsJoint(true);
    for (const DetailRow& row : s_details) {
        const auto detail = makeNamed<SegmentDetail>(row.id, row.name);
        detail->SetVelocity(row.velocity);
        detail->SetInsulationId(insulationId(row.insulation));
        detail->SetType(types.findType(idFrom(row.type)));
        types.segmentDetails.push_back(detail);
    }
    return types;
}

void CableContext::insertDefaults(const Interfaces::IEditorRepositoryManager& manager)
{
    const DefaultTypes types = defaultTypes();
    // Once the database is out of reach, each of the others would wait for it in vain.
    const auto insert = [&manager](const auto& entities) {
        using T = typename std::decay_t<decltype(entities)>::value_type::element_type;
        const auto& kind = Manager::kindOf<T>(Manager::editorKinds);
        return insertMissing(kind.name, (manager.*kind.repository)(), entities);
    };
    static_cast<void>(insert(types.insulations) && insert(types.segmentTypes) &&
                      insert(makeAll<Switchgear>(s_switchgears)) && insert(makeAll<Termination>(s_terminations)) &&
                      insert(types.segmentDetails));
}

} // namespace DataAccess::Context
