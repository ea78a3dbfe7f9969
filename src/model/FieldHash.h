#pragma once

#include <QHashFunctions>
#include <optional>

// Combines the hashes of fields in order. Unlike qHashMulti it also takes
// std::optional (absent hashes differently from any present value), for which
// argument-dependent lookup would not find a qHash overload.
namespace FieldHash {

template <typename T> size_t of(const T &value)
{
    return qHash(value, 0);
}

template <typename T> size_t of(const std::optional<T> &value)
{
    return value ? QtPrivate::QHashCombine()(size_t(1), of(*value)) : size_t(0);
}

template <typename... T> size_t combine(size_t seed, const T &...fields)
{
    QtPrivate::QHashCombine hashCombine;
    ((seed = hashCombine(seed, of(fields))), ...);
    return seed;
}

} // namespace FieldHash
