#pragma once

#include <QtGlobal>

// Limits of file transfers that the automation side checks before it stages a copy, so
// that it needs nothing of the session protocol. The session layer checks that the
// protocol's own limit is the same.
namespace TransferLimits {

inline constexpr qint64 maxFileTransferSize = 268435456; // 256 MiB

} // namespace TransferLimits
