#pragma once

#include "context/CableContext.h"

#include <QTextStream>

/// Prints the cable network of a database as a tree, with units.
class NetworkPrinter
{
public:
    NetworkPrinter(const DataAccess::Context::CableContext& context, QTextStream& out);

    /// How many rows each table has.
    void printCounts();
    /// All cables with what belongs to them.
    void printNetwork();

private:
    void printCable(const Cables::Entities::Cable& cable);
    void printEnd(const QString& label, const Cables::Entities::Interfaces::IStation* station,
                  const Cables::Entities::Interfaces::ITermination* termination,
                  const Cables::Entities::Interfaces::ISwitchgear* switchgear);
    void printRoute(const Cables::Entities::Interfaces::IRoute& route);
    void printPhase(const Cables::Entities::Interfaces::IPhase& phase);
    void printRating(const Cables::Entities::Rating& rating, const Cables::Entities::Cable& cable);

    const DataAccess::Context::CableContext& m_context;
    QTextStream& m_out;
};
