#pragma once

#include "LocalWebServer.h"

// A stand-in for the maker's chat page with everything the assistant panel must handle: links
// inside and outside the chat page, pop-ups, a redirect to another host, the chat widget
// vendor's branding and voice-input button (also in a frame), and texts that must stay. Serves
// it on `server` at "/aichat"; "localhost" on the same port counts as another host.
namespace AssistantTestPages {

QByteArray chatPage(const QString &otherHost);
QByteArray framePage();
void serve(LocalWebServer &server);

} // namespace AssistantTestPages
