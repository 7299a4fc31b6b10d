#pragma once

#include "entities/lb/LBExport.h"

#include <QDateTime>
#include <QJsonObject>
#include <QUuid>

namespace LB::Entities::Interfaces {

/**
 * Link between a measurement of the cable book and the cable network. The object behind it is a QOR::Entities::Entity
 * too: a dynamic cast leads to its state and its observers. A setter that changes a stored value makes a Normal entity
 * Modified; an equal value changes nothing.
 */
class LB_EXPORT ICablebookMeasure
{
public:
    virtual ~ICablebookMeasure() = default;
    ICablebookMeasure& operator=(const ICablebookMeasure&) = delete;

    /// QorUuidHelpers::uuidFromInt() of the measurement's number; the null id means that the link is not persisted.
    virtual const QUuid& Id() const = 0;

    /// Number of the measurement in the cable book, the key of the row. Setting it gives an entity without an id the id
    /// that belongs to the number; an id that is there already stays.
    virtual int MeasureId() const = 0;
    virtual void SetMeasureId(int id) = 0;

    /// The cable that was measured.
    virtual const QUuid& CableId() const = 0;
    virtual void SetCableId(const QUuid& id) = 0;

    /// The station that was measured from.
    virtual const QUuid& StationId() const = 0;
    virtual void SetStationId(const QUuid& id) = 0;

    /// When the measurement was imported.
    virtual const QDateTime& ImportDate() const = 0;
    virtual void SetImportDate(const QDateTime& date) = 0;

    /// When the row was last written.
    virtual const QDateTime& LastEditDate() const = 0;
    virtual void SetLastEditDate(const QDateTime& date) = 0;

    /// One member for each property, named like it with a small first letter: ids as text with braces, times as ISO
    /// text, null for the null id and for no time.
    virtual QJsonObject toJson() const = 0;

protected:
    ICablebookMeasure() = default;
    ICablebookMeasure(const ICablebookMeasure&) = default;
};

} // namespace LB::Entities::Interfaces
