#pragma once

#include "context/private/Networks.h"

/// Gives an entity all stored values of another one, ids of references included; not its id, state, time stamp or
/// links.
namespace DataAccess::Context {

void copyContent(const Cables::Entities::Insulation& from, Cables::Entities::Insulation& to);
void copyContent(const Cables::Entities::SegmentType& from, Cables::Entities::SegmentType& to);
void copyContent(const Cables::Entities::SegmentDetail& from, Cables::Entities::SegmentDetail& to);
void copyContent(const Cables::Entities::Owner& from, Cables::Entities::Owner& to);
void copyContent(const Cables::Entities::Termination& from, Cables::Entities::Termination& to);
void copyContent(const Cables::Entities::Switchgear& from, Cables::Entities::Switchgear& to);
void copyContent(const Cables::Entities::Point& from, Cables::Entities::Point& to);
void copyContent(const Cables::Entities::Station& from, Cables::Entities::Station& to);
void copyContent(const Cables::Entities::Route& from, Cables::Entities::Route& to);
void copyContent(const Cables::Entities::Cable& from, Cables::Entities::Cable& to);
void copyContent(const Cables::Entities::Phase& from, Cables::Entities::Phase& to);
void copyContent(const Cables::Entities::Segment& from, Cables::Entities::Segment& to);
void copyContent(const Cables::Entities::Rating& from, Cables::Entities::Rating& to);

} // namespace DataAccess::Context
