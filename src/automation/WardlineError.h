#pragma once

#include "model/Error.h"

#include <QString>

// The automation actions' own failures.
class WardlineError {
public:
    enum Case { appNotAvailable, computerNotFound, fileNotProvided };

    static constexpr char domain[] = "Telvane.WardlineError";

    static QString text(Case errorCase);
    // Code = the case's position.
    static Error make(Case errorCase);
};
