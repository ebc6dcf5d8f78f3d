#include "program.h"

ProgramCommand programCommand(QString const& program, QStringList const& arguments)
{
    QStringList emulator = QString::fromUtf8(TARN_TEST_EMULATOR).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (emulator.isEmpty())
        return {program, arguments};
    QString const runner = emulator.takeFirst();
    return {runner, emulator << program << arguments};
}

bool runsUnderEmulator()
{
    return sizeof(TARN_TEST_EMULATOR) > 1;
}
