#pragma once

#include <QPair>
#include <QString>
#include <QVector>

using SettingList = QVector<QPair<QString, QString>>;

// Reads "key = value" lines of an INI file into *settings, in order.
// Section headers are ignored, "#" and ";" start comments. Keys must be
// settings the file may hold; false, with file and line in *error, else.
bool readConfigFile(QString const& fileName, SettingList* settings, QString* error);
