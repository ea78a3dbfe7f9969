#pragma once

#include <QList>
#include <QString>

// One group of the IT inventory: a heading and its label-value rows.
struct InventoryGroup {
    struct Row {
        QString label;
        QString value;
        bool operator==(const Row &) const = default;
    };

    QString title;
    QList<Row> rows;

    bool operator==(const InventoryGroup &) const = default;
};
