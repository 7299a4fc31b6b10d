#pragma once

#include <QString>

/// What stands in every report: how it looks, and what its search does.
QString reportStyle();
QString reportScript();
