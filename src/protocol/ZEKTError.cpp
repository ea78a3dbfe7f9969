#include "ZEKTError.h"

ZEKTError::ZEKTError(const QString &description, const QString &domain, int code)
    : m_description(description), m_domain(domain), m_code(code), m_what(description.toUtf8())
{
}
