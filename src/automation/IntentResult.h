#pragma once

#include "model/Error.h"

#include <QString>
#include <optional>

// What an automation action returns: a text, or an error whose description is shown.
struct IntentResult {
    QString text;
    std::optional<Error> error;

    bool isSuccess() const { return !error.has_value(); }

    static IntentResult success(QString text) { return IntentResult{std::move(text), {}}; }
    static IntentResult failure(Error error) { return IntentResult{{}, std::move(error)}; }
};
