#pragma once

#include <QUuid>

struct Repositories;

/**
 * Stores a small network: one cable between two stations, with a route, three phases, seven segments and a rating. Does
 * nothing when the database holds a network of its own. Every object has a fixed id, so that nothing is stored twice
 * when an earlier run was cut short. Throws std::runtime_error when something cannot be stored.
 */
void storeSampleNetwork(Repositories& repositories);

/// The ids of the sample's cable and of the station that it begins at.
QUuid sampleCableId();
QUuid sampleStationId();
