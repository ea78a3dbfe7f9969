#pragma once

#include <QtGlobal>

// The display identifier sent to agents for screen requests: the index of the primary
// screen among QGuiApplication::screens(), or 0 when there is no GUI.
namespace MainDisplay {

quint32 identifier();

} // namespace MainDisplay
