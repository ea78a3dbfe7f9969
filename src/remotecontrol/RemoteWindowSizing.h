#pragma once

#include <QSizeF>
#include <optional>

// The sizing rules of the remote-control window, on content sizes (the window's area without
// its frame): the image above a control panel of fixed height keeps the remote screen's
// aspect ratio.
class RemoteWindowSizing {
public:
    static constexpr double controlPanelHeight = 40;
    static constexpr double minimumContentWidth = 800;
    // The aspect ratio assumed before the first frame.
    static constexpr double defaultAspectRatio = 4.0 / 3.0;
    // How far a user's size may stray from the ratio before the width is adapted.
    static constexpr double aspectTolerance = 0.05;

    struct InitialResize {
        double aspectRatio = 0;
        QSizeF minimumContentSize;
        QSizeF contentSize;
    };

    // The one-time resize after the first frame: at most 1000 wide and 85 % of the visible
    // area, the image at the remote aspect ratio. None when the remote size has no area.
    static std::optional<InitialResize> initialResize(const QSizeF &serverScreenSize,
                                                      const QSizeF &visibleArea);

    // The content size a user's resize to `proposed` ends at: only the width adapts to the
    // height (when off the ratio by more than the tolerance), at least 800 wide and never
    // wider than the visible area; the height is raised to fit an 800-wide image.
    static QSizeF allowedContentSize(const QSizeF &proposed, const QSizeF &serverScreenSize,
                                     const QSizeF &visibleArea);

    // Width over height of the remote screen, or the default before a frame.
    static double aspectRatio(const QSizeF &serverScreenSize);
};
