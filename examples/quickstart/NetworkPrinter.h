#pragma once

#include "Repositories.h"

#include <QTextStream>

/// Prints the cable network of a database as a tree, with units.
class NetworkPrinter
{
public:
    NetworkPrinter(Repositories& repositories, QTextStream& out);

    /// How many rows each table has.
    void printCounts();
    /// All cables with what belongs to them, and the stations.
    void printNetwork();

private:
    void printCable(const Cables::Entities::Cable& cable);
    void printEnd(const QString& label, const QUuid& station, const QUuid& termination, const QUuid& switchgear);
    void printRoute(const QUuid& id);
    void printPhase(const Cables::Entities::Phase& phase);
    void printRating(const Cables::Entities::Rating& rating, const std::vector<unsigned int>& phases);
    QString describe(const Cables::Entities::Segment& segment) const;

    Repositories& m_repositories;
    QTextStream& m_out;
    QHash<QUuid, std::shared_ptr<Cables::Entities::Insulation>> m_insulations;
    QHash<QUuid, std::shared_ptr<Cables::Entities::Owner>> m_owners;
    QHash<QUuid, std::shared_ptr<Cables::Entities::Rating>> m_ratings;
    QHash<QUuid, std::shared_ptr<Cables::Entities::SegmentDetail>> m_details;
    QHash<QUuid, std::shared_ptr<Cables::Entities::SegmentType>> m_segmentTypes;
    QHash<QUuid, std::shared_ptr<Cables::Entities::Station>> m_stations;
    QHash<QUuid, std::shared_ptr<Cables::Entities::Switchgear>> m_switchgears;
    QHash<QUuid, std::shared_ptr<Cables::Entities::Termination>> m_terminations;
};
