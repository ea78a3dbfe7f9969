#include "DecodedFrameCache.h"

DecodedFrameCache &DecodedFrameCache::shared()
{
    static DecodedFrameCache instance;
    return instance;
}

void DecodedFrameCache::insert(const QUuid &computerID, const QByteArray &imageData,
                               const QImage &image)
{
    m_entries.insert(computerID, Entry{imageData, image});
}

QImage DecodedFrameCache::find(const QUuid &computerID, const QByteArray &imageData) const
{
    const auto it = m_entries.constFind(computerID);
    if (it == m_entries.constEnd() || it->imageData.constData() != imageData.constData() ||
        it->imageData.size() != imageData.size())
        return {};
    return it->image;
}

void DecodedFrameCache::remove(const QUuid &computerID)
{
    m_entries.remove(computerID);
}
