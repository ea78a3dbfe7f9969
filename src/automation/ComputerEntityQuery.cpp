#include "ComputerEntityQuery.h"

#include "SharedAppState.h"

QList<ComputerEntity> ComputerEntityQuery::entities(const QStringList &identifiers) const
{
    QList<ComputerEntity> result;
    for (const RemoteComputer &computer : m_state.loadComputers()) {
        ComputerEntity entity = ComputerEntity::from(computer);
        if (identifiers.contains(entity.id))
            result.append(std::move(entity));
    }
    return result;
}

QList<ComputerEntity> ComputerEntityQuery::suggestedEntities() const
{
    QList<ComputerEntity> result;
    for (const RemoteComputer &computer : m_state.loadComputers())
        result.append(ComputerEntity::from(computer));
    return result;
}
