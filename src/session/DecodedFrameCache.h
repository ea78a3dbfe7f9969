#pragma once

#include <QByteArray>
#include <QHash>
#include <QImage>
#include <QUuid>

// The last decoded screen image of each streaming computer, so that a remote-control window
// showing the same bytes ("screenCaptureReceived") need not decode them again. An entry
// matches only the very same byte buffer, compared by address and size; the cache keeps
// that buffer alive, so its address cannot be reused meanwhile. Main thread only.
class DecodedFrameCache {
public:
    static DecodedFrameCache &shared();

    void insert(const QUuid &computerID, const QByteArray &imageData, const QImage &image);
    // The image decoded from exactly this buffer, or a null image.
    QImage find(const QUuid &computerID, const QByteArray &imageData) const;
    void remove(const QUuid &computerID);
    qsizetype size() const { return m_entries.size(); }

private:
    struct Entry {
        QByteArray imageData;
        QImage image;
    };
    QHash<QUuid, Entry> m_entries;
};
