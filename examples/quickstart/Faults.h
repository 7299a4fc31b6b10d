#pragma once

#include <QString>

/// What the library logs as a fault. It tells there what its plain answers, such as a null pointer, leave out.
namespace Faults {

/// Keeps faults, from now on, in place of printing them; all else that the library logs is dropped.
void keep();

/// The first fault since keep(), in one line.
QString first();

} // namespace Faults
