#pragma once

#include <QString>
#include <QStringList>

// How a test starts one of the project's programs. A cross-built test runs
// under an emulator and starts the programs it drives under the same one,
// since the machine cannot run them by itself.
struct ProgramCommand
{
    QString program;
    QStringList arguments;
};

ProgramCommand programCommand(QString const& program, QStringList const& arguments = {});

// Whether the tests run under an emulator (a cross build's), where times and
// the resident size are the emulator's rather than the device's.
bool runsUnderEmulator();

// Whether the tests are built under the address or thread sanitizer, which
// keeps freed memory in quarantine: the resident size is then its own.
bool sanitized();
