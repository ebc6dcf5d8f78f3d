#pragma once

#include <QString>

// Defines a function that returns a fixed word of the platform, made once:
// TARN_WORD(TarnRoles::Title, "title") gives QString const& TarnRoles::Title().
#define TARN_WORD(function, text)                     \
    QString const& function()                         \
    {                                                 \
        static QString const s(QStringLiteral(text)); \
        return s;                                     \
    }
