#pragma once

#include <QString>

// One button of the computer detail's action bar and what pressing it does.
struct DetailAction {
    enum class Effect {
        connect,
        disconnect,
        none, // connecting: the button waits
        openRemoteControl,
        chooseFileToUpload,
        openEditForm,
        confirmRemoval,
    };

    QString label;
    QString systemImage;
    bool enabled = false;
    Effect effect = Effect::none;

    bool operator==(const DetailAction &) const = default;
};
