#pragma once

#include "context/ContextModel.h"

#include <QString>

namespace TestSupport {

/// One operation; what its numbers mean depends on how many objects there are when it is its turn, so that a sequence
/// stays one when steps are left out.
struct ModelStep
{
    QString name;
    int first = 0;
    int second = 0;
};
using ModelSteps = std::vector<ModelStep>;

/// Does the steps to a context on an empty database, and to the model. Gives the first difference, after the name of
/// the step; empty when there is none.
QString runModel(ModelFamily& family, const ModelSteps& steps);

} // namespace TestSupport
