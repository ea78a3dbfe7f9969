#pragma once

// Keys of the standard preference store, area first.
namespace PreferenceKeys {

inline constexpr char supervisionAutoConnectAll[] = "Supervision.autoConnectAll";

// What the dashboard shows.
inline constexpr char dashboardShowSummaryTiles[] = "Dashboard.showSummaryTiles";
inline constexpr char dashboardShowHealthMetrics[] = "Dashboard.showHealthMetrics";
inline constexpr char dashboardShowTechnicalSpecs[] = "Dashboard.showTechnicalSpecs";
inline constexpr char dashboardShowScreenPreview[] = "Dashboard.showScreenPreview";

// Which technical pills appear, on the cards and in the detail.
inline constexpr char pillsShowOS[] = "MonitoringPills.showOS";
inline constexpr char pillsShowModel[] = "MonitoringPills.showModel";
inline constexpr char pillsShowMemory[] = "MonitoringPills.showMemory";
inline constexpr char pillsShowDiskFree[] = "MonitoringPills.showDiskFree";
inline constexpr char pillsShowUptime[] = "MonitoringPills.showUptime";
inline constexpr char pillsShowIPAddress[] = "MonitoringPills.showIPAddress";
inline constexpr char pillsShowLoggedInUser[] = "MonitoringPills.showLoggedInUser";
inline constexpr char pillsShowNetworkName[] = "MonitoringPills.showNetworkName";
inline constexpr char pillsShowDisplayCount[] = "MonitoringPills.showDisplayCount";
inline constexpr char pillsShowMainResolution[] = "MonitoringPills.showMainResolution";
inline constexpr char pillsShowAgentVersion[] = "MonitoringPills.showAgentVersion";
inline constexpr char pillsShowSession[] = "MonitoringPills.showSession";
inline constexpr char pillsShowScreenAccess[] = "MonitoringPills.showScreenAccess";
inline constexpr char pillsShowRemoteControl[] = "MonitoringPills.showRemoteControl";
inline constexpr char pillsShowFrontApp[] = "MonitoringPills.showFrontApp";

} // namespace PreferenceKeys
