#pragma once

// Keys of the standard preference store, area first.
namespace PreferenceKeys {

inline constexpr char supervisionAutoConnectAll[] = "Supervision.autoConnectAll";

} // namespace PreferenceKeys
