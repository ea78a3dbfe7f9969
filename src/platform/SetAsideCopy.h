#pragma once

#include <QString>

// A copy of a settings file put beside it because Telvane could not use the file as it was.
struct SetAsideCopy {
    enum class Reason {
        // The file did not parse; it was moved aside and a new one is used.
        unparseableFile,
        // The computer list in it did not decode; the file was copied before the list was
        // replaced.
        undecodableList,
    };

    Reason reason = Reason::unparseableFile;
    QString originalPath;
    QString copyPath;
};
