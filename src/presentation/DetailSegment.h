#pragma once

// The two pages of the computer detail.
enum class DetailSegment { status, preview };
