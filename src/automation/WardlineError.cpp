#include "WardlineError.h"

#include <QCoreApplication>

QString WardlineError::text(Case errorCase)
{
    switch (errorCase) {
    case appNotAvailable:
        return QCoreApplication::translate("WardlineError", "Telvane app is not available");
    case computerNotFound:
        return QCoreApplication::translate("WardlineError", "Computer not found");
    case fileNotProvided:
        return QCoreApplication::translate("WardlineError", "File not provided");
    }
    return {};
}

Error WardlineError::make(Case errorCase)
{
    return Error{QLatin1String(domain), int(errorCase), text(errorCase)};
}
