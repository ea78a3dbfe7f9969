#pragma once

#include "ComputerEntity.h"

#include <QList>
#include <QStringList>

class SharedAppState;

// Resolves computer entities from the stored list, in list order.
class ComputerEntityQuery {
public:
    explicit ComputerEntityQuery(SharedAppState &state) : m_state(state) {}

    // The computers whose id text is among `identifiers` (compared exactly).
    QList<ComputerEntity> entities(const QStringList &identifiers) const;
    // Every stored computer.
    QList<ComputerEntity> suggestedEntities() const;

private:
    SharedAppState &m_state;
};
