#include "context/private/EntityContent.h"

namespace DataAccess::Context {

using namespace Cables::Entities;

void copyContent(const Insulation& from, Insulation& to)
{
    to.SetName(from.Name());
    to.SetVelocity(from.Velocity());
}

void copyContent(const SegmentType& from, SegmentType& to)
{
    to.SetName(from.Name());
    to.SetIsJoint(from.IsJoint());
}

void copyContent(const SegmentDetail& from, SegmentDetail& to)
{
    to.SetName(from.Name());
    to.SetVelocity(from.Velocity());
    to.SetIsFavorite(from.IsFavorite());
    to.SetInsulationId(from.InsulationId());
    to.SetTypeId(from.TypeId());
}

void copyContent(const Owner& from, Owner& to)
{
    to.SetName(from.Name());
}

void copyContent(const Termination& from, Termination& to)
{
    to.SetName(from.Name());
}

void copyContent(const Switchgear& from, Switchgear& to)
{
    to.SetName(from.Name());
}

void copyContent(const Point& from, Point& to)
{
    to.SetIndex(from.Index());
    to.setLatitude(from.latitude());
    to.setLongitude(from.longitude());
}

void copyContent(const Station& from, Station& to)
{
    to.SetName(from.Name());
    to.SetCity(from.City());
    to.SetDescrition(from.Description());
    // A station may have been read without its image.
    if (!from.Image().isNull())
        to.SetImage(from.Image());
    to.SetPointId(from.PointId());
}

void copyContent(const Route& from, Route& to)
{
    to.SetCableId(from.CableId());
    to.SetPointIds(from.PointIds());
}

void copyContent(const Cable& from, Cable& to)
{
    to.SetNumber(from.Number());
    to.SetVoltage(from.Voltage());
    to.SetInstallationDate(from.InstallationDate());
    to.SetDiagnosticStatus(from.DiagnosticStatus());
    to.SetCity(from.City());
    to.SetType(from.Type());
    to.SetCableStatus(from.CableStatus());
    to.SetComment(from.Comment());
    to.SetLength(from.Length());
    to.SetImportance(from.Importance());
    // These two have no column: a cable that was loaded lacks them.
    if (!from.QrCode().isNull())
        to.SetQrCode(from.QrCode());
    if (!from.ratingMeasureID().isNull())
        to.SetRatingMeasureID(from.ratingMeasureID());
    to.SetStationAId(from.StationAId());
    to.SetStationBId(from.StationBId());
    to.SetTerminationAId(from.TerminationAId());
    to.SetTerminationBId(from.TerminationBId());
    to.SetSwitchgearAId(from.SwitchgearAId());
    to.SetSwitchgearBId(from.SwitchgearBId());
    to.SetRouteId(from.RouteId());
    to.SetOwnerId(from.OwnerId());
}

void copyContent(const Phase& from, Phase& to)
{
    to.SetIndex(from.Index());
    to.SetCableId(from.CableId());
}

void copyContent(const Segment& from, Segment& to)
{
    to.SetName(from.Name());
    to.SetIndex(from.Index());
    to.SetLength(from.Length());
    to.SetInstallationDate(from.InstallationDate());
    to.SetPhaseId(from.PhaseId());
    to.SetDetailId(from.DetailId());
}

void copyContent(const Rating& from, Rating& to)
{
    to.SetCableID(from.cableID());
    to.SetTaskID(from.taskID());
    to.SetMeasureID(from.measureID());
    to.SetModeId(from.modeId());
    to.SetMeasureTime(from.measureTime());
    to.SetComment(from.comment());
    to.SetAutomatic(from.automatic());
    to.SetOldCable(from.oldCable());
    to.SetEventselectionmodel(from.eventselectionmodel());
    to.SetRating(from.JsonFromRating());
}

} // namespace DataAccess::Context
