#pragma once

#include "context/ContextModel.h"

namespace TestSupport {

/// Compares what a context shows, and what its database holds, with the model.
class ModelCheck
{
public:
    /// Both must outlive the object.
    ModelCheck(ModelFamily& family, ContextModel& model)
        : m_family(family)
        , m_model(model)
    {}

    /// The first difference; empty when there is none. Finds the objects that a load has made.
    QString difference();

private:
    QString bind();
    QString differentRows(int kind);

    ModelFamily& m_family;
    ContextModel& m_model;
    /// When each row was written last, and by which write.
    std::map<QUuid, std::pair<int, QDateTime>> m_stamps;
};

} // namespace TestSupport
