#pragma once

// Keys of the pending-action queue in the shared suite. Each key holds at most one
// request; a new write replaces an unconsumed one.
namespace PendingActionKeys {

// Values: the computer's id as canonical upper-case UUID text.
inline constexpr char connection[] = "pendingConnection";
inline constexpr char disconnection[] = "pendingDisconnection";
inline constexpr char remoteControl[] = "pendingRemoteControl";
inline constexpr char stopRemoteControl[] = "pendingStopRemoteControl";

// Value: a map of string to string with the three entries below.
inline constexpr char fileUpload[] = "pendingFileUpload";
inline constexpr char uploadFileURL[] = "fileURL"; // the staged file's absolute path
inline constexpr char uploadFileName[] = "fileName";
inline constexpr char uploadComputerId[] = "computerId";

} // namespace PendingActionKeys
