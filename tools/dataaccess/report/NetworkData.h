#pragma once

#include <QDateTime>
#include <QHash>
#include <QJsonObject>
#include <QMap>
#include <QPointF>
#include <QString>
#include <QVector>

#include <functional>

namespace DataAccess::Interfaces {
class IDatabase;
}

struct StationRow
{
    QString id;
    QString name;
    QString city;
    QString point;
};

struct SegmentRow
{
    QString id;
    qint64 index = 0;
    QString name;
    double length = 0;
    QString detail;
};

struct PhaseRow
{
    QString id;
    qint64 index = 0;
    QVector<SegmentRow> segments;
};

/// A charge that was measured at a place of a cable.
struct EventRow
{
    qint64 phase = 0;
    double position = 0; ///< In metres from the beginning.
    double charge = 0;   ///< In coulombs.
    double voltage = 0;  ///< In volts.
};

/// A partial-discharge test: the events of its latest report.
struct TestRow
{
    QString time;
    QString tester;
    QString report;
    QString reportTime;
    QVector<EventRow> events;
};

struct CableRow
{
    QString id;
    QString number;
    double voltage = 0;
    double length = 0;
    QString city;
    QString installed;
    QString owner;
    QString comment;
    QString stationA;
    QString stationB;
    QString route;
    QVector<PhaseRow> phases;
    QString ratingTime; ///< Of the rating that was measured last; empty without one.
    QJsonObject rating;
    QVector<TestRow> tests;

    /// The rating of a segment; NaN when there is none.
    double ratingOf(qint64 phase, const QString& segment) const;
    /// The highest rating of any phase; NaN when there is none.
    double worstRating() const;
};

struct DetailRow
{
    QString name;
    QString type;
    bool isJoint = false;
};

/// What a report shows of a network: all that is neither marked deleted nor a snapshot.
struct NetworkData
{
    QVector<CableRow> cables;           ///< By number.
    QMap<QString, StationRow> stations; ///< In the order of their ids, so that a page is the same each time.
    QHash<QString, QPointF> points;     ///< Longitude and latitude.
    QHash<QString, QStringList> routes;
    QHash<QString, DetailRow> details;

    /// Reads everything as it is at one moment. @p progress is told the tables.
    static NetworkData read(DataAccess::Interfaces::IDatabase& db, const std::function<bool(qint64, qint64)>& progress);

    /// The line that a cable takes on a map; empty when nothing is known of it.
    QVector<QPointF> wayOf(const CableRow& cable) const;
};
