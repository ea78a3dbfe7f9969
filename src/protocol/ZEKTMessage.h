#pragma once

#include <QString>
#include <memory>

// Every message the client delivers to its message handler. Messages are immutable
// records; the console tells them apart by their concrete type.
class ZEKTMessage {
public:
    virtual ~ZEKTMessage() = default;
    // Stable name of the concrete type, e.g. "ScreenCaptureMessage".
    virtual QString typeName() const = 0;
};

using ZEKTMessagePtr = std::shared_ptr<const ZEKTMessage>;
