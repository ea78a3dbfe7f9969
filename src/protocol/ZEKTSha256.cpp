#include "ZEKTSha256.h"

#include <openssl/evp.h>

ZEKTSha256::ZEKTSha256() : m_context(EVP_MD_CTX_new())
{
    reset();
}

ZEKTSha256::~ZEKTSha256()
{
    EVP_MD_CTX_free(m_context);
}

void ZEKTSha256::addData(const QByteArray &data)
{
    EVP_DigestUpdate(m_context, data.constData(), static_cast<size_t>(data.size()));
}

void ZEKTSha256::addData(const char *data, qsizetype size)
{
    EVP_DigestUpdate(m_context, data, static_cast<size_t>(size));
}

QByteArray ZEKTSha256::result() const
{
    EVP_MD_CTX *copy = EVP_MD_CTX_new();
    EVP_MD_CTX_copy_ex(copy, m_context);
    QByteArray digest(EVP_MAX_MD_SIZE, Qt::Uninitialized);
    unsigned int length = 0;
    EVP_DigestFinal_ex(copy, reinterpret_cast<unsigned char *>(digest.data()), &length);
    EVP_MD_CTX_free(copy);
    digest.truncate(static_cast<qsizetype>(length));
    return digest;
}

void ZEKTSha256::reset()
{
    EVP_DigestInit_ex(m_context, EVP_sha256(), nullptr);
}
