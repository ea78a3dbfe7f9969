#include "ComputerEntity.h"

#include "model/UuidText.h"

#include <QCoreApplication>

ComputerEntity ComputerEntity::from(const RemoteComputer &computer)
{
    return ComputerEntity{UuidText::format(computer.id), computer.displayName()};
}

QString ComputerEntity::typeDisplayName()
{
    return QCoreApplication::translate("ComputerEntity", "Remote Computer");
}
