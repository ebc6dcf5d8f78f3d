#pragma once

#include "platformvalues.h"

#include <QString>
#include <QStringList>
#include <QVector>

// Everything the tool is told before it runs a command: the platform values
// the module reads, where the cloud is, logging, waiting and output form.
struct HostSettings
{
    PlatformValues platform;
    // No cloud given: the simulated one runs in-process.
    bool cloudGiven = false;
    bool secretGiven = false;
    QStringList faults;
    QString logLevel = QStringLiteral("warn");
    QString logFile;
    QString logConfig;
    // The transport gives up after 30 s; a reply gets a little longer.
    int timeoutMs = 35000;
    bool json = false;
    // The content module to load; empty for the installed one.
    QString modulePath;
};

// One setting as an option ("--page-size N") and, when it is a platform or
// logging value, as a key of the configuration file ("page-size = N").
struct SettingSpec
{
    QString name;
    QString valueName; // empty for a flag
    QString help;
    bool inConfigFile;
};

QVector<SettingSpec> const& settingSpecs();
SettingSpec const* findSetting(QString const& name);

// Applies one setting; false, with the reason in *error, for a bad value.
bool applySetting(HostSettings* settings, QString const& name, QString const& value, QString* error);
