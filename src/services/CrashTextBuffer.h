#pragma once

#include <cstddef>
#include <cstdint>
#include <ctime>

// Text built in fixed storage, for a signal handler: no allocation, no locale, no stdio.
// What does not fit is cut off; the buffer is never overrun.
class CrashTextBuffer {
public:
    CrashTextBuffer(char *storage, std::size_t capacity) : m_data(storage), m_capacity(capacity) {}

    const char *data() const { return m_data; }
    std::size_t size() const { return m_size; }
    void clear() { m_size = 0; }

    CrashTextBuffer &append(const char *text)
    {
        while (text && *text && m_size < m_capacity)
            m_data[m_size++] = *text++;
        return *this;
    }

    CrashTextBuffer &append(const char *bytes, std::size_t length)
    {
        for (std::size_t i = 0; i < length && m_size < m_capacity; ++i)
            m_data[m_size++] = bytes[i];
        return *this;
    }

    CrashTextBuffer &appendDecimal(long long value, int minimumDigits = 1)
    {
        char digits[24];
        int count = 0;
        unsigned long long magnitude =
            value < 0 ? 0ULL - static_cast<unsigned long long>(value) : value;
        do {
            digits[count++] = char('0' + magnitude % 10);
            magnitude /= 10;
        } while (magnitude != 0 && count < int(sizeof digits));
        while (count < minimumDigits && count < int(sizeof digits))
            digits[count++] = '0';
        if (value < 0)
            append("-");
        while (count > 0)
            append(&digits[--count], 1);
        return *this;
    }

    // "2024-05-01T12:34:56Z" for seconds since 1970 in UTC. gmtime_r is not
    // async-signal-safe, so the civil date is computed here (days to year, month, day).
    CrashTextBuffer &appendUtcTimestamp(std::int64_t secondsSinceEpoch)
    {
        std::int64_t days = secondsSinceEpoch / 86400;
        std::int64_t secondOfDay = secondsSinceEpoch % 86400;
        if (secondOfDay < 0) {
            secondOfDay += 86400;
            --days;
        }
        days += 719468; // from 1970-03-01 counting back to 0000-03-01
        const std::int64_t era = (days >= 0 ? days : days - 146096) / 146097;
        const std::int64_t dayOfEra = days - era * 146097;
        const std::int64_t yearOfEra =
            (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
        const std::int64_t dayOfYear =
            dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
        const std::int64_t monthIndex = (5 * dayOfYear + 2) / 153;
        const std::int64_t day = dayOfYear - (153 * monthIndex + 2) / 5 + 1;
        const std::int64_t month = monthIndex < 10 ? monthIndex + 3 : monthIndex - 9;
        const std::int64_t year = yearOfEra + era * 400 + (month <= 2 ? 1 : 0);
        appendDecimal(year, 4).append("-").appendDecimal(month, 2).append("-");
        appendDecimal(day, 2).append("T").appendDecimal(secondOfDay / 3600, 2).append(":");
        appendDecimal(secondOfDay / 60 % 60, 2).append(":").appendDecimal(secondOfDay % 60, 2);
        return append("Z");
    }

private:
    char *m_data;
    std::size_t m_capacity;
    std::size_t m_size = 0;
};
