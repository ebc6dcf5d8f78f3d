#pragma once

#include <QJsonValue>
#include <QString>
#include <QVariant>

// The platform's values as JSON, in the platform's own serialisation.
QJsonValue jsonFromVariant(QVariant const& value);

// Reads one JSON value typed by a person: objects become hashes as the
// platform's records are, whole numbers become integers. False when the
// text is no JSON value.
bool variantFromJsonText(QString const& text, QVariant* value);

// A value as one short line of text: strings bare, the rest as JSON.
QString displayText(QJsonValue const& value);
