#pragma once

#include <QFont>

// The few text sizes of the dashboard and the detail, relative to the widget's font so
// they follow the desktop's font size.
namespace ViewFonts {

QFont caption(const QFont &base);
QFont emphasized(const QFont &base);
QFont title(const QFont &base);
QFont pageTitle(const QFont &base);

} // namespace ViewFonts
