#include "ComputerFields.h"

#include "RemoteComputer.h"

ComputerFields changedFields(const RemoteComputer &before, const RemoteComputer &after)
{
    ComputerFields fields;
    const auto note = [&fields](bool differs, ComputerField field) {
        if (differs)
            fields |= field;
    };
    note(before.name != after.name, ComputerField::name);
    note(before.host != after.host, ComputerField::host);
    note(before.port != after.port, ComputerField::port);
    note(before.username != after.username, ComputerField::username);
    note(before.password != after.password, ComputerField::password);
    note(before.description != after.description, ComputerField::description);
    note(before.tags != after.tags, ComputerField::tags);
    note(before.isConnected != after.isConnected, ComputerField::isConnected);
    note(before.isConnecting != after.isConnecting, ComputerField::isConnecting);
    note(before.lastConnected != after.lastConnected, ComputerField::lastConnected);
    note(before.thumbnailImage != after.thumbnailImage, ComputerField::thumbnailImage);
    note(before.lastError != after.lastError, ComputerField::lastError);
    note(before.systemStats != after.systemStats, ComputerField::systemStats);
    return fields;
}
