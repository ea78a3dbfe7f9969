#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

// One upload being received. The library checks the SHA-256 of the data; the sink
// only stores bytes and commits or discards them. All calls come from the server's file
// worker, one at a time and in order; discard() also runs when an unfinished upload is
// dropped, so a sink is never left half-written.
class ZEKTIncomingFile {
public:
    virtual ~ZEKTIncomingFile() = default;
    virtual std::optional<QString> write(const QByteArray &chunk) = 0; // error text on failure
    // Makes the file visible under its final name; returns the name used or an error.
    struct Committed {
        bool success = false;
        QString message; // final name on success, readable reason otherwise
    };
    virtual Committed commit() = 0;
    // Removes every trace of the partial file. Called on any failure and on abandon.
    virtual void discard() = 0;
};
